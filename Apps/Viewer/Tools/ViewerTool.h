// SPDX-License-Identifier: MIT
#pragma once

#include <Interaction/AbstractInteractionTool.h>

#include <Qt>

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

    /**
     * Called when the pointer is at another place, before the event that tells how it got there.
     *
     * @param context has a picker, which knows the place already
     */
    virtual void pointerMoved(interaction::ToolInteractionContext*) {}

    /**
     * Called before a picture is drawn, and soon after the pointer moved where nothing is drawn.
     *
     * The place for whatever follows the pointer and takes time: it runs once, however often the pointer has moved.
     */
    virtual void beginFrame(interaction::ToolInteractionContext*) {}

    /** Returns the shape of the pointer while the tool is current. */
    virtual Qt::CursorShape getCursor() const { return Qt::ArrowCursor; }

    /** Asks for all texts again, after the language changed. */
    virtual void retranslate() {}

protected:
    // Not virtual: tools are destroyed through their concrete type.
    ~ViewerTool() = default;
};

} // namespace quon::viewer
