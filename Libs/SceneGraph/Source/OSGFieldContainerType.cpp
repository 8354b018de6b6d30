// SPDX-License-Identifier: MIT
#include <OpenSG/OSGFieldContainerType.h>

#include <OpenSG/OSGAttachment.h>
#include <OpenSG/OSGFieldContainerFactory.h>
#include <OpenSG/OSGNode.h>

#include <cstring>

namespace osg {

FieldContainerType::FieldContainerType(const Char8* name, const Char8* parentName, const Char8* groupName,
                                       const PrototypeCreateF prototypeCreate, const InitContainerF initMethod,
                                       FieldDescription** descriptions, const UInt32 descriptionBytes)
    : m_name(name)
    , m_parentName(parentName != nullptr ? parentName : "")
    , m_prototypeCreate(prototypeCreate)
    , m_initMethod(initMethod)
{
    if (descriptions != nullptr) {
        m_descriptions.assign(descriptions, descriptions + descriptionBytes / sizeof(FieldDescription*));
    }
    FieldContainerFactory& factory = *FieldContainerFactory::the();
    m_groupId = factory.registerGroup(groupName != nullptr ? groupName : m_name);
    m_id = factory.registerType(*this);
}

FieldContainerType::~FieldContainerType()
{
    destroyPrototype();
    FieldContainerFactory::the()->unregisterType(*this);
}

FieldContainerType* FieldContainerType::getParent() const
{
    // Types are registered in any order: the base may not have been there when this one was.
    if (m_parent == nullptr && !m_parentName.empty()) {
        m_parent = FieldContainerFactory::the()->findType(m_parentName.c_str());
    }
    return m_parent;
}

bool FieldContainerType::isDerivedFrom(const FieldContainerType& other) const
{
    const FieldContainerType* type = this;
    while (type != &other) {
        // Only the first time, or at the root of all types, is the base to be looked for.
        type = type->m_parent != nullptr ? type->m_parent : type->getParent();
        if (type == nullptr) {
            return false;
        }
    }
    return true;
}

bool FieldContainerType::isNode() const
{
    return isDerivedFrom(Node::getClassType());
}

bool FieldContainerType::isNodeCore() const
{
    return isDerivedFrom(NodeCore::getClassType());
}

bool FieldContainerType::isAttachment() const
{
    return isDerivedFrom(Attachment::getClassType());
}

FieldContainerPtr FieldContainerType::createFieldContainer() const
{
    return m_prototype != NullFC ? m_prototype->shallowCopy() : FieldContainerPtr();
}

UInt32 FieldContainerType::getNumFieldDescs() const
{
    std::size_t count = 0;
    for (const FieldContainerType* type = this; type != nullptr; type = type->getParent()) {
        count += type->m_descriptions.size();
    }
    return static_cast<UInt32>(count);
}

const FieldDescription* FieldContainerType::getFieldDescription(const UInt32 fieldId) const
{
    for (const FieldContainerType* type = this; type != nullptr; type = type->getParent()) {
        for (const FieldDescription* description : type->m_descriptions) {
            if (description->getFieldId() == fieldId) {
                return description;
            }
        }
    }
    return nullptr;
}

const FieldDescription* FieldContainerType::findFieldDescription(const Char8* name) const
{
    for (const FieldContainerType* type = this; type != nullptr && name != nullptr; type = type->getParent()) {
        for (const FieldDescription* description : type->m_descriptions) {
            if (std::strcmp(description->getCName(), name) == 0) {
                return description;
            }
        }
    }
    return nullptr;
}

void FieldContainerType::initialize()
{
    if (m_initialized) {
        return;
    }
    m_initialized = true;
    if (FieldContainerType* const parent = getParent()) {
        parent->initialize();
    }
    if (m_initMethod != nullptr) {
        m_initMethod();
    }
    if (m_prototypeCreate != nullptr) {
        const UInt32 before = ContainerAccess::beginPermanent();
        m_prototype = m_prototypeCreate();
        ContainerAccess::endPermanent(before);
    }
}

void FieldContainerType::destroyPrototype()
{
    if (m_prototype != NullFC) {
        const FieldContainerPtr prototype = m_prototype;
        m_prototype = NullFC;
        const UInt32 before = ContainerAccess::beginPermanent();
        ContainerAccess::destroy(*prototype);
        ContainerAccess::endPermanent(before);
    }
    m_initialized = false;
}

} // namespace osg
