// SPDX-License-Identifier: MIT
#pragma once

#include <OpenSG/OSGAttachmentContainer.h>
#include <OpenSG/OSGMatrix.h>
#include <OpenSG/OSGNodeCoreFields.h>
#include <OpenSG/OSGNodeFields.h>
#include <OpenSG/OSGSlotList.h>
#include <OpenSG/OSGVolume.h>

namespace osg {

/**
 * What a node is: a group, a transform, a geometry. Several nodes may share one core.
 *
 * Each node with this core holds one reference on it.
 */
class OSG_SYSTEM_DLLMAPPING NodeCore : public AttachmentContainer {
public:
    typedef AttachmentContainer Inherited;
    typedef NodeCorePtr Ptr;

    enum : UInt32 { ParentsFieldId = Inherited::NextFieldId, NextFieldId };
    static constexpr BitVector ParentsFieldMask = BitVector(1) << ParentsFieldId;

    OSG_ABSTR_FIELD_CONTAINER_DECL(NodeCorePtr)

    /// The nodes with this core in the order in which they got it; to be read only.
    MFNodePtr& getParents();
    const MFNodePtr& getParents() const;
    const MFNodePtr* getMFParents() const { return &getParents(); }

    /// Invalidates the volumes of all nodes with this core.
    virtual void invalidateVolume();

    /// Multiplies @p result by what this core does to the space of its node. The default leaves it alone.
    virtual void accumulateMatrix(Matrix& result);

protected:
    NodeCore() = default;
    /// The copy is the core of no node.
    NodeCore(const NodeCore& source)
        : Inherited(source)
    {}
    ~NodeCore() override;

    /// Adds the core's own extent to @p volume, which is the union of its node's children, or transforms it.
    virtual void adjustVolume(Volume& volume);

    static FieldDescription* _desc[];
    static FieldContainerType _type;

private:
    friend class Node;

    /// Lets the next addParent() do without memory.
    void makeRoomForParent() { m_parents.makeRoom(); }
    UInt32 addParent(const NodePtr& node);
    void removeParent(UInt32 slot);
    void closeHoles() const;

    mutable SlotList<NodePtr> m_parents;
};

} // namespace osg
