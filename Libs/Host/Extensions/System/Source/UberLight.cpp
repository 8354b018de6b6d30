// SPDX-License-Identifier: MIT
#include <OpenSG/OSGUberLight.h>

#include "GroupActions.h"
#include "LateRegistration.h"

namespace osg {

FieldContainerType UberLight::_type("UberLight", "Group", nullptr, &UberLight::createPrototype,
                                    &UberLight::registerActions, nullptr, 0);

OSG_FIELD_CONTAINER_DEF(UberLight, UberLightPtr)

UberLight::UberLight(const UberLight& source)
    : Inherited(source)
{}

UberLight::~UberLight() = default;

FieldContainerPtr UberLight::createPrototype()
{
    return createEmpty();
}

void UberLight::registerActions()
{
    quon::extensions::registerGroupActions(getClassType());
}

} // namespace osg

namespace {

const quon::extensions::LateRegistration lateRegistration;

} // namespace
