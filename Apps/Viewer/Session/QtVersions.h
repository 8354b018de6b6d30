// SPDX-License-Identifier: MIT
#pragma once

#include <QCoreApplication>
#include <QGuiApplication>
#include <QHoverEvent>
#include <QKeySequence>
#include <QLibraryInfo>
#include <QList>
#include <QNativeGestureEvent>
#include <QPointF>
#include <QString>
#include <QTouchEvent>
#if QT_VERSION < QT_VERSION_CHECK(6, 0, 0)
#include <QTouchDevice>
#else
#include <QPointingDevice>
#endif

namespace quon::viewer {

/**
 * What Qt 5 and Qt 6 say with different words.
 *
 * The only place of the viewer that asks for the version of Qt. All positions are in logical pixels, those without
 * further words in the coordinates of the widget that gets the event.
 */
class QtVersions {
public:
#if QT_VERSION < QT_VERSION_CHECK(6, 0, 0)
    using Finger = QTouchEvent::TouchPoint;

    /** The key with its modifiers, the first one of a sequence; 0 of an empty sequence. */
    static int getFirstKey(const QKeySequence& sequence)
    {
        return sequence.isEmpty() ? 0 : sequence[0];
    }

    /** Lets logical pixels have several of the screen; to be called before there is an application. */
    static void enableHighResolution()
    {
        QCoreApplication::setAttribute(Qt::AA_EnableHighDpiScaling);
        QCoreApplication::setAttribute(Qt::AA_UseHighDpiPixmaps);
    }

    /** Whether a window may have a QOpenGLWidget; whether that can draw is another question. */
    static bool canShowOpenGLWidgets()
    {
        return true;
    }

    static QString getTranslationsFolder()
    {
        return QLibraryInfo::location(QLibraryInfo::TranslationsPath);
    }

    static QPointF getPosition(const QNativeGestureEvent& event)
    {
        return event.localPos();
    }
    static QPointF getPosition(const QHoverEvent& event)
    {
        return event.posF();
    }

    static QPointF getPosition(const Finger& finger)
    {
        return finger.pos();
    }
    static QPointF getScreenPosition(const Finger& finger)
    {
        return finger.screenPos();
    }
    static bool isPressed(const Finger& finger)
    {
        return finger.state() == Qt::TouchPointPressed;
    }
    static bool isReleased(const Finger& finger)
    {
        return finger.state() == Qt::TouchPointReleased;
    }

    static const QList<Finger>& getFingers(const QTouchEvent& event)
    {
        return event.touchPoints();
    }
    static bool isFromTouchScreen(const QTouchEvent& event)
    {
        return event.device() != nullptr && event.device()->type() == QTouchDevice::TouchScreen;
    }

    /** A gesture of the device that moves the pointer; @p inWindow and @p onScreen are the same position there. */
    static QNativeGestureEvent makeGesture(const Qt::NativeGestureType type, const QPointF& position,
                                           const QPointF& inWindow, const QPointF& onScreen, const double value)
    {
        return QNativeGestureEvent(type, nullptr, position, inWindow, onScreen, value, 0, 0);
    }

    /** A finger on a touch screen; @p onScreen is the same position there. */
    static Finger makeFinger(const int id, const Qt::TouchPointState state, const QPointF& position,
                             const QPointF& onScreen)
    {
        Finger finger(id);
        finger.setState(state);
        finger.setPos(position);
        finger.setScreenPos(onScreen);
        return finger;
    }

    /** What the fingers on a touch screen do, of which there is one even where there is none. */
    static QTouchEvent makeTouch(const QEvent::Type type, const QList<Finger>& fingers)
    {
        // A device outlives all events that name it.
        static QTouchDevice* const screen = [] {
            auto* const device = new QTouchDevice;
            device->setType(QTouchDevice::TouchScreen);
            return device;
        }();
        Qt::TouchPointStates states;
        for (const Finger& finger : fingers) {
            states |= finger.state();
        }
        return QTouchEvent(type, screen, Qt::NoModifier, states, fingers);
    }

    /** The pointer over a widget; both positions are those in the widget. */
    static QHoverEvent makeHover(const QEvent::Type type, const QPointF& position, const QPointF& lastPosition)
    {
        return QHoverEvent(type, position, lastPosition);
    }
#else
    using Finger = QEventPoint;

    static int getFirstKey(const QKeySequence& sequence)
    {
        return sequence.isEmpty() ? 0 : sequence[0].toCombined();
    }

    // Always so.
    static void enableHighResolution() {}

    // Qt 6.4 crashes when it composes such a window on a platform that has no OpenGL.
    static bool canShowOpenGLWidgets()
    {
        return QGuiApplication::platformName() != QLatin1String("offscreen");
    }

    static QString getTranslationsFolder()
    {
        return QLibraryInfo::path(QLibraryInfo::TranslationsPath);
    }

    static QPointF getPosition(const QNativeGestureEvent& event)
    {
        return event.position();
    }
    static QPointF getPosition(const QHoverEvent& event)
    {
        return event.position();
    }

    static QPointF getPosition(const Finger& finger)
    {
        return finger.position();
    }
    static QPointF getScreenPosition(const Finger& finger)
    {
        return finger.globalPosition();
    }
    static bool isPressed(const Finger& finger)
    {
        return finger.state() == QEventPoint::Pressed;
    }
    static bool isReleased(const Finger& finger)
    {
        return finger.state() == QEventPoint::Released;
    }

    static const QList<Finger>& getFingers(const QTouchEvent& event)
    {
        return event.points();
    }
    static bool isFromTouchScreen(const QTouchEvent& event)
    {
        return event.deviceType() == QInputDevice::DeviceType::TouchScreen;
    }

    static QNativeGestureEvent makeGesture(const Qt::NativeGestureType type, const QPointF& position,
                                           const QPointF& inWindow, const QPointF& onScreen, const double value)
    {
        constexpr int fingers = 2;
        return QNativeGestureEvent(type, QPointingDevice::primaryPointingDevice(), fingers, position, inWindow,
                                   onScreen, value, QPointF());
    }

    static Finger makeFinger(const int id, const Qt::TouchPointState state, const QPointF& position,
                             const QPointF& onScreen)
    {
        return Finger(id, static_cast<QEventPoint::State>(state), position, onScreen);
    }

    static QTouchEvent makeTouch(const QEvent::Type type, const QList<Finger>& fingers)
    {
        constexpr int mostFingers = 10;
        static const QPointingDevice screen(QStringLiteral("screen"), 1, QInputDevice::DeviceType::TouchScreen,
                                            QPointingDevice::PointerType::Finger, QInputDevice::Capability::Position,
                                            mostFingers, 0);
        return QTouchEvent(type, &screen, Qt::NoModifier, fingers);
    }

    static QHoverEvent makeHover(const QEvent::Type type, const QPointF& position, const QPointF& lastPosition)
    {
        return QHoverEvent(type, position, position, lastPosition);
    }
#endif
};

} // namespace quon::viewer
