// SPDX-License-Identifier: MIT
#pragma once

#include <OpenSG/OSGConfig.h>

#include <OpenSG/OSGChangeList.h>
#include <OpenSG/OSGFieldContainerFactory.h>
#include <OpenSG/OSGFieldContainerType.h>
#include <OpenSG/OSGNode.h>
#include <OpenSG/OSGThread.h>

#include <cstddef>

namespace quon::testing {

/**
 * Returns the number of containers that exist, without the prototypes of the types.
 *
 * Walks all ids given so far, and takes one: a container is made and released to learn which id is the newest. The
 * list of changes is writable afterwards, as it is in tests anyhow, and has nothing of this.
 */
inline std::size_t countLiveContainers()
{
    // Nothing of this is recorded: the lists of changes are those of the test.
    osg::ChangeList* const changes = osg::Thread::getCurrentChangeList();
    changes->setReadOnly(true);
    osg::NodePtr newest = osg::Node::create();
    const osg::UInt32 end = osg::getContainerId(newest);
    osg::subRefCP(newest);
    changes->setReadOnly(false);

    const osg::FieldContainerFactory* const factory = osg::FieldContainerFactory::the();
    std::size_t count = 0;
    for (osg::UInt32 id = 1; id < end; ++id) {
        const osg::FieldContainerPtr container = factory->getContainer(id);
        if (container != osg::NullFC && container != container->getType().getPrototype()) {
            ++count;
        }
    }
    return count;
}

} // namespace quon::testing
