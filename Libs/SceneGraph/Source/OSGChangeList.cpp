// SPDX-License-Identifier: MIT
#include <OpenSG/OSGChangeList.h>

#include <OpenSG/OSGThread.h>

#include <cstdio>

namespace osg {

namespace {

bool recordByDefault = false;

void dumpIds(const char* title, const ChangeList::IdList& ids)
{
    std::fprintf(stderr, "%s:", title);
    for (const UInt32 id : ids) {
        std::fprintf(stderr, " %u", id);
    }
    std::fprintf(stderr, "\n");
}

} // namespace

ChangeList* Thread::s_changeList = nullptr;

ChangeList::ChangeList()
    : m_readOnly(!recordByDefault)
{}

void ChangeList::setReadWriteDefault(const bool readWrite)
{
    recordByDefault = readWrite;
}

bool ChangeList::empty() const
{
    return m_addRefd.empty() && m_subRefd.empty() && m_created.empty() && m_destroyed.empty() && m_changed.empty();
}

void ChangeList::clearAll()
{
    m_addRefd.clear();
    m_subRefd.clear();
    m_created.clear();
    m_destroyed.clear();
    m_changed.clear();
}

void ChangeList::merge(const ChangeList& other)
{
    if (m_readOnly) {
        return;
    }
    m_addRefd.append(other.m_addRefd);
    m_subRefd.append(other.m_subRefd);
    m_created.append(other.m_created);
    m_destroyed.append(other.m_destroyed);
    m_changed.append(other.m_changed);
}

void ChangeList::swap(ChangeList& other)
{
    m_addRefd.swap(other.m_addRefd);
    m_subRefd.swap(other.m_subRefd);
    m_created.swap(other.m_created);
    m_destroyed.swap(other.m_destroyed);
    m_changed.swap(other.m_changed);
}

void ChangeList::applyAndClear()
{
    clearAll();
}

void ChangeList::dump() const
{
    dumpIds("addRefd", m_addRefd);
    dumpIds("subRefd", m_subRefd);
    dumpIds("created", m_created);
    dumpIds("destroyed", m_destroyed);
    std::fprintf(stderr, "changed:");
    for (const ChangeEntry& entry : m_changed) {
        std::fprintf(stderr, " (%u, 0x%llx)", entry.first, static_cast<unsigned long long>(entry.second));
    }
    std::fprintf(stderr, "\n");
}

} // namespace osg
