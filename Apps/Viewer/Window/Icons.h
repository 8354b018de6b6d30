// SPDX-License-Identifier: MIT
#pragma once

#include <QIcon>

#include <string>

namespace quon::viewer {

/**
 * Returns the icon of this name, drawn in the text colour of the application's palette so that it fits light and dark
 * interfaces, sharp at every size and pixel ratio.
 *
 * @param name an unknown one, and the empty one, give an empty icon
 */
QIcon getIcon(const std::string& name);

} // namespace quon::viewer
