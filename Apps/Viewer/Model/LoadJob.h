// SPDX-License-Identifier: MIT
#pragma once

#include "Viewer/Model/LoadControl.h"
#include "Viewer/Model/LoadedModel.h"
#include "Viewer/Model/ModelData.h"

#include <QObject>
#include <QString>
#include <QTimer>

#include <chrono>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <thread>

namespace quon::viewer {

class ModelBuilder;

/**
 * Loads one model without keeping anybody waiting: the file is read in a thread of its own, and so is made what those
 * who show the model would have to make first; the scene graph is built in the thread of this object, in slices of a
 * few milliseconds from its event loop.
 *
 * A job ends once, with finished(), failed() or cancelled(), and tells nothing but settled() afterwards. Cancelling
 * ends it at once for everybody else; the thread may need some time to notice, see ModelReader. settled() comes when it
 * has: from then on the job can be destroyed without waiting. Destroyed before, it cancels and waits.
 */
class LoadJob : public QObject {
    Q_OBJECT

public:
    /** Reads a file in the job's thread, as ModelReader::read() does. */
    using Read = std::function<ModelData(const std::string& file, const LoadControl& control)>;

    /** Short enough that nobody notices at sixty frames a second. */
    static constexpr std::chrono::milliseconds UsualSlice{6};

    /** @param read what reads the file; ModelReader::read() when it is left out */
    explicit LoadJob(std::string file, Read read = {}, QObject* parent = nullptr);
    ~LoadJob() override;

    LoadJob(const LoadJob&) = delete;
    LoadJob& operator=(const LoadJob&) = delete;

    /** How long one slice of building may take; UsualSlice unless set. With 0, each slice builds one piece. */
    void setSlice(std::chrono::milliseconds slice) { m_slice = slice; }

    /** Starts the thread. Further calls do nothing. */
    void start();

    /** Ends a job that is under way, with cancelled(). Does nothing before start() and after the end. */
    void cancel();

    /** Whether it was started and has not ended. */
    bool isActive() const { return m_state == State::Reading || m_state == State::Building; }

    /** Whether it can be destroyed without waiting: it never started, or it ended and so did its thread. */
    bool isSettled() const { return !isActive() && !m_thread.joinable(); }

    const std::string& getFile() const { return m_model.file; }

signals:
    /**
     * Says what is being done.
     *
     * @param text for the user
     * @param share how much of this step is done: from 0 to 1, or below 0 when nobody knows
     */
    void progressed(const QString& text, double share);

    /** Built, and nobody else's: the receiver takes a reference or lets it go. */
    void finished(const LoadedModel& model);

    /** @param line names the file and the reason */
    void failed(const QString& line);

    void cancelled();

    /** The thread has ended, and so has the job. */
    void settled();

private:
    using Clock = std::chrono::steady_clock;

    enum class State { Waiting, Reading, Building, Ended };

    void run();
    template <class Function>
    void post(Function function);
    void noteProgress(LoadControl::Step step, double share);
    void tellProgress();
    std::chrono::milliseconds getTellingRest() const;
    static QString describe(LoadControl::Step step);
    void build(const std::shared_ptr<ModelData>& data);
    void buildSlice();
    void tellBuilt();
    void fail(const QString& line);
    void end();
    void threadEnded();
    QString getName() const;

    LoadedModel m_model;
    Read m_read;
    std::chrono::milliseconds m_slice = UsualSlice;
    LoadControl m_control;
    std::thread m_thread;
    State m_state = State::Waiting;
    QTimer m_slices;
    std::unique_ptr<ModelBuilder> m_builder;
    LoadControl::Step m_toldStep = LoadControl::Step::Reading;
    Clock::time_point m_lastTold;

    // What the thread noted last; one message at a time is on its way.
    std::mutex m_progressMutex;
    LoadControl::Step m_step = LoadControl::Step::Reading;
    double m_share = 0;
    bool m_progressPosted = false;
};

} // namespace quon::viewer
