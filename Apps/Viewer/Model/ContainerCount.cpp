// SPDX-License-Identifier: MIT
#include "Viewer/Model/ContainerCount.h"

#include <OpenSG/OSGChangeList.h>
#include <OpenSG/OSGFieldContainerFactory.h>
#include <OpenSG/OSGFieldContainerType.h>
#include <OpenSG/OSGNode.h>
#include <OpenSG/OSGThread.h>

namespace quon::viewer {

namespace {

// Makes a container and gives it back: ids ascend in order of creation.
osg::UInt32 findNewestId()
{
    osg::ChangeList* const changes = osg::Thread::getCurrentChangeList();
    // Nobody needs to hear of it. The viewer always records otherwise, see SceneChanges::startRecording().
    changes->setReadOnly(true);
    osg::NodePtr newest = osg::Node::create();
    const osg::UInt32 id = osg::getContainerId(newest);
    osg::subRefCP(newest);
    changes->setReadOnly(false);
    return id;
}

} // namespace

bool ContainerCount::proceed(const std::size_t ids)
{
    if (m_next == 0) {
        m_next = 1;
        m_end = findNewestId();
        m_soFar = 0;
    }
    const osg::FieldContainerFactory* const factory = osg::FieldContainerFactory::the();
    for (std::size_t asked = 0; asked < ids && m_next < m_end; ++asked, ++m_next) {
        const osg::FieldContainerPtr container = factory->getContainer(m_next);
        if (container != osg::NullFC && container != container->getType().getPrototype()) {
            ++m_soFar;
        }
    }
    if (m_next < m_end) {
        return false;
    }
    m_next = 0;
    m_count = m_soFar;
    m_known = true;
    return true;
}

} // namespace quon::viewer
