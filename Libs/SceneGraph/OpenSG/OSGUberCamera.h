// SPDX-License-Identifier: MIT
#pragma once

#include <OpenSG/OSGGroup.h>
#include <OpenSG/OSGUberCameraFields.h>

namespace osg {

/// A camera of the host's: known by its type, without any behaviour here.
class OSG_SYSTEM_DLLMAPPING UberCamera : public Group {
public:
    typedef Group Inherited;
    typedef UberCameraPtr Ptr;

    OSG_FIELD_CONTAINER_DECL(UberCameraPtr)

protected:
    UberCamera() = default;
    UberCamera(const UberCamera& source)
        : Inherited(source)
    {}
    ~UberCamera() override;

    static FieldContainerType _type;
};

} // namespace osg
