// SPDX-License-Identifier: MIT
#pragma once

#include <OpenSG/OSGMathFieldDataType.h>
#include <OpenSG/OSGSField.h>

namespace osg {

typedef SField<Matrix> SFMatrix;
typedef SField<Pnt2f> SFPnt2f;
typedef SField<Pnt3d> SFPnt3d;
typedef SField<Pnt3f> SFPnt3f;
typedef SField<Pnt4f> SFPnt4f;
typedef SField<Vec2f> SFVec2f;
typedef SField<Vec3f> SFVec3f;
typedef SField<Vec4f> SFVec4f;
typedef SField<Quaternion> SFQuaternion;

} // namespace osg
