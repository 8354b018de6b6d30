// SPDX-License-Identifier: MIT
#include "Viewer/Window/RecentFilesMenu.h"

#include "Viewer/Window/RecentFiles.h"

#include <QAction>
#include <QDir>
#include <QFileInfo>

namespace quon::viewer {

RecentFilesMenu::RecentFilesMenu(RecentFiles& files, QWidget* parent)
    : QMenu(parent)
    , m_files(files)
{
    setToolTipsVisible(true);
    connect(&m_files, &RecentFiles::changed, this, &RecentFilesMenu::fill);
    // Files come and go behind our back.
    connect(this, &QMenu::aboutToShow, this, &RecentFilesMenu::fill);
    retranslate();
}

void RecentFilesMenu::retranslate()
{
    setTitle(tr("Open &recent"));
    fill();
}

void RecentFilesMenu::fill()
{
    clear();
    int number = 0;
    for (const QString& file : m_files.getFiles()) {
        const QFileInfo info(file);
        // An ampersand would underline what follows it.
        const QString name = info.fileName().replace(QLatin1Char('&'), QLatin1String("&&"));
        ++number;
        const QString digit = number < 10 ? QStringLiteral("&%1").arg(number) : QStringLiteral("1&0");
        QAction* action =
            addAction(info.exists() ? tr("%1  %2").arg(digit, name) : tr("%1  %2 (no longer there)").arg(digit, name));
        action->setToolTip(QDir::toNativeSeparators(file));
        connect(
            action, &QAction::triggered, this, [this, file] { emit fileChosen(file); }, Qt::QueuedConnection);
    }
    if (number == 0) {
        addAction(tr("No files yet"))->setEnabled(false);
        return;
    }
    addSeparator();
    connect(addAction(tr("Clear the list")), &QAction::triggered, &m_files, &RecentFiles::clear, Qt::QueuedConnection);
}

} // namespace quon::viewer
