// SPDX-License-Identifier: MIT
#include <OpenSG/OSGAttachmentContainer.h>

#include <OpenSG/OSGAttachment.h>

#include <algorithm>

namespace osg {

FieldDescription* AttachmentContainer::_desc[] = {
    describeField<&AttachmentContainer::m_sfAttachments>("attachments", AttachmentsFieldId),
};

FieldContainerType AttachmentContainer::_type("AttachmentContainer", "FieldContainer", nullptr, nullptr, nullptr, _desc,
                                              sizeof(_desc));

OSG_ABSTR_FIELD_CONTAINER_INL_DEF(AttachmentContainer, AttachmentContainerPtr)
OSG_ABSTR_FIELD_CONTAINER_DEF(AttachmentContainer, AttachmentContainerPtr)

namespace {

template <class IteratorT>
IteratorT lowerBound(const IteratorT begin, const IteratorT end, const UInt32 key)
{
    return std::lower_bound(
        begin, end, key, [](const AttachmentMap::Entry& entry, const UInt32 wanted) { return entry.first < wanted; });
}

} // namespace

AttachmentMap::const_iterator AttachmentMap::find(const UInt32 key) const
{
    const const_iterator found = lowerBound(begin(), end(), key);
    return found != end() && found->first == key ? found : end();
}

AttachmentContainer::AttachmentContainer(const AttachmentContainer& source)
    : Inherited(source)
{
    MField<AttachmentMap::Entry>& entries = m_sfAttachments.getValue().m_entries;
    entries = source.m_sfAttachments.getValue().m_entries;
    for (AttachmentMap::Entry& entry : entries) {
        addRefCP(entry.second);
        entry.parentSlot = entry.second->addUser(*this);
    }
}

AttachmentContainer::~AttachmentContainer()
{
    // In place: while one goes, the slot of another, the same attachment under a second binding, may still change.
    for (AttachmentMap::Entry& entry : m_sfAttachments.getValue().m_entries) {
        AttachmentMap::Entry released = entry;
        entry.second = NullFC;
        release(released);
    }
}

void AttachmentContainer::addAttachment(const AttachmentPtr& attachment, const UInt16 binding)
{
    if (attachment == NullFC) {
        return;
    }
    const UInt32 key = makeKey(attachment->getGroupId(), binding);
    AttachmentMap::Entry entry{key, 0, attachment};
    MField<AttachmentMap::Entry>& entries = m_sfAttachments.getValue().m_entries;
    // All that can fail, before anything changes.
    entries.makeRoom();
    attachment->makeRoomForUser();
    addRefCP(entry.second);
    AttachmentMap::Entry* const found = lowerBound(entries.begin(), entries.end(), key);
    if (found != entries.end() && found->first == key) {
        std::swap(*found, entry);
        takePlace(*found);
        release(entry);
    } else {
        takePlace(*entries.insert(found, entry));
    }
}

void AttachmentContainer::subAttachment(const AttachmentPtr& attachment, const UInt16 binding)
{
    if (attachment == NullFC) {
        return;
    }
    MField<AttachmentMap::Entry>& entries = m_sfAttachments.getValue().m_entries;
    const UInt32 key = makeKey(attachment->getGroupId(), binding);
    AttachmentMap::Entry* const found = lowerBound(entries.begin(), entries.end(), key);
    if (found != entries.end() && found->first == key) {
        AttachmentMap::Entry entry = *found;
        entries.erase(found);
        release(entry);
    }
}

AttachmentPtr AttachmentContainer::findAttachment(const UInt32 groupId, const UInt16 binding) const
{
    const AttachmentMap& attachments = m_sfAttachments.getValue();
    const AttachmentMap::const_iterator found = attachments.find(makeKey(groupId, binding));
    return found != attachments.end() ? found->second : AttachmentPtr();
}

AttachmentPtr AttachmentContainer::findAttachment(const FieldContainerType& type, const UInt16 binding) const
{
    return findAttachment(type.getGroupId(), binding);
}

void AttachmentContainer::attachmentChanged(const Attachment&, UInt32) {}

void AttachmentContainer::attachmentMoved(const Attachment& attachment, const UInt32 oldSlot, const UInt32 newSlot)
{
    for (AttachmentMap::Entry& entry : m_sfAttachments.getValue().m_entries) {
        if (entry.parentSlot == oldSlot && entry.second.operator->() == &attachment) {
            entry.parentSlot = newSlot;
            return;
        }
    }
}

void AttachmentContainer::takePlace(AttachmentMap::Entry& entry)
{
    beginEditCP(entry.second, Attachment::ParentsFieldMask);
    entry.parentSlot = entry.second->addUser(*this);
    endEditCP(entry.second, Attachment::ParentsFieldMask);
}

void AttachmentContainer::release(AttachmentMap::Entry& entry)
{
    // The list of parents loses its first entry for this container, also when that was made for another binding.
    for (AttachmentMap::Entry& other : m_sfAttachments.getValue().m_entries) {
        if (other.second == entry.second && other.parentSlot < entry.parentSlot) {
            std::swap(other.parentSlot, entry.parentSlot);
        }
    }
    beginEditCP(entry.second, Attachment::ParentsFieldMask);
    entry.second->removeUser(entry.parentSlot);
    endEditCP(entry.second, Attachment::ParentsFieldMask);
    subRefCP(entry.second);
}

} // namespace osg
