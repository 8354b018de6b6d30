// SPDX-License-Identifier: MIT
#pragma once

#include <QImage>

#include <string>

namespace quon::viewer {

/** A folder that takes numbered pictures: 01-name.png, 02-name.png and so on. */
class OutputFolder {
public:
    /**
     * Makes the folder where it is missing and tries whether files can be written into it.
     *
     * @throws ViewerError with the folder's name and the reason
     */
    explicit OutputFolder(const std::string& path);

    /**
     * Writes the next picture, whole or not at all.
     *
     * @param name without number and extension
     * @return the path written
     * @throws ViewerError with the file's name and the reason
     */
    std::string write(const QImage& picture, const std::string& name);

private:
    std::string m_path;
    int m_number = 0;
};

} // namespace quon::viewer
