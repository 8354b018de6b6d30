// SPDX-License-Identifier: MIT
#pragma once

#include <OpenSG/OSGGroupFields.h>
#include <OpenSG/OSGNodeCore.h>

namespace osg {

/// A core that only holds its node's children together.
class OSG_SYSTEM_DLLMAPPING Group : public NodeCore {
public:
    typedef NodeCore Inherited;
    typedef GroupPtr Ptr;

    OSG_FIELD_CONTAINER_DECL(GroupPtr)

protected:
    Group() = default;
    Group(const Group& source)
        : Inherited(source)
    {}
    ~Group() override;

    static FieldContainerType _type;
};

} // namespace osg
