// SPDX-License-Identifier: MIT
#pragma once

#include <OpenSG/OSGAttachmentContainerFields.h>

namespace osg {

class Node;

/// Handle to a node of the scene.
class OSG_SYSTEM_DLLMAPPING NodePtr : public AttachmentContainerPtr {
public:
    typedef Node StoredObjectType;
    typedef Node ObjectType;
    typedef AttachmentContainerPtr Inherited;
    typedef NodePtr Self;

    constexpr NodePtr() noexcept = default;
    constexpr NodePtr(const NodePtr&) noexcept = default;
    constexpr NodePtr(const NullFieldContainerPtr&) noexcept {}
    explicit NodePtr(const Node& container) noexcept;
    explicit NodePtr(const Node* container) noexcept;

    void operator=(const NodePtr& other) noexcept { m_container = other.m_container; }
    void operator=(const NullFieldContainerPtr&) noexcept { m_container = nullptr; }

    Node* operator->() const noexcept;
    Node& operator*() const noexcept;
    Node* getCPtr() const noexcept;

    /// The same container if it is of this type or derived from it, else null; null gives null.
    template <class InTypeT, class = EnableIfHandle<InTypeT>>
    static NodePtr dcast(const InTypeT in)
    {
        return NodePtr(castContainer<Node>(in));
    }
};

typedef RefPtr<NodePtr> NodeRefPtr;

template <>
struct FieldDataTraits<NodePtr> {
    static const Char8* getName() { return "NodePtr"; }
};

typedef SField<NodePtr> SFNodePtr;
typedef MField<NodePtr> MFNodePtr;

} // namespace osg
