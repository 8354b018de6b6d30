// SPDX-License-Identifier: MIT
#include <OpenSG/OSGMaterial.h>

#include <new>

namespace osg {

FieldDescription* Material::_desc[] = {
    describeField<&Material::m_sfSortKey>("sortKey", SortKeyFieldId),
    describeField<&Material::m_sfTransparencyMode>("transparencyMode", TransparencyModeFieldId),
};

FieldContainerType Material::_type("Material", "AttachmentContainer", nullptr, nullptr, nullptr, _desc, sizeof(_desc));

OSG_ABSTR_FIELD_CONTAINER_INL_DEF(Material, MaterialPtr)
OSG_ABSTR_FIELD_CONTAINER_DEF(Material, MaterialPtr)

Material::~Material()
{
    subRefCP(m_state);
}

StatePtr Material::getState(UInt32)
{
    if (m_state == NullFC) {
        rebuildState();
    }
    return m_state;
}

bool Material::isTransparent() const
{
    return getTransparencyMode() == TransparencyForceTransparent;
}

void Material::changed(const BitVector whichField, const UInt32 origin)
{
    try {
        rebuildState();
    } catch (const std::bad_alloc&) {
        // Edits end in destructors: they must not fail. getState() makes it anew.
        clearRefCP(m_state);
    }
    Inherited::changed(whichField, origin);
}

} // namespace osg
