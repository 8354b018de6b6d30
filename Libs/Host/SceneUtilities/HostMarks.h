// SPDX-License-Identifier: MIT
#pragma once

#include <OpenSG/OSGConfig.h>

#include <OpenSG/OSGAttachmentContainer.h>

namespace quon::host {

/** What the host notes about nodes and materials: each mark is one bit. */
enum class Mark : osg::UInt32 {
    Auxiliary = 0x1,
    Locked = 0x2,
    NameGivenByProgram = 0x4,
};

/**
 * Sets or takes off @p mark, bracketed with AttachmentContainer::AttachmentsFieldMask when that is a change.
 *
 * The marks are an attachment of the container, which exists only while there is at least one mark. Null is ignored.
 */
void setMark(const osg::AttachmentContainerPtr& container, Mark mark, bool marked);

/** Returns false where @p container has no marks at all, which most have not, without a call: for whoever asks many. */
inline bool mayHaveMarks(osg::AttachmentContainer& container)
{
    return !container.getSFAttachments()->getValue().empty();
}

/** Returns whether @p container itself has @p mark; false for null. */
bool hasMark(const osg::AttachmentContainerPtr& container, Mark mark);

} // namespace quon::host
