// SPDX-License-Identifier: MIT
#pragma once

#include <OpenSG/OSGBaseTypes.h>

#include <cstddef>
#include <cstdlib>
#include <new>
#include <type_traits>
#include <utility>

namespace osg {

/**
 * A list that records are appended to and that is emptied as a whole. Not part of OpenSG's interface.
 *
 * Selecting a million nodes leaves half a gigabyte of records. A std::vector takes twice the memory while it grows, and
 * copies; this list asks the C library to make its block longer, which moves large blocks without copying them.
 */
template <class RecordT>
class RecordList {
    // A pair is not trivially copyable only because assigning one is written out.
    static_assert(std::is_trivially_copy_constructible_v<RecordT> && std::is_trivially_destructible_v<RecordT>);

public:
    typedef RecordT value_type;
    typedef const RecordT* const_iterator;

    /// Bytes that clear() keeps at most.
    static constexpr std::size_t KeptBytes = std::size_t(16) << 20;

    RecordList() noexcept = default;
    ~RecordList() { std::free(m_records); }

    RecordList(const RecordList&) = delete;
    RecordList& operator=(const RecordList&) = delete;

    const_iterator begin() const { return m_records; }
    const_iterator end() const { return m_records + m_size; }
    std::size_t size() const { return m_size; }
    std::size_t capacity() const { return m_capacity; }
    bool empty() const { return m_size == 0; }

    void push_back(const RecordT& record)
    {
        const RecordT copy(record); // may lie in the memory that is given up
        if (m_size == m_capacity) {
            grow(m_size + 1);
        }
        new (m_records + m_size) RecordT(copy);
        ++m_size;
    }

    /// Appends the records of @p other, which may be this list.
    void append(const RecordList& other)
    {
        const std::size_t count = other.m_size;
        if (m_size + count > m_capacity) {
            grow(m_size + count);
        }
        for (std::size_t index = 0; index < count; ++index) {
            new (m_records + m_size) RecordT(other.m_records[index]);
            ++m_size;
        }
    }

    /// Keeps the memory for the records to come, unless that is more than KeptBytes.
    void clear()
    {
        m_size = 0;
        if (m_capacity * sizeof(RecordT) > KeptBytes) {
            std::free(std::exchange(m_records, nullptr));
            m_capacity = 0;
        }
    }

    void swap(RecordList& other) noexcept
    {
        std::swap(m_records, other.m_records);
        std::swap(m_size, other.m_size);
        std::swap(m_capacity, other.m_capacity);
    }

private:
    void grow(const std::size_t wanted)
    {
        constexpr std::size_t fewest = 64;
        std::size_t capacity = m_capacity + m_capacity / 2;
        capacity = capacity < wanted ? wanted : capacity;
        capacity = capacity < fewest ? fewest : capacity;
        void* const records = std::realloc(static_cast<void*>(m_records), capacity * sizeof(RecordT));
        if (records == nullptr) {
            throw std::bad_alloc(); // what was recorded stays
        }
        m_records = static_cast<RecordT*>(records);
        m_capacity = capacity;
    }

    RecordT* m_records = nullptr;
    std::size_t m_size = 0;
    std::size_t m_capacity = 0;
};

} // namespace osg
