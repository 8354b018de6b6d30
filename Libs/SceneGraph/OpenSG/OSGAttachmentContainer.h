// SPDX-License-Identifier: MIT
#pragma once

#include <OpenSG/OSGAttachmentContainerFields.h>
#include <OpenSG/OSGAttachmentFields.h>
#include <OpenSG/OSGFieldContainer.h>

namespace osg {

/// The attachments of one container in the order of their keys; a key is a group and a binding.
class OSG_SYSTEM_DLLMAPPING AttachmentMap {
public:
    struct Entry {
        UInt32 first;      // group in the upper, binding in the lower sixteen bits
        UInt32 parentSlot; // where the attachment's list of parents has this container
        AttachmentPtr second;
    };
    typedef const Entry* const_iterator;

    const_iterator begin() const { return m_entries.begin(); }
    const_iterator end() const { return m_entries.end(); }
    const_iterator find(UInt32 key) const;
    UInt32 size() const { return m_entries.size(); }
    bool empty() const { return m_entries.empty(); }

private:
    friend class AttachmentContainer;

    MField<Entry> m_entries;
};

template <>
struct FieldDataTraits<AttachmentMap> {
    static const Char8* getName() { return "AttachmentMap"; }
};

typedef SField<AttachmentMap> SFAttachmentMap;

/**
 * Base of nodes, cores and materials: containers that attachments can be hung on.
 *
 * Of the attachments of one group there is one for each binding. The container holds a reference on each of them.
 * Edits of attachments are bracketed by the caller with AttachmentsFieldMask.
 */
class OSG_SYSTEM_DLLMAPPING AttachmentContainer : public FieldContainer {
public:
    typedef FieldContainer Inherited;
    typedef AttachmentContainerPtr Ptr;

    enum : UInt32 { AttachmentsFieldId = Inherited::NextFieldId, NextFieldId };
    static constexpr BitVector AttachmentsFieldMask = BitVector(1) << AttachmentsFieldId;

    OSG_ABSTR_FIELD_CONTAINER_DECL(AttachmentContainerPtr)

    /// Replaces an attachment of the same group and binding; null is ignored.
    void addAttachment(const AttachmentPtr& attachment, UInt16 binding = 0);
    /// Does nothing when @p attachment does not hang here with this binding; null is ignored.
    void subAttachment(const AttachmentPtr& attachment, UInt16 binding = 0);

    /// Null when there is none.
    AttachmentPtr findAttachment(UInt32 groupId, UInt16 binding = 0) const;
    AttachmentPtr findAttachment(const FieldContainerType& type, UInt16 binding = 0) const;

    const SFAttachmentMap* getSFAttachments() const { return &m_sfAttachments; }

protected:
    AttachmentContainer() = default;
    /// The copy hangs on the same attachments.
    AttachmentContainer(const AttachmentContainer& source);
    ~AttachmentContainer() override;

    /// Called when an attachment that this container uses changed its value. The default does nothing.
    virtual void attachmentChanged(const Attachment& attachment, UInt32 origin);
    /// Called when an attachment's list of parents closed its holes: this container's entry has another slot now.
    virtual void attachmentMoved(const Attachment& attachment, UInt32 oldSlot, UInt32 newSlot);

    static FieldDescription* _desc[];
    static FieldContainerType _type;

private:
    friend class Attachment;

    static UInt32 makeKey(UInt32 groupId, UInt16 binding) { return (groupId << 16) | binding; }

    void takePlace(AttachmentMap::Entry& entry);
    void release(AttachmentMap::Entry& entry);

    SFAttachmentMap m_sfAttachments;
};

inline AttachmentContainerPtr::AttachmentContainerPtr(const AttachmentContainer& container) noexcept
{
    m_container = const_cast<AttachmentContainer*>(&container);
}

inline AttachmentContainerPtr::AttachmentContainerPtr(const AttachmentContainer* container) noexcept
{
    m_container = const_cast<AttachmentContainer*>(container);
}

inline AttachmentContainer* AttachmentContainerPtr::operator->() const noexcept
{
    return static_cast<AttachmentContainer*>(m_container);
}

inline AttachmentContainer& AttachmentContainerPtr::operator*() const noexcept
{
    return *operator->();
}

inline AttachmentContainer* AttachmentContainerPtr::getCPtr() const noexcept
{
    return operator->();
}

} // namespace osg
