// SPDX-License-Identifier: MIT
#pragma once

#include <OpenSG/OSGGroup.h>
#include <OpenSG/OSGUberLightFields.h>

namespace osg {

/// A light of the host's: known by its type, without any behaviour here.
class OSG_SYSTEM_DLLMAPPING UberLight : public Group {
public:
    typedef Group Inherited;
    typedef UberLightPtr Ptr;

    OSG_FIELD_CONTAINER_DECL(UberLightPtr)

protected:
    UberLight() = default;
    UberLight(const UberLight& source)
        : Inherited(source)
    {}
    ~UberLight() override;

    static FieldContainerType _type;
};

} // namespace osg
