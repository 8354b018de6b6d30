// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QString>
#include <QTimer>

#include <chrono>
#include <string>

namespace quon::notification {
class TextNotification;
}

namespace quon::viewer {

/** A notification that goes away by itself. */
class PassingNotification : public QObject {
    Q_OBJECT

public:
    /** @param name of the notification in the notification area */
    explicit PassingNotification(std::string name, QObject* parent = nullptr);

    /** Takes the notification away. */
    ~PassingNotification() override;

    PassingNotification(const PassingNotification&) = delete;
    PassingNotification& operator=(const PassingNotification&) = delete;

    /** Shows @p text for @p duration from now on; an empty text hides it. */
    void show(const QString& text, std::chrono::milliseconds duration = std::chrono::seconds(8));

    /** Shows another text for the rest of the time; nothing happens when the time is over. */
    void setText(const QString& text);

    void hide();

private:
    std::string m_name;
    notification::TextNotification* m_notification = nullptr; ///< while it is shown; the manager owns it
    QTimer m_timer;
};

} // namespace quon::viewer
