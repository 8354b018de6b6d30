// SPDX-License-Identifier: MIT
#pragma once

#include <OpenSG/OSGFieldContainerFields.h>

namespace osg {

class State;

typedef FCPtr<FieldContainerPtr, State> StatePtr;
typedef RefPtr<StatePtr> StateRefPtr;

template <>
struct FieldDataTraits<StatePtr> {
    static const Char8* getName() { return "StatePtr"; }
};

typedef SField<StatePtr> SFStatePtr;
typedef MField<StatePtr> MFStatePtr;

} // namespace osg
