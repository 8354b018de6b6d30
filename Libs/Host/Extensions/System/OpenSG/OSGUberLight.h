// SPDX-License-Identifier: MIT
#pragma once

#include <OpenSG/OSGConfig.h>

#include <OpenSG/OSGGroup.h>
#include <OpenSG/OSGRefPtr.h>

namespace osg {

class UberLight;

typedef FCPtr<GroupPtr, UberLight> UberLightPtr;
typedef RefPtr<UberLightPtr> UberLightRefPtr;

/// A light of the host's: known by its type, otherwise a group.
class UberLight : public Group {
public:
    typedef Group Inherited;
    typedef UberLightPtr Ptr;

    OSG_FIELD_CONTAINER_DECL(UberLightPtr)

protected:
    UberLight() = default;
    UberLight(const UberLight& source);
    ~UberLight() override;

private:
    friend class FieldContainer;

    static FieldContainerType _type;

    static FieldContainerPtr createPrototype();
    static void registerActions();
};

OSG_FIELD_CONTAINER_INL_DEF(UberLight, UberLightPtr)

} // namespace osg
