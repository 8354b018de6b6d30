// SPDX-License-Identifier: MIT
#include <OpenSG/OSGNodeCore.h>

#include <OpenSG/OSGNode.h>

namespace osg {

FieldDescription* NodeCore::_desc[] = {
    new FieldDescription(
        MFNodePtr::getClassType(), "parents", ParentsFieldId, ParentsFieldMask, true,
        [](FieldContainer& container) -> Field* { return &static_cast<NodeCore&>(container).getParents(); }),
};

FieldContainerType NodeCore::_type("NodeCore", "AttachmentContainer", nullptr, nullptr, nullptr, _desc, sizeof(_desc));

OSG_ABSTR_FIELD_CONTAINER_INL_DEF(NodeCore, NodeCorePtr)
OSG_ABSTR_FIELD_CONTAINER_DEF(NodeCore, NodeCorePtr)

NodeCore::~NodeCore() = default;

MFNodePtr& NodeCore::getParents()
{
    closeHoles();
    return m_parents.field();
}

const MFNodePtr& NodeCore::getParents() const
{
    closeHoles();
    return m_parents.field();
}

void NodeCore::invalidateVolume()
{
    for (UInt32 slot = 0; slot < m_parents.slotCount(); ++slot) {
        const NodePtr parent = m_parents.slot(slot);
        if (parent != NullFC) {
            parent->invalidateVolume();
        }
    }
}

void NodeCore::accumulateMatrix(Matrix&) {}

void NodeCore::adjustVolume(Volume&) {}

UInt32 NodeCore::addParent(const NodePtr& node)
{
    return m_parents.add(node);
}

void NodeCore::removeParent(const UInt32 slot)
{
    m_parents.remove(slot, [](const NodePtr& node, UInt32, const UInt32 newSlot) { node->m_slotInCore = newSlot; });
}

void NodeCore::closeHoles() const
{
    m_parents.close([](const NodePtr& node, UInt32, const UInt32 newSlot) { node->m_slotInCore = newSlot; });
}

} // namespace osg
