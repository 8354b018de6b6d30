// SPDX-License-Identifier: MIT
#pragma once

#include <OpenSG/OSGConfig.h>

#include <OpenSG/OSGBaseTypes.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

namespace quon::viewer {

/**
 * Numbers by container id.
 *
 * Ids are given away in ascending order and those of one scene lie close together: they are looked up by their place in
 * pages, which takes a fraction of hashing, and ids that nothing is kept for cost next to nothing. Memory is that of
 * the pages in use; a page goes when the last of its ids does.
 */
class IdTable {
public:
    static constexpr std::uint32_t None = 0xFFFFFFFF;

    /** The number of @p id; None when it has none. */
    std::uint32_t find(const osg::UInt32 id) const
    {
        const std::size_t page = id / PageSize;
        return page < m_pages.size() && m_pages[page] != nullptr ? m_pages[page]->numbers[id % PageSize] : None;
    }

    /** Gives @p id a number other than None, in place of the one that it may have. */
    void set(osg::UInt32 id, std::uint32_t number);

    /** Does nothing when @p id has no number. */
    void erase(osg::UInt32 id);

    void clear();

    /** How many ids have a number. */
    std::size_t size() const { return m_size; }

private:
    static constexpr std::size_t PageSize = 1024;

    struct Page {
        std::array<std::uint32_t, PageSize> numbers;
        std::size_t used = 0;
    };

    std::vector<std::unique_ptr<Page>> m_pages;
    std::size_t m_size = 0;
};

} // namespace quon::viewer
