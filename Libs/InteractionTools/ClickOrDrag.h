// SPDX-License-Identifier: MIT
#pragma once

#include <OpenSG/OSGConfig.h>

#include <OpenSG/OSGVector.h>

namespace quon::interaction {

/**
 * Tells for a tool whether a press is a click or a drag.
 *
 * A press is a click until the pointer has moved some pixels away from where it was pressed; then it is a drag and
 * stays one, also when the pointer comes back. A tool calls press() from "start", move() from every movement of the
 * pointer and release() from "trigger", with what Picker::getPointer() says: the pointer is reported before each of
 * these events. An event mapper that is reset sends "stop" and "trigger" as well, so that nothing stays pressed.
 *
 * A value of a few bytes; copies are independent of each other.
 */
class ClickOrDrag {
public:
    /**
     * Nothing is pressed.
     *
     * @param distance from the place of the press at which it becomes a drag, in pixels; with 0 or less any movement
     *        makes a drag, also one to the same place
     */
    explicit ClickOrDrag(const float distance = 3)
        : m_distance(distance > 0 ? distance : 0)
    {}

    /** Begins at @p position; a press that nobody released is forgotten. */
    void press(const osg::Pnt2f& position)
    {
        m_origin = position;
        m_state = State::Click;
    }

    /**
     * Follows the pointer to @p position.
     *
     * @return true when the press becomes a drag by this very movement: the moment to show what is dragged
     */
    bool move(const osg::Pnt2f& position)
    {
        if (m_state != State::Click || position.dist2(m_origin) < m_distance * m_distance) {
            return false;
        }
        m_state = State::Drag;
        return true;
    }

    /**
     * Ends the press where the pointer was moved last.
     *
     * @return true when it was a click; false when it was a drag, or when nothing is pressed
     */
    bool release()
    {
        const bool wasClick = m_state == State::Click;
        m_state = State::Released;
        return wasClick;
    }

    /** Forgets the press, which then ends as no click; for tools that are told to stop. */
    void cancel() { m_state = State::Released; }

    /** Whether something is pressed, click or drag. */
    bool isPressed() const { return m_state != State::Released; }

    /** Whether what is pressed has become a drag. */
    bool isDrag() const { return m_state == State::Drag; }

    /** Returns where the last press() was, (0, 0) before the first. */
    const osg::Pnt2f& getOrigin() const { return m_origin; }

private:
    enum class State { Released, Click, Drag };

    float m_distance;
    osg::Pnt2f m_origin = osg::Pnt2f(0, 0);
    State m_state = State::Released;
};

} // namespace quon::interaction
