// SPDX-License-Identifier: MIT
#include "Viewer/Model/IdTable.h"

namespace quon::viewer {

void IdTable::set(const osg::UInt32 id, const std::uint32_t number)
{
    const std::size_t index = id / PageSize;
    if (m_pages.size() <= index) {
        m_pages.resize(index + 1);
    }
    std::unique_ptr<Page>& page = m_pages[index];
    if (page == nullptr) {
        page = std::make_unique<Page>();
        page->numbers.fill(None);
    }
    std::uint32_t& slot = page->numbers[id % PageSize];
    if (slot == None) {
        ++page->used;
        ++m_size;
    }
    slot = number;
}

void IdTable::erase(const osg::UInt32 id)
{
    if (find(id) == None) {
        return;
    }
    std::unique_ptr<Page>& page = m_pages[id / PageSize];
    page->numbers[id % PageSize] = None;
    --m_size;
    if (--page->used == 0) {
        page.reset();
    }
}

void IdTable::clear()
{
    m_pages.clear();
    m_size = 0;
}

} // namespace quon::viewer
