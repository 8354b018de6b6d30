// SPDX-License-Identifier: MIT
#pragma once

#include <OpenSG/OSGDrawable.h>
#include <OpenSG/OSGMaterialDrawableFields.h>
#include <OpenSG/OSGMaterialFields.h>
#include <OpenSG/OSGSFSysTypes.h>

namespace osg {

/// Base of the cores that are drawn with a material of their own.
class OSG_SYSTEM_DLLMAPPING MaterialDrawable : public Drawable {
public:
    typedef Drawable Inherited;
    typedef MaterialDrawablePtr Ptr;

    enum : UInt32 { MaterialFieldId = Inherited::NextFieldId, OverwriteMaterialFieldId, NextFieldId };
    static constexpr BitVector MaterialFieldMask = BitVector(1) << MaterialFieldId;
    static constexpr BitVector OverwriteMaterialFieldMask = BitVector(1) << OverwriteMaterialFieldId;

    OSG_ABSTR_FIELD_CONTAINER_DECL(MaterialDrawablePtr)

    /// Null for none; references are set as setRefdCP() does.
    const MaterialPtr& getMaterial() const { return m_sfMaterial.getValue(); }
    void setMaterial(const MaterialPtr& material);
    const SFMaterialPtr* getSFMaterial() const { return &m_sfMaterial; }

    /// Whether the own material holds over that of a material group above.
    bool getOverwriteMaterial() const { return m_sfOverwriteMaterial.getValue(); }
    void setOverwriteMaterial(bool overwriteMaterial) { m_sfOverwriteMaterial.setValue(overwriteMaterial); }
    const SFBool* getSFOverwriteMaterial() const { return &m_sfOverwriteMaterial; }
    SFBool* editSFOverwriteMaterial() { return &m_sfOverwriteMaterial; }

protected:
    MaterialDrawable() = default;
    MaterialDrawable(const MaterialDrawable& source);
    ~MaterialDrawable() override;

    static FieldDescription* _desc[];
    static FieldContainerType _type;

private:
    SFMaterialPtr m_sfMaterial;
    SFBool m_sfOverwriteMaterial{false};
};

} // namespace osg
