// SPDX-License-Identifier: MIT
#include <OpenSG/OSGGeoProperty.h>

namespace osg {

template <class AbstractDescT>
FieldContainerType AbstractGeoProperty<AbstractDescT>::_type(AbstractDescT::getTypeName(), "Attachment", nullptr,
                                                             nullptr, nullptr);

template <class AbstractDescT>
FieldContainerType& AbstractGeoProperty<AbstractDescT>::getClassType()
{
    return _type;
}

template <class AbstractDescT>
UInt32 AbstractGeoProperty<AbstractDescT>::getClassTypeId()
{
    return _type.getId();
}

template <class AbstractDescT>
UInt16 AbstractGeoProperty<AbstractDescT>::getClassGroupId()
{
    return _type.getGroupId();
}

template <class AbstractDescT>
void AbstractGeoProperty<AbstractDescT>::changed(const BitVector whichField, const UInt32 origin)
{
    if ((whichField & GeoPropDataFieldMask) != 0) {
        tellParents(origin);
    }
    Inherited::changed(whichField, origin);
}

template <class DescT>
FieldDescription** GeoProperty<DescT>::describe()
{
    const FieldAccessFunction access = [](FieldContainer& container) -> Field* {
        return &static_cast<GeoProperty&>(container).m_field;
    };
    static FieldDescription* descriptions[] = {new FieldDescription(StoredFieldType::getClassType(), "geoPropData",
                                                                    Inherited::GeoPropDataFieldId,
                                                                    Inherited::GeoPropDataFieldMask, false, access)};
    return descriptions;
}

template <class DescT>
FieldContainerType GeoProperty<DescT>::_type(
    DescT::getTypeName(), Inherited::getClassType().getCName(), nullptr,
    []() -> FieldContainerPtr { return createEmpty(); }, nullptr, describe(), sizeof(FieldDescription*));

template <class DescT>
FieldContainerType& GeoProperty<DescT>::getClassType()
{
    return _type;
}

template <class DescT>
UInt32 GeoProperty<DescT>::getClassTypeId()
{
    return _type.getId();
}

template <class DescT>
UInt16 GeoProperty<DescT>::getClassGroupId()
{
    return _type.getGroupId();
}

template <class DescT>
FieldContainerType& GeoProperty<DescT>::getType()
{
    return _type;
}

template <class DescT>
const FieldContainerType& GeoProperty<DescT>::getType() const
{
    return _type;
}

template <class DescT>
UInt32 GeoProperty<DescT>::getContainerSize() const
{
    return static_cast<UInt32>(sizeof(GeoProperty));
}

template <class DescT>
typename GeoProperty<DescT>::PtrType GeoProperty<DescT>::create()
{
    const FieldContainerPtr prototype = _type.getPrototype();
    if (prototype == NullFC) {
        return NullFC;
    }
    GeoProperty* const container = new GeoProperty(static_cast<const GeoProperty&>(*prototype));
    return PtrType(ContainerAccess::adopt(container, &*prototype) ? container : nullptr);
}

template <class DescT>
typename GeoProperty<DescT>::PtrType GeoProperty<DescT>::createEmpty()
{
    GeoProperty* const container = new GeoProperty;
    return PtrType(ContainerAccess::adopt(container, nullptr) ? container : nullptr);
}

template <class DescT>
FieldContainerPtr GeoProperty<DescT>::shallowCopy() const
{
    GeoProperty* const container = new GeoProperty(*this);
    return PtrType(ContainerAccess::adopt(container, this) ? container : nullptr);
}

template <class DescT>
typename GeoProperty<DescT>::GenericType GeoProperty<DescT>::getValue(const UInt32 index) const
{
    return GeoPropertyConversion<GenericType, StoredType>::convert(m_field[index]);
}

template <class DescT>
void GeoProperty<DescT>::setValue(const GenericType& value, const UInt32 index)
{
    m_field[index] = GeoPropertyConversion<StoredType, GenericType>::convert(value);
}

template <class DescT>
void GeoProperty<DescT>::addValue(const GenericType& value)
{
    m_field.push_back(GeoPropertyConversion<StoredType, GenericType>::convert(value));
}

template <class DescT>
bool GeoProperty<DescT>::insertValue(const GenericType& value, const UInt32 index)
{
    if (index > m_field.size()) {
        return false;
    }
    m_field.insert(m_field.begin() + index, GeoPropertyConversion<StoredType, GenericType>::convert(value));
    return true;
}

template <class DescT>
void GeoProperty<DescT>::clear()
{
    m_field.clear();
}

template <class DescT>
void GeoProperty<DescT>::resize(const std::size_t newSize)
{
    m_field.resize(newSize);
}

template <class DescT>
UInt32 GeoProperty<DescT>::getSize() const
{
    return m_field.size();
}

template <class DescT>
UInt8* GeoProperty<DescT>::getData() const
{
    // The interface hands out data to write through although the operation is const.
    return m_field.empty() ? nullptr : reinterpret_cast<UInt8*>(const_cast<StoredType*>(m_field.begin()));
}

template <class DescT>
UInt32 GeoProperty<DescT>::getFormat() const
{
    return DescT::Format;
}

template <class DescT>
UInt32 GeoProperty<DescT>::getDimension() const
{
    return DescT::Dimension;
}

template <class DescT>
typename GeoProperty<DescT>::Inherited::PtrType GeoProperty<DescT>::clone()
{
    const PtrType copy = create();
    if (copy != NullFC) { // null after osgExit()
        copy->m_field = m_field;
    }
    return copy;
}

template class AbstractGeoProperty<GeoPTypesPropertyDesc>;
template class AbstractGeoProperty<GeoPLengthsPropertyDesc>;
template class AbstractGeoProperty<GeoIndicesPropertyDesc>;
template class AbstractGeoProperty<GeoPositionsPropertyDesc>;
template class AbstractGeoProperty<GeoNormalsPropertyDesc>;
template class AbstractGeoProperty<GeoColorsPropertyDesc>;
template class AbstractGeoProperty<GeoTexCoordsPropertyDesc>;

template class GeoProperty<GeoPTypesUI8PropertyDesc>;
template class GeoProperty<GeoPLengthsUI8PropertyDesc>;
template class GeoProperty<GeoPLengthsUI16PropertyDesc>;
template class GeoProperty<GeoPLengthsUI32PropertyDesc>;
template class GeoProperty<GeoIndicesUI16PropertyDesc>;
template class GeoProperty<GeoIndicesUI32PropertyDesc>;
template class GeoProperty<GeoPositions3dPropertyDesc>;
template class GeoProperty<GeoPositions3fPropertyDesc>;
template class GeoProperty<GeoNormals3fPropertyDesc>;
template class GeoProperty<GeoColors3fPropertyDesc>;
template class GeoProperty<GeoColors4fPropertyDesc>;
template class GeoProperty<GeoTexCoords2fPropertyDesc>;

} // namespace osg
