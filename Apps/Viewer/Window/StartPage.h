// SPDX-License-Identifier: MIT
#pragma once

#include <QWidget>

class QLabel;
class QPushButton;
class QVBoxLayout;

namespace quon::viewer {

class RecentFiles;

/**
 * What stands in place of the view while there is no model: what the user can do to get one.
 *
 * Everything on it can be reached with the keyboard.
 */
class StartPage : public QWidget {
    Q_OBJECT

public:
    /** @param files borrowed, must outlive the page */
    explicit StartPage(RecentFiles& files, QWidget* parent = nullptr);

    /** Shows whether what is being dragged over the window could be dropped. */
    void setDropExpected(bool expected);

signals:
    void openRequested();
    void assemblyRequested();
    void fileChosen(const QString& file);

protected:
    void changeEvent(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    void retranslate();
    void fillRecentFiles();

    RecentFiles& m_files;
    QWidget* m_frame;
    QLabel* m_picture;
    QLabel* m_title;
    QLabel* m_hint;
    QPushButton* m_open;
    QPushButton* m_assembly;
    QLabel* m_recentTitle;
    QWidget* m_recent;
    QVBoxLayout* m_recentLayout;
    bool m_dropExpected = false;
};

} // namespace quon::viewer
