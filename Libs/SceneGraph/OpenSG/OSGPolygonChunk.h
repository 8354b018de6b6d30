// SPDX-License-Identifier: MIT
#pragma once

#include <OpenSG/OSGMFSysTypes.h>
#include <OpenSG/OSGPolygonChunkFields.h>
#include <OpenSG/OSGSFSysTypes.h>
#include <OpenSG/OSGStateChunk.h>

namespace osg {

/// How polygons are drawn: which sides, how they are filled, and how their depth is offset.
class OSG_SYSTEM_DLLMAPPING PolygonChunk : public StateChunk {
public:
    typedef StateChunk Inherited;
    typedef PolygonChunkPtr Ptr;

    enum : UInt32 {
        CullFaceFieldId = Inherited::NextFieldId,
        FrontFaceFieldId,
        FrontModeFieldId,
        BackModeFieldId,
        SmoothFieldId,
        OffsetFactorFieldId,
        OffsetBiasFieldId,
        OffsetPointFieldId,
        OffsetLineFieldId,
        OffsetFillFieldId,
        StippleFieldId,
        NextFieldId
    };
    static constexpr BitVector CullFaceFieldMask = BitVector(1) << CullFaceFieldId;
    static constexpr BitVector FrontFaceFieldMask = BitVector(1) << FrontFaceFieldId;
    static constexpr BitVector FrontModeFieldMask = BitVector(1) << FrontModeFieldId;
    static constexpr BitVector BackModeFieldMask = BitVector(1) << BackModeFieldId;
    static constexpr BitVector SmoothFieldMask = BitVector(1) << SmoothFieldId;
    static constexpr BitVector OffsetFactorFieldMask = BitVector(1) << OffsetFactorFieldId;
    static constexpr BitVector OffsetBiasFieldMask = BitVector(1) << OffsetBiasFieldId;
    static constexpr BitVector OffsetPointFieldMask = BitVector(1) << OffsetPointFieldId;
    static constexpr BitVector OffsetLineFieldMask = BitVector(1) << OffsetLineFieldId;
    static constexpr BitVector OffsetFillFieldMask = BitVector(1) << OffsetFillFieldId;
    static constexpr BitVector StippleFieldMask = BitVector(1) << StippleFieldId;

    OSG_FIELD_CONTAINER_DECL(PolygonChunkPtr)

    GLenum getCullFace() const { return m_sfCullFace.getValue(); }
    void setCullFace(GLenum cullFace) { m_sfCullFace.setValue(cullFace); }
    const SFGLenum* getSFCullFace() const { return &m_sfCullFace; }
    SFGLenum* editSFCullFace() { return &m_sfCullFace; }

    GLenum getFrontFace() const { return m_sfFrontFace.getValue(); }
    void setFrontFace(GLenum frontFace) { m_sfFrontFace.setValue(frontFace); }
    const SFGLenum* getSFFrontFace() const { return &m_sfFrontFace; }
    SFGLenum* editSFFrontFace() { return &m_sfFrontFace; }

    GLenum getFrontMode() const { return m_sfFrontMode.getValue(); }
    void setFrontMode(GLenum frontMode) { m_sfFrontMode.setValue(frontMode); }
    const SFGLenum* getSFFrontMode() const { return &m_sfFrontMode; }
    SFGLenum* editSFFrontMode() { return &m_sfFrontMode; }

    GLenum getBackMode() const { return m_sfBackMode.getValue(); }
    void setBackMode(GLenum backMode) { m_sfBackMode.setValue(backMode); }
    const SFGLenum* getSFBackMode() const { return &m_sfBackMode; }
    SFGLenum* editSFBackMode() { return &m_sfBackMode; }

    bool getSmooth() const { return m_sfSmooth.getValue(); }
    void setSmooth(bool smooth) { m_sfSmooth.setValue(smooth); }
    const SFBool* getSFSmooth() const { return &m_sfSmooth; }
    SFBool* editSFSmooth() { return &m_sfSmooth; }

    Real32 getOffsetFactor() const { return m_sfOffsetFactor.getValue(); }
    void setOffsetFactor(Real32 offsetFactor) { m_sfOffsetFactor.setValue(offsetFactor); }
    const SFReal32* getSFOffsetFactor() const { return &m_sfOffsetFactor; }
    SFReal32* editSFOffsetFactor() { return &m_sfOffsetFactor; }

    Real32 getOffsetBias() const { return m_sfOffsetBias.getValue(); }
    void setOffsetBias(Real32 offsetBias) { m_sfOffsetBias.setValue(offsetBias); }
    const SFReal32* getSFOffsetBias() const { return &m_sfOffsetBias; }
    SFReal32* editSFOffsetBias() { return &m_sfOffsetBias; }

    bool getOffsetPoint() const { return m_sfOffsetPoint.getValue(); }
    void setOffsetPoint(bool offsetPoint) { m_sfOffsetPoint.setValue(offsetPoint); }
    const SFBool* getSFOffsetPoint() const { return &m_sfOffsetPoint; }
    SFBool* editSFOffsetPoint() { return &m_sfOffsetPoint; }

    bool getOffsetLine() const { return m_sfOffsetLine.getValue(); }
    void setOffsetLine(bool offsetLine) { m_sfOffsetLine.setValue(offsetLine); }
    const SFBool* getSFOffsetLine() const { return &m_sfOffsetLine; }
    SFBool* editSFOffsetLine() { return &m_sfOffsetLine; }

    bool getOffsetFill() const { return m_sfOffsetFill.getValue(); }
    void setOffsetFill(bool offsetFill) { m_sfOffsetFill.setValue(offsetFill); }
    const SFBool* getSFOffsetFill() const { return &m_sfOffsetFill; }
    SFBool* editSFOffsetFill() { return &m_sfOffsetFill; }

    /// Thirty-two rows, or none for no pattern.
    const MFInt32* getMFStipple() const { return &m_mfStipple; }
    MFInt32* editMFStipple() { return &m_mfStipple; }

    const StateChunkClass* getClass() const override;

protected:
    PolygonChunk() = default;
    PolygonChunk(const PolygonChunk& source)
        : Inherited(source)
        , m_sfCullFace(source.m_sfCullFace)
        , m_sfFrontFace(source.m_sfFrontFace)
        , m_sfFrontMode(source.m_sfFrontMode)
        , m_sfBackMode(source.m_sfBackMode)
        , m_sfSmooth(source.m_sfSmooth)
        , m_sfOffsetFactor(source.m_sfOffsetFactor)
        , m_sfOffsetBias(source.m_sfOffsetBias)
        , m_sfOffsetPoint(source.m_sfOffsetPoint)
        , m_sfOffsetLine(source.m_sfOffsetLine)
        , m_sfOffsetFill(source.m_sfOffsetFill)
        , m_mfStipple(source.m_mfStipple)
    {}
    ~PolygonChunk() override;

    static FieldDescription* _desc[];
    static FieldContainerType _type;

private:
    SFGLenum m_sfCullFace{GL_NONE};
    SFGLenum m_sfFrontFace{GL_CCW};
    SFGLenum m_sfFrontMode{GL_FILL};
    SFGLenum m_sfBackMode{GL_FILL};
    SFBool m_sfSmooth{false};
    SFReal32 m_sfOffsetFactor{0};
    SFReal32 m_sfOffsetBias{0};
    SFBool m_sfOffsetPoint{false};
    SFBool m_sfOffsetLine{false};
    SFBool m_sfOffsetFill{false};
    MFInt32 m_mfStipple;
};

} // namespace osg
