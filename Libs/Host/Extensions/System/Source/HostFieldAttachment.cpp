// SPDX-License-Identifier: MIT
#include "HostFieldAttachment.h"

#include "LateRegistration.h"

#include <OpenSG/OSGAttachment.h>
#include <OpenSG/OSGSFSysTypes.h>

namespace quon::extensions {

class HostFieldAttachment;
using HostFieldAttachmentPtr = osg::FCPtr<osg::AttachmentPtr, HostFieldAttachment>;

class HostFieldAttachment : public osg::Attachment {
public:
    OSG_FIELD_CONTAINER_DECL(HostFieldAttachmentPtr)

    typedef osg::Attachment Inherited;
    typedef HostFieldAttachmentPtr Ptr;

    enum { ValueFieldId = Inherited::NextFieldId, NextFieldId };
    static constexpr osg::BitVector ValueFieldMask = osg::BitVector(1) << ValueFieldId;

    osg::UInt32 getValue() const { return m_value.getValue(); }
    void setValue(osg::UInt32 value) { m_value.setValue(value); }

protected:
    HostFieldAttachment() = default;
    HostFieldAttachment(const HostFieldAttachment& other)
        : Inherited(other)
        , m_value(other.m_value)
    {}
    ~HostFieldAttachment() override = default;

private:
    friend class osg::FieldContainer;

    static osg::FieldDescription* _desc[];
    static osg::FieldContainerType _type;

    static osg::FieldContainerPtr createPrototype() { return createEmpty(); }
    osg::Field* editValueField() { return &m_value; }

    osg::SFUInt32 m_value;
};

osg::FieldDescription* HostFieldAttachment::_desc[] = {
    new osg::FieldDescription(osg::SFUInt32::getClassType(), "value", ValueFieldId, ValueFieldMask, false,
                              static_cast<osg::FieldAccessMethod>(&HostFieldAttachment::editValueField)),
};

osg::FieldContainerType HostFieldAttachment::_type("koHostField", "Attachment", nullptr,
                                                   &HostFieldAttachment::createPrototype, nullptr,
                                                   HostFieldAttachment::_desc, sizeof(HostFieldAttachment::_desc));

OSG_FIELD_CONTAINER_INL_DEF(HostFieldAttachment, HostFieldAttachmentPtr)
OSG_FIELD_CONTAINER_DEF(HostFieldAttachment, HostFieldAttachmentPtr)

namespace {

const LateRegistration lateRegistration;

HostFieldAttachmentPtr findAttachment(const osg::AttachmentContainerPtr& container)
{
    const osg::AttachmentPtr attachment = container->findAttachment(HostFieldAttachment::getClassType().getGroupId());
    return attachment == osg::NullFC ? HostFieldAttachmentPtr() : HostFieldAttachmentPtr::dcast(attachment);
}

} // namespace

void setHostField(const osg::AttachmentContainerPtr& container, osg::UInt32 value)
{
    const HostFieldAttachmentPtr attachment = findAttachment(container);
    const osg::UInt32 before = attachment == osg::NullFC ? 0 : attachment->getValue();
    if (before == value) {
        return;
    }

    if (value == 0) {
        container->subAttachment(attachment);
    } else if (attachment == osg::NullFC || attachment->getParents().size() > 1) {
        // Shallow copies share their attachments: a new one takes the place of a shared one.
        const HostFieldAttachmentPtr replacement = HostFieldAttachment::create();
        osg::beginEditCP(replacement, HostFieldAttachment::ValueFieldMask);
        replacement->setValue(value);
        osg::endEditCP(replacement, HostFieldAttachment::ValueFieldMask);
        container->addAttachment(replacement);
    } else {
        osg::beginEditCP(attachment, HostFieldAttachment::ValueFieldMask);
        attachment->setValue(value);
        osg::endEditCP(attachment, HostFieldAttachment::ValueFieldMask);
    }
}

osg::UInt32 getHostField(const osg::AttachmentContainerPtr& container)
{
    const HostFieldAttachmentPtr attachment = findAttachment(container);
    return attachment == osg::NullFC ? 0 : attachment->getValue();
}

} // namespace quon::extensions
