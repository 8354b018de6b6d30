// SPDX-License-Identifier: MIT
#pragma once

#include <QMenu>

namespace quon::viewer {

class RecentFiles;

/** The menu of the recent files. What is there no more is marked; choosing it asks for it all the same. */
class RecentFilesMenu : public QMenu {
    Q_OBJECT

public:
    /** @param files borrowed, must outlive the menu */
    explicit RecentFilesMenu(RecentFiles& files, QWidget* parent = nullptr);

    /** Asks for all texts again, after the language changed. */
    void retranslate();

signals:
    void fileChosen(const QString& file);

private:
    void fill();

    RecentFiles& m_files;
};

} // namespace quon::viewer
