// SPDX-License-Identifier: MIT
#pragma once

#include <OpenSG/OSGFieldContainerFields.h>

namespace osg {

class AttachmentContainer;

/// Handle to anything that attachments, a name for one, can be hung on.
class OSG_SYSTEM_DLLMAPPING AttachmentContainerPtr : public FieldContainerPtr {
public:
    typedef AttachmentContainer StoredObjectType;
    typedef AttachmentContainer ObjectType;
    typedef FieldContainerPtr Inherited;
    typedef AttachmentContainerPtr Self;

    constexpr AttachmentContainerPtr() noexcept = default;
    constexpr AttachmentContainerPtr(const AttachmentContainerPtr&) noexcept = default;
    constexpr AttachmentContainerPtr(const NullFieldContainerPtr&) noexcept {}
    explicit AttachmentContainerPtr(const AttachmentContainer& container) noexcept;
    explicit AttachmentContainerPtr(const AttachmentContainer* container) noexcept;

    void operator=(const AttachmentContainerPtr& other) noexcept { m_container = other.m_container; }
    void operator=(const NullFieldContainerPtr&) noexcept { m_container = nullptr; }

    AttachmentContainer* operator->() const noexcept;
    AttachmentContainer& operator*() const noexcept;
    AttachmentContainer* getCPtr() const noexcept;

    /// The same container if it is of this type or derived from it, else null; null gives null.
    template <class InTypeT, class = EnableIfHandle<InTypeT>>
    static AttachmentContainerPtr dcast(const InTypeT in)
    {
        return AttachmentContainerPtr(castContainer<AttachmentContainer>(in));
    }
};

typedef RefPtr<AttachmentContainerPtr> AttachmentContainerRefPtr;

template <>
struct FieldDataTraits<AttachmentContainerPtr> {
    static const Char8* getName() { return "AttachmentContainerPtr"; }
};

typedef SField<AttachmentContainerPtr> SFAttachmentContainerPtr;
typedef MField<AttachmentContainerPtr> MFAttachmentContainerPtr;

} // namespace osg
