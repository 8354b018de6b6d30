// SPDX-License-Identifier: MIT
#include "Viewer/Drawing/SceneRenderer.h"

#include "Viewer/Drawing/BatchList.h"
#include "Viewer/Drawing/CoverMap.h"
#include "Viewer/Drawing/CoverReader.h"
#include "Viewer/Drawing/DrawUnit.h"
#include "Viewer/Drawing/MaterialState.h"
#include "Viewer/Drawing/Occluders.h"
#include "Viewer/Drawing/OverlayLines.h"
#include "Viewer/Drawing/ShaderPrograms.h"
#include "Viewer/Model/WorkerPool.h"

#include <OpenSG/OSGGL.h>

#include <GL/glext.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cmath>
#include <limits>
#include <optional>
#include <utility>
#include <vector>

namespace quon::viewer {

namespace {

// Up to so many transparent geometries of one sort key are ordered one by one, more than that by their batches.
constexpr std::size_t MostSorted = 4096;

// How much is drawn at least while the camera moves, and how much the first time, when nobody knows how fast it goes.
constexpr double LeastPrimitives = 20000;
constexpr double FirstPrimitives = 300000;

using Clock = std::chrono::steady_clock;

// What drawing with several samples takes at most, compared with one.
constexpr double SlowestSamples = 4;

// How many primitives of one colour are worth looking for pixels that have it already, and how many of the geometries
// are drawn before each look.
constexpr std::size_t LeastCovered = 50000;
constexpr std::array<double, 6> CoveredShares{0.15, 0.25, 0.35, 0.5, 0.7, 1};

// Among so many geometries, the largest, hidden ones are looked for while the camera moves.
constexpr double MostSought = 400000;

// The largest side of a marker in pixels of the user interface, of surfaces and of lines: what is seen through lines is
// not to be hidden by what stands for them.
constexpr double LargestMarker = 12;
constexpr double LargestThinMarker = 3;

// How far markers stand in front of the middle of what they stand for, in their own sizes: lines around a surface in
// front of that surface's marker.
constexpr double MarkerLift = 0.5;
constexpr double ThinMarkerLift = 1;

// How many batches indices are put together for before they are drawn.
constexpr std::ptrdiff_t GatheredAtOnce = 16;

// How many primitives are worth letting others begin to draw them.
constexpr std::size_t FlushedAtOnce = 20000;

/** Geometries of one batch that are drawn to learn what they hide. */
using OccluderRun =
    std::pair<std::vector<Occluders::Item>::const_iterator, std::vector<Occluders::Item>::const_iterator>;

/** One geometry of the transparent pass that has its place in the order. */
struct SortedItem {
    const DrawUnit* unit;
    std::size_t index; ///< in the batch
    double depth;
};

// The state of a new context, as far as anything here changes it.
void resetState()
{
    MaterialState::reset();
    glUseProgram(0);
    VertexBuffers::unbind();
}

// A number from 0 to 1, evenly spread over the places.
double spread(const std::uint32_t place)
{
    return static_cast<double>(place * 2654435761U) / 4294967296.0;
}

/** Whether a box is wholly beyond the near plane. */
bool isBeyondNear(const Matrix4& worldToClip, const osg::Pnt3f& minimum, const osg::Pnt3f& maximum)
{
    for (unsigned corner = 0; corner < 8; ++corner) {
        const Vector4 clip = worldToClip.transform(osg::Pnt3f((corner & 1U) != 0 ? maximum[0] : minimum[0],
                                                              (corner & 2U) != 0 ? maximum[1] : minimum[1],
                                                              (corner & 4U) != 0 ? maximum[2] : minimum[2]));
        // Written so that a NaN fails.
        if (!(clip[3] > 0 && clip[2] >= -clip[3])) {
            return false;
        }
    }
    return true;
}

/** Whether a box is wholly on the outer side of one of the planes of the view. */
bool isOutside(const Matrix4& worldToClip, const osg::Pnt3f& minimum, const osg::Pnt3f& maximum)
{
    unsigned outsideOfAll = 0x3F;
    for (unsigned corner = 0; corner < 8; ++corner) {
        const Vector4 clip = worldToClip.transform(osg::Pnt3f((corner & 1U) != 0 ? maximum[0] : minimum[0],
                                                              (corner & 2U) != 0 ? maximum[1] : minimum[1],
                                                              (corner & 4U) != 0 ? maximum[2] : minimum[2]));
        unsigned outside = 0;
        for (unsigned axis = 0; axis < 3; ++axis) {
            // Comparisons with what is not a number fail: in doubt it is drawn.
            outside |= clip[axis] < -clip[3] ? 1U << (2 * axis) : 0U;
            outside |= clip[axis] > clip[3] ? 2U << (2 * axis) : 0U;
        }
        outsideOfAll &= outside;
    }
    return outsideOfAll != 0;
}

} // namespace

class SceneRenderer::Implementation {
public:
    Statistics draw(const osg::NodePtr& root, const Matrix4& view, const Matrix4& projection, const int width,
                    const int height, const Detail detail)
    {
        if (m_programs == std::nullopt) {
            m_programs.emplace();
            m_reader.emplace();
        }
        m_batches.update(root, m_travMask);
        m_batches.deleteDoomedBuffers();

        m_view = view;
        m_projection = projection;
        m_worldToClip = projection * view;
        m_pixelsPerUnit = std::abs(projection(1, 1)) * height / 2;
        m_statistics = Statistics();
        collectUnits();
        buildUnits(detail == Detail::Moving ? Clock::now() + getBuildingTime() : Clock::time_point::max());
        const auto start = Clock::now();
        glViewport(0, 0, width, height);
        resetState();
        leaveOutHidden(width, height, detail);
        if (detail == Detail::Moving) {
            leaveOutSmall();
            m_statistics.simplified = m_isSlow || m_statistics.leftOut > 0;
        }
        if (m_statistics.simplified) {
            glDisable(GL_MULTISAMPLE);
        }
        glClear(GL_DEPTH_BUFFER_BIT);
        m_programs->drawBackground(m_top, m_bottom);
        drawOpaque();
        drawTransparent();
        glEnable(GL_MULTISAMPLE);
        resetState();
        if (detail == Detail::Moving) {
            glFinish();
            learn(std::chrono::duration<double>(Clock::now() - start).count());
        }

        m_statistics.uploaded = m_batches.takeReadCount();
        m_statistics.built = m_batches.takeBuildCount();
        m_statistics.cached = m_batches.getMeshCount();
        m_statistics.batches = m_batches.getBatchCount();
        m_units.clear();
        return m_statistics;
    }

    void setPrepared(const PreparedGeometries* prepared) { m_batches.setPrepared(prepared); }

    void sceneChanged(const SceneChanges& changes) { m_batches.sceneChanged(changes); }

    void releaseResources()
    {
        m_batches.release();
        m_reader.reset();
        m_programs.reset();
        // What is kept for its memory, too: maps are as large as the largest picture so far.
        m_depthMap = CoverMap();
        m_colourMap = CoverMap();
        m_occluders = Occluders();
        m_overlayLines = OverlayLines();
        m_gathered = {};
        m_runs = std::vector<OccluderRun>();
        m_units = std::vector<DrawUnit>();
    }

    osg::Color3f m_top;
    osg::Color3f m_bottom;
    float m_pixelRatio = 1;
    osg::UInt32 m_travMask = 0xFFFFFFFF;
    double m_movingSeconds = 0.15;
    double m_buildingSeconds = 0.03;
    double m_mostPrimitives = FirstPrimitives; ///< while the camera moves

private:
    Clock::duration getBuildingTime() const
    {
        return std::chrono::duration_cast<Clock::duration>(std::chrono::duration<double>(m_buildingSeconds));
    }

    void collectUnits()
    {
        const std::vector<DrawGroup*> groups = m_batches.getGroups();
        m_states.clear();
        m_states.reserve(groups.size());
        for (const DrawGroup* group : groups) {
            m_states.push_back(MaterialState::read(group->getMaterial()));
            for (const std::uint32_t index : group->batches) {
                Batch& batch = m_batches.getBatch(index);
                if (!isOutside(m_worldToClip, batch.minimum, batch.maximum)) {
                    DrawUnit unit;
                    unit.batch = &batch;
                    addUnit(unit, group, batch.minimum, batch.maximum);
                }
            }
            for (const std::uint32_t place : group->singles) {
                const DrawItem& item = m_batches.getItem(place);
                if (!isOutside(m_worldToClip, item.minimum, item.maximum)) {
                    DrawUnit unit;
                    unit.item = &item;
                    addUnit(unit, group, item.minimum, item.maximum);
                }
            }
        }
    }

    void addUnit(DrawUnit& unit, const DrawGroup* group, const osg::Pnt3f& minimum, const osg::Pnt3f& maximum)
    {
        const osg::Pnt3f centre((minimum[0] + maximum[0]) / 2, (minimum[1] + maximum[1]) / 2,
                                (minimum[2] + maximum[2]) / 2);
        unit.group = group;
        unit.state = &m_states.back();
        unit.depth = getDepth(centre);
        const double w = m_worldToClip.transform(centre)[3];
        unit.pixels = m_pixelsPerUnit / std::max(w, 1e-6);
        unit.itemCount = unit.markedCount = unit.getAllItems();
        unit.isBeyondNear = isBeyondNear(m_worldToClip, minimum, maximum);
        m_units.push_back(unit);
    }

    double getDepth(const osg::Pnt3f& point) const
    {
        const double depth = -m_view.transform(point)[2];
        // Sorting needs an order even where the camera gives none.
        return std::isfinite(depth) ? depth : 0.0;
    }

    /**
     * Leaves out what is behind opaque surfaces, where there is so much that finding out pays. The picture stays the
     * same: what is left out would not pass the depth test in any of its pixels, nor in any of their samples.
     */
    void leaveOutHidden(const int width, const int height, const Detail detail)
    {
        std::size_t primitives = 0;
        bool isPossible = true;
        for (const DrawUnit& unit : m_units) {
            primitives += unit.getEnd(unit.getAllItems()).getPrimitives();
            // Whoever looks through surfaces could show what is behind them.
            isPossible = isPossible && (unit.state->transparent || unit.state->isNearestSeen());
        }
        m_isSifted = static_cast<double>(primitives) > m_mostPrimitives;
        m_isThinned = false;
        m_occluderPrimitives = 0;
        if (!m_isSifted) {
            return;
        }
        m_depthMap.setSize(width, height);
        const double least = detail == Detail::Moving ? findLeastSought() : 0;
        m_workers.forEach(m_units.size(), [&](const std::size_t i) {
            m_units[i].findBoxes(m_depthMap, m_worldToClip, m_units[i].countLarger(least));
        });
        GLint samples = 0;
        glGetIntegerv(GL_SAMPLES, &samples);
        m_isThinned = thinLines(samples, detail);
        if (m_isThinned) {
            leaveOutCovered();
        }
        // While the camera moves, one sample of a pixel may speak for the others.
        const double most = detail == Detail::Moving ? m_mostPrimitives / 4 : std::numeric_limits<double>::max();
        if (isPossible && isMuchLeft() && drawOccluders(width, height, detail == Detail::Moving ? 0 : samples, most)) {
            sift([](const DrawUnit& unit) { return unit.state->isCoverable(); });
        }
        for (const DrawUnit& unit : m_units) {
            m_statistics.hidden += unit.getAllItems() - unit.countSeen(unit.getAllItems());
        }
    }

    template <class Choose>
    void sift(const Choose& isChosen)
    {
        m_workers.forEach(m_units.size(), [&](const std::size_t i) {
            if (isChosen(m_units[i])) {
                m_units[i].sift(m_depthMap, m_pixelRatio);
            }
        });
    }

    /** Leaves out those of many lines over everything that add nothing; false where there are none of that kind. */
    bool thinLines(const int samples, const Detail detail)
    {
        const MaterialState* state = m_overlayLines.collect(m_units);
        if (state == nullptr) {
            return false;
        }
        LineStyle style;
        style.width = state->lineWidth * m_pixelRatio;
        style.opacity = state->diffuse.alpha();
        if (detail == Detail::Moving && m_isSlow) {
            style.edges = LineStyle::Edges::Hard;
        } else if (samples > 1) {
            style.edges = LineStyle::Edges::Sampled;
            style.samples = findSamples(samples);
        } else {
            style.edges = state->lineSmooth ? LineStyle::Edges::Smooth : LineStyle::Edges::Hard;
        }
        if (!LineCover::canFollow(style)) {
            return false;
        }
        m_overlayLines.thin(m_depthMap, m_worldToClip, style, m_workers);
        return true;
    }

    // The places of the samples in their pixel, seen from its middle; none where nobody says.
    static std::vector<PicturePoint> findSamples(const int count)
    {
        CoverReader::clearErrors();
        std::vector<PicturePoint> samples;
        for (int i = 0; i < count; ++i) {
            std::array<GLfloat, 2> place{};
            glGetMultisamplefv(GL_SAMPLE_POSITION, static_cast<GLuint>(i), place.data());
            samples.push_back({place[0] - 0.5F, place[1] - 0.5F});
        }
        if (glGetError() != GL_NO_ERROR) {
            CoverReader::clearErrors();
            samples.clear();
        }
        return samples;
    }

    // What lies behind the pixels that lines over everything cover in the end.
    void leaveOutCovered()
    {
        float* pixels = m_depthMap.getPixels();
        std::fill(pixels, pixels + static_cast<std::ptrdiff_t>(m_depthMap.getWidth()) * m_depthMap.getHeight(), 1.0F);
        m_overlayLines.getCover().limit(m_depthMap);
        m_depthMap.finish();
        sift([](const DrawUnit& unit) { return unit.lineBits.empty(); });
    }

    // Whether finding out what is behind others pays.
    bool isMuchLeft() const
    {
        std::size_t primitives = 0;
        for (const DrawUnit& unit : m_units) {
            primitives += unit.lineBits.empty() ? unit.countPrimitives(unit.getAllItems()) : 0;
        }
        return !m_isThinned || static_cast<double>(primitives) > m_mostPrimitives;
    }

    // The size on the screen of the smallest geometries that hidden ones are looked for among while the camera moves.
    double findLeastSought() const
    {
        const auto count = [&](const double size) {
            std::size_t items = 0;
            for (const DrawUnit& unit : m_units) {
                items += unit.countLarger(size);
            }
            return static_cast<double>(items);
        };
        return findSize(count, MostSought);
    }

    /**
     * Draws what hides most into a depth buffer of its own and reads that; false where there is none.
     *
     * @param most how many primitives are enough; no round begins after that
     */
    bool drawOccluders(const int width, const int height, const int samples, const double most)
    {
        m_occluders.collect(m_units, width, height);
        for (std::size_t round = 0; round < Occluders::RoundCount; ++round) {
            if (static_cast<double>(m_occluderPrimitives) > most) {
                break;
            }
            if (!m_reader->beginDepth(width, height, samples)) {
                return false;
            }
            if (round == 0) {
                glClear(GL_DEPTH_BUFFER_BIT);
            }
            drawOccluders(round);
            resetState();
            m_reader->readDepth(m_depthMap);
            if (m_isThinned) {
                m_overlayLines.getCover().limit(m_depthMap);
            }
            m_depthMap.finish();
        }
        return true;
    }

    void drawOccluders(const std::size_t round)
    {
        const std::vector<Occluders::Item> items = m_occluders.getRound(round);
        m_runs.clear();
        for (auto begin = items.begin(); begin != items.end(); begin = m_runs.back().second) {
            m_runs.emplace_back(
                begin, std::find_if(begin, items.end(), [&](const auto& item) { return item.unit != begin->unit; }));
        }
        const DrawUnit* current = nullptr;
        const auto gather = [&](const auto& run, ItemIndices& indices) {
            const DrawUnit& unit = m_units[run.first->unit];
            for (auto item = run.first; item != run.second; ++item) {
                const PictureBox& box = unit.boxes[item->item];
                if (round == 0 || !m_depthMap.hides(box, 0, box.nearest)) {
                    indices.addTriangles(*unit.batch, item->item);
                }
            }
        };
        inWindows(m_runs.begin(), m_runs.end(), gather, [&](const auto& run, const ItemIndices& indices) {
            const DrawUnit& unit = m_units[run.first->unit];
            m_occluderPrimitives += indices.countPrimitives();
            use(unit, current);
            indices.draw();
            current = &unit;
            return indices.countPrimitives();
        });
    }

    /**
     * Puts the indices of a few at a time together, in several threads, and draws them.
     *
     * @param gather called in any thread with one of them and indices to be filled
     * @param draw called with the same, in their order; returns how many primitives it has drawn
     */
    template <class Iterator, class Gather, class Draw>
    void inWindows(const Iterator begin, const Iterator end, const Gather& gather, const Draw& draw)
    {
        std::size_t unflushed = 0;
        for (Iterator first = begin; first != end;) {
            const std::ptrdiff_t count = std::min(end - first, GatheredAtOnce);
            m_workers.forEach(static_cast<std::size_t>(count), [&](const std::size_t i) {
                m_gathered[i].clear();
                gather(first[static_cast<std::ptrdiff_t>(i)], m_gathered[i]);
            });
            for (std::ptrdiff_t i = 0; i < count; ++i) {
                unflushed += draw(first[i], m_gathered[static_cast<std::size_t>(i)]);
            }
            if (unflushed >= FlushedAtOnce) {
                // Whoever draws on other processors begins, while the next ones are put together here.
                glFlush();
                unflushed = 0;
            }
            first += count;
        }
    }

    // The size on the screen below which geometries are left out, so that the rest can be drawn in time.
    void leaveOutSmall()
    {
        const auto countPrimitives = [&](const double size) {
            std::size_t primitives = 0;
            for (const DrawUnit& unit : m_units) {
                primitives += unit.countPrimitives(unit.countLarger(size));
            }
            return static_cast<double>(primitives);
        };
        const auto countMarkers = [&](const double size) {
            std::size_t items = 0;
            for (const DrawUnit& unit : m_units) {
                items += unit.batch != nullptr ? unit.countSeen(unit.countLarger(size)) : 0;
            }
            return static_cast<double>(items);
        };
        // What was drawn to find hidden geometry took its time, too.
        const auto spent = static_cast<double>(m_isSifted ? m_occluderPrimitives : 0);
        const double most = std::max(m_mostPrimitives - spent, m_mostPrimitives / 2);
        if (countPrimitives(0) <= most) {
            return;
        }
        // A marker is one primitive; half of them at most are markers.
        const double marked = findSize(countMarkers, most / 2);
        const double allMarkers = countMarkers(marked);
        const double drawn = findSize(
            [&](const double size) { return countPrimitives(size) + std::max(0.0, allMarkers - countMarkers(size)); },
            most);
        for (DrawUnit& unit : m_units) {
            unit.itemCount = unit.countLarger(drawn);
            unit.markedCount =
                unit.batch != nullptr ? std::max(unit.itemCount, unit.countLarger(marked)) : unit.itemCount;
            m_statistics.leftOut += unit.countSeen(unit.getAllItems()) - unit.countSeen(unit.itemCount);
            m_statistics.marked += unit.countSeen(unit.markedCount) - unit.countSeen(unit.itemCount);
        }
    }

    // The least size on the screen for which the count is small enough; about.
    template <class Count>
    static double findSize(const Count& count, const double most)
    {
        if (count(0) <= most) {
            return 0;
        }
        double enough = 1e6;
        double tooSmall = 0;
        for (int step = 0; step < 40; ++step) {
            const double middle = tooSmall == 0 ? enough / 4 : std::sqrt(enough * tooSmall);
            if (count(middle) <= most) {
                enough = middle;
            } else {
                tooSmall = middle;
            }
            if (tooSmall > 0 && enough < tooSmall * 1.02) {
                break;
            }
        }
        return enough;
    }

    void learn(const double seconds)
    {
        if (!m_statistics.simplified) {
            m_isSlow = seconds > m_movingSeconds;
            if (m_isSifted && !m_isSlow) {
                // Where everything could be drawn in time, looking for what is hidden does not pay.
                const double share = m_movingSeconds / std::max(seconds, 1e-6);
                m_mostPrimitives = std::max(m_mostPrimitives, static_cast<double>(m_statistics.primitives) * share);
            }
            return;
        }
        // At most twice as much the next time: the first drawings of a context are slower than those that follow. What
        // is left is not asked: the geometries that fit may be few, for large ones come first.
        if (m_statistics.leftOut > 0 || seconds > m_movingSeconds) {
            const double share = m_movingSeconds / std::max(seconds, 1e-6);
            m_mostPrimitives = std::max(m_mostPrimitives * std::clamp(share, 0.5, 2.0), LeastPrimitives);
        }
        m_isSlow = m_statistics.leftOut > 0 || seconds * SlowestSamples > m_movingSeconds;
    }

    // What is left out later need not be known by its buffers, but how large it is has to be. What was never drawn
    // waits for the next picture once the time is up; what was drawn before must not vanish meanwhile.
    void buildUnits(const Clock::time_point deadline)
    {
        bool isAnyBuilt = false;
        std::vector<Batch*> batches;
        const auto waits = [&](const DrawUnit& unit) {
            if (!unit.isStale()) {
                return false;
            }
            if (isAnyBuilt && !unit.getBuffers().isFilled() && Clock::now() >= deadline) {
                ++m_statistics.waiting;
                return true;
            }
            isAnyBuilt = true;
            if (unit.batch == nullptr) {
                m_batches.build(*unit.item->mesh);
                return false;
            }
            batches.push_back(unit.batch);
            if (deadline != Clock::time_point::max() && batches.size() == m_workers.getWidth()) {
                m_batches.build(batches, m_workers);
                batches.clear();
            }
            return false;
        };
        m_units.erase(std::remove_if(m_units.begin(), m_units.end(), waits), m_units.end());
        m_batches.build(batches, m_workers);
    }

    void drawOpaque()
    {
        std::vector<const DrawUnit*> units;
        for (const DrawUnit& unit : m_units) {
            if (!unit.state->transparent) {
                units.push_back(&unit);
                m_statistics.opaque += unit.countSeen(unit.itemCount);
            }
        }
        sortByKey(units);
        drawUnits(units.begin(), units.end());
    }

    void drawTransparent()
    {
        std::vector<const DrawUnit*> units;
        for (const DrawUnit& unit : m_units) {
            if (unit.state->transparent) {
                units.push_back(&unit);
                m_statistics.transparent += unit.countSeen(unit.itemCount);
            }
        }
        sortByKey(units);
        for (auto begin = units.begin(); begin != units.end();) {
            const auto end = std::find_if(begin, units.end(), [&](const DrawUnit* unit) {
                return unit->state->sortKey != (*begin)->state->sortKey;
            });
            drawTransparentKey(begin, end);
            begin = end;
        }
    }

    using UnitIterator = std::vector<const DrawUnit*>::iterator;

    static void sortByKey(std::vector<const DrawUnit*>& units)
    {
        std::stable_sort(units.begin(), units.end(),
                         [](const DrawUnit* a, const DrawUnit* b) { return a->state->sortKey < b->state->sortKey; });
    }

    void drawTransparentKey(const UnitIterator begin, const UnitIterator end)
    {
        const bool orderless = std::all_of(begin, end, [&](const DrawUnit* unit) {
            return unit->group->materialId == (*begin)->group->materialId && unit->state->isOrderless() &&
                   !unit->isColoured();
        });
        std::size_t count = 0;
        for (auto unit = begin; unit != end; ++unit) {
            count += (*unit)->itemCount;
        }
        if (!orderless && count <= MostSorted) {
            drawMarkers(begin, end);
            drawSorted(begin, end);
            return;
        }
        if (!orderless) {
            std::stable_sort(begin, end, [](const DrawUnit* a, const DrawUnit* b) { return a->depth > b->depth; });
        } else if (canLookForColour(begin, end)) {
            drawUncovered(begin, end);
            drawMarkers(begin, end);
            return;
        }
        drawUnits(begin, end);
    }

    bool canLookForColour(const UnitIterator begin, const UnitIterator end) const
    {
        std::size_t primitives = 0;
        for (auto unit = begin; unit != end; ++unit) {
            if ((*unit)->batch == nullptr || !(*unit)->lineBits.empty()) {
                return false;
            }
            primitives += (*unit)->countPrimitives((*unit)->itemCount);
        }
        return m_isSifted && primitives >= LeastCovered;
    }

    /**
     * Draws geometries of one colour in whatever order, a part of them at a time, and leaves out what would only touch
     * pixels that already have this colour.
     */
    void drawUncovered(const UnitIterator begin, const UnitIterator end)
    {
        const MaterialState& state = *(*begin)->state;
        // How far the sides of a smooth line are from the pixels that it runs through.
        const auto distance = static_cast<int>(std::lround((state.lineWidth * m_pixelRatio + 1) / std::sqrt(2.0F)));
        bool isKnown = false;
        double from = 0;
        for (const double to : CoveredShares) {
            if (from > 0) {
                isKnown =
                    m_reader->readColour(m_colourMap, m_depthMap.getWidth(), m_depthMap.getHeight(), state.diffuse);
            }
            if (isKnown) {
                m_colourMap.grow(distance);
                m_colourMap.finish();
            }
            const DrawUnit* current = nullptr;
            const auto gather = [&](const DrawUnit* unit, ItemIndices& indices) {
                gatherUncovered(*unit, from, to, isKnown, static_cast<float>(distance), indices);
            };
            inWindows(begin, end, gather, [&](const DrawUnit* unit, const ItemIndices& indices) {
                if (indices.countCalls() > 0) {
                    use(*unit, current);
                    drawIndices(indices);
                    current = unit;
                }
                return indices.countPrimitives();
            });
            from = to;
        }
    }

    void gatherUncovered(const DrawUnit& unit, const double from, const double to, const bool isKnown,
                         const float grown, ItemIndices& indices) const
    {
        const float border = std::max(0.0F, unit.getBorder(m_pixelRatio) - grown);
        const std::size_t count = unit.countSeen(unit.itemCount);
        for (std::size_t i = 0; i < count; ++i) {
            const std::uint32_t item = unit.getSeen(i);
            const double share = spread(item);
            if (share < from || share >= to) {
                continue;
            }
            const PictureBox box = unit.getBox(item);
            if (!isKnown || !box.isKnown()) {
                indices.add(*unit.batch, item);
            } else if (!m_colourMap.hides(box, border, ColourDepth)) {
                indices.addUncovered(*unit.batch, item, m_colourMap, m_worldToClip);
            }
        }
    }

    void drawIndices(const ItemIndices& indices)
    {
        indices.draw();
        m_statistics.drawCalls += indices.countCalls();
        m_statistics.primitives += indices.countPrimitives();
    }

    void drawUnits(const UnitIterator begin, const UnitIterator end)
    {
        const DrawUnit* current = nullptr;
        const auto gather = [this](const DrawUnit* unit, ItemIndices& indices) {
            if (isGathered(*unit)) {
                addItems(*unit, 0, unit->itemCount, indices);
            }
        };
        inWindows(begin, end, gather, [&](const DrawUnit* unit, const ItemIndices& indices) {
            if (unit->countSeen(unit->itemCount) == 0) {
                return std::size_t(0);
            }
            use(*unit, current);
            if (indices.countCalls() > 0) {
                drawIndices(indices);
            } else {
                drawItems(*unit, 0, unit->itemCount);
            }
            current = unit;
            return unit->countPrimitives(unit->itemCount);
        });
        drawMarkers(begin, end);
    }

    void drawMarkers(const UnitIterator begin, const UnitIterator end)
    {
        const DrawUnit* current = nullptr;
        for (auto unit = begin; unit != end; ++unit) {
            const std::size_t first = (*unit)->countSeen((*unit)->itemCount);
            const std::size_t count = (*unit)->countSeen((*unit)->markedCount) - first;
            if (count == 0) {
                continue;
            }
            const MaterialState& state = *(*unit)->state;
            if (current == nullptr || current->state != &state) {
                state.apply(m_pixelRatio, !m_statistics.simplified);
                glEnable(GL_VERTEX_PROGRAM_POINT_SIZE);
                m_programs->use(state, (*unit)->isColoured(), true);
            }
            m_programs->setMatrices(m_view * getToWorld(**unit), m_projection);
            const bool isThin = (*unit)->batch->isThin() || state.frontMode != GL_FILL;
            m_programs->setMarkerSizes(m_pixelsPerUnit, m_pixelRatio * (isThin ? LargestThinMarker : LargestMarker),
                                       isThin ? ThinMarkerLift : MarkerLift);
            drawMarkers(**unit, first, count);
            ++m_statistics.drawCalls;
            m_statistics.primitives += count;
            current = *unit;
        }
        if (current != nullptr) {
            VertexBuffers::unbind();
            glDisable(GL_VERTEX_PROGRAM_POINT_SIZE);
        }
    }

    static void drawMarkers(const DrawUnit& unit, const std::size_t first, const std::size_t count)
    {
        if (!unit.isSifted) {
            unit.batch->markers.draw(first, count);
            return;
        }
        const auto begin = unit.seen.begin() + static_cast<std::ptrdiff_t>(first);
        unit.batch->markers.draw({begin, begin + static_cast<std::ptrdiff_t>(count)});
    }

    void drawSorted(const UnitIterator begin, const UnitIterator end)
    {
        std::vector<SortedItem> items;
        for (auto unit = begin; unit != end; ++unit) {
            const std::size_t count = (*unit)->countSeen((*unit)->itemCount);
            for (std::size_t place = 0; place < count; ++place) {
                const std::size_t i = (*unit)->getSeen(place);
                const DrawItem& item =
                    (*unit)->batch != nullptr ? m_batches.getItem((*unit)->batch->items[i]) : *(*unit)->item;
                items.push_back({*unit, i, getDepth(item.getCentre())});
            }
        }
        std::stable_sort(items.begin(), items.end(),
                         [](const SortedItem& a, const SortedItem& b) { return a.depth > b.depth; });
        const DrawUnit* current = nullptr;
        for (std::size_t i = 0; i < items.size();) {
            // Neighbours in the order that are neighbours in a batch go together.
            std::size_t count = 1;
            while (i + count < items.size() && items[i + count].unit == items[i].unit &&
                   items[i + count].index == items[i].index + count) {
                ++count;
            }
            const DrawUnit& unit = *items[i].unit;
            use(unit, current);
            drawItems(unit, items[i].index, count);
            current = &unit;
            i += count;
        }
    }

    void use(const DrawUnit& unit, const DrawUnit* current)
    {
        if (&unit == current) {
            return;
        }
        if (current == nullptr || current->state != unit.state) {
            unit.state->apply(m_pixelRatio, !m_statistics.simplified);
            m_programs->use(*unit.state, unit.isColoured());
        }
        m_programs->setMatrices(m_view * getToWorld(unit), m_projection);
        unit.getBuffers().bind();
        setCulling(unit);
    }

    // Of bodies that are seen from outside the far side need not be drawn; the near plane lets look into them.
    static void setCulling(const DrawUnit& unit)
    {
        if (!unit.state->isCovering() || unit.state->cullFace != GL_NONE) {
            return;
        }
        if (unit.group->facing == SurfaceFacing::Any || !unit.isBeyondNear) {
            glDisable(GL_CULL_FACE);
            return;
        }
        glEnable(GL_CULL_FACE);
        glCullFace(unit.group->facing == SurfaceFacing::Outward ? GL_BACK : GL_FRONT);
        glFrontFace(GL_CCW);
    }

    static Matrix4 getToWorld(const DrawUnit& unit)
    {
        if (unit.batch == nullptr) {
            return Matrix4(unit.item->toWorld);
        }
        Matrix4 toWorld;
        for (int axis = 0; axis < 3; ++axis) {
            toWorld(axis, 3) = unit.batch->origin.at(static_cast<std::size_t>(axis));
        }
        return toWorld;
    }

    void drawItems(const DrawUnit& unit, const std::size_t first, const std::size_t count)
    {
        if (isGathered(unit)) {
            ItemIndices& indices = m_gathered.front();
            indices.clear();
            addItems(unit, first, count, indices);
            drawIndices(indices);
            return;
        }
        if (unit.countSeen(first + count) == 0) {
            return;
        }
        if (unit.batch != nullptr && !unit.getBuffers().hasIndices()) {
            ItemIndices indices;
            addItems(unit, 0, unit.getAllItems(), indices);
            indices.fill(unit.batch->buffers);
        }
        const IndexCounts begin = unit.getEnd(first);
        const IndexCounts end = unit.getEnd(first + count);
        const VertexBuffers& buffers = unit.getBuffers();
        buffers.drawTriangles(begin.triangles, end.triangles - begin.triangles);
        buffers.drawLines(begin.lines, end.lines - begin.lines);
        buffers.drawPoints(begin.points, end.points - begin.points);
        m_statistics.drawCalls += (end.triangles > begin.triangles ? 1U : 0U) + (end.lines > begin.lines ? 1U : 0U) +
                                  (end.points > begin.points ? 1U : 0U);
        m_statistics.primitives += end.getPrimitives() - begin.getPrimitives();
    }

    // Where some things are hidden, others soon are: indices for all need not go into buffers.
    bool isGathered(const DrawUnit& unit) const
    {
        return unit.batch != nullptr && (unit.isSifted || (m_isSifted && !unit.getBuffers().hasIndices()));
    }

    /** Adds those of some items of a batch that are seen. */
    static void addItems(const DrawUnit& unit, const std::size_t first, const std::size_t count, ItemIndices& indices)
    {
        const std::size_t last = unit.countSeen(first + count);
        for (std::size_t i = unit.countSeen(first); i < last; ++i) {
            const std::uint32_t item = unit.getSeen(i);
            indices.addLines(*unit.batch, item, unit.lineBits.empty() ? AllLines : unit.lineBits[item]);
        }
    }

    BatchList m_batches;
    WorkerPool m_workers;
    std::optional<ShaderPrograms> m_programs;
    Matrix4 m_view;
    Matrix4 m_projection;
    Matrix4 m_worldToClip;
    double m_pixelsPerUnit = 1; ///< at a distance of one
    std::optional<CoverReader> m_reader;
    CoverMap m_depthMap;  ///< of opaque surfaces, while hidden geometries are looked for
    CoverMap m_colourMap; ///< of the geometries of one colour that are being drawn
    Occluders m_occluders;
    OverlayLines m_overlayLines;
    std::array<ItemIndices, GatheredAtOnce> m_gathered; ///< kept for their memory
    std::vector<OccluderRun> m_runs;                    ///< of one round; kept for its memory
    std::size_t m_occluderPrimitives = 0;               ///< drawn to find what is hidden in this frame
    bool m_isThinned = false;                           ///< lines over everything were left out in this frame
    bool m_isSifted = false;                            ///< hidden geometries were looked for in this frame
    std::vector<MaterialState> m_states;                ///< of the groups, in this frame
    std::vector<DrawUnit> m_units;                      ///< what is in view
    bool m_isSlow = false;                              ///< no time for several samples while the camera moves
    Statistics m_statistics;
};

SceneRenderer::SceneRenderer()
    : m_implementation(std::make_unique<Implementation>())
{}

SceneRenderer::~SceneRenderer() = default;

void SceneRenderer::setBackground(const osg::Color3f& top, const osg::Color3f& bottom)
{
    m_implementation->m_top = top;
    m_implementation->m_bottom = bottom;
}

void SceneRenderer::setPixelRatio(const double ratio)
{
    m_implementation->m_pixelRatio = static_cast<float>(ratio);
}

void SceneRenderer::setTravMask(const osg::UInt32 mask)
{
    m_implementation->m_travMask = mask;
}

void SceneRenderer::setMovingTime(const double seconds)
{
    m_implementation->m_movingSeconds = seconds;
}

void SceneRenderer::setExpectedPrimitives(const double count)
{
    m_implementation->m_mostPrimitives = count;
}

void SceneRenderer::setBuildingTime(const double seconds)
{
    m_implementation->m_buildingSeconds = seconds;
}

void SceneRenderer::setPrepared(const PreparedGeometries* prepared)
{
    m_implementation->setPrepared(prepared);
}

void SceneRenderer::sceneChanged(const SceneChanges& changes)
{
    m_implementation->sceneChanged(changes);
}

void SceneRenderer::draw(const osg::NodePtr& root, const Matrix4& view, const Matrix4& projection, const int width,
                         const int height, const Detail detail)
{
    m_statistics = m_implementation->draw(root, view, projection, width, height, detail);
}

void SceneRenderer::releaseResources()
{
    m_implementation->releaseResources();
}

} // namespace quon::viewer
