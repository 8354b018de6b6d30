// SPDX-License-Identifier: MIT
#pragma once

#include <OpenSG/OSGAttachment.h>
#include <OpenSG/OSGSFBaseTypes.h>
#include <OpenSG/OSGSFSysTypes.h>

#include <string>

namespace osg {

/**
 * An attachment with one field.
 *
 * The descriptor names the type of the field (FieldTypeT) and gives getTypeName(), getFieldName(), getGroupName(),
 * getParentTypeName() ("Attachment") and getInitMethod(). One source has to instantiate the class, see
 * OSG_FC_DLLEXPORT_DEF, so that its type is registered.
 */
template <class AttachmentDescT>
class OSG_SYSTEM_DLLMAPPING SimpleAttachment : public Attachment {
public:
    typedef Attachment Inherited;
    typedef SimpleAttachment Self;
    typedef FCPtr<AttachmentPtr, SimpleAttachment> PtrType;
    typedef PtrType Ptr;
    typedef typename AttachmentDescT::FieldTypeT FieldTypeT;

    enum : UInt32 { SimpleFieldId = Inherited::NextFieldId, NextFieldId };
    static constexpr BitVector SimpleFieldMask = BitVector(1) << SimpleFieldId;

    static FieldContainerType& getClassType() { return _type; }
    static UInt32 getClassTypeId() { return _type.getId(); }
    static UInt16 getClassGroupId() { return _type.getGroupId(); }
    FieldContainerType& getType() override { return _type; }
    const FieldContainerType& getType() const override { return _type; }
    UInt32 getContainerSize() const override { return static_cast<UInt32>(sizeof(SimpleAttachment)); }

    [[gnu::noinline]] static PtrType create();
    [[gnu::noinline]] static PtrType createEmpty();
    FieldContainerPtr shallowCopy() const override;

    using FieldContainer::getField;
    FieldTypeT& getField() { return m_field; }
    const FieldTypeT& getField() const { return m_field; }
    FieldTypeT* getFieldPtr() { return &m_field; }
    const FieldTypeT* getFieldPtr() const { return &m_field; }
    FieldTypeT& editField() { return m_field; }
    FieldTypeT* editFieldPtr() { return &m_field; }

protected:
    SimpleAttachment() = default;
    SimpleAttachment(const SimpleAttachment& source)
        : Inherited(source)
        , m_field(source.m_field)
    {}

    static FieldContainerType _type;

private:
    static FieldDescription** describe();

    FieldTypeT m_field;
};

template <class AttachmentDescT>
typename SimpleAttachment<AttachmentDescT>::PtrType SimpleAttachment<AttachmentDescT>::create()
{
    const FieldContainerPtr prototype = _type.getPrototype();
    if (prototype == NullFC) {
        return NullFC;
    }
    SimpleAttachment* const container = new SimpleAttachment(static_cast<const SimpleAttachment&>(*prototype));
    return PtrType(ContainerAccess::adopt(container, &*prototype) ? container : nullptr);
}

template <class AttachmentDescT>
typename SimpleAttachment<AttachmentDescT>::PtrType SimpleAttachment<AttachmentDescT>::createEmpty()
{
    SimpleAttachment* const container = new SimpleAttachment;
    return PtrType(ContainerAccess::adopt(container, nullptr) ? container : nullptr);
}

template <class AttachmentDescT>
FieldContainerPtr SimpleAttachment<AttachmentDescT>::shallowCopy() const
{
    SimpleAttachment* const container = new SimpleAttachment(*this);
    return PtrType(ContainerAccess::adopt(container, this) ? container : nullptr);
}

template <class AttachmentDescT>
FieldDescription** SimpleAttachment<AttachmentDescT>::describe()
{
    const FieldAccessFunction access = [](FieldContainer& container) -> Field* {
        return &static_cast<SimpleAttachment&>(container).m_field;
    };
    static FieldDescription* descriptions[] = {new FieldDescription(
        FieldTypeT::getClassType(), AttachmentDescT::getFieldName(), SimpleFieldId, SimpleFieldMask, false, access)};
    return descriptions;
}

template <class AttachmentDescT>
FieldContainerType SimpleAttachment<AttachmentDescT>::_type(
    AttachmentDescT::getTypeName(), AttachmentDescT::getParentTypeName(), AttachmentDescT::getGroupName(),
    []() -> FieldContainerPtr { return createEmpty(); }, AttachmentDescT::getInitMethod(), describe(),
    sizeof(FieldDescription*));

/// Instantiates a class template of containers, in the namespace osg; the third argument stays empty.
#define OSG_FC_DLLEXPORT_DEF(CLASS, DESCRIPTOR, EXPORT) template class CLASS<DESCRIPTOR>;

/// Descriptor of Name.
struct OSG_SYSTEM_DLLMAPPING NameDesc {
    typedef SFString FieldTypeT;
    static const Char8* getTypeName() { return "Name"; }
    static const Char8* getFieldName() { return "name"; }
    static const Char8* getGroupName() { return "name"; }
    static const Char8* getParentTypeName() { return "Attachment"; }
    static InitContainerF getInitMethod() { return nullptr; }
};

/// Descriptor of VoidPAttachment.
struct OSG_SYSTEM_DLLMAPPING VoidPDesc {
    typedef SFVoidP FieldTypeT;
    static const Char8* getTypeName() { return "VoidPAttachment"; }
    static const Char8* getFieldName() { return "voidp"; }
    static const Char8* getGroupName() { return "voidp"; }
    static const Char8* getParentTypeName() { return "Attachment"; }
    static InitContainerF getInitMethod() { return nullptr; }
};

extern template class SimpleAttachment<NameDesc>;
extern template class SimpleAttachment<VoidPDesc>;

typedef SimpleAttachment<NameDesc> Name;
typedef FCPtr<AttachmentPtr, Name> NamePtr;
typedef RefPtr<NamePtr> NameRefPtr;

typedef SimpleAttachment<VoidPDesc> VoidPAttachment;
typedef FCPtr<AttachmentPtr, VoidPAttachment> VoidPAttachmentPtr;

/// The name of a container, null when it has none or @p container is null. Valid until the name changes.
OSG_SYSTEM_DLLMAPPING const Char8* getName(AttachmentContainerPtr container);

/// Names a container and ends the edits that this takes. A null container changes nothing and is logged.
OSG_SYSTEM_DLLMAPPING void setName(AttachmentContainerPtr container, const std::string& name);
/// Same; null takes the name away.
OSG_SYSTEM_DLLMAPPING void setName(AttachmentContainerPtr container, const Char8* name);

/// A pointer of the host's, null when there is none or @p container is null. Nothing here owns or reads it.
OSG_SYSTEM_DLLMAPPING void* getVoidP(AttachmentContainerPtr container);
OSG_SYSTEM_DLLMAPPING void setVoidP(AttachmentContainerPtr container, void* pointer);

} // namespace osg
