// SPDX-License-Identifier: MIT
#include <OpenSG/OSGTransform.h>

namespace osg {

FieldDescription* Transform::_desc[] = {
    describeField<&Transform::m_sfMatrix>("matrix", MatrixFieldId),
};

FieldContainerType Transform::_type(
    "Transform", "Group", nullptr, []() -> FieldContainerPtr { return createEmpty(); }, nullptr, _desc, sizeof(_desc));

OSG_FIELD_CONTAINER_INL_DEF(Transform, TransformPtr)
OSG_FIELD_CONTAINER_DEF(Transform, TransformPtr)

Transform::~Transform() = default;

void Transform::accumulateMatrix(Matrix& result)
{
    result.mult(getMatrix());
}

void Transform::adjustVolume(Volume& volume)
{
    volume.transform(getMatrix());
}

void Transform::changed(const BitVector whichField, const UInt32 origin)
{
    if ((whichField & MatrixFieldMask) != 0) {
        invalidateVolume();
    }
    Inherited::changed(whichField, origin);
}

} // namespace osg
