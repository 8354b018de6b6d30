// SPDX-License-Identifier: MIT
#pragma once

#include "Viewer/Session/InputBindings.h"
#include "Viewer/Session/PassingNotification.h"

#include <QByteArray>
#include <QObject>
#include <QPointer>

#include <vector>

class QAction;
class QKeyEvent;
class QMainWindow;
class QWidget;

namespace quon::viewer {

class ViewerSession;

/**
 * The window as a presenter wants it: nothing but the view, on the whole screen, and keys that do nothing.
 *
 * The library's manager holds the keys back (a presenter's remote control and a stray elbow are all the same to it);
 * the mouse works as always. With the keys it holds back the one that would end the mode: the window itself takes that
 * one and Escape as long as the mode lasts, before they reach the library. No shortcuts of Qt's do that: they are
 * silent in a window that no window manager has activated.
 */
class PresenterMode : public QObject {
    Q_OBJECT

public:
    /**
     * @param window borrowed, must outlive the mode
     * @param view gets the focus; a child of the window
     * @param session borrowed, must outlive the mode
     */
    PresenterMode(QMainWindow& window, QWidget& view, ViewerSession& session);

    /** Lets the keys through again; the window stays as it is. */
    ~PresenterMode() override;

    PresenterMode(const PresenterMode&) = delete;
    PresenterMode& operator=(const PresenterMode&) = delete;

    bool isOn() const { return m_isOn; }

    /** Enters the mode once the event that is under way is over; on its way into the mapper a key cannot be ended. */
    void enterLater();

    /** Brings menus, panels, bars and the state of the window back as they were. Nothing happens when it is off. */
    void leave();

    /** Asks for all texts again, after the language changed. */
    void retranslate();

    bool eventFilter(QObject* object, QEvent* event) override;

signals:
    /** About to be entered: the window is still as the user left it. */
    void aboutToEnter();

    /** The mode was entered or left. */
    void changed();

private:
    void enter();
    void hideAllButView();
    void showAllAgain();
    bool isWayBack(const QKeyEvent& event) const;
    QString describe() const;

    QMainWindow& m_window;
    QWidget& m_view;
    ViewerSession& m_session;
    KeyBinding m_key; ///< what the command has
    PassingNotification m_notice;
    bool m_isOn = false;
    QByteArray m_panels;
    Qt::WindowStates m_windowState = Qt::WindowNoState;
    std::vector<QPointer<QWidget>> m_hidden;
    std::vector<QPointer<QAction>> m_disabled;
};

} // namespace quon::viewer
