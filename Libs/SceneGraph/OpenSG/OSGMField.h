// SPDX-License-Identifier: MIT
#pragma once

#include <OpenSG/OSGField.h>
#include <OpenSG/OSGFieldMemory.h>

#include <algorithm>
#include <cassert>
#include <cstddef>
#include <memory>
#include <new>
#include <stdexcept>
#include <utility>

namespace osg {

/**
 * A field of any number of values, one behind the other in memory.
 *
 * As wide as a pointer while empty: containers have many of these and most stay empty. Grows as std::vector does, up to
 * 2,147,483,647 values; more throw std::length_error. Indices out of range are not checked.
 */
template <class FieldTypeT>
class MField : public Field {
public:
    typedef FieldTypeT StoredType;
    typedef FieldTypeT value_type;
    typedef FieldTypeT& reference;
    typedef const FieldTypeT& const_reference;
    typedef FieldTypeT* iterator;
    typedef const FieldTypeT* const_iterator;

    MField() noexcept = default;
    explicit MField(const UInt32 size) { resize(size); }
    MField(const MField& other)
        : Field(other)
    {
        reserve(other.size());
        std::uninitialized_copy(other.begin(), other.end(), begin());
        setSize(other.size());
    }
    MField(MField&& other) noexcept
        : m_block(std::exchange(other.m_block, nullptr))
    {}
    ~MField() { release(); }

    MField& operator=(const MField& other)
    {
        MField(other).swap(*this);
        return *this;
    }
    MField& operator=(MField&& other) noexcept
    {
        MField(std::move(other)).swap(*this);
        return *this;
    }

    static const FieldType& getClassType()
    {
        static const FieldType type(FieldDataTraits<FieldTypeT>::getName(), FieldType::MULTI_FIELD);
        return type;
    }

    UInt32 size() const { return m_block != nullptr ? m_block->size : 0; }
    UInt32 getSize() const { return size(); }
    UInt32 capacity() const { return m_block != nullptr ? m_block->capacity : 0; }
    bool empty() const { return size() == 0; }
    bool isEmpty() const { return size() == 0; }

    iterator begin() { return m_block != nullptr ? values() : nullptr; }
    iterator end() { return begin() + size(); }
    const_iterator begin() const { return m_block != nullptr ? values() : nullptr; }
    const_iterator end() const { return begin() + size(); }

    reference operator[](const UInt32 index) { return values()[index]; }
    const_reference operator[](const UInt32 index) const { return values()[index]; }
    reference front() { return values()[0]; }
    const_reference front() const { return values()[0]; }
    reference back() { return values()[size() - 1]; }
    const_reference back() const { return values()[size() - 1]; }

    reference getValue(const UInt32 index) { return values()[index]; }
    const_reference getValue(const UInt32 index) const { return values()[index]; }
    void setValue(const_reference value, const UInt32 index) { values()[index] = value; }

    void addValue(const_reference value) { push_back(value); }
    void push_back(const_reference value)
    {
        if (size() == capacity()) {
            FieldTypeT copy(value); // may lie in the memory that is given up
            grow(size() + 1);
            new (values() + size()) FieldTypeT(std::move(copy));
        } else {
            new (values() + size()) FieldTypeT(value);
        }
        setSize(size() + 1);
    }
    void pop_back()
    {
        setSize(size() - 1);
        std::destroy_at(values() + size());
    }

    iterator find(const_reference value) { return std::find(begin(), end(), value); }
    const_iterator find(const_reference value) const { return std::find(begin(), end(), value); }

    iterator insert(iterator position, const_reference value)
    {
        const std::ptrdiff_t offset = position - begin();
        push_back(value);
        std::rotate(begin() + offset, end() - 1, end());
        return begin() + offset;
    }
    iterator erase(iterator position) { return erase(position, position + 1); }
    iterator erase(iterator first, iterator last)
    {
        if (first != last) {
            std::destroy(std::move(last, end(), first), end());
            setSize(size() - static_cast<UInt32>(last - first));
        }
        return first;
    }

    void clear()
    {
        if (m_block != nullptr) {
            std::destroy(begin(), end());
            setSize(0);
        }
    }
    void resize(const std::size_t newSize, const FieldTypeT& value = FieldTypeT())
    {
        const UInt32 wanted = static_cast<UInt32>(newSize);
        if (wanted < size()) {
            std::destroy(begin() + wanted, end());
            setSize(wanted);
        } else if (wanted > size()) {
            const FieldTypeT copy(value);
            reserve(wanted);
            std::uninitialized_fill(end(), begin() + wanted, copy);
            setSize(wanted);
        }
    }
    void reserve(const std::size_t newCapacity)
    {
        if (newCapacity > capacity()) {
            reallocate(static_cast<UInt32>(newCapacity));
        }
    }
    /// Grows as push_back() does, so that the next one needs no memory. Not part of OpenSG's interface.
    void makeRoom()
    {
        if (size() == capacity()) {
            grow(size() + 1);
        }
    }
    /// Gives all memory back.
    void release()
    {
        if (m_block != nullptr) {
            std::destroy(begin(), end());
            FieldMemory::giveBack(m_block, s_offset + m_block->capacity * sizeof(FieldTypeT), m_block->isPooled);
            m_block = nullptr;
        }
    }
    void swap(MField& other) noexcept { std::swap(m_block, other.m_block); }

    bool operator==(const MField& other) const { return std::equal(begin(), end(), other.begin(), other.end()); }
    bool operator!=(const MField& other) const { return !(*this == other); }

private:
    struct Block {
        UInt32 size;
        UInt32 capacity : 31;
        UInt32 isPooled : 1;
    };
    static constexpr UInt32 s_largestCapacity = 0x7FFFFFFF;
    static constexpr std::size_t s_offset = std::max(sizeof(Block), alignof(FieldTypeT));
    static_assert(alignof(FieldTypeT) <= alignof(std::max_align_t));

    /// The first value; only for fields that have memory.
    FieldTypeT* values() const
    {
        void* const address = static_cast<char*>(static_cast<void*>(m_block)) + s_offset;
        return static_cast<FieldTypeT*>(address);
    }
    void setSize(const UInt32 newSize)
    {
        if (m_block != nullptr) {
            m_block->size = newSize;
        }
    }
    void grow(const UInt32 wanted)
    {
        // As much as a piece of sixteen bytes has room for: most lists of parents stay with one.
        const UInt32 smallest = std::max<UInt32>(1, static_cast<UInt32>((16 - sizeof(Block)) / sizeof(FieldTypeT)));
        reallocate(std::max({wanted, smallest, std::min(capacity() * 2, s_largestCapacity)}));
    }
    void reallocate(const UInt32 newCapacity)
    {
        if (newCapacity > s_largestCapacity) {
            throw std::length_error("osg::MField");
        }
        MField bigger;
        bool isPooled = false;
        bigger.m_block = static_cast<Block*>(FieldMemory::take(s_offset + newCapacity * sizeof(FieldTypeT), isPooled));
        bigger.m_block->size = 0;
        bigger.m_block->capacity = newCapacity & s_largestCapacity;
        bigger.m_block->isPooled = isPooled ? 1U : 0U;
        std::uninitialized_move(begin(), end(), bigger.begin());
        bigger.m_block->size = size();
        swap(bigger);
    }

    Block* m_block = nullptr;
};

} // namespace osg
