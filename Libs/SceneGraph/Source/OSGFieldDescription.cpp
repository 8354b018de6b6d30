// SPDX-License-Identifier: MIT
#include <OpenSG/OSGFieldDescription.h>

#include <OpenSG/OSGFieldContainer.h>

namespace osg {

FieldDescription::FieldDescription(const FieldType& type, const Char8* name, const UInt32 fieldId,
                                   const BitVector fieldMask, const bool internal, const FieldAccessMethod accessMethod)
    : m_type(type)
    , m_name(name)
    , m_fieldId(fieldId)
    , m_fieldMask(fieldMask)
    , m_internal(internal)
    , m_accessMethod(accessMethod)
{}

FieldDescription::FieldDescription(const FieldType& type, const Char8* name, const UInt32 fieldId,
                                   const BitVector fieldMask, const bool internal,
                                   const FieldAccessFunction accessFunction)
    : m_type(type)
    , m_name(name)
    , m_fieldId(fieldId)
    , m_fieldMask(fieldMask)
    , m_internal(internal)
    , m_accessFunction(accessFunction)
{}

Field* FieldDescription::getField(FieldContainer& container) const
{
    return m_accessFunction != nullptr ? m_accessFunction(container) : (container.*m_accessMethod)();
}

} // namespace osg
