// SPDX-License-Identifier: MIT
#include <OpenSG/OSGMaterialPool.h>

#include <OpenSG/OSGMaterial.h>

namespace osg {

FieldDescription* MaterialPool::_desc[] = {
    describeField<&MaterialPool::m_mfMaterials>("materials", MaterialsFieldId),
};

FieldContainerType MaterialPool::_type(
    "MaterialPool", "Group", nullptr, []() -> FieldContainerPtr { return createEmpty(); }, nullptr, _desc,
    sizeof(_desc));

OSG_FIELD_CONTAINER_INL_DEF(MaterialPool, MaterialPoolPtr)
OSG_FIELD_CONTAINER_DEF(MaterialPool, MaterialPoolPtr)

MaterialPool::MaterialPool(const MaterialPool& source)
    : Inherited(source)
    , m_mfMaterials(source.m_mfMaterials)
{
    for (const MaterialPtr& material : m_mfMaterials) {
        addRefCP(material);
    }
}

MaterialPool::~MaterialPool()
{
    clear();
}

void MaterialPool::add(const MaterialPtr& material)
{
    if (material != NullFC) {
        addRefCP(material);
        m_mfMaterials.push_back(material);
    }
}

void MaterialPool::sub(const MaterialPtr& material)
{
    const Int32 index = find(material);
    if (index >= 0) {
        sub(static_cast<UInt32>(index));
    }
}

void MaterialPool::sub(const UInt32 index)
{
    if (index < m_mfMaterials.size()) {
        MaterialPtr material = m_mfMaterials[index];
        m_mfMaterials.erase(m_mfMaterials.begin() + index);
        subRefCP(material);
    }
}

MaterialPtr MaterialPool::get(const UInt32 index) const
{
    return m_mfMaterials[index];
}

Int32 MaterialPool::find(const MaterialPtr& material) const
{
    const MFMaterialPtr::const_iterator found = m_mfMaterials.find(material);
    return found != m_mfMaterials.end() ? static_cast<Int32>(found - m_mfMaterials.begin()) : -1;
}

void MaterialPool::clear()
{
    MFMaterialPtr materials;
    materials.swap(m_mfMaterials);
    for (const MaterialPtr& material : materials) {
        subRefCP(material);
    }
}

} // namespace osg
