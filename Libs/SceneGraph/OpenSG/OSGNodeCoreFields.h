// SPDX-License-Identifier: MIT
#pragma once

#include <OpenSG/OSGAttachmentContainerFields.h>

namespace osg {

class NodeCore;

typedef FCPtr<AttachmentContainerPtr, NodeCore> NodeCorePtr;
typedef RefPtr<NodeCorePtr> NodeCoreRefPtr;

template <>
struct FieldDataTraits<NodeCorePtr> {
    static const Char8* getName() { return "NodeCorePtr"; }
};

typedef SField<NodeCorePtr> SFNodeCorePtr;
typedef MField<NodeCorePtr> MFNodeCorePtr;

} // namespace osg
