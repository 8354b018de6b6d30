// SPDX-License-Identifier: MIT
#pragma once

#include <OpenSG/OSGField.h>

namespace osg {

/// A field of one value.
template <class FieldTypeT>
class SField : public Field {
public:
    typedef FieldTypeT StoredType;

    constexpr SField() = default;
    constexpr explicit SField(const FieldTypeT& value)
        : m_value(value)
    {}

    static const FieldType& getClassType()
    {
        static const FieldType type(FieldDataTraits<FieldTypeT>::getName(), FieldType::SINGLE_FIELD);
        return type;
    }

    FieldTypeT& getValue() { return m_value; }
    const FieldTypeT& getValue() const { return m_value; }
    void setValue(const FieldTypeT& value) { m_value = value; }

    UInt32 getSize() const { return 1; }
    bool isEmpty() const { return false; }

    bool operator==(const SField& other) const { return m_value == other.m_value; }

private:
    FieldTypeT m_value{};
};

} // namespace osg
