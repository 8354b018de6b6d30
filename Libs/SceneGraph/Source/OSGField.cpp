// SPDX-License-Identifier: MIT
#include <OpenSG/OSGField.h>

namespace osg {

FieldType::FieldType(const std::string& contentName, const Cardinality cardinality)
    : m_name((cardinality == SINGLE_FIELD ? "SF" : "MF") + contentName)
    , m_cardinality(cardinality)
{}

} // namespace osg
