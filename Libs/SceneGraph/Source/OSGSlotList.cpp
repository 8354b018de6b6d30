// SPDX-License-Identifier: MIT
#include <OpenSG/OSGSlotList.h>

namespace osg {

namespace {

// Entry number i of the tree (counted from one) sums as many blocks as this, up to and including block i.
std::size_t span(const std::size_t entry)
{
    return entry & (~entry + 1);
}

} // namespace

void SlotCounts::addBlock(const UInt32 count)
{
    const std::size_t entry = m_tree.size() + 1;
    UInt32 sum = count;
    for (std::size_t other = entry - 1; other > entry - span(entry); other -= span(other)) {
        sum += m_tree[other - 1];
    }
    m_tree.push_back(sum);
}

void SlotCounts::change(const UInt32 slot, const Int32 difference)
{
    const std::size_t block = slot / BlockSize;
    while (block >= m_tree.size()) {
        addBlock(0);
    }
    for (std::size_t entry = block + 1; entry <= m_tree.size(); entry += span(entry)) {
        m_tree[entry - 1] += static_cast<UInt32>(difference);
    }
}

UInt32 SlotCounts::countBefore(const UInt32 slot) const
{
    UInt32 sum = 0;
    for (std::size_t entry = slot / BlockSize; entry > 0; entry -= span(entry)) {
        sum += m_tree[entry - 1];
    }
    return sum;
}

UInt32 SlotCounts::findBlock(UInt32& index) const
{
    std::size_t step = 1;
    while (step * 2 <= m_tree.size()) {
        step *= 2;
    }
    std::size_t block = 0;
    for (; step > 0; step /= 2) {
        if (block + step <= m_tree.size() && m_tree[block + step - 1] <= index) {
            block += step;
            index -= m_tree[block - 1];
        }
    }
    return static_cast<UInt32>(block) * BlockSize;
}

} // namespace osg
