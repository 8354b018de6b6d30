// SPDX-License-Identifier: MIT
#pragma once

#include <QFrame>
#include <QStringList>

class QLabel;
class QToolButton;

namespace quon::viewer {

/**
 * A bar above the view that tells the user something in one line, until it is closed or there is something newer.
 *
 * It does not get in the way, as a box in front of the window would; longer lists are behind a button.
 */
class MessageBar : public QFrame {
    Q_OBJECT

public:
    enum class Kind { Note, Warning, Error };

    explicit MessageBar(QWidget* parent = nullptr);

    /**
     * Shows the bar.
     *
     * @param text one sentence, plain text
     * @param details lines that are shown on request; none when empty
     */
    void showMessage(Kind kind, const QString& text, const QStringList& details = {});

    QString getText() const;

protected:
    void changeEvent(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    void retranslate();
    void setDetailsShown(bool shown);
    void setColours();

    Kind m_kind = Kind::Note;
    QLabel* m_icon;
    QLabel* m_text;
    QToolButton* m_detailsButton;
    QToolButton* m_closeButton;
    QLabel* m_details;
};

} // namespace quon::viewer
