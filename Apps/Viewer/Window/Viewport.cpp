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

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QResizeEvent>
#include <QWheelEvent>

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
    // The right button turns the view.
    setContextMenuPolicy(Qt::PreventContextMenu);
    if (target == Target::Window) {
        m_surface = new GlSurface(
            [this](const int width, const int height, const double ratio) { drawInWindow(width, height, ratio); },
            [this] { m_renderer.releaseResources(); }, this);
        m_overlay = new Overlay(*this);
    }
    m_stillTimer.setSingleShot(true);
    m_stillTimer.setInterval(StillDelay);
    connect(&m_stillTimer, &QTimer::timeout, this, [this] {
        m_detail = SceneRenderer::Detail::Full;
        redraw();
    });
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
    if (m_offscreen != nullptr) {
        m_offscreen->withContext([this] { m_renderer.releaseResources(); });
    }
}

QImage Viewport::grabPicture()
{
    if (m_surface != nullptr) {
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

bool Viewport::event(QEvent* event)
{
    const Observation observation(*this, *event);
    return QWidget::event(event);
}

void Viewport::mousePressEvent(QMouseEvent* event)
{
    event->setAccepted(handle([&] { return m_session.getMapper().mousePressed(event); }));
}

void Viewport::mouseMoveEvent(QMouseEvent* event)
{
    const bool dragging = event->buttons() != Qt::NoButton;
    event->setAccepted(handle([&] { return m_session.getMapper().mouseMoved(event, dragging); }));
}

void Viewport::mouseReleaseEvent(QMouseEvent* event)
{
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
    constexpr int step = QWheelEvent::DefaultDeltasPerStep;
    m_wheelRest += event->angleDelta().y();
    const int steps = m_wheelRest / step;
    m_wheelRest -= steps * step;
    const interaction::InteractionEvent zoom(steps > 0 ? "navigate:zoom-in" : "navigate:zoom-out", "trigger");
    event->setAccepted(handle([&] {
        bool consumed = false;
        for (int i = std::abs(steps); i > 0; --i) {
            consumed = m_session.getInteractionManager().triggerEvent(zoom) || consumed;
        }
        return consumed;
    }));
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
    setCursor(m_session.getCursor());
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
    // What changes now is in the picture already.
    m_beginsFrame = true;
    m_session.beginFrame();
    m_beginsFrame = false;
    m_renderer.setPixelRatio(pixelRatio);
    m_renderer.setBackground(m_session.isDark() ? DarkTop : LightTop, m_session.isDark() ? DarkBottom : LightBottom);
    const CameraController& camera = m_session.getCamera();
    m_renderer.draw(m_session.getScene(), camera.getView(), camera.getProjection(), width, height, detail);
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
    if (m_renderer.getStatistics().leftOut > 0) {
        m_stillTimer.start();
    } else {
        m_stillTimer.stop();
    }
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
    if (m_surface != nullptr && !m_surface->isValid()) {
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
