// SPDX-License-Identifier: MIT
#pragma once

#include <OpenSG/OSGAttachmentContainer.h>
#include <OpenSG/OSGFieldContainerFields.h>
#include <OpenSG/OSGSlotList.h>

namespace osg {

/**
 * Data that hangs on other containers: names, geometry properties, state chunks.
 *
 * Knows the containers that use it, each as often as it uses it. State chunks do not know their materials.
 */
class OSG_SYSTEM_DLLMAPPING Attachment : public FieldContainer {
public:
    typedef FieldContainer Inherited;
    typedef AttachmentPtr Ptr;

    enum : UInt32 { ParentsFieldId = Inherited::NextFieldId, NextFieldId };
    static constexpr BitVector ParentsFieldMask = BitVector(1) << ParentsFieldId;

    OSG_ABSTR_FIELD_CONTAINER_DECL(AttachmentPtr)

    /// In the order in which they began to use it; to be read only.
    MFFieldContainerPtr& getParents();
    const MFFieldContainerPtr& getParents() const;
    const MFFieldContainerPtr* getMFParents() const { return &getParents(); }

    /// The index among the parents, -1 when it is none of them.
    Int32 findParent(const FieldContainerPtr& parent) const;

protected:
    Attachment() = default;
    /// The copy has no parents.
    Attachment(const Attachment& source)
        : Inherited(source)
    {}
    ~Attachment() override;

    /// Tells each parent that the value of this attachment changed.
    void tellParents(UInt32 origin);

    static FieldDescription* _desc[];
    static FieldContainerType _type;

private:
    friend class AttachmentContainer;
    friend class Geometry;

    /// Lets the next addUser() do without memory.
    void makeRoomForUser() { m_parents.makeRoom(); }
    /// Takes a place among the parents; the user keeps the slot that is returned, see SlotList.
    UInt32 addUser(const AttachmentContainer& user);
    void removeUser(UInt32 slot);
    void closeHoles() const;

    mutable SlotList<FieldContainerPtr> m_parents;
};

inline AttachmentPtr::AttachmentPtr(const Attachment& container) noexcept
{
    m_container = const_cast<Attachment*>(&container);
}

inline AttachmentPtr::AttachmentPtr(const Attachment* container) noexcept
{
    m_container = const_cast<Attachment*>(container);
}

inline Attachment* AttachmentPtr::operator->() const noexcept
{
    return static_cast<Attachment*>(m_container);
}

inline Attachment& AttachmentPtr::operator*() const noexcept
{
    return *operator->();
}

inline Attachment* AttachmentPtr::getCPtr() const noexcept
{
    return operator->();
}

} // namespace osg
