// SPDX-License-Identifier: MIT
#include <OpenSG/OSGSelectionOption.h>

namespace osg {

SelectionOption::~SelectionOption() = default;

} // namespace osg
