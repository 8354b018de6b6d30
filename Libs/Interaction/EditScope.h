// SPDX-License-Identifier: MIT
#pragma once

#include <OpenSG/OSGConfig.h>

#include <OpenSG/OSGFieldContainerPtr.h>

namespace quon::interaction {

/** Brackets the change of one container: beginEditCP here, endEditCP over the same fields at the end of the block. */
class EditScope {
public:
    explicit EditScope(const osg::FieldContainerPtr& container, osg::BitVector mask = osg::FieldBits::AllFields)
        : m_container(container)
        , m_mask(mask)
    {
        osg::beginEditCP(m_container, m_mask);
    }

    EditScope(const EditScope&) = delete;
    EditScope& operator=(const EditScope&) = delete;

    ~EditScope() { osg::endEditCP(m_container, m_mask); }

private:
    osg::FieldContainerPtr m_container;
    osg::BitVector m_mask;
};

} // namespace quon::interaction
