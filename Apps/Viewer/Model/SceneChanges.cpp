// SPDX-License-Identifier: MIT
#include "Viewer/Model/SceneChanges.h"

#include <OpenSG/OSGChangeList.h>
#include <OpenSG/OSGFieldContainerFactory.h>
#include <OpenSG/OSGNode.h>
#include <OpenSG/OSGThread.h>

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <utility>
#include <vector>

namespace quon::viewer {

namespace {

using Changed = SceneChanges::Changed;

constexpr osg::BitVector AllFields = ~osg::BitVector(0);

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
void mergeEntries(const Iterator begin, const Iterator end, Changed& merged)
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
}

template <class ListIterator>
void mergeList(const ListIterator begin, const ListIterator end, Changed& merged)
{
    merged.clear();
    // An empty list has no first entry to point at.
    if (begin != end) {
        mergeEntries(&*begin, &*begin + (end - begin), merged);
    }
}

// Whether somebody who knows no container from an id on can find this one: as a child of one before.
bool isFound(const osg::UInt32 id, const osg::UInt32 firstNew)
{
    const osg::FieldContainerPtr container = osg::FieldContainerFactory::the()->getContainer(id);
    if (container == osg::NullFC || !container->getType().isNode()) {
        return false;
    }
    const osg::NodePtr parent = osg::NodePtr::dcast(container)->getParent();
    return parent != osg::NullFC && osg::getContainerId(parent) < firstNew;
}

// Whether nothing happened but that a node's volume was calculated, which nobody draws.
bool isVolumeOnly(const Changed::value_type& entry)
{
    if (entry.second != osg::Node::VolumeFieldMask) {
        return false;
    }
    const osg::FieldContainerPtr container = osg::FieldContainerFactory::the()->getContainer(entry.first);
    return container != osg::NullFC && container->getType().isNode();
}

// What gather() put aside.
class Gathered {
public:
    /// Adds all that was recorded.
    void add(const osg::ChangeList& list)
    {
        addPiece(list.beginChanged(), list.endChanged());
        m_destroyed.insert(m_destroyed.end(), list.beginDestroyed(), list.endDestroyed());
    }

    /// The same without what is of no use to those who know no new container.
    void addWithoutNew(const osg::ChangeList& list)
    {
        if (list.beginCreated() == list.endCreated()) {
            add(list);
            return;
        }
        // Ids are given away in ascending order.
        const osg::UInt32 firstNew = *list.beginCreated();
        m_old.clear();
        std::copy_if(list.beginChanged(), list.endChanged(), std::back_inserter(m_old),
                     [firstNew](const auto& entry) { return entry.first < firstNew && !isVolumeOnly(entry); });
        addPiece(m_old.begin(), m_old.end());
        for (auto id = list.beginCreated(); id != list.endCreated(); ++id) {
            if (isFound(*id, firstNew)) {
                m_new.emplace_back(*id, AllFields);
            }
        }
        m_destroyed.insert(m_destroyed.end(), list.beginDestroyed(), list.endDestroyed());
    }

    Changed takeChanged()
    {
        if (m_pieces > 1) {
            mergeList(m_changed.begin(), m_changed.end(), m_piece);
            m_changed.swap(m_piece);
        }
        if (m_new.empty()) {
            return std::move(m_changed);
        }
        Changed merged;
        merged.reserve(m_changed.size() + m_new.size());
        auto known = m_changed.begin();
        for (const Changed::value_type& entry : m_new) {
            for (; known != m_changed.end() && known->first <= entry.first; ++known) {
                append(merged, *known);
            }
            append(merged, entry);
        }
        merged.insert(merged.end(), known, m_changed.end());
        return merged;
    }

    std::vector<osg::UInt32> takeDestroyed() { return std::move(m_destroyed); }

    bool isGoingOn = false; ///< gather() was called since take() was

private:
    template <class ListIterator>
    void addPiece(const ListIterator begin, const ListIterator end)
    {
        mergeList(begin, end, m_piece);
        if (m_changed.empty()) {
            m_changed.swap(m_piece);
        } else {
            m_changed.insert(m_changed.end(), m_piece.begin(), m_piece.end());
        }
        ++m_pieces;
    }

    Changed m_changed;
    Changed m_new; ///< ascending
    std::vector<osg::UInt32> m_destroyed;
    int m_pieces = 0; ///< of what changed, each merged
    // Kept for their memory:
    Changed m_old;   ///< what is to be merged
    Changed m_piece; ///< what was
};
thread_local Gathered gathered;

} // namespace

SceneChanges::Changed SceneChanges::merge(const Changed::const_iterator begin, const Changed::const_iterator end)
{
    Changed merged;
    mergeList(begin, end, merged);
    return merged;
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
    if (gathered.isGoingOn) {
        gathered.addWithoutNew(*list);
    } else {
        gathered.add(*list);
    }
    gathered.isGoingOn = true;
    list->clearAll();
}

SceneChanges SceneChanges::take()
{
    osg::ChangeList* list = osg::Thread::getCurrentChangeList();
    gathered.add(*list);
    list->clearAll();
    Gathered all = std::exchange(gathered, {});
    SceneChanges changes;
    changes.m_changed = all.takeChanged();
    changes.m_destroyed = all.takeDestroyed();
    return changes;
}

} // namespace quon::viewer
