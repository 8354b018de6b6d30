// SPDX-License-Identifier: MIT
#include "Viewer/Window/RecentFiles.h"

#include <QFileInfo>
#include <QSettings>

namespace quon::viewer {

namespace {

const QString Key = QStringLiteral("recentFiles");

} // namespace

RecentFiles::RecentFiles(QObject* parent)
    : QObject(parent)
{}

void RecentFiles::useSettings(QSettings* settings)
{
    m_settings = settings;
    if (m_settings != nullptr) {
        m_files = m_settings->value(Key).toStringList().mid(0, LargestCount);
        emit changed();
    }
}

void RecentFiles::add(const QString& file)
{
    if (file.isEmpty()) {
        return;
    }
    const QString path = QFileInfo(file).absoluteFilePath();
    QStringList files = m_files;
    files.removeAll(path);
    files.prepend(path);
    store(files.mid(0, LargestCount));
}

void RecentFiles::remove(const QString& file)
{
    QStringList files = m_files;
    if (files.removeAll(QFileInfo(file).absoluteFilePath()) > 0) {
        store(files);
    }
}

void RecentFiles::clear()
{
    store({});
}

void RecentFiles::store(const QStringList& files)
{
    if (files == m_files) {
        return;
    }
    m_files = files;
    if (m_settings != nullptr) {
        m_settings->setValue(Key, m_files);
    }
    emit changed();
}

} // namespace quon::viewer
