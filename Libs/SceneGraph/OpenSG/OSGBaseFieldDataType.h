// SPDX-License-Identifier: MIT
#pragma once

#include <OpenSG/OSGBoxVolume.h>
#include <OpenSG/OSGColor.h>
#include <OpenSG/OSGField.h>

#include <string>

namespace osg {

template <>
struct FieldDataTraits<std::string> {
    static const Char8* getName() { return "String"; }
};
template <>
struct FieldDataTraits<Color3f> {
    static const Char8* getName() { return "Color3f"; }
};
template <>
struct FieldDataTraits<Color4f> {
    static const Char8* getName() { return "Color4f"; }
};
template <>
struct FieldDataTraits<BoxVolume> {
    static const Char8* getName() { return "BoxVolume"; }
};
template <>
struct FieldDataTraits<void*> {
    static const Char8* getName() { return "VoidP"; }
};

} // namespace osg
