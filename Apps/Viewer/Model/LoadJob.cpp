// SPDX-License-Identifier: MIT
#include "Viewer/Model/LoadJob.h"

#include "Viewer/Model/ModelBuilder.h"
#include "Viewer/Model/ModelLoader.h"
#include "Viewer/Model/ModelReader.h"
#include "Viewer/Model/PreparedGeometries.h"
#include "Viewer/Model/SceneChanges.h"
#include "Viewer/Model/ViewerError.h"

#include <QFile>
#include <QFileInfo>
#include <QLocale>

#include <exception>
#include <utility>

namespace quon::viewer {

namespace {

// Between two times that the same step is told: whoever shows it draws a window for each.
constexpr std::chrono::milliseconds TellingInterval(50);

} // namespace

LoadJob::LoadJob(std::string file, Read read, QObject* parent)
    : QObject(parent)
    , m_read(read ? std::move(read) : Read(&ModelReader::read))
    , m_control([this](const LoadControl::Step step, const double share) { noteProgress(step, share); })
{
    m_model.file = std::move(file);
    connect(&m_slices, &QTimer::timeout, this, &LoadJob::buildSlice);
}

LoadJob::~LoadJob()
{
    blockSignals(true);
    cancel();
    if (m_thread.joinable()) {
        m_thread.join();
    }
}

void LoadJob::start()
{
    if (m_state != State::Waiting) {
        return;
    }
    m_state = State::Reading;
    emit progressed(tr("Reading %1").arg(getName()), 0);
    m_thread = std::thread([this] { run(); });
}

void LoadJob::cancel()
{
    if (!isActive()) {
        return;
    }
    m_control.cancel();
    end();
    emit cancelled();
}

// In the thread.
void LoadJob::run()
{
    try {
        const auto data = std::make_shared<ModelData>(m_read(getFile(), m_control));
        prepareGeometries(*data, m_control);
        post([this, data] { build(data); });
    } catch (const LoadCancelled&) {
        // Whoever cancelled knows.
    } catch (const ViewerError& error) {
        post([this, line = QString::fromStdString(error.what())] { fail(line); });
    } catch (const std::exception& error) {
        // No room or a quarrel of the reader's: neither knows of which file.
        const ViewerError named(getFile(), error.what());
        post([this, line = QString::fromStdString(named.what())] { fail(line); });
    }
    post([this] { threadEnded(); });
}

// The job outlives its thread, and what was posted ends with the job.
template <class Function>
void LoadJob::post(Function function)
{
    QMetaObject::invokeMethod(this, std::move(function), Qt::QueuedConnection);
}

// In the thread.
void LoadJob::noteProgress(const LoadControl::Step step, const double share)
{
    const std::lock_guard<std::mutex> lock(m_progressMutex);
    m_step = step;
    m_share = share;
    if (!m_progressPosted) {
        m_progressPosted = true;
        post([this] { tellProgress(); });
    }
}

void LoadJob::tellProgress()
{
    LoadControl::Step step = LoadControl::Step::Reading;
    double share = 0;
    {
        const std::lock_guard<std::mutex> lock(m_progressMutex);
        if (const auto rest = getTellingRest(); m_step == m_toldStep && rest.count() > 0) {
            QTimer::singleShot(rest, this, &LoadJob::tellProgress);
            return;
        }
        m_progressPosted = false;
        step = m_step;
        share = m_share;
    }
    if (m_state == State::Reading) {
        m_toldStep = step;
        m_lastTold = Clock::now();
        emit progressed(describe(step).arg(getName()), share);
    }
}

std::chrono::milliseconds LoadJob::getTellingRest() const
{
    return std::chrono::ceil<std::chrono::milliseconds>(m_lastTold + TellingInterval - Clock::now());
}

QString LoadJob::describe(const LoadControl::Step step)
{
    switch (step) {
    case LoadControl::Step::Reading:
        return tr("Reading %1");
    case LoadControl::Step::Indexing:
        return tr("Preparing the selection in %1");
    default:
        return tr("Preparing %1");
    }
}

void LoadJob::build(const std::shared_ptr<ModelData>& data)
{
    if (m_state != State::Reading) {
        return;
    }
    m_state = State::Building;
    m_lastTold = Clock::time_point();
    const std::string file = getFile();
    m_model = ModelLoader::describe(file, *data);
    m_builder = std::make_unique<ModelBuilder>(std::move(*data));
    m_slices.start(0);
}

void LoadJob::buildSlice()
{
    bool complete = false;
    try {
        const SceneChanges::Pause pause;
        complete = m_builder->advance(ModelBuilder::Clock::now() + m_slice);
    } catch (const std::exception& error) {
        fail(QString::fromStdString(ViewerError(getFile(), error.what()).what()));
        return;
    }
    if (complete || getTellingRest().count() <= 0) {
        tellBuilt();
    }
    // Whoever heard that may have cancelled.
    if (!complete || m_state != State::Building) {
        return;
    }
    m_model.prepared = m_builder->takePrepared();
    ModelLoader::finish(m_model, m_builder->getRoot());
    end();
    // The receiver's from here on: the job does not keep a model alive that nobody shows any more.
    const LoadedModel model = std::exchange(m_model, LoadedModel());
    m_model.file = model.file;
    emit finished(model);
}

void LoadJob::tellBuilt()
{
    m_lastTold = Clock::now();
    const QLocale locale;
    const std::size_t built = m_builder->countBuiltParts();
    const std::size_t total = m_builder->countParts();
    emit progressed(tr("Building the scene: %1 of %Ln parts", nullptr, static_cast<int>(total))
                        .arg(locale.toString(static_cast<qulonglong>(built))),
                    total == 0 ? 1 : static_cast<double>(built) / static_cast<double>(total));
}

void LoadJob::fail(const QString& line)
{
    if (!isActive()) {
        return;
    }
    end();
    emit failed(line);
}

void LoadJob::end()
{
    m_slices.stop();
    m_builder.reset();
    m_state = State::Ended;
    if (!m_thread.joinable()) {
        // Not before the signal that says how it ended.
        post([this] { emit settled(); });
    }
}

void LoadJob::threadEnded()
{
    m_thread.join();
    if (m_state == State::Ended) {
        emit settled();
    }
}

QString LoadJob::getName() const
{
    return QFileInfo(QFile::decodeName(getFile().c_str())).fileName();
}

} // namespace quon::viewer
