// SPDX-License-Identifier: MIT
#pragma once

#include <OpenSG/OSGBlendChunk.h>
#include <OpenSG/OSGChunkMaterial.h>
#include <OpenSG/OSGMaterialChunk.h>
#include <OpenSG/OSGSFBaseTypes.h>
#include <OpenSG/OSGSFSysTypes.h>
#include <OpenSG/OSGSimpleMaterialFields.h>

namespace osg {

/**
 * A material made of a few colours, and of chunks that are added to it.
 *
 * Keeps a MaterialChunk and a BlendChunk for itself, made at the first end of an edit. An added chunk of the same
 * class is used instead of them.
 */
class OSG_SYSTEM_DLLMAPPING SimpleMaterial : public ChunkMaterial {
public:
    typedef ChunkMaterial Inherited;
    typedef SimpleMaterialPtr Ptr;

    enum : UInt32 {
        AmbientFieldId = Inherited::NextFieldId,
        DiffuseFieldId,
        SpecularFieldId,
        ShininessFieldId,
        EmissionFieldId,
        TransparencyFieldId,
        LitFieldId,
        ColorMaterialFieldId,
        HostReservedFieldId,
        HostOptionFieldId,
        NextFieldId
    };
    static constexpr BitVector AmbientFieldMask = BitVector(1) << AmbientFieldId;
    static constexpr BitVector DiffuseFieldMask = BitVector(1) << DiffuseFieldId;
    static constexpr BitVector SpecularFieldMask = BitVector(1) << SpecularFieldId;
    static constexpr BitVector ShininessFieldMask = BitVector(1) << ShininessFieldId;
    static constexpr BitVector EmissionFieldMask = BitVector(1) << EmissionFieldId;
    static constexpr BitVector TransparencyFieldMask = BitVector(1) << TransparencyFieldId;
    static constexpr BitVector LitFieldMask = BitVector(1) << LitFieldId;
    static constexpr BitVector ColorMaterialFieldMask = BitVector(1) << ColorMaterialFieldId;
    static constexpr BitVector HostReservedFieldMask = BitVector(1) << HostReservedFieldId;
    static constexpr BitVector HostOptionFieldMask = BitVector(1) << HostOptionFieldId;

    OSG_FIELD_CONTAINER_DECL(SimpleMaterialPtr)

    const Color3f& getAmbient() const { return m_sfAmbient.getValue(); }
    void setAmbient(const Color3f& ambient) { m_sfAmbient.setValue(ambient); }
    const SFColor3f* getSFAmbient() const { return &m_sfAmbient; }
    SFColor3f* editSFAmbient() { return &m_sfAmbient; }

    const Color3f& getDiffuse() const { return m_sfDiffuse.getValue(); }
    void setDiffuse(const Color3f& diffuse) { m_sfDiffuse.setValue(diffuse); }
    const SFColor3f* getSFDiffuse() const { return &m_sfDiffuse; }
    SFColor3f* editSFDiffuse() { return &m_sfDiffuse; }

    const Color3f& getSpecular() const { return m_sfSpecular.getValue(); }
    void setSpecular(const Color3f& specular) { m_sfSpecular.setValue(specular); }
    const SFColor3f* getSFSpecular() const { return &m_sfSpecular; }
    SFColor3f* editSFSpecular() { return &m_sfSpecular; }

    Real32 getShininess() const { return m_sfShininess.getValue(); }
    void setShininess(Real32 shininess) { m_sfShininess.setValue(shininess); }
    const SFReal32* getSFShininess() const { return &m_sfShininess; }
    SFReal32* editSFShininess() { return &m_sfShininess; }

    const Color3f& getEmission() const { return m_sfEmission.getValue(); }
    void setEmission(const Color3f& emission) { m_sfEmission.setValue(emission); }
    const SFColor3f* getSFEmission() const { return &m_sfEmission; }
    SFColor3f* editSFEmission() { return &m_sfEmission; }

    /// Zero is opaque, one invisible.
    Real32 getTransparency() const { return m_sfTransparency.getValue(); }
    void setTransparency(Real32 transparency) { m_sfTransparency.setValue(transparency); }
    const SFReal32* getSFTransparency() const { return &m_sfTransparency; }
    SFReal32* editSFTransparency() { return &m_sfTransparency; }

    bool getLit() const { return m_sfLit.getValue(); }
    void setLit(bool lit) { m_sfLit.setValue(lit); }
    const SFBool* getSFLit() const { return &m_sfLit; }
    SFBool* editSFLit() { return &m_sfLit; }

    GLenum getColorMaterial() const { return m_sfColorMaterial.getValue(); }
    void setColorMaterial(GLenum colorMaterial) { m_sfColorMaterial.setValue(colorMaterial); }
    const SFGLenum* getSFColorMaterial() const { return &m_sfColorMaterial; }
    SFGLenum* editSFColorMaterial() { return &m_sfColorMaterial; }

    /// For the host alone; nothing here reads it.
    UInt32 getHostReserved() const { return m_sfHostReserved.getValue(); }
    void setHostReserved(UInt32 hostReserved) { m_sfHostReserved.setValue(hostReserved); }
    const SFUInt32* getSFHostReserved() const { return &m_sfHostReserved; }
    SFUInt32* editSFHostReserved() { return &m_sfHostReserved; }

    /// For the host alone; nothing here reads it.
    bool getHostOption() const { return m_sfHostOption.getValue(); }
    void setHostOption(bool hostOption) { m_sfHostOption.setValue(hostOption); }
    const SFBool* getSFHostOption() const { return &m_sfHostOption; }
    SFBool* editSFHostOption() { return &m_sfHostOption; }

    StatePtr makeState() override;
    void rebuildState() override;
    bool isTransparent() const override;

protected:
    SimpleMaterial() = default;
    SimpleMaterial(const SimpleMaterial& source)
        : Inherited(source)
        , m_sfAmbient(source.m_sfAmbient)
        , m_sfDiffuse(source.m_sfDiffuse)
        , m_sfSpecular(source.m_sfSpecular)
        , m_sfShininess(source.m_sfShininess)
        , m_sfEmission(source.m_sfEmission)
        , m_sfTransparency(source.m_sfTransparency)
        , m_sfLit(source.m_sfLit)
        , m_sfColorMaterial(source.m_sfColorMaterial)
        , m_sfHostReserved(source.m_sfHostReserved)
        , m_sfHostOption(source.m_sfHostOption)
    {}
    ~SimpleMaterial() override;

    static FieldDescription* _desc[];
    static FieldContainerType _type;

private:
    void updateChunks();
    void fillState(const StatePtr& state);

    // Both referenced.
    MaterialChunkPtr m_materialChunk;
    BlendChunkPtr m_blendChunk;
    SFColor3f m_sfAmbient;
    SFColor3f m_sfDiffuse;
    SFColor3f m_sfSpecular;
    SFReal32 m_sfShininess{1.0F};
    SFColor3f m_sfEmission;
    SFReal32 m_sfTransparency{0.0F};
    SFBool m_sfLit{true};
    SFGLenum m_sfColorMaterial{GL_DIFFUSE};
    SFUInt32 m_sfHostReserved{0U};
    SFBool m_sfHostOption{true};
};

} // namespace osg
