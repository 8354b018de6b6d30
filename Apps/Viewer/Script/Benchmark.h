// SPDX-License-Identifier: MIT
#pragma once

#include "Viewer/Drawing/OffscreenSurface.h"
#include "Viewer/Drawing/SceneRenderer.h"

#include <OpenSG/OSGConfig.h>

#include <OpenSG/OSGNode.h>
#include <OpenSG/OSGRefPtr.h>

#include <cstdio>
#include <functional>
#include <string>
#include <vector>

namespace quon::viewer {

class ViewerSession;

/**
 * Measures how long the viewer takes for what users wait for, and prints a table of it.
 *
 * Draws 1280 x 720 pixels through EGL, once with one sample for each pixel and once with four, as the window has. A
 * frame counts until its last pixel is drawn; frames are not copied anywhere. The selection goes through the session's
 * model with both visualisations attached.
 */
class Benchmark {
public:
    /**
     * @param session borrowed; shows no model yet, and shows none afterwards
     * @param output where the table goes; each row as soon as it is known
     */
    Benchmark(ViewerSession& session, std::FILE* output);
    ~Benchmark();

    Benchmark(const Benchmark&) = delete;
    Benchmark& operator=(const Benchmark&) = delete;

    /**
     * Measures everything.
     *
     * @param verb what @p make does, for its row: "load" or "generate"
     * @param make gives the root of the model
     * @throws ViewerError when there is nothing to draw with, and whatever @p make throws
     */
    void run(const std::string& verb, const std::function<osg::RefPtr<osg::NodePtr>()>& make);

private:
    void measurePicking();
    void measureSelection();
    void measureOrbits(int samples);
    void measureOrbit(const char* name, SceneRenderer::Detail detail, const char* meaning);
    double drawFrame(SceneRenderer::Detail detail);
    void select(const std::vector<osg::NodePtr>& nodes);
    void printTitle(const char* title, const char* columns);
    void printTime(const char* name, double seconds, const char* meaning);

    ViewerSession& m_session;
    std::FILE* m_output;
    OffscreenSurface m_surface;
    SceneRenderer m_renderer;
    std::vector<osg::NodePtr> m_parts;
};

} // namespace quon::viewer
