// SPDX-License-Identifier: MIT
#pragma once

#include <OpenSG/OSGConfig.h>

#include <OpenSG/OSGChangeList.h>
#include <OpenSG/OSGNode.h>
#include <OpenSG/OSGNodeCore.h>
#include <OpenSG/OSGThread.h>

#include <cstddef>
#include <utility>
#include <vector>

namespace quon::testing {

/** What the scene graph recorded: the changes since the last look, and how many containers came and stayed. */
class SceneChanges {
public:
    using Change = std::pair<osg::UInt32, osg::BitVector>;

    SceneChanges() { list().clearAll(); }

    /** Forgets the changes since the last look; the containers count. */
    void skip()
    {
        m_created += list().sizeCreated();
        m_destroyed += list().sizeDestroyed();
        list().clearAll();
    }

    /**
     * Returns container and mask of the changes since the last look, in order.
     *
     * What the scene graph records on its own account about the other end of a link is left out: the parent of a node
     * and the parents of a core.
     */
    std::vector<Change> take()
    {
        std::vector<Change> changes;
        for (auto change = list().beginChanged(); change != list().endChanged(); ++change) {
            if (change->second != osg::Node::ParentFieldMask && change->second != osg::NodeCore::ParentsFieldMask) {
                changes.push_back(*change);
            }
        }
        skip();
        return changes;
    }

    /** Returns how many containers more there are than at the start. */
    long countMore()
    {
        skip();
        return static_cast<long>(m_created) - static_cast<long>(m_destroyed);
    }

private:
    static osg::ChangeList& list() { return *osg::Thread::getCurrentChangeList(); }

    std::size_t m_created = 0;
    std::size_t m_destroyed = 0;
};

} // namespace quon::testing
