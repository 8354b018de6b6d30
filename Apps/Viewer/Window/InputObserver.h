// SPDX-License-Identifier: MIT
#pragma once

class QEvent;

namespace quon::viewer {

/** Watches what reaches a viewport. */
class InputObserver {
public:
    /** Called with every event, of input or not, before the viewport handles it. */
    virtual void inputBegins(const QEvent& event) = 0;

    /** Called after the viewport has handled the event. Others may have come and gone in between. */
    virtual void inputEnds(const QEvent& event) = 0;

protected:
    // Observers are borrowed and destroyed through their own class.
    ~InputObserver() = default;
};

} // namespace quon::viewer
