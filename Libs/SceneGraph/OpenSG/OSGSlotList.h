// SPDX-License-Identifier: MIT
#pragma once

#include <OpenSG/OSGFieldContainerPtr.h>
#include <OpenSG/OSGMField.h>

#include <functional>
#include <memory>
#include <new>
#include <vector>

namespace osg {

/**
 * Says where the n-th living slot of a SlotList is, and how many live in front of a slot, in logarithmic time.
 *
 * Counts the living slots of blocks and keeps the counts as a binary indexed tree.
 */
class OSG_SYSTEM_DLLMAPPING SlotCounts {
public:
    static constexpr UInt32 BlockSize = 32;

    /// Adds a block at the end.
    void addBlock(UInt32 count);
    /// Changes the count of the block that @p slot is in; blocks up to it are added as needed.
    void change(UInt32 slot, Int32 difference);
    /// Returns the number of living slots in all blocks in front of that of @p slot.
    UInt32 countBefore(UInt32 slot) const;
    /// Returns the first slot of the block with the living slot number @p index, which becomes the index inside it.
    UInt32 findBlock(UInt32& index) const;

private:
    std::vector<UInt32> m_tree;
};

/**
 * A list of handles in order, of which any can be taken out in constant time on average.
 *
 * Whoever is in the list remembers its slot, a number that says where it is. Taking one out leaves a hole (a null
 * handle), the rest stays where it is; the list closes its holes when they are more than what is left, and tells each
 * handle that moved its new slot through the function passed as @p moved (handle, old slot, new slot). Reading by index
 * skips the holes. Neither the first slot after the holes at the front nor the last slot is ever a hole, which makes
 * emptying the list from either end cheap.
 *
 * Taking out and closing never fail, as containers do both while they are destroyed: where there is no memory to keep
 * holes in mind, the handles behind move up at once. An add() or insert() that fails changes nothing.
 *
 * Not part of OpenSG's interface: used by nodes, cores and attachments for their children and parents.
 */
template <class HandleT>
class SlotList {
public:
    SlotList() = default;
    SlotList(const SlotList&) = delete;
    SlotList& operator=(const SlotList&) = delete;

    UInt32 size() const { return m_slots.size() - (m_holes ? m_holes->count : 0); }

    /// Number of slots, holes included.
    UInt32 slotCount() const { return m_slots.size(); }
    /// Null for a hole.
    const HandleT& slot(const UInt32 slot) const { return m_slots[slot]; }

    /// Whether @p handle is in @p slot.
    bool isAt(const UInt32 slot, const HandleT& handle) const
    {
        return slot < m_slots.size() && m_slots[slot] == handle;
    }

    /// Whether @p handle is one of the list's own, which any change of the list may overwrite.
    bool owns(const HandleT& handle) const
    {
        const std::less<const HandleT*> before{};
        return !before(&handle, m_slots.begin()) && before(&handle, m_slots.end());
    }

    /// Lets the next add() do without memory, so that it cannot fail.
    void makeRoom() { m_slots.makeRoom(); }

    /// Appends and returns the slot.
    UInt32 add(const HandleT& handle)
    {
        const UInt32 slot = m_slots.size();
        m_slots.push_back(handle);
        changeCounts(slot, 1);
        return slot;
    }

    void replace(const UInt32 slot, const HandleT& handle) { m_slots[slot] = handle; }

    /**
     * Inserts in front of the handle number @p index, which must be smaller than size() (not checked).
     *
     * Moves no more handles than there are up to the next hole. In the first half of the list that is one that is
     * opened at the front, so that inserting there again and again is as cheap as appending.
     *
     * @return the slot
     */
    template <class MovedT>
    UInt32 insert(const UInt32 index, const HandleT& handle, const MovedT& moved)
    {
        UInt32 slot = slotOf(index);
        if (slot > 0 && m_slots[slot - 1] == NullFC) {
            --slot;
            changeCounts(slot, 1);
            fillHole(slot, handle);
            return slot;
        }
        if (m_holes) {
            m_holes->counts.reset();
        }
        if (index < size() / 2 && size() > s_holesAllowed) {
            if (!m_holes || m_holes->front == 0) {
                openFront(moved);
                slot = slotOf(index);
            }
            UInt32 hole = slot - 1;
            while (m_slots[hole] != NullFC) {
                --hole;
            }
            if (m_holes->front == hole + 1) {
                m_holes->front = hole;
            }
            for (; hole + 1 < slot; ++hole) {
                m_slots[hole] = m_slots[hole + 1];
                moved(m_slots[hole], hole + 1, hole);
            }
            fillHole(hole, handle);
            return hole;
        }
        UInt32 hole = slot;
        while (hole < m_slots.size() && m_slots[hole] != NullFC) {
            ++hole;
        }
        const bool isHole = hole < m_slots.size();
        if (!isHole) {
            m_slots.push_back(handle);
        }
        for (; hole > slot; --hole) {
            m_slots[hole] = m_slots[hole - 1];
            moved(m_slots[hole], hole - 1, hole);
        }
        if (isHole) {
            fillHole(slot, handle);
        } else {
            m_slots[slot] = handle;
        }
        return slot;
    }

    /// The slot of the handle number @p index, which must be smaller than size() (not checked).
    UInt32 slotOf(UInt32 index) const
    {
        if (!m_holes) {
            return index;
        }
        if (m_holes->count == m_holes->front || index == 0) {
            return m_holes->front + index;
        }
        if (index + 1 == size()) {
            return m_slots.size() - 1;
        }
        UInt32 slot = counts().findBlock(index);
        for (;; ++slot) {
            if (m_slots[slot] != NullFC && index-- == 0) {
                return slot;
            }
        }
    }

    /// The index of the handle in @p slot, which must not be a hole.
    UInt32 indexOf(const UInt32 slot) const
    {
        if (!m_holes) {
            return slot;
        }
        if (m_holes->count == m_holes->front) {
            return slot - m_holes->front;
        }
        UInt32 index = counts().countBefore(slot);
        for (UInt32 other = slot - slot % SlotCounts::BlockSize; other < slot; ++other) {
            index += m_slots[other] != NullFC ? 1U : 0U;
        }
        return index;
    }

    template <class MovedT>
    void remove(const UInt32 slot, const MovedT& moved)
    {
        if (slot + 1 == m_slots.size()) {
            changeCounts(slot, -1);
            m_slots.pop_back();
            while (!m_slots.empty() && m_slots.back() == NullFC) {
                m_slots.pop_back();
                --m_holes->count;
            }
            if (m_holes && m_slots.size() <= m_holes->front) {
                m_holes.reset();
            }
            giveMemoryBack();
            return;
        }
        if (!m_holes) {
            m_holes.reset(new (std::nothrow) Holes);
        }
        if (!m_holes) {
            moveUp(slot, moved);
            return;
        }
        m_slots[slot] = NullFC;
        ++m_holes->count;
        while (m_slots[m_holes->front] == NullFC) {
            ++m_holes->front;
        }
        if (m_holes->count > s_holesAllowed && m_holes->count * 2 > m_slots.size()) {
            close(moved);
        } else {
            changeCounts(slot, -1);
        }
    }

    void swap(SlotList& other) noexcept
    {
        m_slots.swap(other.m_slots);
        m_holes.swap(other.m_holes);
    }

    /// Closes all holes.
    template <class MovedT>
    void close(const MovedT& moved)
    {
        if (!m_holes) {
            return;
        }
        UInt32 target = 0;
        for (UInt32 slot = 0; slot < m_slots.size(); ++slot) {
            if (m_slots[slot] != NullFC) {
                if (target != slot) {
                    m_slots[target] = m_slots[slot];
                    moved(m_slots[target], slot, target);
                }
                ++target;
            }
        }
        m_slots.resize(target);
        m_holes.reset();
        giveMemoryBack();
    }

    /// The handles as a field; close() the holes first.
    MField<HandleT>& field() { return m_slots; }

private:
    static constexpr UInt32 s_holesAllowed = 16;
    static constexpr UInt32 s_capacityKept = 64;

    struct Holes {
        UInt32 count = 0; // all holes
        UInt32 front = 0; // those in front of the first handle
        std::unique_ptr<SlotCounts> counts;
    };

    /// Takes the handle in @p slot out of a list without holes and leaves none.
    template <class MovedT>
    void moveUp(UInt32 slot, const MovedT& moved)
    {
        for (; slot + 1 < m_slots.size(); ++slot) {
            m_slots[slot] = m_slots[slot + 1];
            moved(m_slots[slot], slot + 1, slot);
        }
        m_slots.pop_back();
    }

    void changeCounts(const UInt32 slot, const Int32 difference)
    {
        if (!m_holes || !m_holes->counts) {
            return;
        }
        try {
            m_holes->counts->change(slot, difference);
        } catch (const std::bad_alloc&) {
            m_holes->counts.reset(); // made anew when they are asked for
        }
    }

    void fillHole(const UInt32 slot, const HandleT& handle)
    {
        m_slots[slot] = handle;
        m_holes->front = std::min(m_holes->front, slot);
        if (--m_holes->count == 0) {
            m_holes.reset();
        }
    }

    /// Closes all holes and opens half as many as there are handles at the front.
    template <class MovedT>
    void openFront(const MovedT& moved)
    {
        const UInt32 gap = size() / 2;
        MField<HandleT> newSlots;
        newSlots.reserve(gap + size() + 1);
        newSlots.resize(gap);
        std::unique_ptr<Holes> holes = std::make_unique<Holes>();
        for (UInt32 slot = 0; slot < m_slots.size(); ++slot) {
            if (m_slots[slot] != NullFC) {
                newSlots.push_back(m_slots[slot]);
                moved(m_slots[slot], slot, newSlots.size() - 1);
            }
        }
        m_slots.swap(newSlots);
        m_holes = std::move(holes);
        m_holes->count = gap;
        m_holes->front = gap;
    }

    /// Keeps a list that was long once from holding on to the memory.
    void giveMemoryBack()
    {
        if (m_slots.capacity() > s_capacityKept && m_slots.size() < m_slots.capacity() / 4) {
            MField<HandleT> newSlots;
            try {
                newSlots.reserve(m_slots.capacity() / 2);
            } catch (const std::bad_alloc&) {
                return; // another time
            }
            for (const HandleT& handle : m_slots) {
                newSlots.push_back(handle);
            }
            m_slots.swap(newSlots);
        }
    }

    const SlotCounts& counts() const
    {
        if (!m_holes->counts) {
            m_holes->counts = std::make_unique<SlotCounts>();
            for (UInt32 slot = 0; slot < m_slots.size();) {
                UInt32 count = 0;
                for (const UInt32 end = std::min(slot + SlotCounts::BlockSize, m_slots.size()); slot < end; ++slot) {
                    count += m_slots[slot] != NullFC ? 1U : 0U;
                }
                m_holes->counts->addBlock(count);
            }
        }
        return *m_holes->counts;
    }

    MField<HandleT> m_slots;
    std::unique_ptr<Holes> m_holes;
};

} // namespace osg
