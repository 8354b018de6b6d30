// SPDX-License-Identifier: MIT
#include <OpenSG/OSGMaterialGroup.h>

#include <OpenSG/OSGMaterial.h>

namespace osg {

FieldDescription* MaterialGroup::_desc[] = {
    describeField<&MaterialGroup::m_sfMaterial>("material", MaterialFieldId),
};

FieldContainerType MaterialGroup::_type(
    "MaterialGroup", "Group", nullptr, []() -> FieldContainerPtr { return createEmpty(); }, nullptr, _desc,
    sizeof(_desc));

OSG_FIELD_CONTAINER_INL_DEF(MaterialGroup, MaterialGroupPtr)
OSG_FIELD_CONTAINER_DEF(MaterialGroup, MaterialGroupPtr)

MaterialGroup::MaterialGroup(const MaterialGroup& source)
    : Inherited(source)
    , m_sfMaterial(source.m_sfMaterial)
{
    addRefCP(getMaterial());
}

MaterialGroup::~MaterialGroup()
{
    subRefCP(getMaterial());
}

void MaterialGroup::setMaterial(const MaterialPtr& material)
{
    const MaterialPtr newMaterial = material;
    MaterialPtr oldMaterial = getMaterial();
    addRefCP(newMaterial);
    m_sfMaterial.setValue(newMaterial);
    subRefCP(oldMaterial);
}

} // namespace osg
