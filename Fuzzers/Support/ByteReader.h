// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <type_traits>

namespace quon::fuzzing {

/**
 * Makes arguments of the bytes of an input, from the first to the last.
 *
 * Once they are used up every argument is zero: what an input does ends with it.
 */
class ByteReader {
public:
    /** @param data borrowed, must outlive the reader */
    ByteReader(const std::uint8_t* data, const std::size_t size)
        : m_next(data)
        , m_end(data + size)
    {}

    bool isEmpty() const { return m_next == m_end; }

    std::uint8_t takeByte() { return isEmpty() ? std::uint8_t(0) : *m_next++; }

    bool takeFlag() { return (takeByte() & 1U) != 0; }

    /** Returns a number below @p count, of one byte; @p count is from 1 to 256. */
    std::size_t pick(const std::size_t count) { return takeByte() % count; }

    /** Returns one of the entries of @p table, which has at least one and at most 256. */
    template <class Table>
    const typename Table::value_type& pickOf(const Table& table)
    {
        return table[pick(table.size())];
    }

    /** Returns a number of any bits, signalling and infinite ones included. */
    template <class Number>
    Number take()
    {
        static_assert(std::is_arithmetic_v<Number>);
        std::uint8_t bytes[sizeof(Number)];
        for (std::uint8_t& byte : bytes) {
            byte = takeByte();
        }
        Number number;
        std::memcpy(&number, bytes, sizeof number);
        return number;
    }

    /** Returns at most @p longest bytes; the first byte taken tells how many. */
    std::string takeText(const std::size_t longest)
    {
        std::string text(pick(longest + 1), '\0');
        for (char& character : text) {
            character = static_cast<char>(takeByte());
        }
        return text;
    }

    /** Returns all that is left. */
    std::string takeRest()
    {
        const std::string rest(m_next, m_end);
        m_next = m_end;
        return rest;
    }

private:
    const std::uint8_t* m_next;
    const std::uint8_t* m_end;
};

} // namespace quon::fuzzing
