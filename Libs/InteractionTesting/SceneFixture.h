// SPDX-License-Identifier: MIT
#pragma once

#include <InteractionTesting/LiveContainers.h>

#include <OpenSG/OSGConfig.h>

#include <OpenSG/OSGChangeList.h>
#include <OpenSG/OSGFieldContainerFactory.h>
#include <OpenSG/OSGThread.h>

#include <gtest/gtest.h>

#include <cstddef>
#include <utility>
#include <vector>

namespace quon::testing {

/**
 * Base of fixtures that work on a scene: no container created by a test may outlive it.
 *
 * Counts the containers before the members of the fixture are made and after they are gone; a test whose counts differ
 * fails. The list of changes starts empty. The scene graph runs already, with lists of changes that are written to: see
 * osg::ChangeList::setReadWriteDefault().
 */
class SceneFixture : public ::testing::Test {
protected:
    SceneFixture()
        : m_liveContainersAtStart(countLiveContainers())
    {
        osg::Thread::getCurrentChangeList()->clearAll();
    }

    ~SceneFixture() override
    {
        EXPECT_EQ(countLiveContainers(), m_liveContainersAtStart) << "containers leaked or released too often";
        osg::Thread::getCurrentChangeList()->clearAll();
    }

    /** The id of a container and the mask of what changed in it. */
    using Change = std::pair<osg::UInt32, osg::BitVector>;

    /** The changes recorded since the last call, in order: container id and field mask. */
    std::vector<Change> takeChanges()
    {
        osg::ChangeList* list = osg::Thread::getCurrentChangeList();
        const std::vector<Change> changes(list->beginChanged(), list->endChanged());
        list->clearAll();
        return changes;
    }

private:
    std::size_t m_liveContainersAtStart;
};

} // namespace quon::testing
