// SPDX-License-Identifier: MIT
#pragma once

#include <OpenSG/OSGBaseFunctions.h>
#include <OpenSG/OSGFieldContainerPtr.h>
#include <OpenSG/OSGNodeCoreFields.h>
#include <OpenSG/OSGNodeFields.h>

#include <map>
#include <memory>
#include <string>
#include <vector>

namespace osg {

class FieldContainerType;

/**
 * Knows all container types by name and all living containers by identifier.
 *
 * Identifiers start at one, are given in the order of creation and never again. The prototypes that osgInit() makes
 * have the first ones.
 */
class OSG_SYSTEM_DLLMAPPING FieldContainerFactory {
public:
    static FieldContainerFactory* the();

    FieldContainerFactory(const FieldContainerFactory&) = delete;
    FieldContainerFactory& operator=(const FieldContainerFactory&) = delete;

    /// Null for zero, for identifiers not given yet and for destroyed containers.
    FieldContainerPtr getContainer(UInt32 id) const;

    /// Null for an unknown type.
    FieldContainerType* findType(UInt32 typeId) const;
    FieldContainerType* findType(const Char8* name) const;

    /// A new container of the type of this name; null when there is none, or when it is none of the wanted kind.
    FieldContainerPtr createFieldContainer(const Char8* name) const;
    NodePtr createNode(const Char8* name) const;
    NodeCorePtr createNodeCore(const Char8* name) const;

    /// Makes the prototypes of types that were registered after osgInit(), as a plug-in has to.
    void initializePendingTypes();

    /// Number of living containers without prototypes and the default material; for tests that look for leaks.
    UInt32 getLiveContainerCount() const { return m_liveCount - m_permanentCount; }

private:
    friend class ContainerAccess;
    friend class FieldContainerType;
    friend bool osgExit();

    // Pages that hold no living container any more are given back, so that memory follows the number of living
    // containers and not the number of containers ever made.
    static constexpr UInt32 s_pageSize = 1024;
    struct Page {
        FieldContainer* containers[s_pageSize] = {};
        UInt32 count = 0;
    };

    FieldContainerFactory() = default;
    ~FieldContainerFactory() = default;

    UInt32 registerContainer(FieldContainer& container);
    void unregisterContainer(UInt32 id);

    UInt32 registerType(FieldContainerType& type);
    void unregisterType(FieldContainerType& type);
    UInt16 registerGroup(const std::string& name);
    void destroyPrototypes();

    std::vector<std::unique_ptr<Page>> m_pages;
    UInt32 m_nextId = 1;
    UInt32 m_liveCount = 0;
    UInt32 m_permanentCount = 0;
    std::vector<FieldContainerType*> m_types;
    std::map<std::string, FieldContainerType*, std::less<>> m_typesByName;
    std::map<std::string, UInt16, std::less<>> m_groups;
};

} // namespace osg
