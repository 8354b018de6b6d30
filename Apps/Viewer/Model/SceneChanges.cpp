// SPDX-License-Identifier: MIT
#include "Viewer/Model/SceneChanges.h"

#include <OpenSG/OSGChangeList.h>
#include <OpenSG/OSGThread.h>

namespace quon::viewer {

void SceneChanges::startRecording()
{
    osg::Thread::getCurrentChangeList()->setReadOnly(false);
}

SceneChanges SceneChanges::take()
{
    osg::ChangeList* list = osg::Thread::getCurrentChangeList();
    SceneChanges changes;
    for (auto entry = list->beginChanged(); entry != list->endChanged(); ++entry) {
        changes.m_changed[entry->first] |= entry->second;
    }
    changes.m_destroyed.assign(list->beginDestroyed(), list->endDestroyed());
    list->clearAll();
    return changes;
}

} // namespace quon::viewer
