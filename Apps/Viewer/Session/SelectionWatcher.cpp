// SPDX-License-Identifier: MIT
#include "Viewer/Session/SelectionWatcher.h"

#include <utility>

namespace quon::viewer {

bool SelectionWatcher::takeChanged()
{
    return std::exchange(m_changed, false);
}

} // namespace quon::viewer
