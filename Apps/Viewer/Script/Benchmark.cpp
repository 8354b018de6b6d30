// SPDX-License-Identifier: MIT
#include "Viewer/Script/Benchmark.h"

#include "Viewer/Model/NodeWalk.h"
#include "Viewer/Model/Part.h"
#include "Viewer/Model/SceneTraversal.h"
#include "Viewer/Session/ViewerSession.h"

#include <Interaction/NodeSelectionModel.h>

#include <GL/gl.h>

#include <algorithm>
#include <chrono>
#include <cstddef>

namespace quon::viewer {

namespace {

constexpr int Width = 1280;
constexpr int Height = 720;

// An orbit ends after a full turn, or when it took too long and has enough frames for a median.
constexpr int FramesOfTurn = 16;
constexpr std::size_t FewestFrames = 5;
constexpr double LongestOrbit = 4;

// Frames in which the renderer learns how much it can draw while the camera moves.
constexpr int FramesToLearn = 8;

constexpr int Picks = 200;

const osg::Color3f Top(0.70F, 0.77F, 0.85F);
const osg::Color3f Bottom(0.95F, 0.96F, 0.97F);

double now()
{
    return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
}

template <class Work>
double measure(const Work& work)
{
    const double start = now();
    work();
    return now() - start;
}

/** The value that the given share of the others does not exceed. */
double quantile(std::vector<double> values, const double share)
{
    std::sort(values.begin(), values.end());
    const auto last = static_cast<double>(values.size() - 1);
    return values[static_cast<std::size_t>(last * share + 0.5)];
}

std::vector<osg::NodePtr> findParts(const osg::NodePtr& root)
{
    std::vector<osg::NodePtr> parts;
    walkNodes(root, [&](const osg::NodePtr& node) {
        if (getCoreKind(node->getCore()) == CoreKind::Geometry) {
            const osg::NodePtr part = findPart(node);
            // The pieces of a part are neighbours.
            if (parts.empty() || parts.back() != part) {
                parts.push_back(part);
            }
        }
        return true;
    });
    return parts;
}

} // namespace

Benchmark::Benchmark(ViewerSession& session, std::FILE* output)
    : m_session(session)
    , m_output(output)
{
    m_renderer.setBackground(Top, Bottom);
    m_surface.setMultisampling(false);
    m_session.addSceneChangeListener(&m_renderer);
    m_session.setViewportSize(Width, Height);
}

Benchmark::~Benchmark()
{
    m_session.removeSceneChangeListener(&m_renderer);
    m_surface.withContext([this] { m_renderer.releaseResources(); });
}

void Benchmark::run(const std::string& verb, const std::function<osg::RefPtr<osg::NodePtr>()>& make)
{
    std::string driver;
    m_surface.withContext([&] { driver = reinterpret_cast<const char*>(glGetString(GL_RENDERER)); });

    osg::RefPtr<osg::NodePtr> model;
    const double making = measure([&] { model = make(); });
    m_parts = findParts(model.get());
    std::fprintf(m_output, "koviewer benchmark: %zu parts, %d x %d pixels, %s\n", m_parts.size(), Width, Height,
                 driver.c_str());

    printTitle("Start", "milliseconds");
    printTime(verb.c_str(), making, "makes the scene graph");
    printTime("show", measure([&] {
                  m_session.setModel(model.get());
                  m_session.processSceneChanges();
              }),
              "measures the model and looks at it");
    model = osg::NullFC;
    printTime("first frame", drawFrame(SceneRenderer::Detail::Full), "copies the geometry into buffers and draws it");
    measurePicking();
    measureSelection();
    measureOrbits(1);
    measureOrbits(4);

    m_parts.clear();
    m_session.setModel(osg::NullFC);
    m_session.processSceneChanges();
}

void Benchmark::measurePicking()
{
    EmbreePicker& picker = m_session.getPicker();
    const auto pick = [&](const int index) {
        // Spread over the middle of the picture, the same every time.
        const int x = Width / 4 + index * 7919 % (Width / 2);
        const int y = Height / 4 + index * 104729 % (Height / 2);
        picker.setPointer(osg::Pnt2f(static_cast<float>(x), static_cast<float>(y)));
        picker.getPickedNode(nullptr);
    };
    picker.setCamera(m_session.getCamera().getWorldToClip());
    printTime("first pick", measure([&] { pick(0); }), "builds what the picker searches");

    std::vector<double> times;
    for (int i = 1; i <= Picks; ++i) {
        times.push_back(measure([&] { pick(i); }));
    }
    printTitle("Pointer", "milliseconds");
    printTime("hover, median", quantile(times, 0.5), "finds the part under the pointer");
    printTime("hover, 95th percentile", quantile(times, 0.95), "the same, one in twenty is slower");
}

void Benchmark::measureSelection()
{
    std::vector<osg::NodePtr> halves[2];
    for (std::size_t i = 0; i < m_parts.size(); ++i) {
        halves[i % 2].push_back(m_parts[i]);
    }
    const auto measureSelect = [&](const char* name, const std::vector<osg::NodePtr>& nodes, const char* meaning) {
        printTime(name, measure([&] { select(nodes); }), meaning);
        printTime("  frame after it", drawFrame(SceneRenderer::Detail::Full), "with what that changed");
    };
    printTitle("Selection", "milliseconds");
    measureSelect("select all", m_parts, "a box for every part");
    measureSelect("clear", {}, "takes all boxes away");
    measureSelect("select all again", m_parts, "with the boxes of the first time");
    select({});
    select(halves[0]);
    drawFrame(SceneRenderer::Detail::Full);
    measureSelect("invert", halves[1], "from every second part to all others");
    select({});
    measureSelect("select one", {m_parts.front()}, "one box");
    select({});
    EmbreePicker& picker = m_session.getPicker();
    printTime("hover after selecting", measure([&] { picker.getPickedNode(nullptr); }),
              "boxes are nothing that the picker has to look at");
}

void Benchmark::measureOrbits(const int samples)
{
    using Detail = SceneRenderer::Detail;
    m_surface.setMultisampling(samples > 1);
    const std::string title = "Orbit, " + std::to_string(samples) + (samples > 1 ? " samples" : " sample");
    printTitle(title.c_str(), "milliseconds, median and 95 %; frames a second; geometries drawn, and as points");
    measureOrbit("plain, everything", Detail::Full, "the model alone, as when the camera rests");
    measureOrbit("plain, moving", Detail::Moving, "as much as there is time for");

    select(m_parts);
    measureOrbit("boxes, everything", Detail::Full, "every part selected");
    measureOrbit("boxes, moving", Detail::Moving, "as much as there is time for");

    SelectionLook look = m_session.getSelectionLook();
    look.kind = SelectionLook::Kind::Wireframe;
    m_session.setSelectionLook(look);
    m_session.processSceneChanges();
    measureOrbit("wireframe, everything", Detail::Full, "every part selected and drawn as a wireframe");
    measureOrbit("wireframe, moving", Detail::Moving, "as much as there is time for");
    look.kind = SelectionLook::Kind::Boxes;
    m_session.setSelectionLook(look);
    select({});
}

void Benchmark::measureOrbit(const char* name, const SceneRenderer::Detail detail, const char* meaning)
{
    const int warmUp = detail == SceneRenderer::Detail::Moving ? FramesToLearn : 1;
    for (int i = 0; i < warmUp; ++i) {
        drawFrame(detail);
    }
    std::vector<double> times;
    double shown = 0;
    double marked = 0;
    const double start = now();
    while (times.size() < FramesOfTurn && (times.size() < FewestFrames || now() - start < LongestOrbit)) {
        m_session.getCamera().orbit(static_cast<double>(Width) / FramesOfTurn, 0);
        times.push_back(drawFrame(detail));
        const SceneRenderer::Statistics& statistics = m_renderer.getStatistics();
        // What is hidden behind others is shown as well as can be.
        const auto drawn = static_cast<double>(statistics.opaque + statistics.transparent + statistics.hidden);
        const double all = std::max(1.0, drawn + static_cast<double>(statistics.leftOut));
        shown += drawn / all;
        marked += static_cast<double>(statistics.marked) / all;
    }
    const double median = quantile(times, 0.5);
    std::fprintf(m_output, "  %-24s %10.3f %10.3f %8.1f   %3.0f %% + %3.0f %%   %s\n", name, median * 1e3,
                 quantile(times, 0.95) * 1e3, 1 / std::max(median, 1e-9),
                 100 * shown / static_cast<double>(times.size()), 100 * marked / static_cast<double>(times.size()),
                 meaning);
    std::fflush(m_output);
}

double Benchmark::drawFrame(const SceneRenderer::Detail detail)
{
    double seconds = measure([&] { m_session.processSceneChanges(); });
    m_surface.draw(Width, Height, [&] {
        seconds += measure([&] {
            const CameraController& camera = m_session.getCamera();
            m_renderer.draw(m_session.getScene(), camera.getView(), camera.getProjection(), Width, Height, detail);
            glFinish();
        });
    });
    return seconds;
}

void Benchmark::select(const std::vector<osg::NodePtr>& nodes)
{
    if (nodes.empty()) {
        m_session.getSelection().clearSelection();
    } else {
        m_session.getSelection().setSelection(nodes);
    }
    m_session.processSceneChanges();
}

void Benchmark::printTitle(const char* title, const char* columns)
{
    std::fprintf(m_output, "\n%-26s %s\n", title, columns);
}

void Benchmark::printTime(const char* name, const double seconds, const char* meaning)
{
    std::fprintf(m_output, "  %-24s %10.3f   %s\n", name, seconds * 1e3, meaning);
    std::fflush(m_output);
}

} // namespace quon::viewer
