// SPDX-License-Identifier: MIT
#include <OpenSG/OSGFieldContainerFactory.h>

#include <OpenSG/OSGBaseFunctions.h>
#include <OpenSG/OSGNode.h>

#include <algorithm>

namespace osg {

FieldContainerFactory* FieldContainerFactory::the()
{
    // Never destroyed: types register before main() starts and containers may be released after it ended.
    static FieldContainerFactory* const factory = new FieldContainerFactory;
    return factory;
}

FieldContainerPtr FieldContainerFactory::getContainer(const UInt32 id) const
{
    const std::size_t page = id / s_pageSize;
    if (page >= m_pages.size() || !m_pages[page]) {
        return NullFC;
    }
    return FieldContainerPtr(m_pages[page]->containers[id % s_pageSize]);
}

FieldContainerType* FieldContainerFactory::findType(const UInt32 typeId) const
{
    return typeId < m_types.size() ? m_types[typeId] : nullptr;
}

FieldContainerType* FieldContainerFactory::findType(const Char8* name) const
{
    const auto found = m_typesByName.find(name);
    return found != m_typesByName.end() ? found->second : nullptr;
}

FieldContainerPtr FieldContainerFactory::createFieldContainer(const Char8* name) const
{
    const FieldContainerType* const type = findType(name);
    return type != nullptr ? type->createFieldContainer() : FieldContainerPtr();
}

NodePtr FieldContainerFactory::createNode(const Char8* name) const
{
    const FieldContainerType* const type = findType(name);
    return type != nullptr && type->isNode() ? NodePtr::dcast(type->createFieldContainer()) : NodePtr();
}

NodeCorePtr FieldContainerFactory::createNodeCore(const Char8* name) const
{
    const FieldContainerType* const type = findType(name);
    return type != nullptr && type->isNodeCore() ? NodeCorePtr::dcast(type->createFieldContainer()) : NodeCorePtr();
}

void FieldContainerFactory::initializePendingTypes()
{
    if (GlobalSystemState != Running) {
        return;
    }
    // By index: an init method may register further types.
    for (std::size_t index = 0; index < m_types.size(); ++index) {
        if (m_types[index] != nullptr) {
            m_types[index]->initialize();
        }
    }
}

UInt32 FieldContainerFactory::registerContainer(FieldContainer& container)
{
    const UInt32 id = m_nextId;
    if (id == 0) {
        return 0; // every identifier was given away
    }
    const std::size_t page = id / s_pageSize;
    if (page == m_pages.size()) {
        m_pages.push_back(std::make_unique<Page>());
        if (page > 0 && m_pages[page - 1] && m_pages[page - 1]->count == 0) {
            m_pages[page - 1].reset();
        }
    }
    m_pages[page]->containers[id % s_pageSize] = &container;
    ++m_pages[page]->count;
    ++m_liveCount;
    ++m_nextId;
    return id;
}

void FieldContainerFactory::unregisterContainer(const UInt32 id)
{
    const std::size_t page = id / s_pageSize;
    m_pages[page]->containers[id % s_pageSize] = nullptr;
    --m_liveCount;
    // The last page stays: the next containers go there.
    if (--m_pages[page]->count == 0 && page + 1 < m_pages.size()) {
        m_pages[page].reset();
    }
}

UInt32 FieldContainerFactory::registerType(FieldContainerType& type)
{
    m_types.push_back(&type);
    m_typesByName.emplace(type.getName(), &type);
    return static_cast<UInt32>(m_types.size() - 1);
}

void FieldContainerFactory::unregisterType(FieldContainerType& type)
{
    m_types[type.getId()] = nullptr;
    const auto found = m_typesByName.find(type.getName());
    if (found != m_typesByName.end() && found->second == &type) {
        m_typesByName.erase(found);
    }
    // Types of a library that is being unloaded may be bases of others.
    for (FieldContainerType* const other : m_types) {
        if (other != nullptr && other->m_parent == &type) {
            other->m_parent = nullptr;
        }
    }
}

UInt16 FieldContainerFactory::registerGroup(const std::string& name)
{
    return m_groups.emplace(name, static_cast<UInt16>(m_groups.size())).first->second;
}

void FieldContainerFactory::destroyPrototypes()
{
    for (FieldContainerType* const type : m_types) {
        if (type != nullptr) {
            type->destroyPrototype();
        }
    }
}

} // namespace osg
