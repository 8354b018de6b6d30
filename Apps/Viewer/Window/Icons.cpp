// SPDX-License-Identifier: MIT
#include "Viewer/Window/Icons.h"

namespace quon::viewer {

QIcon getIcon(const std::string&)
{
    return {};
}

} // namespace quon::viewer
