// SPDX-License-Identifier: MIT
#pragma once

#include <OpenSG/OSGFieldContainerBase.h>

#include <iosfwd>
#include <type_traits>
#include <typeinfo>

namespace osg {

class FieldContainer;
class FieldContainerPtrBase;
class NullFieldContainerPtr;

template <class TargetT, class BaseT = FieldContainer>
TargetT* castContainer(const FieldContainerPtrBase& handle);

/**
 * What all handles have in common: the address of a container, or null.
 *
 * Handles are plain values. Copying one never touches the container's reference count, and a handle does not notice
 * that its container was destroyed: the next container may get the same address and then compares equal to it.
 * Identifiers, see getContainerId(), are never given out twice.
 *
 * The classes of handles inherit from each other as the classes of containers do, so that a handle converts to that of
 * a base implicitly; the way back is the static dcast() of the wanted handle.
 */
class OSG_SYSTEM_DLLMAPPING FieldContainerPtrBase {
    typedef FieldContainer* FieldContainerPtrBase::*SafeBool;

public:
    constexpr FieldContainerPtrBase() noexcept = default;
    constexpr FieldContainerPtrBase(const FieldContainerPtrBase&) noexcept = default;

    /// Must not be null (not checked). getContainerId() does the same for every build of OpenSG.
    UInt32 getFieldContainerId() const;
    /// Zero for null.
    Int32 getRefCount() const;
    /// Bytes of the container itself, without what it allocated; must not be null (not checked).
    UInt16 getContainerSize() const;

    void dump(UInt32 indent = 0, BitVector flags = 0) const;

    /// Handles are equal when they lead to the same container, whatever their types.
    bool operator==(const FieldContainerPtrBase& other) const noexcept { return m_container == other.m_container; }
    bool operator!=(const FieldContainerPtrBase& other) const noexcept { return m_container != other.m_container; }
    /// By address, null first.
    bool operator<(const FieldContainerPtrBase& other) const noexcept;

    bool operator==(const NullFieldContainerPtr&) const noexcept { return m_container == nullptr; }
    bool operator!=(const NullFieldContainerPtr&) const noexcept { return m_container != nullptr; }
    bool operator<(const NullFieldContainerPtr&) const noexcept { return false; }

    operator SafeBool() const noexcept
    {
        return m_container != nullptr ? &FieldContainerPtrBase::m_container : nullptr;
    }
    bool operator!() const noexcept { return m_container == nullptr; }

protected:
    constexpr explicit FieldContainerPtrBase(FieldContainer* container) noexcept
        : m_container(container)
    {}
    ~FieldContainerPtrBase() = default;
    void operator=(const FieldContainerPtrBase& other) noexcept { m_container = other.m_container; }

    FieldContainer* m_container = nullptr;

private:
    friend class ContainerAccess;
    template <class TargetT, class BaseT>
    friend TargetT* castContainer(const FieldContainerPtrBase& handle);
};

/**
 * What dcast() is made of: the container as a @p TargetT if it is one, else null.
 *
 * Most casts ask for the type that the container really has, which takes a fraction of a dynamic_cast. Kept out of
 * line, or compilers think that the result is null wherever it is used untested.
 */
template <class TargetT, class BaseT>
[[gnu::noinline]] TargetT* castContainer(const FieldContainerPtrBase& handle)
{
    BaseT* const container = handle.m_container;
    if (container == nullptr) {
        return nullptr;
    }
    return typeid(*container) == typeid(TargetT) ? static_cast<TargetT*>(container) : dynamic_cast<TargetT*>(container);
}

/// Handle to any container.
class OSG_SYSTEM_DLLMAPPING FieldContainerPtr : public FieldContainerPtrBase {
public:
    typedef FieldContainer StoredObjectType;
    typedef FieldContainer ObjectType;
    typedef FieldContainerPtrBase Inherited;
    typedef FieldContainerPtr Self;

    constexpr FieldContainerPtr() noexcept = default;
    constexpr FieldContainerPtr(const FieldContainerPtr&) noexcept = default;
    explicit FieldContainerPtr(const FieldContainer& container) noexcept
        : FieldContainerPtrBase(const_cast<FieldContainer*>(&container))
    {}
    explicit FieldContainerPtr(const FieldContainer* container) noexcept
        : FieldContainerPtrBase(const_cast<FieldContainer*>(container))
    {}

    void operator=(const FieldContainerPtr& other) noexcept { m_container = other.m_container; }

    FieldContainer* operator->() const noexcept { return m_container; }
    FieldContainer& operator*() const noexcept { return *m_container; }
    FieldContainer* getCPtr() const noexcept { return m_container; }
};

/// Type of the constant NullFC, which every handle can be made from, assigned and compared to.
class OSG_SYSTEM_DLLMAPPING NullFieldContainerPtr : public FieldContainerPtr {
public:
    constexpr NullFieldContainerPtr() noexcept = default;
};

inline constexpr NullFieldContainerPtr NullFC{};

/// Handle through which a container can only be read.
class OSG_SYSTEM_DLLMAPPING ConstFieldContainerPtr : public FieldContainerPtrBase {
public:
    constexpr ConstFieldContainerPtr() noexcept = default;
    constexpr ConstFieldContainerPtr(const ConstFieldContainerPtr&) noexcept = default;
    constexpr ConstFieldContainerPtr(const FieldContainerPtr& container) noexcept
        : FieldContainerPtrBase(container)
    {}

    void operator=(const ConstFieldContainerPtr& other) noexcept { m_container = other.m_container; }

    const FieldContainer* operator->() const noexcept { return m_container; }
    const FieldContainer& operator*() const noexcept { return *m_container; }
};

/// Keeps dcast() to handles: a RefPtr has to be asked for its handle first.
template <class HandleT>
using EnableIfHandle = std::enable_if_t<std::is_base_of_v<FieldContainerPtrBase, HandleT>>;

/**
 * Handle to a container of type @p FieldContainerTypeT; @p BasePtrTypeT is the handle of the type's base.
 *
 * Being const does not extend to the container: a const handle gives a container that can be changed.
 */
template <class BasePtrTypeT, class FieldContainerTypeT>
class FCPtr : public BasePtrTypeT {
public:
    typedef FieldContainerTypeT StoredObjectType;
    typedef FieldContainerTypeT ObjectType;
    typedef BasePtrTypeT Inherited;
    typedef FCPtr Self;

    constexpr FCPtr() noexcept = default;
    constexpr FCPtr(const FCPtr&) noexcept = default;
    constexpr FCPtr(const NullFieldContainerPtr&) noexcept {}
    explicit FCPtr(const FieldContainerTypeT& container) noexcept
    {
        this->m_container = const_cast<FieldContainerTypeT*>(&container);
    }
    explicit FCPtr(const FieldContainerTypeT* container) noexcept
    {
        this->m_container = const_cast<FieldContainerTypeT*>(container);
    }

    void operator=(const FCPtr& other) noexcept { this->m_container = other.m_container; }
    void operator=(const NullFieldContainerPtr&) noexcept { this->m_container = nullptr; }

    FieldContainerTypeT* operator->() const noexcept { return static_cast<FieldContainerTypeT*>(this->m_container); }
    FieldContainerTypeT& operator*() const noexcept { return *operator->(); }
    FieldContainerTypeT* getCPtr() const noexcept { return operator->(); }

    /// The same container if it is of this type or derived from it, else null; null gives null.
    template <class InTypeT, class = EnableIfHandle<InTypeT>>
    static FCPtr dcast(const InTypeT in)
    {
        return FCPtr(castContainer<FieldContainerTypeT>(in));
    }
};

OSG_SYSTEM_DLLMAPPING std::ostream& operator<<(std::ostream& stream, const FieldContainerPtrBase& handle);

/// Takes a reference; null is ignored.
OSG_SYSTEM_DLLMAPPING void addRefCP(const FieldContainerPtrBase& objectP);

/**
 * Gives a reference back; null is ignored.
 *
 * When less than one reference is left, and be it because there never was one, the container is destroyed at once, and
 * @p objectP itself becomes null although it is const: do not pass the key of a set. Copies of the handle dangle.
 */
OSG_SYSTEM_DLLMAPPING void subRefCP(const FieldContainerPtrBase& objectP);

/// Gives a reference back, then makes the handle null; null is ignored.
OSG_SYSTEM_DLLMAPPING void clearRefCP(FieldContainerPtrBase& objectP);

/// Releases what @p objectP refers to, then assigns and references @p newObjectP; equal handles change nothing.
OSG_SYSTEM_DLLMAPPING void setRefdCP(FieldContainerPtrBase& objectP, const FieldContainerPtrBase& newObjectP);

/// Zero for null.
inline Int32 getRefCount(const FieldContainerPtrBase& objectP)
{
    return objectP.getRefCount();
}

/// The number under which the factory knows the container; @p objectP must not be null (not checked).
template <class PtrTypeT, class = EnableIfHandle<PtrTypeT>>
inline UInt32 getContainerId(const PtrTypeT& objectP)
{
    return objectP.getFieldContainerId();
}

/// Announces an edit. Does nothing in this implementation, but belongs in front of every edit.
inline void beginEditCP(const FieldContainerPtr&, BitVector = FieldBits::AllFields, UInt32 = ChangedOrigin::External) {}

/**
 * Ends an edit: records one entry of identifier and mask in the change list, then calls FieldContainer::changed().
 *
 * Entries are recorded as given, one for each call. Null is ignored.
 */
OSG_SYSTEM_DLLMAPPING void endEditCP(const FieldContainerPtr& objectP, BitVector whichField = FieldBits::AllFields,
                                     UInt32 origin = ChangedOrigin::External);

/// Same as endEditCP(), for edits that were not announced.
OSG_SYSTEM_DLLMAPPING void changedCP(const FieldContainerPtr& objectP, BitVector whichField = FieldBits::AllFields,
                                     UInt32 origin = ChangedOrigin::External);

/// Ends an edit that turned out to change nothing.
inline void endEditNotChangedCP(const FieldContainerPtr&, BitVector = FieldBits::AllFields,
                                UInt32 = ChangedOrigin::External)
{}

/// Brackets an edit with its own lifetime.
class OSG_SYSTEM_DLLMAPPING CPEditor {
public:
    explicit CPEditor(const FieldContainerPtr& objectP, BitVector whichField = FieldBits::AllFields,
                      UInt32 origin = ChangedOrigin::External)
        : m_object(objectP)
        , m_fields(whichField)
        , m_origin(origin)
    {
        beginEditCP(m_object, m_fields, m_origin);
    }
    CPEditor(const CPEditor&) = delete;
    CPEditor& operator=(const CPEditor&) = delete;
    ~CPEditor() { endEditCP(m_object, m_fields, m_origin); }

private:
    FieldContainerPtr m_object;
    BitVector m_fields;
    UInt32 m_origin;
};

} // namespace osg

/// Brackets an edit up to the end of the scope; the handle has to be an identifier.
#define CPEdit(FIELD_CONTAINER, MASK) ::osg::CPEditor CPEdit_##FIELD_CONTAINER(FIELD_CONTAINER, MASK)
#define CPEditAll(FIELD_CONTAINER) ::osg::CPEditor CPEdit_##FIELD_CONTAINER(FIELD_CONTAINER)
