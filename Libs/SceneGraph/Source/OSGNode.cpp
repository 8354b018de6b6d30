// SPDX-License-Identifier: MIT
#include <OpenSG/OSGNode.h>

#include <OpenSG/OSGBaseFunctions.h>
#include <OpenSG/OSGLog.h>

#include <cstdio>
#include <vector>

namespace osg {

FieldDescription* Node::_desc[] = {
    describeField<&Node::m_sfVolume>("volume", VolumeFieldId, true),
    describeField<&Node::m_sfTravMask>("travMask", TravMaskFieldId),
    describeField<&Node::m_sfParent>("parent", ParentFieldId, true),
    new FieldDescription(MFNodePtr::getClassType(), "children", ChildrenFieldId, ChildrenFieldMask, false,
                         [](FieldContainer& container) -> Field* {
                             Node& node = static_cast<Node&>(container);
                             node.closeHoles();
                             return &node.m_children.field();
                         }),
    describeField<&Node::m_sfCore>("core", CoreFieldId),
    describeField<&Node::m_sfHostFlags>("hostFlags", HostFlagsFieldId),
};

FieldContainerType Node::_type(
    "Node", "AttachmentContainer", nullptr, []() -> FieldContainerPtr { return createEmpty(); }, nullptr, _desc,
    sizeof(_desc));

OSG_FIELD_CONTAINER_INL_DEF(Node, NodePtr)
OSG_FIELD_CONTAINER_DEF(Node, NodePtr)

Node::Node(const Node& source)
    : Inherited(source)
    , m_sfTravMask(source.m_sfTravMask)
    , m_sfHostFlags(source.m_sfHostFlags)
    , m_sfVolume(source.m_sfVolume)
    , m_occlusionMask(source.m_occlusionMask)
{
    if (source.getCore() != NullFC) {
        replaceCore(source.getCore());
    }
}

void Node::onCreate(const FieldContainer* source)
{
    Inherited::onCreate(source);
    if (source != nullptr) {
        // The copy has the box of its source, but not its children.
        invalidateVolume();
    }
}

// Small: part of its callers, which make and end each node.
inline void Node::leaveCore(const NodeCorePtr& core)
{
    if (core != NullFC) {
        beginEditCP(core, NodeCore::ParentsFieldMask);
        core->removeParent(m_slotInCore);
        endEditCP(core, NodeCore::ParentsFieldMask);
    }
}

Node::~Node()
{
    const NodeCorePtr core = getCore();
    leaveCore(core);
    m_sfCore.setValue(NullFC);
    subRefCP(core);
    for (UInt32 slot = 0; slot < m_children.slotCount(); ++slot) {
        NodePtr child = m_children.slot(slot);
        if (child != NullFC) {
            child->setParent(NullFC);
            subRefCP(child);
        }
    }
}

void Node::setCore(const NodeCorePtr& core)
{
    replaceCore(core);
    invalidateVolume();
}

void Node::replaceCore(const NodeCorePtr& core)
{
    const NodeCorePtr newCore = core;
    const NodeCorePtr oldCore = getCore();
    if (newCore != NullFC) {
        newCore->makeRoomForParent(); // all that can fail, before anything changes
    }
    addRefCP(newCore);
    leaveCore(oldCore);
    m_sfCore.setValue(newCore);
    if (newCore != NullFC) {
        beginEditCP(newCore, NodeCore::ParentsFieldMask);
        m_slotInCore = newCore->addParent(NodePtr(*this));
        endEditCP(newCore, NodeCore::ParentsFieldMask);
    }
    subRefCP(oldCore);
}

NodePtr Node::getChild(const UInt32 index)
{
    return m_children.slot(m_children.slotOf(index));
}

Int32 Node::findChild(const NodePtr& child) const
{
    return child != NullFC && isChild(child) ? static_cast<Int32>(m_children.indexOf(child->m_slotInParent)) : -1;
}

void Node::addChild(const NodePtr& child)
{
    if (child == NullFC) {
        return;
    }
    const NodePtr newChild = child;
    m_children.makeRoom(); // all that can fail, before anything changes
    addRefCP(newChild);
    newChild->leaveParent();
    newChild->m_slotInParent = m_children.add(newChild);
    newChild->setParent(NodePtr(*this));
    invalidateVolume();
}

void Node::insertChild(const UInt32 index, const NodePtr& child)
{
    if (child == NullFC) {
        return;
    }
    const NodePtr newChild = child;
    addRefCP(newChild);
    newChild->leaveParent();
    if (index < m_children.size()) {
        newChild->m_slotInParent = m_children.insert(
            index, newChild, [](const NodePtr& node, UInt32, const UInt32 newSlot) { node->m_slotInParent = newSlot; });
    } else {
        newChild->m_slotInParent = m_children.add(newChild);
    }
    newChild->setParent(NodePtr(*this));
    invalidateVolume();
}

void Node::subChild(const NodePtr& child)
{
    if (child == NullFC || !isChild(child)) {
        FWARNING(("Node::subChild: the node is not one of my children!\n"));
        return;
    }
    removeChildAt(child->m_slotInParent, child);
}

void Node::subChild(const UInt32 index)
{
    if (index < m_children.size()) {
        const UInt32 slot = m_children.slotOf(index);
        NodePtr child = m_children.slot(slot);
        removeChildAt(slot, child);
    }
}

/// @param child the handle that becomes null when this was the last reference
void Node::removeChildAt(const UInt32 slot, const NodePtr& child)
{
    NodePtr oldChild = child;
    const NodePtr& released = m_children.owns(child) ? oldChild : child;
    m_children.remove(slot, [](const NodePtr& node, UInt32, const UInt32 newSlot) { node->m_slotInParent = newSlot; });
    oldChild->setParent(NullFC);
    invalidateVolume();
    subRefCP(released);
}

void Node::replaceChild(const UInt32 index, const NodePtr& child)
{
    if (child != NullFC && index < m_children.size()) {
        replaceChildAt(index, child);
    }
    invalidateVolume();
}

bool Node::replaceChildBy(const NodePtr& oldChild, const NodePtr& newChild)
{
    const Int32 index = findChild(oldChild);
    if (index < 0 || newChild == NullFC) {
        return false;
    }
    replaceChild(static_cast<UInt32>(index), newChild);
    return true;
}

void Node::replaceChildAt(const UInt32 index, const NodePtr& child)
{
    const NodePtr newChild = child;
    addRefCP(newChild);
    newChild->leaveParent();
    if (index >= m_children.size()) {
        // It was the last child of this very node, and there is nothing left in its place.
        newChild->m_slotInParent = m_children.add(newChild);
        newChild->setParent(NodePtr(*this));
        return;
    }
    const UInt32 slot = m_children.slotOf(index);
    NodePtr oldChild = m_children.slot(slot);
    m_children.replace(slot, newChild);
    newChild->m_slotInParent = slot;
    oldChild->setParent(NullFC);
    subRefCP(oldChild);
    newChild->setParent(NodePtr(*this));
}

void Node::clearChildren()
{
    // Whoever looks while the children go sees a node without any.
    SlotList<NodePtr> children;
    children.swap(m_children);
    for (UInt32 slot = 0; slot < children.slotCount(); ++slot) {
        NodePtr child = children.slot(slot);
        if (child != NullFC) {
            child->setParent(NullFC);
            subRefCP(child);
        }
    }
    invalidateVolume();
}

NodePtr Node::clone()
{
    return NodePtr::dcast(shallowCopy());
}

void Node::setActive(const bool active)
{
    setTravMask(active ? 0xFFFFFFFF : 0);
}

Matrix Node::getToWorld()
{
    Matrix result;
    getToWorld(result);
    return result;
}

void Node::getToWorld(Matrix& result)
{
    // From the root down, as everybody expects the roundings, but without recursion: scenes may be deep.
    constexpr std::size_t usualDepth = 64;
    NodeCore* usual[usualDepth];
    std::vector<NodeCore*> unusual;
    std::size_t count = 0;
    for (const Node* node = this; node != nullptr; node = node->getParentNode()) {
        NodeCore* const core = node->m_sfCore.getValue().operator->();
        if (core != nullptr) {
            if (count < usualDepth) {
                usual[count] = core;
            } else {
                unusual.push_back(core);
            }
            ++count;
        }
    }
    result.setIdentity();
    while (count > usualDepth) {
        --count;
        unusual[count - usualDepth]->accumulateMatrix(result);
    }
    while (count > 0) {
        --count;
        usual[count]->accumulateMatrix(result);
    }
}

BoxVolume& Node::editVolume(const bool update)
{
    if (update) {
        updateVolume();
    }
    return m_sfVolume.getValue();
}

void Node::updateVolume()
{
    if (getVolume().isValid() || getTravMask() == 0) {
        return;
    }
    // Depth first along the parents' and slots' numbers instead of by recursion: scenes may be deep.
    Node* node = this;
    UInt32 slot = 0;
    for (;;) {
        if (Node* const child = node->findStaleChild(slot)) {
            node = child;
            slot = 0;
            continue;
        }
        node->computeVolume();
        if (node == this) {
            return;
        }
        slot = node->m_slotInParent + 1;
        node = node->getParentNode();
    }
}

/// The first child from @p slot on whose volume has to be computed before that of this node.
Node* Node::findStaleChild(UInt32 slot) const
{
    for (; slot < m_children.slotCount(); ++slot) {
        Node* const child = m_children.slot(slot).operator->();
        if (child != nullptr && child->getTravMask() != 0 && !child->getVolume().isValid()) {
            return child;
        }
    }
    return nullptr;
}

void Node::computeVolume()
{
    BoxVolume& volume = m_sfVolume.getValue();
    volume.setValid();
    volume.setEmpty();
    for (UInt32 slot = 0; slot < m_children.slotCount(); ++slot) {
        const Node* const child = m_children.slot(slot).operator->();
        if (child != nullptr && child->getTravMask() != 0) {
            volume.extendBy(child->getVolume());
        }
    }
    if (getCore() != NullFC) {
        getCore()->adjustVolume(volume);
    }
    endEditCP(NodePtr(*this), VolumeFieldMask);
}

void Node::invalidateVolume()
{
    for (Node* node = this; node != nullptr; node = node->getParentNode()) {
        BoxVolume& volume = node->m_sfVolume.getValue();
        if (!volume.isValid() || volume.isStatic()) {
            return;
        }
        volume.setValid(false);
        endEditCP(NodePtr(*node), VolumeFieldMask);
    }
}

void Node::getWorldVolume(BoxVolume& result)
{
    updateVolume();
    result = getVolume();
    Matrix toWorld;
    if (Node* const parent = getParentNode()) {
        parent->getToWorld(toWorld);
    }
    result.transform(toWorld);
}

const MFNodePtr* Node::getMFChildren() const
{
    closeHoles();
    return &m_children.field();
}

void Node::changed(const BitVector whichField, const UInt32 origin)
{
    if ((whichField & (CoreFieldMask | ChildrenFieldMask)) != 0) {
        invalidateVolume();
    }
    if ((whichField & TravMaskFieldMask) != 0) {
        if (Node* const parent = getParentNode()) {
            parent->invalidateVolume();
            endEditCP(NodePtr(*parent), VolumeFieldMask);
        } else {
            invalidateVolume();
        }
    }
    Inherited::changed(whichField, origin);
}

void Node::dump(const UInt32 indent, const BitVector flags) const
{
    // Only a look at one level below: the whole tree would need as much stack as it is deep.
    Inherited::dump(indent, flags);
    std::fprintf(stderr, "%*smask 0x%x, %u children\n", static_cast<int>(indent) + 4, "", getTravMask(),
                 getNChildren());
    getCore().dump(indent + 4, flags);
}

bool Node::isChild(const NodePtr& node) const
{
    return node->getParentNode() == this && m_children.isAt(node->m_slotInParent, node);
}

void Node::setParent(const NodePtr& parent)
{
    const NodePtr self(*this);
    beginEditCP(self, ParentFieldMask);
    m_sfParent.setValue(parent);
    endEditCP(self, ParentFieldMask);
}

/// Takes this node out of its parent, if it has one; somebody else must hold a reference.
void Node::leaveParent()
{
    const NodePtr parent = getParent();
    if (parent != NullFC) {
        const NodePtr self(*this);
        beginEditCP(parent, ChildrenFieldMask);
        parent->subChild(self);
        endEditCP(parent, ChildrenFieldMask);
    }
}

void Node::closeHoles() const
{
    m_children.close([](const NodePtr& node, UInt32, const UInt32 newSlot) { node->m_slotInParent = newSlot; });
}

NodePtr makeNodeFor(const NodeCorePtr& core)
{
    const NodePtr node = Node::create();
    if (node == NullFC) {
        return NullFC; // after osgExit()
    }
    beginEditCP(node, Node::CoreFieldMask);
    node->setCore(core);
    endEditCP(node, Node::CoreFieldMask);
    return node;
}

NodePtr cloneTree(const NodePtr& root)
{
    const auto cloneNode = [](const NodePtr& node) {
        const NodePtr copy = Node::create();
        copy->setTravMask(node->getTravMask());
        copy->setCore(node->getCore());
        return copy;
    };
    if (root == NullFC || GlobalSystemState != Running) {
        return NullFC;
    }
    const NodePtr rootCopy = cloneNode(root);
    NodePtr node = root;
    NodePtr copy = rootCopy;
    UInt32 slot = 0;
    for (;;) {
        while (slot < node->m_children.slotCount() && node->m_children.slot(slot) == NullFC) {
            ++slot;
        }
        if (slot < node->m_children.slotCount()) {
            node = node->m_children.slot(slot);
            const NodePtr childCopy = cloneNode(node);
            copy->addChild(childCopy);
            copy = childCopy;
            slot = 0;
            continue;
        }
        endEditCP(copy);
        if (node == root) {
            return rootCopy;
        }
        slot = node->m_slotInParent + 1;
        node = node->getParent();
        copy = copy->getParent();
    }
}

} // namespace osg
