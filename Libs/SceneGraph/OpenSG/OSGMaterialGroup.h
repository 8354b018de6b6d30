// SPDX-License-Identifier: MIT
#pragma once

#include <OpenSG/OSGGroup.h>
#include <OpenSG/OSGMaterialFields.h>
#include <OpenSG/OSGMaterialGroupFields.h>

namespace osg {

/**
 * Gives the geometries below its node a material.
 *
 * Of nested groups the outermost one holds, and it holds over the geometries' own materials.
 */
class OSG_SYSTEM_DLLMAPPING MaterialGroup : public Group {
public:
    typedef Group Inherited;
    typedef MaterialGroupPtr Ptr;

    enum : UInt32 { MaterialFieldId = Inherited::NextFieldId, NextFieldId };
    static constexpr BitVector MaterialFieldMask = BitVector(1) << MaterialFieldId;

    OSG_FIELD_CONTAINER_DECL(MaterialGroupPtr)

    /// Null for none. The group holds a reference: the new one is taken before the old one is released.
    const MaterialPtr& getMaterial() const { return m_sfMaterial.getValue(); }
    void setMaterial(const MaterialPtr& material);
    const SFMaterialPtr* getSFMaterial() const { return &m_sfMaterial; }

protected:
    MaterialGroup() = default;
    MaterialGroup(const MaterialGroup& source);
    ~MaterialGroup() override;

    static FieldDescription* _desc[];
    static FieldContainerType _type;

private:
    SFMaterialPtr m_sfMaterial;
};

} // namespace osg
