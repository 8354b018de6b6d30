// SPDX-License-Identifier: MIT
#include "Viewer/Tools/SelectionContext.h"

#include <Interaction/Picker.h>

namespace quon::viewer {

SelectionContext::SelectionContext()
    : ToolInteractionContext(Tool)
{}

void SelectionContext::pointerMoved(const osg::Pnt2f& position)
{
    ToolInteractionContext::pointerMoved(position);
    if (getPicker() != nullptr) {
        getPicker()->setPointer(position);
    }
}

void SelectionContext::cameraMoved(const osg::Matrix& camera)
{
    ToolInteractionContext::cameraMoved(camera);
    if (getPicker() != nullptr) {
        getPicker()->setCamera(camera);
    }
}

} // namespace quon::viewer
