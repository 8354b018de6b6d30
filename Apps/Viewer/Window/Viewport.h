// SPDX-License-Identifier: MIT
#pragma once

#include "Viewer/Drawing/FrameTimes.h"
#include "Viewer/Drawing/SceneRenderer.h"
#include "Viewer/Session/QtVersions.h"

#include <Notification/NotificationManager.h>

#include <QImage>
#include <QPoint>
#include <QTimer>
#include <QTouchEvent>
#include <QWidget>

#include <map>
#include <memory>
#include <string>

class QPainter;

namespace quon::viewer {

class GlSurface;
class InputObserver;
class OffscreenSurface;
class ViewerSession;

/**
 * The widget that shows a session and passes the user's input on to it.
 *
 * Mouse and key events go to the session's event mapper; a Qt event is accepted exactly when some context consumed what
 * became of it. When the pointer leaves, hovering ends; when the focus goes, everything pending does.
 *
 * Wheel and gestures, for which the mapper has no operations, become events of NavigationContext right here, after the
 * pointer has been moved to where they happen:
 *
 * | input | events |
 * |---|---|
 * | wheel | "trigger" of navigate:zoom-by, by every eighth of a degree, with Shift by a fifth as much |
 * | two fingers on a touchpad | "start", "process", "stop" of navigate:orbit-by, with Shift navigate:pan-by |
 * | the same with Ctrl | "trigger" of navigate:zoom-by |
 * | pinch on a touchpad | "trigger" of navigate:zoom-by around the pointer |
 * | two fingers on a touch screen | as on a touchpad with Shift, and pinching |
 *
 * Two fingers on a touchpad are told from a wheel by their scroll phases. One finger on a touch screen is the left
 * mouse button, until a second one comes. All positions and movements are logical pixels of the widget; only what is
 * drawn knows about the density of the display.
 *
 * In a window a picture takes no longer than the user can wait for while things move: of very large scenes it shows the
 * larger geometries, and all of them once nothing changes. Pictures that are grabbed always show everything.
 *
 * What is drawn goes to a child widget with OpenGL in a window, or into pictures where there is no window system; the
 * input is handled the same way in both.
 */
class Viewport : public QWidget, private notification::NotificationListener {
    Q_OBJECT

public:
    /** Where the scene is drawn. */
    enum class Target {
        Window,   ///< into a child widget, needs a window system with OpenGL
        Pictures, ///< into pictures on request, needs neither
    };

    /** @param session borrowed, must outlive the viewport */
    Viewport(ViewerSession& session, Target target, QWidget* parent = nullptr);
    ~Viewport() override;

    Viewport(const Viewport&) = delete;
    Viewport& operator=(const Viewport&) = delete;

    /**
     * Draws the viewport with its notifications.
     *
     * @throws ViewerError when there is no OpenGL to draw with
     */
    QImage grabPicture();

    /** Draws the scene alone, without notifications and without antialiasing: pixels have the colours of the scene. */
    QImage grabScene();

    /**
     * Gives back what drawing without a window has taken, the OpenGL driver's memory included. The next picture takes it
     * anew; in a window nothing happens.
     */
    void releasePictures();

    /** Whether the last picture showed everything; otherwise a better one follows by itself. */
    bool isPictureComplete() const;

    SceneRenderer& getRenderer() { return m_renderer; }

    /** How long the last drawings of the scene took. */
    const FrameTimes& getFrameTimes() const { return m_frameTimes; }

    /**
     * Sets who is told of every event before and after it is handled, keys of handleKey() included.
     *
     * @param observer borrowed; null for nobody
     */
    void setInputObserver(InputObserver* observer) { m_observer = observer; }
    InputObserver* getInputObserver() const { return m_observer; }

    /**
     * Handles a key that another widget of the window left alone, as if it had been typed here. One that the viewport
     * left alone itself comes up to its window at once; it has had its turn and is not handled again.
     *
     * @return whether a context consumed what became of it
     */
    bool handleKey(QKeyEvent* event);

protected:
    bool event(QEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void keyReleaseEvent(QKeyEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    bool focusNextPrevChild(bool next) override;

private:
    class Observation;
    class Overlay;

    template <class Handle>
    bool handle(const Handle& handleEvent);

    bool turnWheel(const QWheelEvent& event);
    bool scroll(const QWheelEvent& event);
    void handleTouch(const QTouchEvent& event);
    void pointWithFinger(const QtVersions::Finger& finger, Qt::KeyboardModifiers modifiers);
    QPointF getLastPosition(const QtVersions::Finger& finger) const;
    void pinch(const QList<QtVersions::Finger>& fingers);
    bool send(const std::string& category, const char* verb);
    void movePointer(const QPoint& position, Qt::MouseButtons buttons, Qt::KeyboardModifiers modifiers);

    void notificationAdded(notification::Notification* notification) override;
    void notificationChanged(notification::Notification* notification) override;
    void notificationRemoved(notification::Notification* notification) override;

    bool sendKey(QKeyEvent* event);

    void draw(int width, int height, double pixelRatio, SceneRenderer::Detail detail);
    void drawInWindow(int width, int height, double pixelRatio);
    QImage drawOffscreen(bool multisampling);
    void paintOverlays(QPainter& painter);
    void redraw();
    void redrawOverlays();

    ViewerSession& m_session;
    SceneRenderer m_renderer;
    FrameTimes m_frameTimes;
    InputObserver* m_observer = nullptr;
    const QEvent* m_observed = nullptr; ///< the event that the observer was told of last and that is not over yet
    SceneRenderer::Detail m_detail = SceneRenderer::Detail::Moving; ///< of the next picture in a window
    QTimer m_stillTimer;                                            ///< runs out when the picture rests
    GlSurface* m_surface = nullptr;                                 ///< in a window with OpenGL; a child
    Overlay* m_overlay = nullptr;                                   ///< in a window; a child
    std::unique_ptr<OffscreenSurface> m_offscreen;                  ///< for pictures, made at the first one
    bool m_beginsFrame = false;                                     ///< about to draw
    bool m_leftKeyAlone = false;                                    ///< a key that is on its way up to the window
    QPoint m_pointer;                                               ///< as far as the mapper was told
    std::map<int, QPointF> m_fingers; ///< where those on the screen were at the last event, by their ids
    bool m_pinching = false;          ///< two fingers are or were on the screen, until all are gone
};

} // namespace quon::viewer
