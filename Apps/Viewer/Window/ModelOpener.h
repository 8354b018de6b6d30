// SPDX-License-Identifier: MIT
#pragma once

#include "Viewer/Model/LoadJob.h"
#include "Viewer/Model/LoadedModel.h"

#include <QObject>
#include <QString>
#include <QStringList>

#include <chrono>
#include <string>
#include <utility>

namespace quon::viewer {

/**
 * Loads models one at a time, while whoever asks goes on with what they are doing.
 *
 * Opening another file while one is being loaded cancels the first. Jobs that were cancelled are kept until their
 * threads have ended; only the destruction of the opener waits for them.
 */
class ModelOpener : public QObject {
    Q_OBJECT

public:
    explicit ModelOpener(QObject* parent = nullptr);
    ~ModelOpener() override;

    /** Starts to load a file. */
    void open(const std::string& file);

    /** Ends the load that is under way, if there is one. */
    void cancel();

    bool isLoading() const { return m_job != nullptr; }

    /** Replaces what reads files in later loads; empty for ModelReader::read(). */
    void setRead(LoadJob::Read read) { m_read = std::move(read); }

    /** How long one slice of building may take in later loads, see LoadJob::setSlice(). */
    void setSlice(std::chrono::milliseconds slice) { m_slice = slice; }

    /** Returns the filters of a file dialog: all models, each format by name, all files. */
    static QStringList getNameFilters();

signals:
    /** Another file is being loaded. */
    void started(const QString& name);

    /** What is being done, and how much of it; see LoadJob::progressed(). */
    void progressed(const QString& text, double share);

    /** The load has come to its end; one of the next three follows. */
    void ended();

    void opened(const LoadedModel& model);

    /** @param line names the file and the reason */
    void failed(const QString& line);

    void cancelled();

private:
    void forget();

    LoadJob::Read m_read;
    std::chrono::milliseconds m_slice = LoadJob::UsualSlice;
    LoadJob* m_job = nullptr; ///< under way; a child, as those are that were cancelled and not settled yet
};

} // namespace quon::viewer
