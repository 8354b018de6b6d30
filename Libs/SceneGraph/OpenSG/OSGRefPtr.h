// SPDX-License-Identifier: MIT
#pragma once

#include <OpenSG/OSGFieldContainerPtr.h>

namespace osg {

/**
 * Holds one reference on a container for as long as it refers to it.
 *
 * Made from a handle explicitly, converts to it implicitly, so that it can be passed wherever a handle is expected.
 *
 * @tparam Ref handle type, as NodePtr
 */
template <class Ref>
class RefPtr {
    typedef Ref RefPtr::*SafeBool;

public:
    typedef Ref FCPtrType;
    typedef typename Ref::StoredObjectType StoredObjectType;

    RefPtr() = default;
    explicit RefPtr(const Ref& handle)
        : m_handle(handle)
    {
        addRefCP(m_handle);
    }
    RefPtr(const RefPtr& other)
        : m_handle(other.m_handle)
    {
        addRefCP(m_handle);
    }
    virtual ~RefPtr() { subRefCP(m_handle); }

    operator Ref() const { return m_handle; }
    Ref get() const { return m_handle; }
    StoredObjectType* operator->() const { return m_handle.operator->(); }
    StoredObjectType* getCPtr() const { return m_handle.operator->(); }

    /// The same target changes nothing; else the old one is released before the new one is referenced.
    RefPtr& operator=(const Ref& handle)
    {
        setRefdCP(m_handle, handle);
        return *this;
    }
    RefPtr& operator=(const RefPtr& other)
    {
        setRefdCP(m_handle, other.m_handle);
        return *this;
    }
    RefPtr& operator=(const NullFieldContainerPtr&)
    {
        clearRefCP(m_handle);
        return *this;
    }

    bool operator==(const NullFieldContainerPtr&) const { return m_handle == NullFC; }
    bool operator!=(const NullFieldContainerPtr&) const { return m_handle != NullFC; }
    bool operator<(const NullFieldContainerPtr&) const { return false; }

    bool operator==(const FieldContainerPtr& other) const { return m_handle == other; }
    bool operator!=(const FieldContainerPtr& other) const { return m_handle != other; }
    bool operator<(const FieldContainerPtr& other) const { return m_handle < other; }

    bool operator==(const RefPtr& other) const { return m_handle == other.m_handle; }
    bool operator!=(const RefPtr& other) const { return m_handle != other.m_handle; }
    bool operator<(const RefPtr& other) const { return m_handle < other.m_handle; }

    operator SafeBool() const { return m_handle != NullFC ? &RefPtr::m_handle : nullptr; }
    bool operator!() const { return m_handle == NullFC; }

private:
    Ref m_handle;
};

} // namespace osg
