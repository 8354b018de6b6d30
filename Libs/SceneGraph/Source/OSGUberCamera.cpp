// SPDX-License-Identifier: MIT
#include <OpenSG/OSGUberCamera.h>

namespace osg {

FieldContainerType UberCamera::_type(
    "UberCamera", "Group", nullptr, []() -> FieldContainerPtr { return createEmpty(); }, nullptr);

OSG_FIELD_CONTAINER_INL_DEF(UberCamera, UberCameraPtr)
OSG_FIELD_CONTAINER_DEF(UberCamera, UberCameraPtr)

UberCamera::~UberCamera() = default;

} // namespace osg
