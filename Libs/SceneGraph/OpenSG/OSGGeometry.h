// SPDX-License-Identifier: MIT
#pragma once

#include <OpenSG/OSGBoxVolume.h>
#include <OpenSG/OSGGeoPropPtrs.h>
#include <OpenSG/OSGGeometryFields.h>
#include <OpenSG/OSGMFSysTypes.h>
#include <OpenSG/OSGMaterialDrawable.h>

#include <memory>

namespace osg {

/**
 * A core made of primitives: points, lines, triangles and so on.
 *
 * Types and lengths say which primitives there are, the indices which vertices they use, the other properties what
 * the vertices are like. Each property that is set is referenced and knows the geometry as a parent.
 *
 * Its bounding box is that of the vertices of its primitives; positions that none of them uses do not count.
 * Remembers that box until the end of an edit with PositionsFieldMask, or of an edit of the positions.
 */
class OSG_SYSTEM_DLLMAPPING Geometry : public MaterialDrawable {
public:
    typedef MaterialDrawable Inherited;
    typedef GeometryPtr Ptr;

    enum : UInt32 {
        TypesFieldId = Inherited::NextFieldId,
        LengthsFieldId,
        PositionsFieldId,
        NormalsFieldId,
        ColorsFieldId,
        SecondaryColorsFieldId,
        TexCoordsFieldId,
        TexCoords1FieldId,
        TexCoords2FieldId,
        TexCoords3FieldId,
        TexCoords4FieldId,
        TexCoords5FieldId,
        TexCoords6FieldId,
        TexCoords7FieldId,
        IndicesFieldId,
        IndexMappingFieldId,
        DlistCacheFieldId,
        GLIdFieldId,
        IgnoreGLForAspectFieldId,
        MinindexFieldId,
        MaxindexFieldId,
        LowindicesFieldId,
        HighindicesFieldId,
        VboFieldId,
        NextFieldId
    };
    static constexpr BitVector TypesFieldMask = BitVector(1) << TypesFieldId;
    static constexpr BitVector LengthsFieldMask = BitVector(1) << LengthsFieldId;
    static constexpr BitVector PositionsFieldMask = BitVector(1) << PositionsFieldId;
    static constexpr BitVector NormalsFieldMask = BitVector(1) << NormalsFieldId;
    static constexpr BitVector ColorsFieldMask = BitVector(1) << ColorsFieldId;
    static constexpr BitVector SecondaryColorsFieldMask = BitVector(1) << SecondaryColorsFieldId;
    static constexpr BitVector TexCoordsFieldMask = BitVector(1) << TexCoordsFieldId;
    static constexpr BitVector TexCoords1FieldMask = BitVector(1) << TexCoords1FieldId;
    static constexpr BitVector TexCoords2FieldMask = BitVector(1) << TexCoords2FieldId;
    static constexpr BitVector TexCoords3FieldMask = BitVector(1) << TexCoords3FieldId;
    static constexpr BitVector TexCoords4FieldMask = BitVector(1) << TexCoords4FieldId;
    static constexpr BitVector TexCoords5FieldMask = BitVector(1) << TexCoords5FieldId;
    static constexpr BitVector TexCoords6FieldMask = BitVector(1) << TexCoords6FieldId;
    static constexpr BitVector TexCoords7FieldMask = BitVector(1) << TexCoords7FieldId;
    static constexpr BitVector IndicesFieldMask = BitVector(1) << IndicesFieldId;
    static constexpr BitVector IndexMappingFieldMask = BitVector(1) << IndexMappingFieldId;
    static constexpr BitVector DlistCacheFieldMask = BitVector(1) << DlistCacheFieldId;
    static constexpr BitVector GLIdFieldMask = BitVector(1) << GLIdFieldId;
    static constexpr BitVector IgnoreGLForAspectFieldMask = BitVector(1) << IgnoreGLForAspectFieldId;
    static constexpr BitVector MinindexFieldMask = BitVector(1) << MinindexFieldId;
    static constexpr BitVector MaxindexFieldMask = BitVector(1) << MaxindexFieldId;
    static constexpr BitVector LowindicesFieldMask = BitVector(1) << LowindicesFieldId;
    static constexpr BitVector HighindicesFieldMask = BitVector(1) << HighindicesFieldId;
    static constexpr BitVector VboFieldMask = BitVector(1) << VboFieldId;

    OSG_FIELD_CONTAINER_DECL(GeometryPtr)

    // Setters: the new property is referenced before the old one is released; null is allowed.
    const GeoPTypesPtr& getTypes() const { return m_sfTypes.getValue(); }
    void setTypes(const GeoPTypesPtr& types);
    const GeoPLengthsPtr& getLengths() const { return m_sfLengths.getValue(); }
    void setLengths(const GeoPLengthsPtr& lengths);
    const GeoPositionsPtr& getPositions() const { return m_sfPositions.getValue(); }
    void setPositions(const GeoPositionsPtr& positions);
    const GeoNormalsPtr& getNormals() const { return m_sfNormals.getValue(); }
    void setNormals(const GeoNormalsPtr& normals);
    const GeoColorsPtr& getColors() const { return m_sfColors.getValue(); }
    void setColors(const GeoColorsPtr& colors);
    const GeoColorsPtr& getSecondaryColors() const;
    void setSecondaryColors(const GeoColorsPtr& secondaryColors);
    const GeoTexCoordsPtr& getTexCoords() const { return m_sfTexCoords.getValue(); }
    void setTexCoords(const GeoTexCoordsPtr& texCoords);
    const GeoTexCoordsPtr& getTexCoords1() const;
    void setTexCoords1(const GeoTexCoordsPtr& texCoords1);
    const GeoTexCoordsPtr& getTexCoords2() const;
    void setTexCoords2(const GeoTexCoordsPtr& texCoords2);
    const GeoTexCoordsPtr& getTexCoords3() const;
    void setTexCoords3(const GeoTexCoordsPtr& texCoords3);
    const GeoTexCoordsPtr& getTexCoords4() const;
    void setTexCoords4(const GeoTexCoordsPtr& texCoords4);
    const GeoTexCoordsPtr& getTexCoords5() const;
    void setTexCoords5(const GeoTexCoordsPtr& texCoords5);
    const GeoTexCoordsPtr& getTexCoords6() const;
    void setTexCoords6(const GeoTexCoordsPtr& texCoords6);
    const GeoTexCoordsPtr& getTexCoords7() const;
    void setTexCoords7(const GeoTexCoordsPtr& texCoords7);
    const GeoIndicesPtr& getIndices() const { return m_sfIndices.getValue(); }
    void setIndices(const GeoIndicesPtr& indices);

    const MFUInt16* getMFIndexMapping() const;
    MFUInt16* editMFIndexMapping();

    // Hints for a renderer with display lists or buffers; nothing here reads them.
    bool getDlistCache() const { return m_sfDlistCache.getValue(); }
    void setDlistCache(bool dlistCache) { m_sfDlistCache.setValue(dlistCache); }
    bool getVbo() const { return m_sfVbo.getValue(); }
    void setVbo(bool vbo) { m_sfVbo.setValue(vbo); }

    /// A geometry with copies of the properties and the same material; the count is zero.
    GeometryPtr clone();

    void changed(BitVector whichField, UInt32 origin) override;

protected:
    Geometry();
    /// The copy shares the properties.
    Geometry(const Geometry& source);
    ~Geometry() override;

    void adjustVolume(Volume& volume) override;
    void attachmentChanged(const Attachment& attachment, UInt32 origin) override;
    void attachmentMoved(const Attachment& attachment, UInt32 oldSlot, UInt32 newSlot) override;

    static FieldDescription* _desc[];
    static FieldContainerType _type;

private:
    /// What hardly any geometry uses, made when it is first asked for.
    struct RareFields;

    template <class OperationT>
    void forEachProperty(OperationT operation);
    template <class FieldT, class HandleT>
    void setProperty(FieldT& field, UInt32& slot, HandleT property);
    RareFields& editRareFields();
    void computeBounds(BoxVolume& bounds) const;

    SFGeoPTypesPtr m_sfTypes;
    SFGeoPLengthsPtr m_sfLengths;
    SFGeoPositionsPtr m_sfPositions;
    SFGeoNormalsPtr m_sfNormals;
    SFGeoColorsPtr m_sfColors;
    SFGeoTexCoordsPtr m_sfTexCoords;
    SFGeoIndicesPtr m_sfIndices;
    UInt32 m_typesSlot = 0;
    UInt32 m_lengthsSlot = 0;
    UInt32 m_positionsSlot = 0;
    UInt32 m_normalsSlot = 0;
    UInt32 m_colorsSlot = 0;
    UInt32 m_texCoordsSlot = 0;
    UInt32 m_indicesSlot = 0;
    SFBool m_sfDlistCache{true};
    SFBool m_sfVbo{false};
    /// Also while the box is not known: an empty one is computed again.
    bool m_boundsEmpty = true;
    Pnt3f m_boundsMin;
    Pnt3f m_boundsMax;
    std::unique_ptr<RareFields> m_rareFields;
};

} // namespace osg
