// SPDX-License-Identifier: MIT
#pragma once

#include <OpenSG/OSGConfig.h>

#include <OpenSG/OSGGroup.h>
#include <OpenSG/OSGRefPtr.h>

namespace osg {

class UberCamera;

typedef FCPtr<GroupPtr, UberCamera> UberCameraPtr;
typedef RefPtr<UberCameraPtr> UberCameraRefPtr;

/// A camera of the host's: known by its type, otherwise a group.
class UberCamera : public Group {
public:
    typedef Group Inherited;
    typedef UberCameraPtr Ptr;

    OSG_FIELD_CONTAINER_DECL(UberCameraPtr)

protected:
    UberCamera() = default;
    UberCamera(const UberCamera& source);
    ~UberCamera() override;

private:
    friend class FieldContainer;

    static FieldContainerType _type;

    static FieldContainerPtr createPrototype();
    static void registerActions();
};

OSG_FIELD_CONTAINER_INL_DEF(UberCamera, UberCameraPtr)

} // namespace osg
