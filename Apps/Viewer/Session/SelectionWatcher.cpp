// SPDX-License-Identifier: MIT
#include "Viewer/Session/SelectionWatcher.h"

#include "Viewer/Model/SceneChanges.h"

#include <utility>

namespace quon::viewer {

namespace {

// Their records are read again while they are in the processor's cache.
constexpr int nodesBetweenGathering = 4000;

} // namespace

bool SelectionWatcher::takeChanged()
{
    m_changesSinceGathering = 0;
    return std::exchange(m_changed, false);
}

void SelectionWatcher::noteChange()
{
    m_changed = true;
    if (++m_changesSinceGathering == nodesBetweenGathering) {
        m_changesSinceGathering = 0;
        SceneChanges::gather();
    }
}

} // namespace quon::viewer
