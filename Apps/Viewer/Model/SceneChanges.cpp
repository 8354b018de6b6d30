// SPDX-License-Identifier: MIT
#include "Viewer/Model/SceneChanges.h"

#include <OpenSG/OSGChangeList.h>
#include <OpenSG/OSGThread.h>

#include <algorithm>
#include <cstddef>
#include <utility>
#include <vector>

namespace quon::viewer {

namespace {

using Changed = SceneChanges::Changed;

bool isBefore(const Changed::value_type& a, const Changed::value_type& b)
{
    return a.first < b.first;
}

using Iterator = const Changed::value_type*;

// What was announced without a field changed nothing.
void append(Changed& merged, const Changed::value_type& entry)
{
    if (entry.second == 0) {
        return;
    }
    if (merged.empty() || merged.back().first != entry.first) {
        merged.push_back(entry);
    } else {
        merged.back().second |= entry.second;
    }
}

// A hundred thousand new selection boxes leave two million entries, most of whose ids lie close together at the upper
// end: those are gathered by their place among the ids, which takes a tenth of sorting. The others are sorted.
Changed mergeEntries(const Iterator begin, const Iterator end)
{
    const osg::UInt32 highest = std::max_element(begin, end, isBefore)->first;
    const std::size_t widest = 4 * static_cast<std::size_t>(end - begin);
    osg::UInt32 lowest = highest;
    Changed others;
    for (Iterator entry = begin; entry != end; ++entry) {
        if (highest - entry->first >= widest) {
            append(others, *entry);
        } else {
            lowest = std::min(lowest, entry->first);
        }
    }
    std::sort(others.begin(), others.end(), isBefore);

    Changed merged;
    const std::size_t range = static_cast<std::size_t>(highest - lowest) + 1;
    merged.reserve(others.size() + range);
    for (const Changed::value_type& entry : others) {
        append(merged, entry);
    }
    std::size_t count = merged.size();
    merged.resize(count + range, Changed::value_type(0, 0));
    const auto dense = merged.begin() + static_cast<std::ptrdiff_t>(count);
    for (Iterator entry = begin; entry != end; ++entry) {
        if (highest - entry->first < widest) {
            dense[entry->first - lowest].second |= entry->second;
        }
    }
    for (std::size_t i = 0; i < range; ++i) {
        if (dense[static_cast<std::ptrdiff_t>(i)].second != 0) {
            merged[count] = {lowest + static_cast<osg::UInt32>(i), dense[static_cast<std::ptrdiff_t>(i)].second};
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

// What gather() put aside.
struct Gathered {
    Changed changed;
    std::vector<osg::UInt32> destroyed;
    bool isMerged = true; // of one piece so far
};
thread_local Gathered gathered;

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

void SceneChanges::gather()
{
    osg::ChangeList* list = osg::Thread::getCurrentChangeList();
    Changed changed = mergeList(list->beginChanged(), list->endChanged());
    if (gathered.changed.empty()) {
        gathered.changed = std::move(changed);
    } else {
        gathered.changed.insert(gathered.changed.end(), changed.begin(), changed.end());
        gathered.isMerged = false;
    }
    gathered.destroyed.insert(gathered.destroyed.end(), list->beginDestroyed(), list->endDestroyed());
    list->clearAll();
}

SceneChanges SceneChanges::take()
{
    gather();
    Gathered all = std::exchange(gathered, {});
    SceneChanges changes;
    changes.m_changed = all.isMerged ? std::move(all.changed) : mergeList(all.changed.begin(), all.changed.end());
    changes.m_destroyed = std::move(all.destroyed);
    return changes;
}

} // namespace quon::viewer
