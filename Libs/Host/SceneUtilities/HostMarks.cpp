// SPDX-License-Identifier: MIT
#include <SceneUtilities/HostMarks.h>

#include <OpenSG/OSGConfig.h>

#include <OpenSG/OSGAttachment.h>
#include <OpenSG/OSGFieldContainerFactory.h>
#include <OpenSG/OSGSFSysTypes.h>

namespace quon::host {

class HostMarksAttachment;
using HostMarksAttachmentPtr = osg::FCPtr<osg::AttachmentPtr, HostMarksAttachment>;

// The marks of one container, as a type of attachment with a group of its own.
class HostMarksAttachment : public osg::Attachment {
public:
    OSG_FIELD_CONTAINER_DECL(HostMarksAttachmentPtr)

    typedef osg::Attachment Inherited;
    typedef HostMarksAttachmentPtr Ptr;

    enum { MarksFieldId = Inherited::NextFieldId, NextFieldId };
    static constexpr osg::BitVector MarksFieldMask = osg::BitVector(1) << MarksFieldId;

    osg::UInt32 getMarks() const { return m_marks.getValue(); }
    void setMarks(osg::UInt32 marks) { m_marks.setValue(marks); }

protected:
    HostMarksAttachment() = default;
    HostMarksAttachment(const HostMarksAttachment& other)
        : Inherited(other)
        , m_marks(other.m_marks)
    {}
    ~HostMarksAttachment() override = default;

private:
    friend class osg::FieldContainer;

    static osg::FieldDescription* _desc[];
    static osg::FieldContainerType _type;

    static osg::FieldContainerPtr createPrototype() { return createEmpty(); }
    osg::Field* editMarksField() { return &m_marks; }

    osg::SFUInt32 m_marks;
};

osg::FieldDescription* HostMarksAttachment::_desc[] = {
    new osg::FieldDescription(osg::SFUInt32::getClassType(), "marks", MarksFieldId, MarksFieldMask, false,
                              static_cast<osg::FieldAccessMethod>(&HostMarksAttachment::editMarksField)),
};

osg::FieldContainerType HostMarksAttachment::_type("koHostMarks", "Attachment", nullptr,
                                                   &HostMarksAttachment::createPrototype, nullptr,
                                                   HostMarksAttachment::_desc, sizeof(HostMarksAttachment::_desc));

OSG_FIELD_CONTAINER_INL_DEF(HostMarksAttachment, HostMarksAttachmentPtr)
OSG_FIELD_CONTAINER_DEF(HostMarksAttachment, HostMarksAttachmentPtr)

namespace {

HostMarksAttachmentPtr createAttachment(osg::UInt32 marks)
{
    HostMarksAttachmentPtr attachment = HostMarksAttachment::create();
    if (attachment == osg::NullFC) {
        // Loaded after the scene graph was started: there is no prototype to copy from yet.
        osg::FieldContainerFactory::the()->initializePendingTypes();
        attachment = HostMarksAttachment::create();
    }
    if (attachment != osg::NullFC) {
        attachment->setMarks(marks);
        osg::endEditCP(attachment, HostMarksAttachment::MarksFieldMask);
    }
    return attachment;
}

// An attachment that finds no place is destroyed: nobody has it.
void attach(const HostMarksAttachmentPtr& attachment, const osg::AttachmentContainerPtr& container)
{
    try {
        osg::beginEditCP(container, osg::AttachmentContainer::AttachmentsFieldMask);
        container->addAttachment(attachment);
        osg::endEditCP(container, osg::AttachmentContainer::AttachmentsFieldMask);
    } catch (...) {
        if (osg::getRefCount(attachment) == 0) {
            osg::subRefCP(attachment);
        }
        throw;
    }
}

HostMarksAttachmentPtr findAttachment(const osg::AttachmentContainerPtr& container)
{
    if (!mayHaveMarks(*container)) {
        return osg::NullFC;
    }
    const osg::AttachmentPtr attachment = container->findAttachment(HostMarksAttachment::getClassType().getGroupId());
    if (attachment == osg::NullFC) {
        return osg::NullFC;
    }
    // Nothing else is of this group: no need to ask for the type of the attachment.
    return HostMarksAttachmentPtr(static_cast<HostMarksAttachment&>(*attachment));
}

} // namespace

void setMark(const osg::AttachmentContainerPtr& container, Mark mark, bool marked)
{
    if (container == osg::NullFC) {
        return;
    }
    const HostMarksAttachmentPtr attachment = findAttachment(container);
    const osg::UInt32 before = attachment != osg::NullFC ? attachment->getMarks() : 0;
    const osg::UInt32 bit = static_cast<osg::UInt32>(mark);
    const osg::UInt32 after = marked ? before | bit : before & ~bit;
    if (after == before) {
        return;
    }

    if (after == 0) {
        osg::beginEditCP(container, osg::AttachmentContainer::AttachmentsFieldMask);
        container->subAttachment(attachment);
        osg::endEditCP(container, osg::AttachmentContainer::AttachmentsFieldMask);
        return;
    }
    // Shallow copies share their attachments: the mark of one must not show at the other.
    if (attachment == osg::NullFC || attachment->getParents().size() > 1) {
        const HostMarksAttachmentPtr replacement = createAttachment(after);
        if (replacement != osg::NullFC) {
            attach(replacement, container);
        }
        return;
    }
    osg::beginEditCP(container, osg::AttachmentContainer::AttachmentsFieldMask);
    osg::beginEditCP(attachment, HostMarksAttachment::MarksFieldMask);
    attachment->setMarks(after);
    osg::endEditCP(attachment, HostMarksAttachment::MarksFieldMask);
    osg::endEditCP(container, osg::AttachmentContainer::AttachmentsFieldMask);
}

bool hasMark(const osg::AttachmentContainerPtr& container, Mark mark)
{
    if (container == osg::NullFC) {
        return false;
    }
    const HostMarksAttachmentPtr attachment = findAttachment(container);
    return attachment != osg::NullFC && (attachment->getMarks() & static_cast<osg::UInt32>(mark)) != 0;
}

} // namespace quon::host
