// SPDX-License-Identifier: MIT
#pragma once

#include "AbstractSelectionVisualisationModel.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <utility>
#include <vector>

namespace quon::testing {

/** What a BoxSelectionVisualisation draws: boxes by their two outer corners, and what they are drawn with. */
class BoxSelectionVisualisationModel final : public AbstractSelectionVisualisationModel {
public:
    using Corner = std::array<float, 3>;
    using Color = std::array<float, 3>;

    /** What boxes depend on beyond the scene nodes themselves. */
    struct BoxScene {
        std::function<std::pair<Corner, Corner>(int node)> getWorldBounds;
        std::function<Corner(int node)> getWorldTranslation;
        std::function<bool(int node)> isEditable;
        std::function<bool(int node)> isCamera;
    };

    struct Box {
        Corner min = {-1, -1, -1};
        Corner max = {1, 1, 1};
        bool isLocked = false; ///< drawn with the second material
    };

    static std::vector<std::string> branches()
    {
        std::vector<std::string> names = AbstractSelectionVisualisationModel::branches();
        // Its boxes are never below the root before they are added.
        names.erase(std::find(names.begin(), names.end(), "visualisation below the root already when added"));
        for (const char* name : {"new box", "spare box", "marker", "box as it was", "box moved by next to nothing",
                                 "box written", "box locked", "box unlocked", "spare boxes cleared"}) {
            names.emplace_back(name);
        }
        return names;
    }

    BoxSelectionVisualisationModel(Scene scene, BoxScene boxScene, ModelCoverage& coverage)
        : AbstractSelectionVisualisationModel(std::move(scene), coverage)
        , m_boxScene(std::move(boxScene))
    {
        for (const char* container : {"depth test chunk", "line chunk", "blend chunk", "highlight material",
                                      "material group", "locked material"}) {
            noteChange(container, "all");
        }
        noteChange("root", "Core");
    }

    void clear()
    {
        if (!m_spare.empty()) {
            coverage().see("spare boxes cleared");
        }
        while (!m_spare.empty()) {
            const int box = m_spare.back();
            m_spare.pop_back();
            release(box);
        }
    }

    void setMarkerSize(float markerSize) { m_markerSize = markerSize; }
    float getMarkerSize() const { return m_markerSize; }

    void setColor(const Color& color)
    {
        m_color = color;
        noteChange("highlight material", "all");
    }
    const Color& getColor() const { return m_color; }

    void setLockedColor(const Color& color)
    {
        m_lockedColor = color;
        noteChange("locked material", "all");
    }
    const Color& getLockedColor() const { return m_lockedColor; }

    void setTransparency(float transparency, int sortKeyOffset)
    {
        m_transparency = transparency;
        // That the key wraps around at the ends of its range is this library's own promise.
        m_sortKey = static_cast<std::int32_t>(static_cast<std::uint32_t>(m_sortKey) +
                                              static_cast<std::uint32_t>(sortKeyOffset));
        noteChange("highlight material", "all");
        noteChange("locked material", "all");
    }
    float getTransparency() const { return m_transparency; }
    std::int32_t getSortKey() const { return m_sortKey; }

    void setOverlay(bool overlay)
    {
        m_overlay = overlay;
        noteChange("depth test chunk", "all");
    }
    bool getOverlay() const { return m_overlay; }

    /** The boxes that exist, in use or spare. */
    const std::map<int, Box>& getBoxes() const { return m_boxes; }

    std::size_t countLocked() const
    {
        return static_cast<std::size_t>(
            std::count_if(m_boxes.begin(), m_boxes.end(), [](const auto& each) { return each.second.isLocked; }));
    }

protected:
    int createVisualisation(int node) override
    {
        if (!m_spare.empty()) {
            coverage().see("spare box");
            const int box = m_spare.back();
            m_spare.pop_back();
            updateVisualisation(node, box);
            return box;
        }
        coverage().see("new box");
        const int box = makeVisualisation();
        visualisations()[box].references = 1;
        m_boxes[box] = Box();
        const std::string name = visualisationName(box);
        for (const char* part : {" types", " lengths", " indices", " positions", " geometry", ""}) {
            noteChange(name + part, "all");
        }
        updateVisualisation(node, box);
        return box;
    }

    void removeVisualisation(int, int visualisation) override { m_spare.push_back(visualisation); }

    void updateVisualisation(int node, int visualisation) override
    {
        auto [min, max] = m_boxScene.getWorldBounds(node);
        if (min == Corner{0, 0, 0} && max == Corner{0, 0, 0}) {
            coverage().see("marker");
            const Corner centre = m_boxScene.getWorldTranslation(node);
            for (std::size_t axis = 0; axis < 3; ++axis) {
                min[axis] = centre[axis] - m_markerSize;
                max[axis] = centre[axis] + m_markerSize;
            }
        }
        Box& box = m_boxes.at(visualisation);
        const std::string name = visualisationName(visualisation);
        if (isNear(box.min, min) && isNear(box.max, max)) {
            coverage().see(box.min == min && box.max == max ? "box as it was" : "box moved by next to nothing");
        } else {
            coverage().see("box written");
            box.min = min;
            box.max = max;
            noteChange(name + " positions", "all");
            noteChange(name + " geometry", "Positions");
        }
        const bool isLocked = !m_boxScene.isEditable(node);
        if (isLocked != box.isLocked) {
            coverage().see(isLocked ? "box locked" : "box unlocked");
            box.isLocked = isLocked;
            noteChange(name + " geometry", "Material and OverwriteMaterial");
        }
    }

    bool shouldHaveVisualization(int node) override { return !m_boxScene.isCamera(node); }

    void visualisationDestroyed(int visualisation) override { m_boxes.erase(visualisation); }

private:
    static bool isNear(const Corner& stored, const Corner& wanted)
    {
        for (std::size_t axis = 0; axis < 3; ++axis) {
            if (std::abs(static_cast<double>(stored[axis]) - static_cast<double>(wanted[axis])) > 1e-6) {
                return false;
            }
        }
        return true;
    }

    BoxScene m_boxScene;
    std::map<int, Box> m_boxes;
    std::vector<int> m_spare;
    float m_markerSize = 1;
    Color m_color = {0.956F, 0.521F, 0.086F};
    Color m_lockedColor = {0.046F, 0.046F, 0.046F};
    float m_transparency = 0.001F;
    std::int32_t m_sortKey = 60000;
    bool m_overlay = true;
};

} // namespace quon::testing
