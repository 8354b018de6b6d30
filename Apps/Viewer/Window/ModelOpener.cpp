// SPDX-License-Identifier: MIT
#include "Viewer/Window/ModelOpener.h"

#include "Viewer/Model/ModelReader.h"

#include <QFile>
#include <QFileInfo>

namespace quon::viewer {

namespace {

QString patternsOf(const QStringList& extensions)
{
    QStringList patterns;
    for (const QString& extension : extensions) {
        patterns << QStringLiteral("*.") + extension;
    }
    return patterns.join(QLatin1Char(' '));
}

} // namespace

ModelOpener::ModelOpener(QObject* parent)
    : QObject(parent)
{}

ModelOpener::~ModelOpener()
{
    blockSignals(true);
    cancel();
    // All of them are told to end; the jobs wait for their threads when they are destroyed as children.
}

void ModelOpener::open(const std::string& file)
{
    cancel();
    m_job = new LoadJob(file, m_read, this);
    m_job->setSlice(m_slice);
    connect(m_job, &LoadJob::progressed, this, &ModelOpener::progressed);
    connect(m_job, &LoadJob::finished, this, [this](const LoadedModel& model) {
        forget();
        emit opened(model);
    });
    connect(m_job, &LoadJob::failed, this, [this](const QString& line) {
        forget();
        emit failed(line);
    });
    connect(m_job, &LoadJob::cancelled, this, [this] {
        forget();
        emit cancelled();
    });
    connect(m_job, &LoadJob::settled, m_job, &QObject::deleteLater);
    emit started(QFileInfo(QFile::decodeName(file.c_str())).fileName());
    m_job->start();
}

void ModelOpener::cancel()
{
    if (m_job != nullptr) {
        m_job->cancel();
    }
}

QStringList ModelOpener::getNameFilters()
{
    QStringList all;
    QStringList filters;
    for (const ModelReader::Format& format : ModelReader::getFormats()) {
        all << format.extensions;
        // What stands in brackets in a name would be taken for the patterns.
        QString name = format.name;
        name.remove(QStringLiteral(" Importer"));
        name = name.left(name.indexOf(QLatin1Char('('))).trimmed();
        filters << tr("%1 (%2)").arg(name.isEmpty() ? format.extensions.front().toUpper() : name,
                                     patternsOf(format.extensions));
    }
    all.sort();
    all.removeDuplicates();
    filters.removeDuplicates();
    filters.prepend(tr("All models (%1)").arg(patternsOf(all)));
    return filters << tr("All files (*)");
}

void ModelOpener::forget()
{
    m_job = nullptr;
    emit ended();
}

} // namespace quon::viewer
