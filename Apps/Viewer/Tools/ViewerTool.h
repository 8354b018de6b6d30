// SPDX-License-Identifier: MIT
#pragma once

#include <Interaction/AbstractInteractionTool.h>

namespace quon::viewer {

/** A tool that takes several steps, of which the last one can be taken back. */
class ViewerTool : public interaction::AbstractInteractionTool {
public:
    /**
     * Leaves the innermost step that is under way: a rectangle being drawn, a first point that waits for a second one.
     *
     * @return false when there is none; the default
     */
    virtual bool leaveStep() { return false; }

    /** Forgets a press: the "trigger" that ends it will do nothing. Called when the release is not the user's. */
    virtual void cancel() {}

    /** Asks for all texts again, after the language changed. */
    virtual void retranslate() {}

protected:
    // Not virtual: tools are destroyed through their concrete type.
    ~ViewerTool() = default;
};

} // namespace quon::viewer
