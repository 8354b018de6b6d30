// SPDX-License-Identifier: MIT
#include <OpenSG/OSGMaterialDrawable.h>

#include <OpenSG/OSGMaterial.h>

namespace osg {

FieldDescription* MaterialDrawable::_desc[] = {
    describeField<&MaterialDrawable::m_sfMaterial>("material", MaterialFieldId),
    describeField<&MaterialDrawable::m_sfOverwriteMaterial>("overwriteMaterial", OverwriteMaterialFieldId),
};

FieldContainerType MaterialDrawable::_type("MaterialDrawable", "Drawable", nullptr, nullptr, nullptr, _desc,
                                           sizeof(_desc));

OSG_ABSTR_FIELD_CONTAINER_INL_DEF(MaterialDrawable, MaterialDrawablePtr)
OSG_ABSTR_FIELD_CONTAINER_DEF(MaterialDrawable, MaterialDrawablePtr)

MaterialDrawable::MaterialDrawable(const MaterialDrawable& source)
    : Inherited(source)
    , m_sfMaterial(source.m_sfMaterial)
    , m_sfOverwriteMaterial(source.m_sfOverwriteMaterial)
{
    addRefCP(getMaterial());
}

MaterialDrawable::~MaterialDrawable()
{
    subRefCP(getMaterial());
}

void MaterialDrawable::setMaterial(const MaterialPtr& material)
{
    setRefdCP(m_sfMaterial.getValue(), material);
}

} // namespace osg
