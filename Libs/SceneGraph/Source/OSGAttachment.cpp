// SPDX-License-Identifier: MIT
#include <OpenSG/OSGAttachment.h>

namespace osg {

FieldDescription* Attachment::_desc[] = {
    new FieldDescription(
        MFFieldContainerPtr::getClassType(), "parents", ParentsFieldId, ParentsFieldMask, true,
        [](FieldContainer& container) -> Field* { return &static_cast<Attachment&>(container).getParents(); }),
};

FieldContainerType Attachment::_type("Attachment", "FieldContainer", nullptr, nullptr, nullptr, _desc, sizeof(_desc));

OSG_ABSTR_FIELD_CONTAINER_INL_DEF(Attachment, AttachmentPtr)
OSG_ABSTR_FIELD_CONTAINER_DEF(Attachment, AttachmentPtr)

namespace {

/// Only attachment containers use attachments.
AttachmentContainer& toUser(const FieldContainerPtr& parent)
{
    return static_cast<AttachmentContainer&>(*parent);
}

} // namespace

Attachment::~Attachment() = default;

MFFieldContainerPtr& Attachment::getParents()
{
    closeHoles();
    return m_parents.field();
}

const MFFieldContainerPtr& Attachment::getParents() const
{
    closeHoles();
    return m_parents.field();
}

Int32 Attachment::findParent(const FieldContainerPtr& parent) const
{
    const MFFieldContainerPtr& parents = getParents();
    const MFFieldContainerPtr::const_iterator found = parents.find(parent);
    return found != parents.end() ? static_cast<Int32>(found - parents.begin()) : -1;
}

void Attachment::tellParents(const UInt32 origin)
{
    // By index: a parent may give up this attachment when it is told.
    for (UInt32 slot = 0; slot < m_parents.slotCount(); ++slot) {
        const FieldContainerPtr parent = m_parents.slot(slot);
        if (parent != NullFC) {
            toUser(parent).attachmentChanged(*this, origin);
        }
    }
}

UInt32 Attachment::addUser(const AttachmentContainer& user)
{
    return m_parents.add(FieldContainerPtr(user));
}

void Attachment::removeUser(const UInt32 slot)
{
    m_parents.remove(slot, [this](const FieldContainerPtr& parent, const UInt32 oldSlot, const UInt32 newSlot) {
        toUser(parent).attachmentMoved(*this, oldSlot, newSlot);
    });
}

void Attachment::closeHoles() const
{
    m_parents.close([this](const FieldContainerPtr& parent, const UInt32 oldSlot, const UInt32 newSlot) {
        toUser(parent).attachmentMoved(*this, oldSlot, newSlot);
    });
}

} // namespace osg
