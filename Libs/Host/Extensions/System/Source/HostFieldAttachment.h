// SPDX-License-Identifier: MIT
#pragma once

#include <OpenSG/OSGConfig.h>

#include <OpenSG/OSGAttachmentContainer.h>

namespace quon::extensions {

/**
 * Gives @p container the host's field, 32 bits of value @p value. The caller brackets the edit of @p container.
 *
 * The field is an attachment, which exists only while the value is not zero. A shallow copy keeps the value that its
 * original had when it was copied.
 */
void setHostField(const osg::AttachmentContainerPtr& container, osg::UInt32 value);

osg::UInt32 getHostField(const osg::AttachmentContainerPtr& container);

} // namespace quon::extensions
