// SPDX-License-Identifier: MIT
#pragma once

#include <OpenSG/OSGBlendChunkFields.h>
#include <OpenSG/OSGSFBaseTypes.h>
#include <OpenSG/OSGSFSysTypes.h>
#include <OpenSG/OSGStateChunk.h>

/// Stands for "same as for the colours".
#ifndef OSG_GL_UNUSED
#define OSG_GL_UNUSED 0xFFFF
#endif

namespace osg {

/// How what is drawn mixes with what is there, and which fragments are dropped by their alpha.
class OSG_SYSTEM_DLLMAPPING BlendChunk : public StateChunk {
public:
    typedef StateChunk Inherited;
    typedef BlendChunkPtr Ptr;

    enum : UInt32 {
        SrcFactorFieldId = Inherited::NextFieldId,
        DestFactorFieldId,
        EquationFieldId,
        ColorFieldId,
        AlphaFuncFieldId,
        AlphaValueFieldId,
        AlphaSrcFactorFieldId,
        AlphaDestFactorFieldId,
        NextFieldId
    };
    static constexpr BitVector SrcFactorFieldMask = BitVector(1) << SrcFactorFieldId;
    static constexpr BitVector DestFactorFieldMask = BitVector(1) << DestFactorFieldId;
    static constexpr BitVector EquationFieldMask = BitVector(1) << EquationFieldId;
    static constexpr BitVector ColorFieldMask = BitVector(1) << ColorFieldId;
    static constexpr BitVector AlphaFuncFieldMask = BitVector(1) << AlphaFuncFieldId;
    static constexpr BitVector AlphaValueFieldMask = BitVector(1) << AlphaValueFieldId;
    static constexpr BitVector AlphaSrcFactorFieldMask = BitVector(1) << AlphaSrcFactorFieldId;
    static constexpr BitVector AlphaDestFactorFieldMask = BitVector(1) << AlphaDestFactorFieldId;

    OSG_FIELD_CONTAINER_DECL(BlendChunkPtr)

    GLenum getSrcFactor() const { return m_sfSrcFactor.getValue(); }
    void setSrcFactor(GLenum srcFactor) { m_sfSrcFactor.setValue(srcFactor); }
    const SFGLenum* getSFSrcFactor() const { return &m_sfSrcFactor; }
    SFGLenum* editSFSrcFactor() { return &m_sfSrcFactor; }

    GLenum getDestFactor() const { return m_sfDestFactor.getValue(); }
    void setDestFactor(GLenum destFactor) { m_sfDestFactor.setValue(destFactor); }
    const SFGLenum* getSFDestFactor() const { return &m_sfDestFactor; }
    SFGLenum* editSFDestFactor() { return &m_sfDestFactor; }

    GLenum getEquation() const { return m_sfEquation.getValue(); }
    void setEquation(GLenum equation) { m_sfEquation.setValue(equation); }
    const SFGLenum* getSFEquation() const { return &m_sfEquation; }
    SFGLenum* editSFEquation() { return &m_sfEquation; }

    const Color4f& getColor() const { return m_sfColor.getValue(); }
    void setColor(const Color4f& color) { m_sfColor.setValue(color); }
    const SFColor4f* getSFColor() const { return &m_sfColor; }
    SFColor4f* editSFColor() { return &m_sfColor; }

    GLenum getAlphaFunc() const { return m_sfAlphaFunc.getValue(); }
    void setAlphaFunc(GLenum alphaFunc) { m_sfAlphaFunc.setValue(alphaFunc); }
    const SFGLenum* getSFAlphaFunc() const { return &m_sfAlphaFunc; }
    SFGLenum* editSFAlphaFunc() { return &m_sfAlphaFunc; }

    Real32 getAlphaValue() const { return m_sfAlphaValue.getValue(); }
    void setAlphaValue(Real32 alphaValue) { m_sfAlphaValue.setValue(alphaValue); }
    const SFReal32* getSFAlphaValue() const { return &m_sfAlphaValue; }
    SFReal32* editSFAlphaValue() { return &m_sfAlphaValue; }

    GLenum getAlphaSrcFactor() const { return m_sfAlphaSrcFactor.getValue(); }
    void setAlphaSrcFactor(GLenum alphaSrcFactor) { m_sfAlphaSrcFactor.setValue(alphaSrcFactor); }
    const SFGLenum* getSFAlphaSrcFactor() const { return &m_sfAlphaSrcFactor; }
    SFGLenum* editSFAlphaSrcFactor() { return &m_sfAlphaSrcFactor; }

    GLenum getAlphaDestFactor() const { return m_sfAlphaDestFactor.getValue(); }
    void setAlphaDestFactor(GLenum alphaDestFactor) { m_sfAlphaDestFactor.setValue(alphaDestFactor); }
    const SFGLenum* getSFAlphaDestFactor() const { return &m_sfAlphaDestFactor; }
    SFGLenum* editSFAlphaDestFactor() { return &m_sfAlphaDestFactor; }

    const StateChunkClass* getClass() const override;
    /// True unless the destination factor is zero.
    bool isTransparent() const override;

protected:
    BlendChunk() = default;
    BlendChunk(const BlendChunk& source)
        : Inherited(source)
        , m_sfSrcFactor(source.m_sfSrcFactor)
        , m_sfDestFactor(source.m_sfDestFactor)
        , m_sfEquation(source.m_sfEquation)
        , m_sfColor(source.m_sfColor)
        , m_sfAlphaFunc(source.m_sfAlphaFunc)
        , m_sfAlphaValue(source.m_sfAlphaValue)
        , m_sfAlphaSrcFactor(source.m_sfAlphaSrcFactor)
        , m_sfAlphaDestFactor(source.m_sfAlphaDestFactor)
    {}
    ~BlendChunk() override;

    static FieldDescription* _desc[];
    static FieldContainerType _type;

private:
    SFGLenum m_sfSrcFactor{GL_ONE};
    SFGLenum m_sfDestFactor{GL_ZERO};
    SFGLenum m_sfEquation{GL_NONE};
    SFColor4f m_sfColor;
    SFGLenum m_sfAlphaFunc{GL_NONE};
    SFReal32 m_sfAlphaValue{0};
    SFGLenum m_sfAlphaSrcFactor{OSG_GL_UNUSED};
    SFGLenum m_sfAlphaDestFactor{OSG_GL_UNUSED};
};

} // namespace osg
