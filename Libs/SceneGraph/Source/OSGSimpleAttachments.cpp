// SPDX-License-Identifier: MIT
#include <OpenSG/OSGSimpleAttachments.h>

#include <OpenSG/OSGLog.h>

namespace osg {

OSG_FC_DLLEXPORT_DEF(SimpleAttachment, NameDesc, )
OSG_FC_DLLEXPORT_DEF(SimpleAttachment, VoidPDesc, )

const Char8* getName(AttachmentContainerPtr container)
{
    if (container == NullFC) {
        return nullptr;
    }
    const NamePtr name = NamePtr::dcast(container->findAttachment(Name::getClassType().getGroupId()));
    return name != NullFC ? name->getField().getValue().c_str() : nullptr;
}

void setName(AttachmentContainerPtr container, const std::string& name)
{
    if (container == NullFC) {
        FFATAL(("setName: no container given!\n"));
        return;
    }
    NamePtr attachment = NamePtr::dcast(container->findAttachment(Name::getClassType().getGroupId()));
    const bool isNew = attachment == NullFC;
    if (isNew) {
        attachment = Name::create();
        if (attachment == NullFC) {
            return; // after osgExit()
        }
    }
    try {
        beginEditCP(attachment, Name::SimpleFieldMask);
        attachment->editField().setValue(name);
        endEditCP(attachment, Name::SimpleFieldMask);
        if (isNew) {
            beginEditCP(container, AttachmentContainer::AttachmentsFieldMask);
            container->addAttachment(attachment);
            endEditCP(container, AttachmentContainer::AttachmentsFieldMask);
        }
    } catch (...) {
        if (getRefCount(attachment) == 0) {
            subRefCP(attachment); // nobody has it
        }
        throw;
    }
}

void setName(AttachmentContainerPtr container, const Char8* name)
{
    if (name != nullptr) {
        setName(container, std::string(name));
        return;
    }
    if (container == NullFC) {
        FFATAL(("setName: no container given!\n"));
        return;
    }
    const AttachmentPtr attachment = container->findAttachment(Name::getClassType().getGroupId());
    if (attachment != NullFC) {
        beginEditCP(container, AttachmentContainer::AttachmentsFieldMask);
        container->subAttachment(attachment);
        endEditCP(container, AttachmentContainer::AttachmentsFieldMask);
    }
}

void* getVoidP(AttachmentContainerPtr container)
{
    if (container == NullFC) {
        return nullptr;
    }
    const VoidPAttachmentPtr attachment =
        VoidPAttachmentPtr::dcast(container->findAttachment(VoidPAttachment::getClassType().getGroupId()));
    return attachment != NullFC ? attachment->getField().getValue() : nullptr;
}

void setVoidP(AttachmentContainerPtr container, void* pointer)
{
    if (container == NullFC) {
        FFATAL(("setVoidP: no container given!\n"));
        return;
    }
    VoidPAttachmentPtr attachment =
        VoidPAttachmentPtr::dcast(container->findAttachment(VoidPAttachment::getClassType().getGroupId()));
    const bool isNew = attachment == NullFC;
    if (isNew) {
        attachment = VoidPAttachment::create();
        if (attachment == NullFC) {
            return; // after osgExit()
        }
    }
    try {
        beginEditCP(attachment, VoidPAttachment::SimpleFieldMask);
        attachment->editField().setValue(pointer);
        endEditCP(attachment, VoidPAttachment::SimpleFieldMask);
        if (isNew) {
            beginEditCP(container, AttachmentContainer::AttachmentsFieldMask);
            container->addAttachment(attachment);
            endEditCP(container, AttachmentContainer::AttachmentsFieldMask);
        }
    } catch (...) {
        if (getRefCount(attachment) == 0) {
            subRefCP(attachment); // nobody has it
        }
        throw;
    }
}

} // namespace osg
