// SPDX-License-Identifier: MIT
#include <OpenSG/OSGGeometry.h>

#include <OpenSG/OSGGeoProperty.h>
#include <OpenSG/OSGMaterial.h>

#include <algorithm>

namespace osg {

struct Geometry::RareFields {
    SFGeoColorsPtr secondaryColors;
    SFGeoTexCoordsPtr texCoords1;
    SFGeoTexCoordsPtr texCoords2;
    SFGeoTexCoordsPtr texCoords3;
    SFGeoTexCoordsPtr texCoords4;
    SFGeoTexCoordsPtr texCoords5;
    SFGeoTexCoordsPtr texCoords6;
    SFGeoTexCoordsPtr texCoords7;
    UInt32 secondaryColorsSlot = 0;
    UInt32 texCoords1Slot = 0;
    UInt32 texCoords2Slot = 0;
    UInt32 texCoords3Slot = 0;
    UInt32 texCoords4Slot = 0;
    UInt32 texCoords5Slot = 0;
    UInt32 texCoords6Slot = 0;
    UInt32 texCoords7Slot = 0;
    MFUInt16 indexMapping;
    SFInt32 glId{0};
    SFInt32 ignoreGLForAspect{-1};
    SFUInt32 minindex{0U};
    SFUInt32 maxindex{0U};
    SFUInt32 lowindices{0U};
    SFUInt32 highindices{0U};
};

FieldDescription* Geometry::_desc[] = {
    describeField<&Geometry::m_sfTypes>("types", TypesFieldId),
    describeField<&Geometry::m_sfLengths>("lengths", LengthsFieldId),
    describeField<&Geometry::m_sfPositions>("positions", PositionsFieldId),
    describeField<&Geometry::m_sfNormals>("normals", NormalsFieldId),
    describeField<&Geometry::m_sfColors>("colors", ColorsFieldId),
    new FieldDescription(SFGeoColorsPtr::getClassType(), "secondaryColors", SecondaryColorsFieldId,
                         SecondaryColorsFieldMask, false,
                         [](FieldContainer& container) -> Field* {
                             return &static_cast<Geometry&>(container).editRareFields().secondaryColors;
                         }),
    describeField<&Geometry::m_sfTexCoords>("texCoords", TexCoordsFieldId),
    new FieldDescription(SFGeoTexCoordsPtr::getClassType(), "texCoords1", TexCoords1FieldId, TexCoords1FieldMask, false,
                         [](FieldContainer& container) -> Field* {
                             return &static_cast<Geometry&>(container).editRareFields().texCoords1;
                         }),
    new FieldDescription(SFGeoTexCoordsPtr::getClassType(), "texCoords2", TexCoords2FieldId, TexCoords2FieldMask, false,
                         [](FieldContainer& container) -> Field* {
                             return &static_cast<Geometry&>(container).editRareFields().texCoords2;
                         }),
    new FieldDescription(SFGeoTexCoordsPtr::getClassType(), "texCoords3", TexCoords3FieldId, TexCoords3FieldMask, false,
                         [](FieldContainer& container) -> Field* {
                             return &static_cast<Geometry&>(container).editRareFields().texCoords3;
                         }),
    new FieldDescription(SFGeoTexCoordsPtr::getClassType(), "texCoords4", TexCoords4FieldId, TexCoords4FieldMask, false,
                         [](FieldContainer& container) -> Field* {
                             return &static_cast<Geometry&>(container).editRareFields().texCoords4;
                         }),
    new FieldDescription(SFGeoTexCoordsPtr::getClassType(), "texCoords5", TexCoords5FieldId, TexCoords5FieldMask, false,
                         [](FieldContainer& container) -> Field* {
                             return &static_cast<Geometry&>(container).editRareFields().texCoords5;
                         }),
    new FieldDescription(SFGeoTexCoordsPtr::getClassType(), "texCoords6", TexCoords6FieldId, TexCoords6FieldMask, false,
                         [](FieldContainer& container) -> Field* {
                             return &static_cast<Geometry&>(container).editRareFields().texCoords6;
                         }),
    new FieldDescription(SFGeoTexCoordsPtr::getClassType(), "texCoords7", TexCoords7FieldId, TexCoords7FieldMask, false,
                         [](FieldContainer& container) -> Field* {
                             return &static_cast<Geometry&>(container).editRareFields().texCoords7;
                         }),
    describeField<&Geometry::m_sfIndices>("indices", IndicesFieldId),
    new FieldDescription(MFUInt16::getClassType(), "indexMapping", IndexMappingFieldId, IndexMappingFieldMask, false,
                         [](FieldContainer& container) -> Field* {
                             return &static_cast<Geometry&>(container).editRareFields().indexMapping;
                         }),
    describeField<&Geometry::m_sfDlistCache>("dlistCache", DlistCacheFieldId),
    new FieldDescription(
        SFInt32::getClassType(), "GLId", GLIdFieldId, GLIdFieldMask, false,
        [](FieldContainer& container) -> Field* { return &static_cast<Geometry&>(container).editRareFields().glId; }),
    new FieldDescription(SFInt32::getClassType(), "IgnoreGLForAspect", IgnoreGLForAspectFieldId,
                         IgnoreGLForAspectFieldMask, false,
                         [](FieldContainer& container) -> Field* {
                             return &static_cast<Geometry&>(container).editRareFields().ignoreGLForAspect;
                         }),
    new FieldDescription(SFUInt32::getClassType(), "minindex", MinindexFieldId, MinindexFieldMask, false,
                         [](FieldContainer& container) -> Field* {
                             return &static_cast<Geometry&>(container).editRareFields().minindex;
                         }),
    new FieldDescription(SFUInt32::getClassType(), "maxindex", MaxindexFieldId, MaxindexFieldMask, false,
                         [](FieldContainer& container) -> Field* {
                             return &static_cast<Geometry&>(container).editRareFields().maxindex;
                         }),
    new FieldDescription(SFUInt32::getClassType(), "lowindices", LowindicesFieldId, LowindicesFieldMask, false,
                         [](FieldContainer& container) -> Field* {
                             return &static_cast<Geometry&>(container).editRareFields().lowindices;
                         }),
    new FieldDescription(SFUInt32::getClassType(), "highindices", HighindicesFieldId, HighindicesFieldMask, false,
                         [](FieldContainer& container) -> Field* {
                             return &static_cast<Geometry&>(container).editRareFields().highindices;
                         }),
    describeField<&Geometry::m_sfVbo>("vbo", VboFieldId),
};

FieldContainerType Geometry::_type(
    "Geometry", "MaterialDrawable", nullptr, []() -> FieldContainerPtr { return createEmpty(); }, nullptr, _desc,
    sizeof(_desc));

OSG_FIELD_CONTAINER_INL_DEF(Geometry, GeometryPtr)
OSG_FIELD_CONTAINER_DEF(Geometry, GeometryPtr)

namespace {

/// Unset properties of geometries without rare fields read as this.
template <class HandleT>
const HandleT& nullProperty()
{
    static const HandleT null;
    return null;
}

} // namespace

/// Calls @p operation with field, slot and mask of each property that the geometry has memory for.
template <class OperationT>
void Geometry::forEachProperty(OperationT operation)
{
    operation(m_sfTypes, m_typesSlot, TypesFieldMask);
    operation(m_sfLengths, m_lengthsSlot, LengthsFieldMask);
    operation(m_sfPositions, m_positionsSlot, PositionsFieldMask);
    operation(m_sfNormals, m_normalsSlot, NormalsFieldMask);
    operation(m_sfColors, m_colorsSlot, ColorsFieldMask);
    operation(m_sfTexCoords, m_texCoordsSlot, TexCoordsFieldMask);
    operation(m_sfIndices, m_indicesSlot, IndicesFieldMask);
    if (m_rareFields) {
        RareFields& fields = *m_rareFields;
        operation(fields.secondaryColors, fields.secondaryColorsSlot, SecondaryColorsFieldMask);
        operation(fields.texCoords1, fields.texCoords1Slot, TexCoords1FieldMask);
        operation(fields.texCoords2, fields.texCoords2Slot, TexCoords2FieldMask);
        operation(fields.texCoords3, fields.texCoords3Slot, TexCoords3FieldMask);
        operation(fields.texCoords4, fields.texCoords4Slot, TexCoords4FieldMask);
        operation(fields.texCoords5, fields.texCoords5Slot, TexCoords5FieldMask);
        operation(fields.texCoords6, fields.texCoords6Slot, TexCoords6FieldMask);
        operation(fields.texCoords7, fields.texCoords7Slot, TexCoords7FieldMask);
    }
}

Geometry::RareFields& Geometry::editRareFields()
{
    if (!m_rareFields) {
        m_rareFields = std::make_unique<RareFields>();
    }
    return *m_rareFields;
}

// Here, where the rare fields are known, so that classes can be derived elsewhere.
Geometry::Geometry() = default;

Geometry::Geometry(const Geometry& source)
    : Inherited(source)
    , m_sfTypes(source.m_sfTypes)
    , m_sfLengths(source.m_sfLengths)
    , m_sfPositions(source.m_sfPositions)
    , m_sfNormals(source.m_sfNormals)
    , m_sfColors(source.m_sfColors)
    , m_sfTexCoords(source.m_sfTexCoords)
    , m_sfIndices(source.m_sfIndices)
    , m_sfDlistCache(source.m_sfDlistCache)
    , m_sfVbo(source.m_sfVbo)
{
    if (source.m_rareFields) {
        m_rareFields = std::make_unique<RareFields>(*source.m_rareFields);
    }
    forEachProperty([this](auto& field, UInt32& slot, BitVector) {
        if (field.getValue() != NullFC) {
            addRefCP(field.getValue());
            slot = field.getValue()->addUser(*this);
        }
    });
}

Geometry::~Geometry()
{
    forEachProperty([](auto& field, UInt32& slot, BitVector) {
        auto property = field.getValue();
        if (property != NullFC) {
            property->removeUser(slot);
            endEditCP(property, Attachment::ParentsFieldMask);
            subRefCP(property);
        }
    });
}

template <class FieldT, class HandleT>
void Geometry::setProperty(FieldT& field, UInt32& slot, const HandleT property)
{
    HandleT oldProperty = field.getValue();
    if (property != NullFC) {
        property->makeRoomForUser(); // all that can fail, before anything changes
    }
    addRefCP(property);
    if (oldProperty != NullFC) {
        beginEditCP(oldProperty, Attachment::ParentsFieldMask);
        oldProperty->removeUser(slot);
        endEditCP(oldProperty, Attachment::ParentsFieldMask);
    }
    field.setValue(property);
    if (property != NullFC) {
        beginEditCP(property, Attachment::ParentsFieldMask);
        slot = property->addUser(*this);
        endEditCP(property, Attachment::ParentsFieldMask);
    }
    subRefCP(oldProperty);
}

void Geometry::setTypes(const GeoPTypesPtr& types)
{
    setProperty(m_sfTypes, m_typesSlot, types);
}

void Geometry::setLengths(const GeoPLengthsPtr& lengths)
{
    setProperty(m_sfLengths, m_lengthsSlot, lengths);
}

void Geometry::setPositions(const GeoPositionsPtr& positions)
{
    setProperty(m_sfPositions, m_positionsSlot, positions);
}

void Geometry::setNormals(const GeoNormalsPtr& normals)
{
    setProperty(m_sfNormals, m_normalsSlot, normals);
}

void Geometry::setColors(const GeoColorsPtr& colors)
{
    setProperty(m_sfColors, m_colorsSlot, colors);
}

const GeoColorsPtr& Geometry::getSecondaryColors() const
{
    return m_rareFields ? m_rareFields->secondaryColors.getValue() : nullProperty<GeoColorsPtr>();
}

void Geometry::setSecondaryColors(const GeoColorsPtr& secondaryColors)
{
    RareFields& fields = editRareFields();
    setProperty(fields.secondaryColors, fields.secondaryColorsSlot, secondaryColors);
}

void Geometry::setTexCoords(const GeoTexCoordsPtr& texCoords)
{
    setProperty(m_sfTexCoords, m_texCoordsSlot, texCoords);
}

const GeoTexCoordsPtr& Geometry::getTexCoords1() const
{
    return m_rareFields ? m_rareFields->texCoords1.getValue() : nullProperty<GeoTexCoordsPtr>();
}

void Geometry::setTexCoords1(const GeoTexCoordsPtr& texCoords1)
{
    RareFields& fields = editRareFields();
    setProperty(fields.texCoords1, fields.texCoords1Slot, texCoords1);
}

const GeoTexCoordsPtr& Geometry::getTexCoords2() const
{
    return m_rareFields ? m_rareFields->texCoords2.getValue() : nullProperty<GeoTexCoordsPtr>();
}

void Geometry::setTexCoords2(const GeoTexCoordsPtr& texCoords2)
{
    RareFields& fields = editRareFields();
    setProperty(fields.texCoords2, fields.texCoords2Slot, texCoords2);
}

const GeoTexCoordsPtr& Geometry::getTexCoords3() const
{
    return m_rareFields ? m_rareFields->texCoords3.getValue() : nullProperty<GeoTexCoordsPtr>();
}

void Geometry::setTexCoords3(const GeoTexCoordsPtr& texCoords3)
{
    RareFields& fields = editRareFields();
    setProperty(fields.texCoords3, fields.texCoords3Slot, texCoords3);
}

const GeoTexCoordsPtr& Geometry::getTexCoords4() const
{
    return m_rareFields ? m_rareFields->texCoords4.getValue() : nullProperty<GeoTexCoordsPtr>();
}

void Geometry::setTexCoords4(const GeoTexCoordsPtr& texCoords4)
{
    RareFields& fields = editRareFields();
    setProperty(fields.texCoords4, fields.texCoords4Slot, texCoords4);
}

const GeoTexCoordsPtr& Geometry::getTexCoords5() const
{
    return m_rareFields ? m_rareFields->texCoords5.getValue() : nullProperty<GeoTexCoordsPtr>();
}

void Geometry::setTexCoords5(const GeoTexCoordsPtr& texCoords5)
{
    RareFields& fields = editRareFields();
    setProperty(fields.texCoords5, fields.texCoords5Slot, texCoords5);
}

const GeoTexCoordsPtr& Geometry::getTexCoords6() const
{
    return m_rareFields ? m_rareFields->texCoords6.getValue() : nullProperty<GeoTexCoordsPtr>();
}

void Geometry::setTexCoords6(const GeoTexCoordsPtr& texCoords6)
{
    RareFields& fields = editRareFields();
    setProperty(fields.texCoords6, fields.texCoords6Slot, texCoords6);
}

const GeoTexCoordsPtr& Geometry::getTexCoords7() const
{
    return m_rareFields ? m_rareFields->texCoords7.getValue() : nullProperty<GeoTexCoordsPtr>();
}

void Geometry::setTexCoords7(const GeoTexCoordsPtr& texCoords7)
{
    RareFields& fields = editRareFields();
    setProperty(fields.texCoords7, fields.texCoords7Slot, texCoords7);
}

void Geometry::setIndices(const GeoIndicesPtr& indices)
{
    setProperty(m_sfIndices, m_indicesSlot, indices);
}

const MFUInt16* Geometry::getMFIndexMapping() const
{
    static const MFUInt16 none;
    return m_rareFields ? &m_rareFields->indexMapping : &none;
}

MFUInt16* Geometry::editMFIndexMapping()
{
    return &editRareFields().indexMapping;
}

GeometryPtr Geometry::clone()
{
    const GeometryPtr copy = GeometryPtr::dcast(shallowCopy());
    if (copy == NullFC) {
        return copy;
    }
    copy->forEachProperty([&copy](auto& field, UInt32& slot, BitVector) {
        if (field.getValue() != NullFC) {
            copy->setProperty(field, slot, field.getValue()->clone());
        }
    });
    endEditCP(copy);
    return copy;
}

void Geometry::changed(const BitVector whichField, const UInt32 origin)
{
    if ((whichField & PositionsFieldMask) != 0) {
        m_boundsEmpty = true;
        invalidateVolume();
    }
    Inherited::changed(whichField, origin);
}

// Only points of primitives count: a geometry without types has no extent, whatever positions it has.
void Geometry::computeBounds(BoxVolume& bounds) const
{
    const GeoPositionsPtr positions = getPositions();
    const GeoPTypesPtr types = getTypes();
    if (positions == NullFC || types == NullFC) {
        return;
    }
    const GeoPLengthsPtr lengths = getLengths();
    const GeoIndicesPtr indices = getIndices();
    const UInt32 positionCount = positions->getSize();

    // With an index mapping each vertex has one index for each group of properties.
    constexpr UInt16 mapPosition = 1;
    const MFUInt16& mapping = *getMFIndexMapping();
    const UInt32 stride = mapping.empty() ? 1 : mapping.size();
    UInt32 offset = mapping.size();
    while (offset > 0 && (mapping[offset - 1] & mapPosition) == 0) {
        --offset;
    }
    offset = offset > 0 ? offset - 1 : 0;

    const UInt32 vertexCount = (indices != NullFC ? indices->getSize() : positionCount) / stride;
    UInt32 vertex = 0;
    for (UInt32 primitive = 0; primitive < types->getSize(); ++primitive) {
        UInt32 length = vertexCount;
        if (lengths != NullFC) {
            length = primitive < lengths->getSize() ? lengths->getValue(primitive) : 0;
        }
        const UInt32 end = vertex + std::min(length, vertexCount - vertex);
        for (; vertex < end; ++vertex) {
            const UInt32 index = indices != NullFC ? indices->getValue(vertex * stride + offset) : vertex;
            if (index < positionCount) {
                bounds.extendBy(positions->getValue(index));
            }
        }
    }
}

void Geometry::adjustVolume(Volume& volume)
{
    if (m_boundsEmpty) {
        BoxVolume bounds;
        computeBounds(bounds);
        m_boundsEmpty = bounds.isEmpty();
        bounds.getBounds(m_boundsMin, m_boundsMax);
    }
    if (!m_boundsEmpty) {
        volume.extendBy(m_boundsMin);
        volume.extendBy(m_boundsMax);
    }
}

void Geometry::attachmentChanged(const Attachment& attachment, const UInt32 origin)
{
    BitVector fields = 0;
    forEachProperty([&](auto& field, UInt32&, const BitVector mask) {
        if (field.getValue().operator->() == &attachment) {
            fields |= mask;
        }
    });
    if (fields != 0) {
        changed(fields, origin);
    }
    Inherited::attachmentChanged(attachment, origin);
}

void Geometry::attachmentMoved(const Attachment& attachment, const UInt32 oldSlot, const UInt32 newSlot)
{
    bool found = false;
    forEachProperty([&](auto& field, UInt32& slot, BitVector) {
        if (!found && slot == oldSlot && field.getValue().operator->() == &attachment) {
            slot = newSlot;
            found = true;
        }
    });
    if (!found) {
        Inherited::attachmentMoved(attachment, oldSlot, newSlot);
    }
}

} // namespace osg
