// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QStringList>

class QSettings;

namespace quon::viewer {

/** The files that were opened last, newest first, remembered from one start of the program to the next. */
class RecentFiles : public QObject {
    Q_OBJECT

public:
    static constexpr int LargestCount = 10;

    explicit RecentFiles(QObject* parent = nullptr);

    /** Takes the list over from @p settings and keeps it there from now on; borrowed. Null keeps it nowhere. */
    void useSettings(QSettings* settings);

    /** Puts a file in front, wherever it was, and drops the oldest if there are too many. An empty path is ignored. */
    void add(const QString& file);

    /** Takes a file out; one that is not there is ignored. */
    void remove(const QString& file);

    void clear();

    /** Absolute paths, newest first. */
    const QStringList& getFiles() const { return m_files; }

signals:
    void changed();

private:
    void store(const QStringList& files);

    QSettings* m_settings = nullptr;
    QStringList m_files;
};

} // namespace quon::viewer
