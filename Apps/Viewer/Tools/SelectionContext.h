// SPDX-License-Identifier: MIT
#pragma once

#include <Interaction/ToolInteractionContext.h>

namespace quon::viewer {

/** A tool context that keeps its picker's pointer and camera up to date with what the manager reports. */
class SelectionContext : public interaction::ToolInteractionContext {
public:
    SelectionContext();

    void pointerMoved(const osg::Pnt2f& position) override;
    void cameraMoved(const osg::Matrix& camera) override;
};

} // namespace quon::viewer
