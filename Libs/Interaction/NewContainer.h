// SPDX-License-Identifier: MIT
#pragma once

#include <OpenSG/OSGConfig.h>

#include <OpenSG/OSGFieldContainerPtr.h>

#include <utility>

namespace quon::interaction {

/**
 * Keeps a new container from being lost where an exception comes before anybody refers to it. Not installed.
 *
 * At its end it destroys the container, unless somebody refers to it by then or it was handed over. Takes no reference
 * unless it is told to, and thus records nothing. Declare what is to hold the container first, so that it ends last.
 */
template <class Handle>
class NewContainer {
public:
    /** Keeps nothing. */
    NewContainer() noexcept = default;
    /** Keeps @p handle, which may be null. */
    explicit NewContainer(const Handle& handle) noexcept
        : m_handle(handle)
    {}
    /** Takes over what @p other keeps. */
    NewContainer(NewContainer&& other) noexcept
        : m_handle(other.handOver())
        , m_hasReference(std::exchange(other.m_hasReference, false))
    {}
    NewContainer(const NewContainer&) = delete;
    NewContainer& operator=(const NewContainer&) = delete;
    NewContainer& operator=(NewContainer&&) = delete;

    ~NewContainer()
    {
        if (m_handle != osg::NullFC && (m_hasReference || osg::getRefCount(m_handle) == 0)) {
            osg::subRefCP(m_handle);
        }
    }

    /** Returns what is kept. */
    const Handle& get() const { return m_handle; }
    /** Leads to what is kept. */
    auto operator->() const { return m_handle.operator->(); }

    /** Takes a reference, which is handed over with the container or given back at the end. */
    void addRef()
    {
        osg::addRefCP(m_handle);
        m_hasReference = true;
    }

    /** Leaves the container to the caller. */
    Handle handOver() noexcept { return std::exchange(m_handle, Handle()); }

    /** Keeps @p handle in place of the one so far, to which somebody refers. */
    void keep(const Handle& handle) noexcept { m_handle = handle; }

private:
    Handle m_handle;
    bool m_hasReference = false;
};

} // namespace quon::interaction
