// SPDX-License-Identifier: MIT
#include "Viewer/Model/SceneChanges.h"

#include <OpenSG/OSGChangeList.h>
#include <OpenSG/OSGThread.h>

#include <algorithm>
#include <cstddef>

namespace quon::viewer {

namespace {

using Changed = SceneChanges::Changed;

bool isBefore(const Changed::value_type& a, const Changed::value_type& b)
{
    return a.first < b.first;
}

// One entry for each container, by ascending id. A hundred thousand new selection boxes leave a million entries, whose
// ids lie close together: those are gathered by their place among the ids, which takes a tenth of sorting.
Changed merge(Changed entries)
{
    Changed merged;
    if (entries.empty()) {
        return merged;
    }
    const auto [first, last] = std::minmax_element(entries.begin(), entries.end(), isBefore);
    const osg::UInt32 lowest = first->first;
    const std::size_t range = static_cast<std::size_t>(last->first - lowest) + 1;
    if (range <= 4 * entries.size()) {
        std::vector<osg::BitVector> masks(range, 0);
        for (const auto& [id, mask] : entries) {
            masks[id - lowest] |= mask;
        }
        for (std::size_t i = 0; i < range; ++i) {
            if (masks[i] != 0) {
                merged.emplace_back(lowest + static_cast<osg::UInt32>(i), masks[i]);
            }
        }
        return merged;
    }
    std::sort(entries.begin(), entries.end(), isBefore);
    for (const auto& [id, mask] : entries) {
        // What was announced without a field changed nothing.
        if (mask == 0) {
            continue;
        }
        if (merged.empty() || merged.back().first != id) {
            merged.emplace_back(id, mask);
        } else {
            merged.back().second |= mask;
        }
    }
    return merged;
}

} // namespace

void SceneChanges::startRecording()
{
    osg::Thread::getCurrentChangeList()->setReadOnly(false);
}

SceneChanges::Pause::Pause()
{
    osg::Thread::getCurrentChangeList()->setReadOnly(true);
}

SceneChanges::Pause::~Pause()
{
    startRecording();
}

SceneChanges SceneChanges::take()
{
    osg::ChangeList* list = osg::Thread::getCurrentChangeList();
    SceneChanges changes;
    changes.m_changed = merge(Changed(list->beginChanged(), list->endChanged()));
    changes.m_destroyed.assign(list->beginDestroyed(), list->endDestroyed());
    list->clearAll();
    return changes;
}

} // namespace quon::viewer
