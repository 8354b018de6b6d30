// SPDX-License-Identifier: MIT
#include "Viewer/Window/Viewport.h"

#include "Viewer/Drawing/GlSurface.h"
#include "Viewer/Drawing/NotificationPainter.h"
#include "Viewer/Drawing/OffscreenSurface.h"
#include "Viewer/Drawing/OverlayItem.h"
#include "Viewer/Model/ViewerError.h"
#include "Viewer/Session/ViewerSession.h"
#include "Viewer/Window/InputObserver.h"

#include <Interaction/InteractionEvent.h>
#include <Interaction/InteractionManager.h>

#include <QElapsedTimer>
#include <QKeyEvent>
#include <QLineF>
#include <QMouseEvent>
#include <QNativeGestureEvent>
#include <QPainter>
#include <QResizeEvent>
#include <QWheelEvent>

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <utility>

namespace quon::viewer {

namespace {

// How long the picture has to rest until what there was no time for is drawn, in milliseconds.
constexpr int StillDelay = 250;

const osg::Color3f LightTop(0.70F, 0.77F, 0.85F);
const osg::Color3f LightBottom(0.95F, 0.96F, 0.97F);
const osg::Color3f DarkTop(0.13F, 0.15F, 0.18F);
const osg::Color3f DarkBottom(0.27F, 0.30F, 0.34F);

constexpr double ZoomPerWheelStep = 1.15;
constexpr double ZoomPerScrolledPixel = 1.006;
// What Shift leaves of a turn of the wheel.
constexpr double FineShare = 0.2;
// Eighths of a degree that count as much as a pixel scrolled: a step of 120 scrolls about forty.
constexpr double AnglePerPixel = 3;

} // namespace

/** Tells the observer of an event, once, however many handlers the event goes through. */
class Viewport::Observation {
public:
    Observation(Viewport& viewport, const QEvent& event)
        : m_viewport(viewport)
        , m_event(event)
        , m_outer(viewport.m_observed)
        , m_observer(m_outer == &event ? nullptr : viewport.m_observer)
    {
        if (m_observer != nullptr) {
            m_viewport.m_observed = &event;
            m_observer->inputBegins(event);
        }
    }

    ~Observation()
    {
        if (m_observer == nullptr) {
            return;
        }
        m_viewport.m_observed = m_outer;
        // The event may have ended the observation.
        if (m_viewport.m_observer == m_observer) {
            m_observer->inputEnds(m_event);
        }
    }

    Observation(const Observation&) = delete;
    Observation& operator=(const Observation&) = delete;

private:
    Viewport& m_viewport;
    const QEvent& m_event;
    const QEvent* m_outer;
    InputObserver* m_observer;
};

/** The notifications over the OpenGL surface. */
class Viewport::Overlay : public QWidget {
public:
    explicit Overlay(Viewport& viewport)
        : QWidget(&viewport)
        , m_viewport(viewport)
    {
        setAttribute(Qt::WA_TransparentForMouseEvents);
        setFocusPolicy(Qt::NoFocus);
    }

protected:
    void paintEvent(QPaintEvent*) override
    {
        QPainter painter(this);
        m_viewport.paintOverlays(painter);
    }

private:
    Viewport& m_viewport;
};

Viewport::Viewport(ViewerSession& session, const Target target, QWidget* parent)
    : QWidget(parent)
    , m_session(session)
{
    setFocusPolicy(Qt::StrongFocus);
    setMouseTracking(true);
    setAttribute(Qt::WA_AcceptTouchEvents);
    // The right button turns the view.
    setContextMenuPolicy(Qt::PreventContextMenu);
    if (target == Target::Window) {
        if (QtVersions::canShowOpenGLWidgets()) {
            m_surface = new GlSurface(
                [this](const int width, const int height, const double ratio) { drawInWindow(width, height, ratio); },
                [this] { m_renderer.releaseResources(); }, this);
        }
        m_overlay = new Overlay(*this);
    }
    m_stillTimer.setSingleShot(true);
    m_stillTimer.setInterval(StillDelay);
    connect(&m_stillTimer, &QTimer::timeout, this, [this] {
        m_detail = SceneRenderer::Detail::Full;
        redraw();
    });
    m_renderer.setPrepared(&m_session.getPrepared());
    m_session.addSceneChangeListener(&m_renderer);
    connect(&m_session, &ViewerSession::redrawNeeded, this, &Viewport::redraw);
    connect(&m_session, &ViewerSession::overlaysChanged, this, &Viewport::redrawOverlays);
    m_session.setViewportSize(width(), height());
    notification::NotificationManager::getInstance()->addListener(this);
}

Viewport::~Viewport()
{
    notification::NotificationManager::getInstance()->removeListener(this);
    disconnect(&m_session, nullptr, this, nullptr);
    m_session.removeSceneChangeListener(&m_renderer);
    // Frees the renderer's resources in its context, while the renderer is still there.
    delete m_surface;
    releasePictures();
}

QImage Viewport::grabPicture()
{
    if (m_overlay != nullptr) {
        m_detail = SceneRenderer::Detail::Full;
        return grab().toImage();
    }
    QImage picture = drawOffscreen(true);
    QPainter painter(&picture);
    paintOverlays(painter);
    return picture;
}

QImage Viewport::grabScene()
{
    m_detail = SceneRenderer::Detail::Full; // of the window's next picture, which this is
    return m_surface != nullptr ? m_surface->grabFramebuffer() : drawOffscreen(false);
}

void Viewport::releasePictures()
{
    if (m_offscreen != nullptr) {
        m_offscreen->withContext([this] { m_renderer.releaseResources(); });
        m_offscreen.reset();
    }
}

void Viewport::mousePressEvent(QMouseEvent* event)
{
    m_pointer = event->pos();
    event->setAccepted(handle([&] { return m_session.getMapper().mousePressed(event); }));
}

void Viewport::mouseMoveEvent(QMouseEvent* event)
{
    m_pointer = event->pos();
    const bool dragging = event->buttons() != Qt::NoButton;
    event->setAccepted(handle([&] { return m_session.getMapper().mouseMoved(event, dragging); }));
}

void Viewport::mouseReleaseEvent(QMouseEvent* event)
{
    m_pointer = event->pos();
    event->setAccepted(handle([&] { return m_session.getMapper().mouseReleased(event); }));
}

void Viewport::mouseDoubleClickEvent(QMouseEvent* event)
{
    // The second press of two quick clicks comes as this event only.
    mousePressEvent(event);
}

void Viewport::leaveEvent(QEvent* event)
{
    event->setAccepted(handle([&] { return m_session.getMapper().hoverStopped(event); }));
}

void Viewport::wheelEvent(QWheelEvent* event)
{
    event->setAccepted(handle([&] {
        movePointer(event->position().toPoint(), event->buttons(), event->modifiers());
        return event->phase() == Qt::NoScrollPhase ? turnWheel(*event) : scroll(*event);
    }));
}

bool Viewport::turnWheel(const QWheelEvent& event)
{
    const bool fine = event.modifiers().testFlag(Qt::ShiftModifier);
    double delta = event.angleDelta().y();
    if (event.angleDelta().isNull()) {
        delta = event.pixelDelta().y() * AnglePerPixel;
    } else if (fine && event.angleDelta().y() == 0) {
        // Some systems take the wheel with Shift for one that turns sideways.
        delta = event.angleDelta().x();
    }
    if (delta == 0) {
        return false;
    }
    const double steps = delta / static_cast<double>(QWheelEvent::DefaultDeltasPerStep) * (fine ? FineShare : 1);
    return send(NavigationContext::getZoomCategory(std::pow(ZoomPerWheelStep, steps)), "trigger");
}

bool Viewport::scroll(const QWheelEvent& event)
{
    const QPointF delta =
        event.pixelDelta().isNull() ? QPointF(event.angleDelta()) / AnglePerPixel : QPointF(event.pixelDelta());
    if (event.modifiers().testFlag(Qt::ControlModifier)) {
        // Ends of the gesture carry no movement, but belong to whom the rest of it belongs.
        return delta.y() == 0 ||
               send(NavigationContext::getZoomCategory(std::pow(ZoomPerScrolledPixel, delta.y())), "trigger");
    }
    const std::string category = event.modifiers().testFlag(Qt::ShiftModifier)
                                     ? NavigationContext::getPanCategory(delta.x(), delta.y())
                                     : NavigationContext::getOrbitCategory(delta.x(), delta.y());
    bool consumed = event.phase() == Qt::ScrollBegin && send(category, "start");
    if (!delta.isNull()) {
        consumed = send(category, "process") || consumed;
    }
    if (event.phase() == Qt::ScrollEnd) {
        consumed = send(category, "stop") || consumed;
    }
    return consumed;
}

bool Viewport::event(QEvent* event)
{
    const Observation observation(*this, *event);
    switch (event->type()) {
    case QEvent::NativeGesture: {
        const auto* gesture = static_cast<QNativeGestureEvent*>(event);
        if (gesture->gestureType() != Qt::ZoomNativeGesture || gesture->value() <= -1) {
            break;
        }
        event->setAccepted(handle([&] {
            movePointer(QtVersions::getPosition(*gesture).toPoint(), Qt::NoButton, gesture->modifiers());
            return send(NavigationContext::getZoomCategory(1 + gesture->value()), "trigger");
        }));
        return true;
    }
    case QEvent::TouchBegin:
    case QEvent::TouchUpdate:
    case QEvent::TouchEnd:
    case QEvent::TouchCancel: {
        const auto& touch = *static_cast<QTouchEvent*>(event);
        // The fingers on a touchpad move the pointer, and more of them make native gestures.
        if (!QtVersions::isFromTouchScreen(touch)) {
            break;
        }
        handleTouch(touch);
        event->accept();
        return true;
    }
    default:
        break;
    }
    return QWidget::event(event);
}

void Viewport::handleTouch(const QTouchEvent& event)
{
    const QList<QtVersions::Finger>& fingers = QtVersions::getFingers(event);
    const bool isEnd = event.type() == QEvent::TouchEnd || event.type() == QEvent::TouchCancel;
    if (event.type() == QEvent::TouchCancel) {
        m_session.focusLost();
    } else if (m_pinching) {
        pinch(fingers);
    } else if (fingers.size() > 1) {
        // The first finger was taken for a mouse button.
        m_session.focusLost();
        m_pinching = true;
        pinch(fingers);
    } else if (fingers.size() == 1) {
        pointWithFinger(fingers.front(), event.modifiers());
    }
    for (const QtVersions::Finger& finger : fingers) {
        m_fingers[finger.id()] = QtVersions::getPosition(finger);
    }
    if (isEnd) {
        m_pinching = false;
        m_fingers.clear();
    }
}

QPointF Viewport::getLastPosition(const QtVersions::Finger& finger) const
{
    // Qt 6 goes on telling of a movement when the finger rests.
    const auto last = m_fingers.find(finger.id());
    return last == m_fingers.end() ? QtVersions::getPosition(finger) : last->second;
}

void Viewport::pointWithFinger(const QtVersions::Finger& finger, const Qt::KeyboardModifiers modifiers)
{
    const QPointF position = QtVersions::getPosition(finger);
    const auto send = [&](const QEvent::Type type, const Qt::MouseButton button, const Qt::MouseButtons buttons) {
        QMouseEvent event(type, position, mapTo(window(), position.toPoint()), QtVersions::getScreenPosition(finger),
                          button, buttons, modifiers, Qt::MouseEventSynthesizedByApplication);
        this->event(&event);
    };
    if (QtVersions::isPressed(finger)) {
        setFocus(Qt::MouseFocusReason);
        send(QEvent::MouseButtonPress, Qt::LeftButton, Qt::LeftButton);
    } else if (QtVersions::isReleased(finger)) {
        send(QEvent::MouseButtonRelease, Qt::LeftButton, Qt::NoButton);
    } else {
        send(QEvent::MouseMove, Qt::NoButton, Qt::LeftButton);
    }
}

void Viewport::pinch(const QList<QtVersions::Finger>& fingers)
{
    // A third finger and the one that is left at the end change nothing.
    if (fingers.size() < 2) {
        return;
    }
    const QLineF line(QtVersions::getPosition(fingers[0]), QtVersions::getPosition(fingers[1]));
    const QLineF last(getLastPosition(fingers[0]), getLastPosition(fingers[1]));
    // As a touchpad says it. Rounded before they are subtracted, so that what is left over does not add up.
    const QPoint centre = line.center().toPoint();
    const QPoint centreOnScreen = mapToGlobal(centre);
    const auto sendScroll = [&](const Qt::ScrollPhase phase, const QPoint& delta) {
        QWheelEvent event(centre, centreOnScreen, delta, QPoint(), Qt::NoButton, Qt::ShiftModifier, phase, false,
                          Qt::MouseEventSynthesizedByApplication);
        this->event(&event);
    };
    if (QtVersions::isPressed(fingers[0]) || QtVersions::isPressed(fingers[1])) {
        sendScroll(Qt::ScrollBegin, QPoint());
        return;
    }
    if (const QPoint delta = centre - last.center().toPoint(); !delta.isNull()) {
        sendScroll(Qt::ScrollUpdate, delta);
    }
    if (line.length() > 0 && last.length() > 0 && line.length() != last.length()) {
        QNativeGestureEvent event = QtVersions::makeGesture(Qt::ZoomNativeGesture, centre, mapTo(window(), centre),
                                                            centreOnScreen, line.length() / last.length() - 1);
        this->event(&event);
    }
    if (QtVersions::isReleased(fingers[0]) || QtVersions::isReleased(fingers[1])) {
        sendScroll(Qt::ScrollEnd, QPoint());
    }
}

bool Viewport::send(const std::string& category, const char* verb)
{
    return m_session.getInteractionManager().triggerEvent(interaction::InteractionEvent(category, verb));
}

void Viewport::movePointer(const QPoint& position, const Qt::MouseButtons buttons,
                           const Qt::KeyboardModifiers modifiers)
{
    if (position == m_pointer) {
        return;
    }
    m_pointer = position;
    const QMouseEvent movement(QEvent::MouseMove, position, mapToGlobal(position), Qt::NoButton, buttons, modifiers);
    m_session.getMapper().mouseMoved(&movement, buttons != Qt::NoButton);
}

bool Viewport::handleKey(QKeyEvent* event)
{
    return !std::exchange(m_leftKeyAlone, false) && sendKey(event);
}

bool Viewport::sendKey(QKeyEvent* event)
{
    const Observation observation(*this, *event);
    return handle([&] {
        interaction::QtEventMapper& mapper = m_session.getMapper();
        if (event->type() == QEvent::KeyPress && event->isAutoRepeat()) {
            // The mapper keeps repetitions from the contexts: commands run once however long a key is held.
            m_session.getNavigation().repeatSteps();
        }
        return event->type() == QEvent::KeyPress ? mapper.keyPressed(event) : mapper.keyReleased(event);
    });
}

void Viewport::keyPressEvent(QKeyEvent* event)
{
    event->setAccepted(sendKey(event));
    m_leftKeyAlone = !event->isAccepted();
}

void Viewport::keyReleaseEvent(QKeyEvent* event)
{
    event->setAccepted(sendKey(event));
    m_leftKeyAlone = !event->isAccepted();
}

void Viewport::focusOutEvent(QFocusEvent* event)
{
    handle([&] {
        m_session.focusLost();
        return true;
    });
    QWidget::focusOutEvent(event);
}

void Viewport::resizeEvent(QResizeEvent* event)
{
    QWidget::resizeEvent(event);
    if (m_surface != nullptr) {
        m_surface->setGeometry(rect());
    }
    if (m_overlay != nullptr) {
        m_overlay->setGeometry(rect());
        m_overlay->raise();
    }
    m_session.setViewportSize(width(), height());
}

bool Viewport::focusNextPrevChild(bool)
{
    // The tabulator is a key like any other here.
    return false;
}

template <class Handle>
bool Viewport::handle(const Handle& handleEvent)
{
    m_session.processSceneChanges();
    const bool consumed = handleEvent();
    m_session.processSceneChanges();
    // Setting one tells the window system, whether or not it is another.
    if (const Qt::CursorShape shape = m_session.getCursor(); shape != cursor().shape()) {
        setCursor(shape);
    }
    return consumed;
}

void Viewport::notificationAdded(notification::Notification*)
{
    redraw();
}

void Viewport::notificationChanged(notification::Notification*)
{
    redraw();
}

void Viewport::notificationRemoved(notification::Notification*)
{
    redraw();
}

void Viewport::draw(const int width, const int height, const double pixelRatio, const SceneRenderer::Detail detail)
{
    QElapsedTimer timer;
    timer.start();
    // What changes now is in the picture already.
    m_beginsFrame = true;
    m_session.beginFrame();
    m_beginsFrame = false;
    m_renderer.setPixelRatio(pixelRatio);
    m_renderer.setBackground(m_session.isDark() ? DarkTop : LightTop, m_session.isDark() ? DarkBottom : LightBottom);
    const CameraController& camera = m_session.getCamera();
    m_renderer.draw(m_session.getScene(), camera.getView(), camera.getProjection(), width, height, detail);
    m_frameTimes.add(static_cast<double>(timer.nsecsElapsed()) / 1e6);
}

void Viewport::drawInWindow(const int width, const int height, const double pixelRatio)
{
    try {
        draw(width, height, pixelRatio, std::exchange(m_detail, SceneRenderer::Detail::Moving));
    } catch (const ViewerError& error) {
        // Nothing may leave an event handler of Qt, and without drawing there is no viewer.
        std::fprintf(stderr, "koviewer: %s\n", error.what());
        std::exit(2);
    }
    // What there was no time for follows as soon as nobody wants another picture for a moment.
    if (m_renderer.getStatistics().waiting > 0) {
        m_stillTimer.stop();
        redraw();
    } else if (m_renderer.getStatistics().simplified) {
        m_stillTimer.start();
    } else {
        m_stillTimer.stop();
    }
}

bool Viewport::isPictureComplete() const
{
    const SceneRenderer::Statistics& statistics = m_renderer.getStatistics();
    return statistics.waiting == 0 && !statistics.simplified;
}

QImage Viewport::drawOffscreen(const bool multisampling)
{
    if (m_offscreen == nullptr) {
        m_offscreen = std::make_unique<OffscreenSurface>();
    }
    m_offscreen->setMultisampling(multisampling);
    // Lines of one pixel need more than the samples of one pixel to look even.
    const int scale = multisampling ? 2 : 1;
    const QImage picture = m_offscreen->draw(width() * scale, height() * scale, [&] {
        draw(width() * scale, height() * scale, scale, SceneRenderer::Detail::Full);
    });
    return picture.scaled(size(), Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
}

void Viewport::paintOverlays(QPainter& painter)
{
    if (m_overlay != nullptr && (m_surface == nullptr || !m_surface->isValid())) {
        painter.fillRect(rect(), QColor(43, 52, 64));
        painter.setPen(QColor(245, 247, 250));
        painter.drawText(rect(), Qt::AlignCenter | Qt::TextWordWrap,
                         tr("This display offers no OpenGL, so the model cannot be drawn here."));
    }
    for (OverlayItem* item : m_session.getOverlays()) {
        painter.save();
        item->paint(painter, size());
        painter.restore();
    }
    paintNotifications(painter, size());
}

void Viewport::redraw()
{
    if (m_surface != nullptr && !m_beginsFrame) {
        m_surface->update();
    }
    redrawOverlays();
}

void Viewport::redrawOverlays()
{
    if (m_overlay != nullptr) {
        m_overlay->update();
    }
}

} // namespace quon::viewer
