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

using Iterator = const Changed::value_type*;

// What was announced without a field changed nothing.
Changed sortAndMerge(const Iterator begin, const Iterator end)
{
    Changed entries(begin, end);
    std::sort(entries.begin(), entries.end(), isBefore);
    Changed merged;
    for (const auto& [id, mask] : entries) {
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

// A hundred thousand new selection boxes leave two million entries,
// whose ids lie close together: those are gathered by their place among the ids, which takes a tenth of sorting.
Changed mergeEntries(const Iterator begin, const Iterator end)
{
    const auto [first, last] = std::minmax_element(begin, end, isBefore);
    const osg::UInt32 lowest = first->first;
    const std::size_t range = static_cast<std::size_t>(last->first - lowest) + 1;
    if (range > 4 * static_cast<std::size_t>(end - begin)) {
        return sortAndMerge(begin, end);
    }
    Changed merged(range, Changed::value_type(0, 0));
    for (Iterator entry = begin; entry != end; ++entry) {
        merged[entry->first - lowest].second |= entry->second;
    }
    std::size_t count = 0;
    for (std::size_t i = 0; i < range; ++i) {
        if (merged[i].second != 0) {
            merged[count] = {lowest + static_cast<osg::UInt32>(i), merged[i].second};
            ++count;
        }
    }
    merged.resize(count);
    return merged;
}

// An empty list has no first entry to point at.
template <class ListIterator>
Changed mergeList(const ListIterator begin, const ListIterator end)
{
    return begin == end ? Changed() : mergeEntries(&*begin, &*begin + (end - begin));
}

} // namespace

SceneChanges::Changed SceneChanges::merge(const Changed::const_iterator begin, const Changed::const_iterator end)
{
    return mergeList(begin, end);
}

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
    changes.m_changed = mergeList(list->beginChanged(), list->endChanged());
    changes.m_destroyed.assign(list->beginDestroyed(), list->endDestroyed());
    list->clearAll();
    return changes;
}

} // namespace quon::viewer
