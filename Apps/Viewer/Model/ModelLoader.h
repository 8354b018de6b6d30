// SPDX-License-Identifier: MIT
#pragma once

#include "Viewer/Model/LoadControl.h"
#include "Viewer/Model/LoadedModel.h"

#include <string>

namespace quon::viewer {

struct ModelData;

/**
 * Turns a model file of any format that Assimp reads into a scene graph, all at once: see ModelReader for what is read,
 * ModelBuilder for what becomes of it, and LoadJob for the same without waiting.
 */
class ModelLoader {
public:
    /** @param progress hears what is being done, in the thread of load() */
    explicit ModelLoader(LoadControl::Progress progress = {});

    /**
     * Loads @p file.
     *
     * @return the model, which has at least one part
     * @throws ViewerError with the file's name and the reason: no such file, a directory, empty, of an unknown format,
     *         damaged, or without meshes
     */
    LoadedModel load(const std::string& file) const;

    /**
     * Gathers what is known about a model as soon as it was read.
     *
     * @return all but the root
     */
    static LoadedModel describe(const std::string& file, const ModelData& data);

    /** Puts what was built in its place: makes the root of @p model, with @p content as its child. */
    static void finish(LoadedModel& model, const osg::NodePtr& content);

private:
    LoadControl::Progress m_progress;
};

} // namespace quon::viewer
