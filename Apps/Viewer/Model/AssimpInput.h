// SPDX-License-Identifier: MIT
#pragma once

#include "Viewer/Model/LoadControl.h"

#include <assimp/DefaultIOSystem.h>

#include <string>
#include <vector>

namespace quon::viewer {

/**
 * The file system as Assimp sees it during one load: tells how much of the model file was read, notices what was looked
 * for in vain, and has nothing more to read once the load is cancelled.
 *
 * Running dry is how a load is stopped while a file is read: Assimp asks its progress handler whether to go on, but
 * does not look at the answer.
 */
class AssimpFiles : public Assimp::DefaultIOSystem {
public:
    /**
     * @param file the model; its reading is what progress is told of
     * @param control borrowed, must outlive this object
     */
    AssimpFiles(std::string file, const LoadControl& control);

    Assimp::IOStream* Open(const char* file, const char* mode) override;

    /**
     * Returns the names, without folders, of the files that the model refers to and that could not be opened.
     *
     * Pictures are not among them. Neither are files that Assimp looks for beside every model of a format, whether the
     * model mentions them or not.
     */
    std::vector<std::string> getMissingFiles() const;

    /** Returns the names, without folders, of all files that could not be opened. */
    const std::vector<std::string>& getUnopenedFiles() const { return m_missing; }

private:
    class Stream;

    std::string m_file;
    const LoadControl& m_control;
    std::vector<std::string> m_missing; ///< names without folders, in the order of the first attempt
};

/**
 * Collects what Assimp reports in this thread as errors, or as left out, while it lives. There may be one per thread.
 *
 * Assimp has one log for the whole process, whatever thread it works in.
 */
class AssimpErrors {
public:
    AssimpErrors();
    ~AssimpErrors();

    AssimpErrors(const AssimpErrors&) = delete;
    AssimpErrors& operator=(const AssimpErrors&) = delete;

    /** The messages in the order in which they came, each once. */
    const std::vector<std::string>& getMessages() const { return m_messages; }

private:
    class Log;

    std::vector<std::string> m_messages;
};

} // namespace quon::viewer
