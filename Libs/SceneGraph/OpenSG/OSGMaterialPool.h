// SPDX-License-Identifier: MIT
#pragma once

#include <OpenSG/OSGGroup.h>
#include <OpenSG/OSGMaterialFields.h>
#include <OpenSG/OSGMaterialPoolFields.h>

namespace osg {

/// Keeps materials alive with a scene; has no effect on what is drawn.
class OSG_SYSTEM_DLLMAPPING MaterialPool : public Group {
public:
    typedef Group Inherited;
    typedef MaterialPoolPtr Ptr;

    enum : UInt32 { MaterialsFieldId = Inherited::NextFieldId, NextFieldId };
    static constexpr BitVector MaterialsFieldMask = BitVector(1) << MaterialsFieldId;

    OSG_FIELD_CONTAINER_DECL(MaterialPoolPtr)

    /// Appends and references; null is ignored.
    void add(const MaterialPtr& material);
    /// A material that is not here is ignored.
    void sub(const MaterialPtr& material);
    void sub(UInt32 index);
    /// @p index must be smaller than getCount() (not checked).
    MaterialPtr get(UInt32 index) const;
    UInt32 getCount() const { return m_mfMaterials.size(); }
    /// The index of a material, -1 when it is not here.
    Int32 find(const MaterialPtr& material) const;
    void clear();

    const MFMaterialPtr* getMFMaterials() const { return &m_mfMaterials; }

protected:
    MaterialPool() = default;
    MaterialPool(const MaterialPool& source);
    ~MaterialPool() override;

    static FieldDescription* _desc[];
    static FieldContainerType _type;

private:
    MFMaterialPtr m_mfMaterials;
};

} // namespace osg
