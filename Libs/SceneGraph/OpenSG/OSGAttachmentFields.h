// SPDX-License-Identifier: MIT
#pragma once

#include <OpenSG/OSGFieldContainerFields.h>

namespace osg {

class Attachment;

/// Handle to an attachment, a state chunk or a geometry property.
class OSG_SYSTEM_DLLMAPPING AttachmentPtr : public FieldContainerPtr {
public:
    typedef Attachment StoredObjectType;
    typedef Attachment ObjectType;
    typedef FieldContainerPtr Inherited;
    typedef AttachmentPtr Self;

    constexpr AttachmentPtr() noexcept = default;
    constexpr AttachmentPtr(const AttachmentPtr&) noexcept = default;
    constexpr AttachmentPtr(const NullFieldContainerPtr&) noexcept {}
    explicit AttachmentPtr(const Attachment& container) noexcept;
    explicit AttachmentPtr(const Attachment* container) noexcept;

    void operator=(const AttachmentPtr& other) noexcept { m_container = other.m_container; }
    void operator=(const NullFieldContainerPtr&) noexcept { m_container = nullptr; }

    Attachment* operator->() const noexcept;
    Attachment& operator*() const noexcept;
    Attachment* getCPtr() const noexcept;

    /// The same container if it is of this type or derived from it, else null; null gives null.
    template <class InTypeT, class = EnableIfHandle<InTypeT>>
    static AttachmentPtr dcast(const InTypeT in)
    {
        return AttachmentPtr(castContainer<Attachment>(in));
    }
};

typedef RefPtr<AttachmentPtr> AttachmentRefPtr;

template <>
struct FieldDataTraits<AttachmentPtr> {
    static const Char8* getName() { return "AttachmentPtr"; }
};

typedef SField<AttachmentPtr> SFAttachmentPtr;
typedef MField<AttachmentPtr> MFAttachmentPtr;

} // namespace osg
