// SPDX-License-Identifier: MIT
#pragma once

#include "Viewer/Script/Script.h"

#include <QObject>
#include <QTimer>

#include <cstddef>
#include <memory>

namespace quon::notification {
class TextNotification;
}

namespace quon::viewer {

class ScriptRunner;
class ViewerError;
class ViewerSession;
class Viewport;

/**
 * Follows a script in a window, slowly enough to watch, and hands over to the user at its end.
 *
 * Meanwhile the user's own input does not reach the viewport, which would lead the script astray. Escape ends the
 * script.
 */
class ScriptPlayer : public QObject {
    Q_OBJECT

public:
    /** @param session, viewport borrowed, must outlive the player */
    ScriptPlayer(ViewerSession& session, Viewport& viewport);
    ~ScriptPlayer() override;

    ScriptPlayer(const ScriptPlayer&) = delete;
    ScriptPlayer& operator=(const ScriptPlayer&) = delete;

    /** Begins with the next turn of the event loop or, without a model, once there is one. Ends another script. */
    void play(const Script& script);

    bool isPlaying() const { return m_script != nullptr; }

    /** @param milliseconds between two commands */
    void setPace(int milliseconds) { m_pace = milliseconds; }

    /** Shows its text anew, after the language changed. */
    void retranslate();

    bool eventFilter(QObject* watched, QEvent* event) override;

signals:
    /** The script is over; the user has taken over. */
    void finished();

    /** A command could not be carried out, or, with a DivergenceError, found something else than expected. */
    void failed(const ViewerError& error);

private:
    void begin();
    void step();
    void stop();

    ViewerSession& m_session;
    Viewport& m_viewport;
    std::shared_ptr<const Script> m_script; ///< shared with the step that is going on, as is the runner
    std::shared_ptr<ScriptRunner> m_runner;
    std::size_t m_next = 0;
    QTimer m_timer;
    int m_pace = 15;
    notification::TextNotification* m_notification = nullptr;
};

} // namespace quon::viewer
