// SPDX-License-Identifier: MIT
#pragma once

#include <OpenSG/OSGAttachmentContainer.h>
#include <OpenSG/OSGBoxVolume.h>
#include <OpenSG/OSGMatrix.h>
#include <OpenSG/OSGNodeCore.h>
#include <OpenSG/OSGNodeFields.h>
#include <OpenSG/OSGSFBaseTypes.h>
#include <OpenSG/OSGSFSysTypes.h>
#include <OpenSG/OSGSlotList.h>

namespace osg {

/**
 * A place in the scene: a core, a parent, children, and who may see it.
 *
 * A node holds a reference on its core and on each of its children. It has one parent at most, which is not told when
 * the node is destroyed. The operations that change the lists bracket what they do to other containers (the child's
 * ParentFieldMask, the core's ParentsFieldMask, a former parent's ChildrenFieldMask); the caller brackets this node.
 *
 * @par Volumes
 * A node's volume is the box of its children and its core, the core's transformation included: it is in the space of
 * the parent. It is computed when it is asked for and was invalid, as it is at first. What invalidates it is a new
 * core or other children, and the end of an edit with TravMaskFieldMask, a transform's MatrixFieldMask, or a
 * geometry's PositionsFieldMask: such a change that was not ended keeps the old box. A box that becomes empty keeps
 * its corners, in a shallow copy too.
 */
class OSG_SYSTEM_DLLMAPPING Node : public AttachmentContainer {
public:
    typedef AttachmentContainer Inherited;
    typedef NodePtr Ptr;
    typedef BoxVolume VolumeType;

    enum : UInt32 {
        VolumeFieldId = Inherited::NextFieldId,
        TravMaskFieldId,
        ParentFieldId,
        ChildrenFieldId,
        CoreFieldId,
        HostFlagsFieldId,
        NextFieldId
    };
    static constexpr BitVector VolumeFieldMask = BitVector(1) << VolumeFieldId;
    static constexpr BitVector TravMaskFieldMask = BitVector(1) << TravMaskFieldId;
    static constexpr BitVector ParentFieldMask = BitVector(1) << ParentFieldId;
    static constexpr BitVector ChildrenFieldMask = BitVector(1) << ChildrenFieldId;
    static constexpr BitVector CoreFieldMask = BitVector(1) << CoreFieldId;
    static constexpr BitVector HostFlagsFieldMask = BitVector(1) << HostFlagsFieldId;

    OSG_FIELD_CONTAINER_DECL(NodePtr)

    /// May be null.
    NodeCorePtr getCore() const { return m_sfCore.getValue(); }
    /// References the new core, then releases the old one; null is allowed. Invalidates the volume.
    void setCore(const NodeCorePtr& core);

    /// Null for a root.
    NodePtr getParent() { return m_sfParent.getValue(); }
    UInt32 getNChildren() const { return m_children.size(); }
    /// @p index must be smaller than getNChildren() (not checked).
    NodePtr getChild(UInt32 index);
    /// -1 when it is no child of this node.
    Int32 findChild(const NodePtr& child) const;

    /**
     * Appends @p child, after taking it out of its parent, which may be this node.
     *
     * Null is ignored. That no node becomes its own ancestor is not checked.
     */
    void addChild(const NodePtr& child);
    /// Same as addChild(), in front of child number @p index; appends where there is none of this number.
    void insertChild(UInt32 index, const NodePtr& child);
    /// A handle to anything but a child changes nothing and writes a warning to the log. Null likewise.
    void subChild(const NodePtr& child);
    /// Nothing happens where there is no child of this number.
    void subChild(UInt32 index);
    /// Nothing happens where there is no child of this number, or when @p child is null.
    void replaceChild(UInt32 index, const NodePtr& child);
    /// False when @p oldChild is no child of this node or @p newChild is null.
    bool replaceChildBy(const NodePtr& oldChild, const NodePtr& newChild);
    /// Takes all children out, first to last.
    void clearChildren();

    /// A node with the same core, traversal mask, flags and attachments, without parent and children; count zero.
    NodePtr clone();

    /// Whether the traversal mask has all bits.
    bool getActive() const { return getTravMask() == 0xFFFFFFFF; }
    void setActive(bool active);
    UInt32 getTravMask() const { return m_sfTravMask.getValue(); }
    void setTravMask(const UInt32 mask) { m_sfTravMask.setValue(mask); }

    UInt8 getOcclusionMask() const { return m_occlusionMask; }
    void setOcclusionMask(const UInt8 mask) { m_occlusionMask = mask; }

    /// For the host alone; nothing here reads them.
    UInt32 getHostFlags() const { return m_sfHostFlags.getValue(); }
    void setHostFlags(const UInt32 flags) { m_sfHostFlags.setValue(flags); }

    /// The product of all transformations from the root down to this node's own core.
    Matrix getToWorld();
    void getToWorld(Matrix& result);

    /// As it is, valid or not.
    const BoxVolume& getVolume() const { return m_sfVolume.getValue(); }
    BoxVolume& editVolume(bool update);
    /// Computes the volume, unless it is valid or the traversal mask is zero.
    void updateVolume();
    /// Invalidates the volumes from here up to the first one that is invalid already.
    void invalidateVolume();
    /// Computes the volume and transforms it into world space; an empty one stays as it is.
    void getWorldVolume(BoxVolume& result);

    const SFBoxVolume* getSFVolume() const { return &m_sfVolume; }
    const SFUInt32* getSFTravMask() const { return &m_sfTravMask; }
    SFUInt32* editSFTravMask() { return &m_sfTravMask; }
    const SFNodePtr* getSFParent() const { return &m_sfParent; }
    const MFNodePtr* getMFChildren() const;
    const SFNodeCorePtr* getSFCore() const { return &m_sfCore; }
    const SFUInt32* getSFHostFlags() const { return &m_sfHostFlags; }
    SFUInt32* editSFHostFlags() { return &m_sfHostFlags; }

    void changed(BitVector whichField, UInt32 origin) override;
    void dump(UInt32 indent = 0, BitVector flags = 0) const override;

protected:
    Node() = default;
    Node(const Node& source);
    ~Node() override;

    void onCreate(const FieldContainer* source) override;

    static FieldDescription* _desc[];
    static FieldContainerType _type;

private:
    friend class NodeCore;
    friend NodePtr cloneTree(const NodePtr& root);

    Node* getParentNode() const { return m_sfParent.getValue().operator->(); }
    bool isChild(const NodePtr& node) const;
    void setParent(const NodePtr& parent);
    void leaveParent();
    void removeChildAt(UInt32 slot, const NodePtr& child);
    void replaceChildAt(UInt32 index, const NodePtr& child);
    void closeHoles() const;
    Node* findStaleChild(UInt32 slot) const;
    void computeVolume();
    void replaceCore(const NodeCorePtr& core);
    /// Ends being a parent of this core, the one at hand; may be null.
    void leaveCore(const NodeCorePtr& core);

    // The first cache line has what walks up the tree read, and what taking a child out does.
    SFUInt32 m_sfTravMask{0xFFFFFFFF};
    SFUInt32 m_sfHostFlags;
    SFNodePtr m_sfParent;
    SFNodeCorePtr m_sfCore;
    UInt32 m_slotInParent = 0;
    UInt32 m_slotInCore = 0;
    SFBoxVolume m_sfVolume;
    mutable SlotList<NodePtr> m_children;
    UInt8 m_occlusionMask = 0;
};

inline NodePtr::NodePtr(const Node& container) noexcept
{
    m_container = const_cast<Node*>(&container);
}

inline NodePtr::NodePtr(const Node* container) noexcept
{
    m_container = const_cast<Node*>(container);
}

inline Node* NodePtr::operator->() const noexcept
{
    return static_cast<Node*>(m_container);
}

inline Node& NodePtr::operator*() const noexcept
{
    return *operator->();
}

inline Node* NodePtr::getCPtr() const noexcept
{
    return operator->();
}

/// A new node with this core; the count is zero.
OSG_SYSTEM_DLLMAPPING NodePtr makeNodeFor(const NodeCorePtr& core);

/// A new node with a new core, whose handle is written to @p core unless that is null; the count is zero.
template <class CoreT>
NodePtr makeCoredNode(typename CoreT::Ptr* core = nullptr)
{
    const typename CoreT::Ptr newCore = CoreT::create();
    if (core != nullptr) {
        *core = newCore;
    }
    return makeNodeFor(newCore);
}

/// Copies the tree of nodes below @p root; the copies share the cores and have the same traversal masks, but no names
/// or other attachments. Null gives null; the count of the result is zero.
OSG_SYSTEM_DLLMAPPING NodePtr cloneTree(const NodePtr& root);

} // namespace osg
