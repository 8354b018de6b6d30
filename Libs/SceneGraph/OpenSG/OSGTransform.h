// SPDX-License-Identifier: MIT
#pragma once

#include <OpenSG/OSGGroup.h>
#include <OpenSG/OSGSFMathTypes.h>
#include <OpenSG/OSGTransformFields.h>

namespace osg {

/// Moves, turns and scales its node's children; the identity at first.
class OSG_SYSTEM_DLLMAPPING Transform : public Group {
public:
    typedef Group Inherited;
    typedef TransformPtr Ptr;

    enum : UInt32 { MatrixFieldId = Inherited::NextFieldId, NextFieldId };
    static constexpr BitVector MatrixFieldMask = BitVector(1) << MatrixFieldId;

    OSG_FIELD_CONTAINER_DECL(TransformPtr)

    /// Local to the parent of the core's node. End the edit with MatrixFieldMask, or world volumes stay as they were.
    const Matrix& getMatrix() const { return m_sfMatrix.getValue(); }
    Matrix& getMatrix() { return m_sfMatrix.getValue(); }
    Matrix& editMatrix() { return m_sfMatrix.getValue(); }
    void setMatrix(const Matrix& matrix) { m_sfMatrix.setValue(matrix); }
    const SFMatrix* getSFMatrix() const { return &m_sfMatrix; }
    SFMatrix* editSFMatrix() { return &m_sfMatrix; }

    void accumulateMatrix(Matrix& result) override;
    void changed(BitVector whichField, UInt32 origin) override;

protected:
    Transform() = default;
    Transform(const Transform& source)
        : Inherited(source)
        , m_sfMatrix(source.m_sfMatrix)
    {}
    ~Transform() override;

    void adjustVolume(Volume& volume) override;

    static FieldDescription* _desc[];
    static FieldContainerType _type;

private:
    SFMatrix m_sfMatrix;
};

} // namespace osg
