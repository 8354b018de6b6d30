// SPDX-License-Identifier: MIT
#pragma once

#include <OpenSG/OSGFieldContainerMacros.h>
#include <OpenSG/OSGFieldContainerPtr.h>
#include <OpenSG/OSGFieldContainerType.h>
#include <OpenSG/OSGMField.h>
#include <OpenSG/OSGRefPtr.h>
#include <OpenSG/OSGSField.h>

#include <cstddef>
#include <functional>

namespace osg {

/**
 * Base of everything that has an identifier, a reference count and fields.
 *
 * Containers are made by the static create() of their class, with a count of zero: they stay until a reference was
 * taken and given back (see subRefCP()), and are never destroyed by hand. There is one copy of each container's data.
 */
class OSG_SYSTEM_DLLMAPPING FieldContainer {
public:
    typedef FieldContainerPtr Ptr;
    enum { NextFieldId = 1 };

    FieldContainer& operator=(const FieldContainer&) = delete;

    static FieldContainerType& getClassType() { return _type; }
    static UInt32 getClassTypeId() { return _type.getId(); }
    static UInt16 getClassGroupId() { return _type.getGroupId(); }

    virtual FieldContainerType& getType() = 0;
    virtual const FieldContainerType& getType() const = 0;
    UInt32 getTypeId() const { return getType().getId(); }
    UInt16 getGroupId() const { return getType().getGroupId(); }
    const Char8* getTypeName() const { return getType().getCName(); }

    /// Bytes of the container itself, without what it allocated.
    virtual UInt32 getContainerSize() const = 0;

    /// Null for an unknown field. Lists of parents and children are to be read only.
    Field* getField(UInt32 fieldId);
    Field* getField(const Char8* fieldName);

    /// A new container with the same field values; containers in fields are shared. The count is zero.
    virtual FieldContainerPtr shallowCopy() const = 0;

    /**
     * Called by endEditCP() after the change was recorded. The default does nothing.
     *
     * @param whichField mask as given to endEditCP()
     * @param origin one of ChangedOrigin
     */
    virtual void changed(BitVector whichField, UInt32 origin);

    /// Writes type, identifier and reference count to standard error, for a look from a debugger.
    virtual void dump(UInt32 indent = 0, BitVector flags = 0) const;

    // Containers come from pools, one for each size.
    static void* operator new(std::size_t size);
    static void operator delete(void* memory, std::size_t size);

protected:
    FieldContainer() = default;
    FieldContainer(const FieldContainer&)
        : FieldContainer()
    {}
    virtual ~FieldContainer();

    /// Called by create() and shallowCopy() on the new container, which is registered and has its values by then.
    virtual void onCreate(const FieldContainer* source);
    /// Called when the last reference went, before destructors run; the factory has forgotten the container already.
    virtual void onDestroy();

    static FieldContainerType _type;

private:
    friend class ContainerAccess;

    Int32 m_refCount = 0;
    UInt32 m_containerId = 0;
};

/// What handles and factory may do with a container and nobody else may. Not part of OpenSG's interface.
class OSG_SYSTEM_DLLMAPPING ContainerAccess {
public:
    static UInt32 getId(const FieldContainer& container) { return container.m_containerId; }
    static Int32 getRefCount(const FieldContainer& container) { return container.m_refCount; }

    /// Gives a fresh container its identifier. False, and the container deleted, when there is none left, or before
    /// osgInit().
    static bool adopt(FieldContainer* container, const FieldContainer* source);

    static void addRef(FieldContainer& container);
    static void subRef(FieldContainer& container);
    static void destroy(FieldContainer& container);

    // What is created or destroyed between these two does not show in the factory's live count.
    static UInt32 beginPermanent();
    static void endPermanent(UInt32 liveBefore);

    static FieldContainer* get(const FieldContainerPtrBase& handle) { return handle.m_container; }
    static void set(FieldContainerPtrBase& handle, FieldContainer* container) { handle.m_container = container; }
};

inline UInt32 FieldContainerPtrBase::getFieldContainerId() const
{
    return ContainerAccess::getId(*m_container);
}

inline Int32 FieldContainerPtrBase::getRefCount() const
{
    return m_container != nullptr ? ContainerAccess::getRefCount(*m_container) : 0;
}

inline bool FieldContainerPtrBase::operator<(const FieldContainerPtrBase& other) const noexcept
{
    return std::less<FieldContainer*>()(m_container, other.m_container);
}

} // namespace osg
