// SPDX-License-Identifier: MIT
#pragma once

#include <OpenSG/OSGFieldContainerPtr.h>
#include <OpenSG/OSGMField.h>
#include <OpenSG/OSGRefPtr.h>
#include <OpenSG/OSGSField.h>

namespace osg {

template <>
struct FieldDataTraits<FieldContainerPtr> {
    static const Char8* getName() { return "FieldContainerPtr"; }
};

typedef SField<FieldContainerPtr> SFFieldContainerPtr;
typedef MField<FieldContainerPtr> MFFieldContainerPtr;

} // namespace osg
