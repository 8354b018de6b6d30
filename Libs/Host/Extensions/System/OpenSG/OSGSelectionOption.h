// SPDX-License-Identifier: MIT
#pragma once

#include <OpenSG/OSGConfig.h>

namespace osg {

/// Base of the options that a host hands to its picking back end. Has none of its own: hosts derive.
class SelectionOption {
public:
    SelectionOption() = default;
    virtual ~SelectionOption();

protected:
    SelectionOption(const SelectionOption&) = default;
    SelectionOption& operator=(const SelectionOption&) = default;
};

} // namespace osg
