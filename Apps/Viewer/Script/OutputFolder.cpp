// SPDX-License-Identifier: MIT
#include "Viewer/Script/OutputFolder.h"

#include "Viewer/Model/ViewerError.h"

#include <QFile>
#include <QSaveFile>
#include <QTemporaryFile>

#include <cstdio>
#include <filesystem>
#include <system_error>

namespace quon::viewer {

OutputFolder::OutputFolder(const std::string& path)
    : m_path(path)
{
    std::error_code error;
    std::filesystem::create_directories(path, error);
    if (error) {
        throw ViewerError(path, "cannot be created: " + error.message());
    }
    if (!std::filesystem::is_directory(path, error)) {
        throw ViewerError(path, "is not a folder");
    }
    // Permissions alone do not tell: file systems are mounted read-only, disks are full.
    QTemporaryFile probe(QFile::decodeName(path.c_str()) + QStringLiteral("/.koviewer-XXXXXX"));
    if (!probe.open() || probe.write("probe") != 5 || !probe.flush()) {
        throw ViewerError(path, "cannot be written to: " + probe.errorString().toStdString());
    }
}

std::string OutputFolder::write(const QImage& picture, const std::string& name)
{
    char number[16];
    std::snprintf(number, sizeof number, "%02d-", ++m_number);
    const std::string path = m_path + "/" + number + name + ".png";
    QSaveFile file(QFile::decodeName(path.c_str()));
    if (!file.open(QIODevice::WriteOnly) || !picture.save(&file, "PNG") || !file.commit()) {
        throw ViewerError(path, "cannot be written: " + file.errorString().toStdString());
    }
    return path;
}

} // namespace quon::viewer
