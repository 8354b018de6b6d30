// SPDX-License-Identifier: MIT
#pragma once

#include <OpenSG/OSGBaseFieldDataType.h>
#include <OpenSG/OSGSField.h>

namespace osg {

typedef SField<std::string> SFString;
typedef SField<Color3f> SFColor3f;
typedef SField<Color4f> SFColor4f;
typedef SField<BoxVolume> SFBoxVolume;
typedef SField<void*> SFVoidP;

} // namespace osg
