// SPDX-License-Identifier: MIT
#pragma once

#include <OpenSG/OSGLineChunkFields.h>
#include <OpenSG/OSGSFSysTypes.h>
#include <OpenSG/OSGStateChunk.h>

namespace osg {

/// How lines are drawn.
class OSG_SYSTEM_DLLMAPPING LineChunk : public StateChunk {
public:
    typedef StateChunk Inherited;
    typedef LineChunkPtr Ptr;

    enum : UInt32 {
        WidthFieldId = Inherited::NextFieldId,
        StippleRepeatFieldId,
        StipplePatternFieldId,
        SmoothFieldId,
        NextFieldId
    };
    static constexpr BitVector WidthFieldMask = BitVector(1) << WidthFieldId;
    static constexpr BitVector StippleRepeatFieldMask = BitVector(1) << StippleRepeatFieldId;
    static constexpr BitVector StipplePatternFieldMask = BitVector(1) << StipplePatternFieldId;
    static constexpr BitVector SmoothFieldMask = BitVector(1) << SmoothFieldId;

    OSG_FIELD_CONTAINER_DECL(LineChunkPtr)

    /// In pixels.
    Real32 getWidth() const { return m_sfWidth.getValue(); }
    void setWidth(Real32 width) { m_sfWidth.setValue(width); }
    const SFReal32* getSFWidth() const { return &m_sfWidth; }
    SFReal32* editSFWidth() { return &m_sfWidth; }

    Int32 getStippleRepeat() const { return m_sfStippleRepeat.getValue(); }
    void setStippleRepeat(Int32 stippleRepeat) { m_sfStippleRepeat.setValue(stippleRepeat); }
    const SFInt32* getSFStippleRepeat() const { return &m_sfStippleRepeat; }
    SFInt32* editSFStippleRepeat() { return &m_sfStippleRepeat; }

    UInt16 getStipplePattern() const { return m_sfStipplePattern.getValue(); }
    void setStipplePattern(UInt16 stipplePattern) { m_sfStipplePattern.setValue(stipplePattern); }
    const SFUInt16* getSFStipplePattern() const { return &m_sfStipplePattern; }
    SFUInt16* editSFStipplePattern() { return &m_sfStipplePattern; }

    bool getSmooth() const { return m_sfSmooth.getValue(); }
    void setSmooth(bool smooth) { m_sfSmooth.setValue(smooth); }
    const SFBool* getSFSmooth() const { return &m_sfSmooth; }
    SFBool* editSFSmooth() { return &m_sfSmooth; }

    const StateChunkClass* getClass() const override;

protected:
    LineChunk() = default;
    LineChunk(const LineChunk& source)
        : Inherited(source)
        , m_sfWidth(source.m_sfWidth)
        , m_sfStippleRepeat(source.m_sfStippleRepeat)
        , m_sfStipplePattern(source.m_sfStipplePattern)
        , m_sfSmooth(source.m_sfSmooth)
    {}
    ~LineChunk() override;

    static FieldDescription* _desc[];
    static FieldContainerType _type;

private:
    SFReal32 m_sfWidth{1.0F};
    SFInt32 m_sfStippleRepeat{1};
    SFUInt16 m_sfStipplePattern{0xFFFF};
    SFBool m_sfSmooth{false};
};

} // namespace osg
