// SPDX-License-Identifier: MIT
#pragma once

#include <OpenSG/OSGField.h>

namespace osg {

class FieldContainer;

/// The operation of a container that gives a pointer to a field.
typedef Field* (FieldContainer::*FieldAccessMethod)();
typedef Field* (*FieldAccessFunction)(FieldContainer& container);

/// Name, identifier and type of one field of a container type.
class OSG_SYSTEM_DLLMAPPING FieldDescription {
public:
    /**
     * @param fieldMask the bit number @p fieldId
     * @param internal whether the field is no business of files and other processes
     * @param accessMethod an accessor cast to this type, which is how types written for OpenSG have it
     */
    FieldDescription(const FieldType& type, const Char8* name, UInt32 fieldId, BitVector fieldMask, bool internal,
                     FieldAccessMethod accessMethod);
    FieldDescription(const FieldType& type, const Char8* name, UInt32 fieldId, BitVector fieldMask, bool internal,
                     FieldAccessFunction accessFunction);

    const Char8* getCName() const { return m_name.c_str(); }
    const std::string& getName() const { return m_name; }
    const FieldType& getFieldType() const { return m_type; }
    UInt32 getFieldId() const { return m_fieldId; }
    BitVector getFieldMask() const { return m_fieldMask; }
    bool isInternal() const { return m_internal; }

    /// The field of @p container, which must be of the described type (not checked).
    Field* getField(FieldContainer& container) const;

private:
    const FieldType& m_type;
    std::string m_name;
    UInt32 m_fieldId;
    BitVector m_fieldMask;
    bool m_internal;
    FieldAccessMethod m_accessMethod = nullptr;
    FieldAccessFunction m_accessFunction = nullptr;
};

template <class MemberT>
struct FieldMember;
template <class ContainerT, class FieldT>
struct FieldMember<FieldT ContainerT::*> {
    typedef ContainerT Container;
    typedef FieldT FieldKind;
};

/// Describes the field that is the data member @p Member.
template <auto Member>
FieldDescription* describeField(const Char8* name, const UInt32 fieldId, const bool internal = false)
{
    typedef FieldMember<decltype(Member)> Traits;
    const FieldAccessFunction access = [](FieldContainer& container) -> Field* {
        return &(static_cast<typename Traits::Container&>(container).*Member);
    };
    return new FieldDescription(Traits::FieldKind::getClassType(), name, fieldId, BitVector(1) << fieldId, internal,
                                access);
}

} // namespace osg
