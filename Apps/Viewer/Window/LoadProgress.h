// SPDX-License-Identifier: MIT
#pragma once

#include <QFrame>

class QLabel;
class QProgressBar;
class QPushButton;

namespace quon::viewer {

/** A bar that says what a load is doing and how far it is, with a button to cancel it. Hidden while nothing is loaded.
 */
class LoadProgress : public QFrame {
    Q_OBJECT

public:
    explicit LoadProgress(QWidget* parent = nullptr);

    /**
     * Shows the bar with new contents.
     *
     * @param share from 0 to 1, or below 0 when nobody knows: the bar shows that something is going on then
     */
    void showProgress(const QString& text, double share);

signals:
    void cancelRequested();

protected:
    void changeEvent(QEvent* event) override;

private:
    void retranslate();

    QLabel* m_text;
    QProgressBar* m_bar;
    QPushButton* m_cancel;
};

} // namespace quon::viewer
