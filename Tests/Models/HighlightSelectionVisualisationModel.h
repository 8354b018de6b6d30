// SPDX-License-Identifier: MIT
#pragma once

#include "AbstractSelectionVisualisationModel.h"

#include <algorithm>
#include <array>
#include <functional>
#include <map>
#include <string>
#include <utility>
#include <vector>

namespace quon::testing {

/** What a HighlightSelectionVisualisation draws: copies of subtrees, written as trees of cores and masks. */
class HighlightSelectionVisualisationModel final : public AbstractSelectionVisualisationModel {
public:
    using Translation = std::array<float, 3>;
    using Color = std::array<float, 3>;

    /** What there is to know about a scene node. */
    struct SceneNode {
        unsigned mask = allOnes;
        int parent = 0;
        unsigned core = 0; ///< its identity, 0 without core
        bool isReplacedByGroup = false;
        bool isGeometry = false;
        bool isTransform = false;
        std::vector<int> children;
    };

    /** What copies depend on beyond the scene nodes themselves. */
    struct CopyScene {
        std::function<SceneNode(int node)> getNode;
        std::function<Translation(int node)> getWorldTranslation;
    };

    /** A copied node: the core that it shares, or a group of its own. */
    struct Copy {
        unsigned mask = allOnes;
        unsigned core = 0; ///< 0: an empty group of its own
        std::vector<Copy> children;
    };

    /** A visualisation: a transform of its own, and what is below it. */
    struct Highlight {
        Translation translation = {0, 0, 0};
        std::vector<Copy> children;
    };

    static std::vector<std::string> branches()
    {
        std::vector<std::string> names = AbstractSelectionVisualisationModel::branches();
        // Its nodes are never below the root before they are added, and it filters nothing.
        for (const char* name : {"visualisation below the root already when added", "node added that is filtered out",
                                 "node added again that is filtered out"}) {
            names.erase(std::find(names.begin(), names.end(), name));
        }
        for (const char* name :
             {"node without core copied", "child without core left out", "core replaced by a group",
              "geometry below a transform", "copy of a hidden node removed", "copy gone already", "copy replaced",
              "copy that was removed stays away", "old copy stays without a new one", "null material ignored"}) {
            names.emplace_back(name);
        }
        return names;
    }

    HighlightSelectionVisualisationModel(Scene scene, CopyScene copyScene, ModelCoverage& coverage)
        : AbstractSelectionVisualisationModel(std::move(scene), coverage)
        , m_copyScene(std::move(copyScene))
    {
        for (const char* container : {"polygon chunk", "depth test chunk", "highlight material", "material group"}) {
            noteChange(container, "all");
        }
        noteChange("root", "Core");
    }

    void setColor(const Color& color)
    {
        m_color = color;
        noteChange("highlight material", "all");
    }
    const Color& getColor() const { return m_color; }

    void setOverlay(bool overlay)
    {
        m_overlay = overlay;
        noteChange("depth test chunk", "all");
    }
    bool getOverlay() const { return m_overlay; }

    /** @p material 0 for null; 1 is the material that the constructor built */
    void setMaterial(int material)
    {
        if (material == 0) {
            coverage().see("null material ignored");
        } else {
            m_material = material;
        }
        noteChange("material group", "all");
    }
    int getMaterial() const { return m_material; }

    /** The visualisations that exist. */
    const std::map<int, Highlight>& getHighlights() const { return m_highlights; }

    /** What cloneSelectionTree() returns for a node: one copy, or none. */
    std::vector<Copy> copy(int number)
    {
        const SceneNode node = m_copyScene.getNode(number);
        if (node.core == 0) {
            return {};
        }
        Copy copied;
        copied.mask = node.mask;
        copied.core = node.isReplacedByGroup ? 0 : node.core;
        if (node.isReplacedByGroup) {
            coverage().see("core replaced by a group");
        }
        for (const int child : node.children) {
            const std::vector<Copy> below = copy(child);
            if (below.empty()) {
                coverage().see("child without core left out");
            }
            copied.children.insert(copied.children.end(), below.begin(), below.end());
        }
        noteChange("copy", "all");
        return {copied};
    }

    /** Calls the hook as somebody else may: with null for the node or the visualisation nothing happens. */
    void updateVisualisation(int node, int visualisation) override
    {
        if (node == 0 || visualisation == 0) {
            return;
        }
        Highlight& highlight = m_highlights.at(visualisation);
        const std::string name = visualisationName(visualisation);
        const SceneNode source = m_copyScene.getNode(node);
        if (source.mask != allOnes) {
            // What happens without a child is this library's own promise: nothing.
            if (highlight.children.empty()) {
                coverage().see("copy gone already");
            } else {
                coverage().see("copy of a hidden node removed");
                highlight.children.clear();
                noteChange(name, "all");
            }
            return;
        }
        const std::vector<Copy> copied = copy(node);
        highlight.translation = m_copyScene.getWorldTranslation(source.parent);
        noteChange(name + " transform", "all");
        // Nothing is ever added: the scene graph replaces what there is, by what there is.
        if (highlight.children.empty()) {
            coverage().see("copy that was removed stays away");
        } else if (copied.empty()) {
            coverage().see("old copy stays without a new one");
        } else {
            coverage().see("copy replaced");
            highlight.children = copied;
        }
        noteChange(name, "all");
    }

protected:
    int createVisualisation(int node) override
    {
        const SceneNode source = m_copyScene.getNode(node);
        std::vector<Copy> copied = copy(node);
        if (copied.empty()) {
            coverage().see("node without core copied");
        }
        Highlight highlight;
        highlight.translation = m_copyScene.getWorldTranslation(source.parent);
        const int visualisation = makeVisualisation();
        const std::string name = visualisationName(visualisation);
        if (source.isGeometry && source.parent != 0 && m_copyScene.getNode(source.parent).isTransform) {
            coverage().see("geometry below a transform");
            const SceneNode parent = m_copyScene.getNode(source.parent);
            highlight.translation = m_copyScene.getWorldTranslation(parent.parent);
            Copy between;
            between.core = parent.core;
            between.children = copied;
            copied = {between};
            noteChange("copy", "all");
        }
        highlight.children = copied;
        m_highlights[visualisation] = highlight;
        noteChange(name + " transform", "all");
        noteChange(name, "all");
        return visualisation;
    }

    void removeVisualisation(int, int) override {}

    void visualisationDestroyed(int visualisation) override { m_highlights.erase(visualisation); }

private:
    CopyScene m_copyScene;
    std::map<int, Highlight> m_highlights;
    Color m_color = {0.956F, 0.521F, 0.086F};
    bool m_overlay = true;
    int m_material = 1;
};

} // namespace quon::testing
