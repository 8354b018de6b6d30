// SPDX-License-Identifier: MIT
#pragma once

#include <OpenSG/OSGDepthChunkFields.h>
#include <OpenSG/OSGSFSysTypes.h>
#include <OpenSG/OSGStateChunk.h>

namespace osg {

/// Depth test: whether it is made, how it compares, what range it fills, and whether depth is written.
class OSG_SYSTEM_DLLMAPPING DepthChunk : public StateChunk {
public:
    typedef StateChunk Inherited;
    typedef DepthChunkPtr Ptr;

    enum : UInt32 {
        EnableFieldId = Inherited::NextFieldId,
        FuncFieldId,
        NearFieldId,
        FarFieldId,
        ReadOnlyFieldId,
        NextFieldId
    };
    static constexpr BitVector EnableFieldMask = BitVector(1) << EnableFieldId;
    static constexpr BitVector FuncFieldMask = BitVector(1) << FuncFieldId;
    static constexpr BitVector NearFieldMask = BitVector(1) << NearFieldId;
    static constexpr BitVector FarFieldMask = BitVector(1) << FarFieldId;
    static constexpr BitVector ReadOnlyFieldMask = BitVector(1) << ReadOnlyFieldId;

    OSG_FIELD_CONTAINER_DECL(DepthChunkPtr)

    bool getEnable() const { return m_sfEnable.getValue(); }
    void setEnable(bool enable) { m_sfEnable.setValue(enable); }
    const SFBool* getSFEnable() const { return &m_sfEnable; }
    SFBool* editSFEnable() { return &m_sfEnable; }

    GLenum getFunc() const { return m_sfFunc.getValue(); }
    void setFunc(GLenum func) { m_sfFunc.setValue(func); }
    const SFGLenum* getSFFunc() const { return &m_sfFunc; }
    SFGLenum* editSFFunc() { return &m_sfFunc; }

    /// The range is left alone unless near and far are both zero or more.
    Real32 getNear() const { return m_sfNear.getValue(); }
    void setNear(Real32 near) { m_sfNear.setValue(near); }
    const SFReal32* getSFNear() const { return &m_sfNear; }
    SFReal32* editSFNear() { return &m_sfNear; }

    Real32 getFar() const { return m_sfFar.getValue(); }
    void setFar(Real32 far) { m_sfFar.setValue(far); }
    const SFReal32* getSFFar() const { return &m_sfFar; }
    SFReal32* editSFFar() { return &m_sfFar; }

    bool getReadOnly() const { return m_sfReadOnly.getValue(); }
    void setReadOnly(bool readOnly) { m_sfReadOnly.setValue(readOnly); }
    const SFBool* getSFReadOnly() const { return &m_sfReadOnly; }
    SFBool* editSFReadOnly() { return &m_sfReadOnly; }

    const StateChunkClass* getClass() const override;

protected:
    DepthChunk() = default;
    DepthChunk(const DepthChunk& source)
        : Inherited(source)
        , m_sfEnable(source.m_sfEnable)
        , m_sfFunc(source.m_sfFunc)
        , m_sfNear(source.m_sfNear)
        , m_sfFar(source.m_sfFar)
        , m_sfReadOnly(source.m_sfReadOnly)
    {}
    ~DepthChunk() override;

    static FieldDescription* _desc[];
    static FieldContainerType _type;

private:
    SFBool m_sfEnable{true};
    SFGLenum m_sfFunc{GL_LEQUAL};
    SFReal32 m_sfNear{-1.0F};
    SFReal32 m_sfFar{-1.0F};
    SFBool m_sfReadOnly{false};
};

} // namespace osg
