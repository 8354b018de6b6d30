// SPDX-License-Identifier: MIT
#include <OpenSG/OSGUberCamera.h>

#include "GroupActions.h"
#include "LateRegistration.h"

namespace osg {

FieldContainerType UberCamera::_type("UberCamera", "Group", nullptr, &UberCamera::createPrototype,
                                     &UberCamera::registerActions, nullptr, 0);

OSG_FIELD_CONTAINER_DEF(UberCamera, UberCameraPtr)

UberCamera::UberCamera(const UberCamera& source)
    : Inherited(source)
{}

UberCamera::~UberCamera() = default;

FieldContainerPtr UberCamera::createPrototype()
{
    return createEmpty();
}

void UberCamera::registerActions()
{
    quon::extensions::registerGroupActions(getClassType());
}

} // namespace osg

namespace {

const quon::extensions::LateRegistration lateRegistration;

} // namespace
