// SPDX-License-Identifier: MIT
#pragma once

#include <OpenSG/OSGMaterialChunkFields.h>
#include <OpenSG/OSGSFBaseTypes.h>
#include <OpenSG/OSGSFSysTypes.h>
#include <OpenSG/OSGStateChunk.h>

namespace osg {

/// The colours of the lit surface; simple materials keep one for themselves.
class OSG_SYSTEM_DLLMAPPING MaterialChunk : public StateChunk {
public:
    typedef StateChunk Inherited;
    typedef MaterialChunkPtr Ptr;

    enum : UInt32 {
        DiffuseFieldId = Inherited::NextFieldId,
        AmbientFieldId,
        SpecularFieldId,
        EmissionFieldId,
        ShininessFieldId,
        LitFieldId,
        ColorMaterialFieldId,
        NextFieldId
    };
    static constexpr BitVector DiffuseFieldMask = BitVector(1) << DiffuseFieldId;
    static constexpr BitVector AmbientFieldMask = BitVector(1) << AmbientFieldId;
    static constexpr BitVector SpecularFieldMask = BitVector(1) << SpecularFieldId;
    static constexpr BitVector EmissionFieldMask = BitVector(1) << EmissionFieldId;
    static constexpr BitVector ShininessFieldMask = BitVector(1) << ShininessFieldId;
    static constexpr BitVector LitFieldMask = BitVector(1) << LitFieldId;
    static constexpr BitVector ColorMaterialFieldMask = BitVector(1) << ColorMaterialFieldId;

    OSG_FIELD_CONTAINER_DECL(MaterialChunkPtr)

    const Color4f& getDiffuse() const { return m_sfDiffuse.getValue(); }
    void setDiffuse(const Color4f& diffuse) { m_sfDiffuse.setValue(diffuse); }
    const SFColor4f* getSFDiffuse() const { return &m_sfDiffuse; }
    SFColor4f* editSFDiffuse() { return &m_sfDiffuse; }

    const Color4f& getAmbient() const { return m_sfAmbient.getValue(); }
    void setAmbient(const Color4f& ambient) { m_sfAmbient.setValue(ambient); }
    const SFColor4f* getSFAmbient() const { return &m_sfAmbient; }
    SFColor4f* editSFAmbient() { return &m_sfAmbient; }

    const Color4f& getSpecular() const { return m_sfSpecular.getValue(); }
    void setSpecular(const Color4f& specular) { m_sfSpecular.setValue(specular); }
    const SFColor4f* getSFSpecular() const { return &m_sfSpecular; }
    SFColor4f* editSFSpecular() { return &m_sfSpecular; }

    const Color4f& getEmission() const { return m_sfEmission.getValue(); }
    void setEmission(const Color4f& emission) { m_sfEmission.setValue(emission); }
    const SFColor4f* getSFEmission() const { return &m_sfEmission; }
    SFColor4f* editSFEmission() { return &m_sfEmission; }

    Real32 getShininess() const { return m_sfShininess.getValue(); }
    void setShininess(Real32 shininess) { m_sfShininess.setValue(shininess); }
    const SFReal32* getSFShininess() const { return &m_sfShininess; }
    SFReal32* editSFShininess() { return &m_sfShininess; }

    bool getLit() const { return m_sfLit.getValue(); }
    void setLit(bool lit) { m_sfLit.setValue(lit); }
    const SFBool* getSFLit() const { return &m_sfLit; }
    SFBool* editSFLit() { return &m_sfLit; }

    GLenum getColorMaterial() const { return m_sfColorMaterial.getValue(); }
    void setColorMaterial(GLenum colorMaterial) { m_sfColorMaterial.setValue(colorMaterial); }
    const SFGLenum* getSFColorMaterial() const { return &m_sfColorMaterial; }
    SFGLenum* editSFColorMaterial() { return &m_sfColorMaterial; }

    const StateChunkClass* getClass() const override;
    bool isTransparent() const override;

protected:
    MaterialChunk() = default;
    MaterialChunk(const MaterialChunk& source)
        : Inherited(source)
        , m_sfDiffuse(source.m_sfDiffuse)
        , m_sfAmbient(source.m_sfAmbient)
        , m_sfSpecular(source.m_sfSpecular)
        , m_sfEmission(source.m_sfEmission)
        , m_sfShininess(source.m_sfShininess)
        , m_sfLit(source.m_sfLit)
        , m_sfColorMaterial(source.m_sfColorMaterial)
    {}
    ~MaterialChunk() override;

    static FieldDescription* _desc[];
    static FieldContainerType _type;

private:
    SFColor4f m_sfDiffuse{Color4f(1, 1, 1, 0)};
    SFColor4f m_sfAmbient{Color4f(0.2F, 0.2F, 0.2F, 0)};
    SFColor4f m_sfSpecular{Color4f(0.5F, 0.5F, 0.5F, 0)};
    SFColor4f m_sfEmission;
    SFReal32 m_sfShininess{10.0F};
    SFBool m_sfLit{true};
    SFGLenum m_sfColorMaterial{GL_NONE};
};

} // namespace osg
