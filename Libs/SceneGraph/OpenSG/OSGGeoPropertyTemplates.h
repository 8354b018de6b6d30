// SPDX-License-Identifier: MIT
#pragma once

#include <OpenSG/OSGAttachment.h>
#include <OpenSG/OSGGL.h>
#include <OpenSG/OSGGeoPropPtrs.h>
#include <OpenSG/OSGMFBaseTypes.h>
#include <OpenSG/OSGMFMathTypes.h>
#include <OpenSG/OSGMFSysTypes.h>

#include <cstddef>

namespace osg {

/**
 * Base of the geometry properties of one kind: types, lengths, indices, positions, normals, colours, coordinates.
 *
 * Reads and writes values of the kind's generic type, whatever type they are stored with. Indices out of range are not
 * checked. A property may be shared by any number of geometries, each of which holds a reference on it; the end of an
 * edit with GeoPropDataFieldMask tells them all.
 */
template <class AbstractDescT>
class OSG_SYSTEM_DLLMAPPING AbstractGeoProperty : public Attachment {
public:
    typedef Attachment Inherited;
    typedef FCPtr<AttachmentPtr, AbstractGeoProperty> PtrType;
    typedef PtrType Ptr;
    typedef typename AbstractDescT::GenericType GenericType;

    enum : UInt32 { GeoPropDataFieldId = Inherited::NextFieldId, NextFieldId };
    static constexpr BitVector GeoPropDataFieldMask = BitVector(1) << GeoPropDataFieldId;

    static FieldContainerType& getClassType();
    static UInt32 getClassTypeId();
    static UInt16 getClassGroupId();

    virtual GenericType getValue(UInt32 index) const = 0;
    void getValue(GenericType& value, const UInt32 index) const { value = getValue(index); }
    /// The value first, then its index.
    virtual void setValue(const GenericType& value, UInt32 index) = 0;
    virtual void addValue(const GenericType& value) = 0;
    void push_back(const GenericType& value) { addValue(value); }
    /// False, and nothing inserted, when @p index is larger than the size.
    virtual bool insertValue(const GenericType& value, UInt32 index) = 0;
    virtual void clear() = 0;
    virtual void resize(std::size_t newSize) = 0;
    virtual UInt32 getSize() const = 0;
    UInt32 size() const { return getSize(); }

    /// The values as they are stored, null when there are none.
    virtual UInt8* getData() const = 0;
    /// The GL enumerator of the numbers that values are stored with, and how many of them make a value.
    virtual UInt32 getFormat() const = 0;
    virtual UInt32 getDimension() const = 0;

    /// A new property with the same values; the count is zero.
    virtual PtrType clone() = 0;

    /// Tells the geometries when GeoPropDataFieldMask is in @p whichField.
    void changed(BitVector whichField, UInt32 origin) override;

protected:
    AbstractGeoProperty() = default;
    AbstractGeoProperty(const AbstractGeoProperty& source)
        : Inherited(source)
    {}

    static FieldContainerType _type;
};

/// Turns stored values into those of the generic type and back.
template <class TargetT, class SourceT>
struct GeoPropertyConversion {
    static TargetT convert(const SourceT& value) { return static_cast<TargetT>(value); }
};
template <class ValueT>
struct GeoPropertyConversion<ValueT, ValueT> {
    static const ValueT& convert(const ValueT& value) { return value; }
};
template <>
struct GeoPropertyConversion<Color3f, Color4f> {
    static Color3f convert(const Color4f& value) { return Color3f(value.red(), value.green(), value.blue()); }
};
/// The generic type has no alpha: such colours become opaque.
template <>
struct GeoPropertyConversion<Color4f, Color3f> {
    static Color4f convert(const Color3f& value) { return Color4f(value.red(), value.green(), value.blue(), 1.0F); }
};

/// A geometry property with the type that its values are stored with.
template <class DescT>
class OSG_SYSTEM_DLLMAPPING GeoProperty : public DescT::Inherited {
public:
    typedef typename DescT::Inherited Inherited;
    typedef FCPtr<typename Inherited::PtrType, GeoProperty> PtrType;
    typedef PtrType Ptr;
    typedef typename DescT::StoredFieldType StoredFieldType;
    typedef typename StoredFieldType::StoredType StoredType;
    typedef typename Inherited::GenericType GenericType;

    static FieldContainerType& getClassType();
    static UInt32 getClassTypeId();
    static UInt16 getClassGroupId();
    FieldContainerType& getType() override;
    const FieldContainerType& getType() const override;
    UInt32 getContainerSize() const override;
    static PtrType create();
    static PtrType createEmpty();
    FieldContainerPtr shallowCopy() const override;

    using Inherited::getValue;
    GenericType getValue(UInt32 index) const override;
    void setValue(const GenericType& value, UInt32 index) override;
    void addValue(const GenericType& value) override;
    bool insertValue(const GenericType& value, UInt32 index) override;
    void clear() override;
    void resize(std::size_t newSize) override;
    UInt32 getSize() const override;
    UInt8* getData() const override;
    UInt32 getFormat() const override;
    UInt32 getDimension() const override;
    typename Inherited::PtrType clone() override;

    using FieldContainer::getField;
    StoredFieldType& getField() { return m_field; }
    const StoredFieldType& getField() const { return m_field; }
    StoredFieldType* getFieldPtr() { return &m_field; }
    const StoredFieldType* getFieldPtr() const { return &m_field; }
    StoredFieldType& editField() { return m_field; }
    StoredFieldType* editFieldPtr() { return &m_field; }

protected:
    GeoProperty() = default;
    GeoProperty(const GeoProperty& source)
        : Inherited(source)
        , m_field(source.m_field)
    {}

    static FieldContainerType _type;

private:
    static FieldDescription** describe();

    StoredFieldType m_field;
};

extern template class AbstractGeoProperty<GeoPTypesPropertyDesc>;
extern template class AbstractGeoProperty<GeoPLengthsPropertyDesc>;
extern template class AbstractGeoProperty<GeoIndicesPropertyDesc>;
extern template class AbstractGeoProperty<GeoPositionsPropertyDesc>;
extern template class AbstractGeoProperty<GeoNormalsPropertyDesc>;
extern template class AbstractGeoProperty<GeoColorsPropertyDesc>;
extern template class AbstractGeoProperty<GeoTexCoordsPropertyDesc>;

} // namespace osg
