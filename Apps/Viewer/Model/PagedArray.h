// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <memory>
#include <vector>

namespace quon::viewer {

/**
 * An array that grows by pages: its elements stay where they are, and of a million of them nothing is copied, nor is
 * memory touched that they do not need in the end.
 */
template <class Element>
class PagedArray {
public:
    std::size_t size() const { return m_size; }

    Element& operator[](const std::size_t place) { return m_pages[place / PageSize][place % PageSize]; }
    const Element& operator[](const std::size_t place) const { return m_pages[place / PageSize][place % PageSize]; }

    /** Adds elements as they are made, until there are so many; there may be more already. */
    void growTo(const std::size_t size)
    {
        while (m_pages.size() * PageSize < size) {
            m_pages.push_back(std::make_unique<Element[]>(PageSize));
        }
        m_size = size > m_size ? size : m_size;
    }

    void clear()
    {
        m_pages.clear();
        m_size = 0;
    }

private:
    static constexpr std::size_t PageSize = 512;

    std::vector<std::unique_ptr<Element[]>> m_pages;
    std::size_t m_size = 0;
};

} // namespace quon::viewer
