// SPDX-License-Identifier: MIT
#pragma once

#include <OpenSG/OSGGroup.h>
#include <OpenSG/OSGLightFields.h>
#include <OpenSG/OSGSFBaseTypes.h>
#include <OpenSG/OSGSFSysTypes.h>

namespace osg {

/// Base of the lights, which shine on what is below their node.
class OSG_SYSTEM_DLLMAPPING Light : public Group {
public:
    typedef Group Inherited;
    typedef LightPtr Ptr;

    enum : UInt32 {
        AmbientFieldId = Inherited::NextFieldId,
        DiffuseFieldId,
        SpecularFieldId,
        BeaconFieldId,
        OnFieldId,
        ConstantAttenuationFieldId,
        LinearAttenuationFieldId,
        QuadraticAttenuationFieldId,
        NextFieldId
    };
    static constexpr BitVector AmbientFieldMask = BitVector(1) << AmbientFieldId;
    static constexpr BitVector DiffuseFieldMask = BitVector(1) << DiffuseFieldId;
    static constexpr BitVector SpecularFieldMask = BitVector(1) << SpecularFieldId;
    static constexpr BitVector BeaconFieldMask = BitVector(1) << BeaconFieldId;
    static constexpr BitVector OnFieldMask = BitVector(1) << OnFieldId;
    static constexpr BitVector ConstantAttenuationFieldMask = BitVector(1) << ConstantAttenuationFieldId;
    static constexpr BitVector LinearAttenuationFieldMask = BitVector(1) << LinearAttenuationFieldId;
    static constexpr BitVector QuadraticAttenuationFieldMask = BitVector(1) << QuadraticAttenuationFieldId;

    OSG_ABSTR_FIELD_CONTAINER_DECL(LightPtr)

    const Color4f& getAmbient() const { return m_sfAmbient.getValue(); }
    void setAmbient(const Color4f& ambient) { m_sfAmbient.setValue(ambient); }
    const SFColor4f* getSFAmbient() const { return &m_sfAmbient; }
    SFColor4f* editSFAmbient() { return &m_sfAmbient; }

    const Color4f& getDiffuse() const { return m_sfDiffuse.getValue(); }
    void setDiffuse(const Color4f& diffuse) { m_sfDiffuse.setValue(diffuse); }
    const SFColor4f* getSFDiffuse() const { return &m_sfDiffuse; }
    SFColor4f* editSFDiffuse() { return &m_sfDiffuse; }

    const Color4f& getSpecular() const { return m_sfSpecular.getValue(); }
    void setSpecular(const Color4f& specular) { m_sfSpecular.setValue(specular); }
    const SFColor4f* getSFSpecular() const { return &m_sfSpecular; }
    SFColor4f* editSFSpecular() { return &m_sfSpecular; }

    /// The node in whose space the light is placed; null for world space. Not referenced.
    const NodePtr& getBeacon() const { return m_sfBeacon.getValue(); }
    void setBeacon(const NodePtr& beacon) { m_sfBeacon.setValue(beacon); }
    const SFNodePtr* getSFBeacon() const { return &m_sfBeacon; }

    bool getOn() const { return m_sfOn.getValue(); }
    void setOn(bool on) { m_sfOn.setValue(on); }
    const SFBool* getSFOn() const { return &m_sfOn; }
    SFBool* editSFOn() { return &m_sfOn; }

    Real32 getConstantAttenuation() const { return m_sfConstantAttenuation.getValue(); }
    void setConstantAttenuation(Real32 constantAttenuation) { m_sfConstantAttenuation.setValue(constantAttenuation); }
    const SFReal32* getSFConstantAttenuation() const { return &m_sfConstantAttenuation; }
    SFReal32* editSFConstantAttenuation() { return &m_sfConstantAttenuation; }

    Real32 getLinearAttenuation() const { return m_sfLinearAttenuation.getValue(); }
    void setLinearAttenuation(Real32 linearAttenuation) { m_sfLinearAttenuation.setValue(linearAttenuation); }
    const SFReal32* getSFLinearAttenuation() const { return &m_sfLinearAttenuation; }
    SFReal32* editSFLinearAttenuation() { return &m_sfLinearAttenuation; }

    Real32 getQuadraticAttenuation() const { return m_sfQuadraticAttenuation.getValue(); }
    void setQuadraticAttenuation(Real32 quadraticAttenuation)
    {
        m_sfQuadraticAttenuation.setValue(quadraticAttenuation);
    }
    const SFReal32* getSFQuadraticAttenuation() const { return &m_sfQuadraticAttenuation; }
    SFReal32* editSFQuadraticAttenuation() { return &m_sfQuadraticAttenuation; }

protected:
    Light() = default;
    Light(const Light& source)
        : Inherited(source)
        , m_sfAmbient(source.m_sfAmbient)
        , m_sfDiffuse(source.m_sfDiffuse)
        , m_sfSpecular(source.m_sfSpecular)
        , m_sfBeacon(source.m_sfBeacon)
        , m_sfOn(source.m_sfOn)
        , m_sfConstantAttenuation(source.m_sfConstantAttenuation)
        , m_sfLinearAttenuation(source.m_sfLinearAttenuation)
        , m_sfQuadraticAttenuation(source.m_sfQuadraticAttenuation)
    {}
    ~Light() override;

    static FieldDescription* _desc[];
    static FieldContainerType _type;

private:
    SFColor4f m_sfAmbient{Color4f(0, 0, 0, 1)};
    SFColor4f m_sfDiffuse{Color4f(1, 1, 1, 1)};
    SFColor4f m_sfSpecular{Color4f(1, 1, 1, 1)};
    SFNodePtr m_sfBeacon;
    SFBool m_sfOn{true};
    SFReal32 m_sfConstantAttenuation{1};
    SFReal32 m_sfLinearAttenuation{0};
    SFReal32 m_sfQuadraticAttenuation{0};
};

} // namespace osg
