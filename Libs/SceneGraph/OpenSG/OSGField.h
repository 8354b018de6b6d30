// SPDX-License-Identifier: MIT
#pragma once

#include <OpenSG/OSGBaseTypes.h>

#include <string>

namespace osg {

/// Names the type of a field's values; each pair of name and cardinality has one object in the process.
class OSG_SYSTEM_DLLMAPPING FieldType {
public:
    enum Cardinality { SINGLE_FIELD, MULTI_FIELD };

    FieldType(const std::string& contentName, Cardinality cardinality);
    FieldType(const FieldType&) = delete;
    FieldType& operator=(const FieldType&) = delete;

    /// "SF" or "MF" followed by the name of the values' type.
    const Char8* getCName() const { return m_name.c_str(); }
    const std::string& getName() const { return m_name; }
    Cardinality getCardinality() const { return m_cardinality; }

    bool operator==(const FieldType& other) const { return m_name == other.m_name; }
    bool operator!=(const FieldType& other) const { return m_name != other.m_name; }

private:
    std::string m_name;
    Cardinality m_cardinality;
};

/**
 * Base of all fields, without data or virtual operations of its own.
 *
 * FieldContainer::getField() returns it; FieldDescription::getFieldType() tells which SField or MField it is.
 */
class OSG_SYSTEM_DLLMAPPING Field {
protected:
    constexpr Field() noexcept = default;
    constexpr Field(const Field&) noexcept = default;
    constexpr Field& operator=(const Field&) noexcept = default;
    ~Field() = default;
};

/// Tells the name of a type of field values; specialised for each.
template <class ValueT>
struct FieldDataTraits;

} // namespace osg
