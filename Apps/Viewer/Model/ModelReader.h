// SPDX-License-Identifier: MIT
#pragma once

#include "Viewer/Model/LoadControl.h"
#include "Viewer/Model/ModelData.h"

#include <QCoreApplication>
#include <QString>
#include <QStringList>

#include <string>
#include <vector>

namespace quon::viewer {

/**
 * Reads model files of any format that Assimp reads into plain arrays.
 *
 * Polygons arrive as triangles, with normals made where the file has none. Faces with corners that do not exist or have
 * no place, and meshes without any other, are left out and mentioned. Files that the model refers to and that are not
 * there are mentioned too, but for textures, which nobody shows.
 *
 * Units and the axis that points up are as the file has them, except that Assimp has converted them already for some
 * formats; what comes out says what is true for its coordinates.
 */
class ModelReader {
    Q_DECLARE_TR_FUNCTIONS(ModelReader)

public:
    /**
     * Reads @p file in the calling thread, which may be any.
     *
     * Cancelling takes effect with the next piece of the file that is read and between the steps afterwards; Assimp
     * cannot be stopped within a step.
     *
     * @return a model with at least one node, one mesh and one part
     * @throws ViewerError with the file's name and the reason: no such file, a directory, empty, of an unknown format,
     *         damaged, or without meshes
     * @throws LoadCancelled when @p control was cancelled
     */
    static ModelData read(const std::string& file, const LoadControl& control);

    /** Does the first checks of read() alone: there is such a file, and it is a file with something in it. */
    static void checkFile(const std::string& file);

    /** A format that can be read. */
    struct Format {
        QString name;           ///< as it is written, not translated
        QStringList extensions; ///< without dot, in lower case
    };

    /** Returns all formats that can be read, by name. */
    static std::vector<Format> getFormats();

private:
    class Run;
};

} // namespace quon::viewer
