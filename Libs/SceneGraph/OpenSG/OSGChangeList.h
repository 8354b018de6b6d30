// SPDX-License-Identifier: MIT
#pragma once

#include <OpenSG/OSGBaseTypes.h>
#include <OpenSG/OSGRecordList.h>

#include <utility>

namespace osg {

/**
 * Records what happened to containers: created, destroyed, referenced, released, changed.
 *
 * Each kind has a list of its own in the order of the calls; nothing is merged. Read-only by default, which means that
 * nothing is recorded. A release that destroys a container is listed as destroyed only. Who makes a list record has to
 * empty it: nobody else does.
 */
class OSG_SYSTEM_DLLMAPPING ChangeList {
public:
    /// Identifier of a container and mask of its changed fields.
    typedef std::pair<UInt32, BitVector> ChangeEntry;
    typedef RecordList<UInt32> IdList;
    typedef RecordList<ChangeEntry> ChangedList;
    typedef IdList::const_iterator idrefd_const_iterator;
    typedef ChangedList::const_iterator changed_const_iterator;

    ChangeList();

    /// Lets lists made from now on record; the list of the process is made by osgInit().
    static void setReadWriteDefault(bool readWrite = true);

    void setReadOnly(bool readOnly) { m_readOnly = readOnly; }
    bool isReadOnly() const { return m_readOnly; }

    idrefd_const_iterator beginAddRefd() const { return m_addRefd.begin(); }
    idrefd_const_iterator endAddRefd() const { return m_addRefd.end(); }
    idrefd_const_iterator beginSubRefd() const { return m_subRefd.begin(); }
    idrefd_const_iterator endSubRefd() const { return m_subRefd.end(); }
    idrefd_const_iterator beginCreated() const { return m_created.begin(); }
    idrefd_const_iterator endCreated() const { return m_created.end(); }
    idrefd_const_iterator beginDestroyed() const { return m_destroyed.begin(); }
    idrefd_const_iterator endDestroyed() const { return m_destroyed.end(); }
    changed_const_iterator beginChanged() const { return m_changed.begin(); }
    changed_const_iterator endChanged() const { return m_changed.end(); }

    UInt32 sizeAddRefd() const { return static_cast<UInt32>(m_addRefd.size()); }
    UInt32 sizeSubRefd() const { return static_cast<UInt32>(m_subRefd.size()); }
    UInt32 sizeCreated() const { return static_cast<UInt32>(m_created.size()); }
    UInt32 sizeDestroyed() const { return static_cast<UInt32>(m_destroyed.size()); }
    UInt32 sizeChanged() const { return static_cast<UInt32>(m_changed.size()); }

    bool empty() const;

    void addAddRefd(const UInt32 id)
    {
        if (!m_readOnly) {
            m_addRefd.push_back(id);
        }
    }
    void addSubRefd(const UInt32 id)
    {
        if (!m_readOnly) {
            m_subRefd.push_back(id);
        }
    }
    void addCreated(const UInt32 id)
    {
        if (!m_readOnly) {
            m_created.push_back(id);
        }
    }
    void addDestroyed(const UInt32 id)
    {
        if (!m_readOnly) {
            m_destroyed.push_back(id);
        }
    }
    void addChanged(const UInt32 id, const BitVector whichField)
    {
        if (!m_readOnly) {
            m_changed.push_back(ChangeEntry(id, whichField));
        }
    }

    /// Forgets all entries. Keeps at most 16 MiB for the next ones of each kind.
    void clearAll();
    /// Appends the entries of @p other; a read-only list stays as it is.
    void merge(const ChangeList& other);
    /// Exchanges the entries, not whether they are recorded.
    void swap(ChangeList& other);
    /// Every change is in the only copy of the data already, so there is nothing to apply; same as clearAll().
    void applyAndClear();

    /// Writes all entries to standard error.
    void dump() const;

private:
    IdList m_addRefd;
    IdList m_subRefd;
    IdList m_created;
    IdList m_destroyed;
    ChangedList m_changed;
    bool m_readOnly;
};

} // namespace osg
