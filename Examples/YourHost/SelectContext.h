// SPDX-License-Identifier: MIT
#pragma once

#include <Interaction/Picker.h>
#include <Interaction/ToolInteractionContext.h>

/** Drives the tool that selects, and tells its picker where the pointer is. */
class SelectContext : public quon::interaction::ToolInteractionContext {
public:
    SelectContext()
        : ToolInteractionContext(Tool)
    {}

    void pointerMoved(const osg::Pnt2f& position) override
    {
        if (getPicker() != nullptr) {
            getPicker()->setPointer(position);
        }
    }
};
