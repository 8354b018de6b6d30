// SPDX-License-Identifier: MIT
#pragma once

#include "ModelRun.h"

#include <cstddef>
#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace quon::testing {

/**
 * What a LazyPicker keeps and when it asks its back end.
 *
 * Nodes, materials and options are numbers, 0 for null; so are points, normals and texture coordinates, of which 0
 * stands for zeros.
 */
class LazyPickerModel {
public:
    /** The five results of a single pick. */
    struct Hit {
        int node = 0;
        int point = 0;
        int normal = 0;
        int uv = 0;
        int material = 0;
    };

    /** The four results of a multi-pick. */
    struct MultiHit {
        std::vector<int> nodes;
        std::vector<int> points;
        std::vector<int> normals;
        std::vector<int> materials;
    };

    /** The host's part. */
    struct BackEnd {
        std::function<bool()> isCacheValid;
        std::function<bool(int& option)> updateSelectionOption;
        std::function<void(Hit& hit, int option)> computePicked;
        std::function<void(std::vector<int>& nodes, int option)> computePickedNodes;
        std::function<void(int mode, MultiHit& hit)> computeMultiPicked;
    };

    static std::vector<std::string> branches()
    {
        return {"first pick",
                "pick from the cache",
                "pick anew, dirty",
                "pick anew, other mode",
                "pick anew, other options",
                "pick anew, cache not valid",
                "multi-pick with an empty list",
                "multi-pick from the cache",
                "single pick as a multi-pick",
                "nodes from the cache",
                "nodes anew, dirty",
                "nodes anew, other options",
                "nodes anew, cache not valid",
                "reset results returned",
                "setting changed",
                "setting as it was",
                "same root set again"};
    }

    LazyPickerModel(BackEnd backEnd, ModelCoverage& coverage)
        : m_backEnd(std::move(backEnd))
        , m_coverage(coverage)
    {}

    Hit getPicked(int option)
    {
        update(0, option);
        if (m_isReset) {
            m_coverage.see("reset results returned");
        }
        return m_hit;
    }

    MultiHit getMultiPicked(int mode)
    {
        update(mode, 0);
        if (mode == 0) {
            m_coverage.see("single pick as a multi-pick");
        }
        return m_multiHit;
    }

    const std::vector<int>& getPickedNodes(int option)
    {
        const bool isOther = m_backEnd.updateSelectionOption(option);
        if (m_dirty) {
            m_coverage.see("nodes anew, dirty");
        } else if (isOther) {
            m_coverage.see("nodes anew, other options");
        } else if (m_backEnd.isCacheValid()) {
            m_coverage.see("nodes from the cache");
            return m_nodes;
        } else {
            m_coverage.see("nodes anew, cache not valid");
        }
        m_backEnd.computePickedNodes(m_nodes, option);
        m_dirty = false;
        return m_nodes;
    }

    void invalidate()
    {
        m_dirty = true;
        m_hit = Hit();
        m_multiHit = MultiHit();
        m_isReset = true;
    }

    void setRoot(int root)
    {
        if (root == m_root) {
            m_coverage.see("same root set again");
        }
        m_root = root;
        m_dirty = true;
    }
    int getRoot() const { return m_root; }

    void setSelectionRegion(int selectionRegion) { change(m_selectionRegion, selectionRegion); }
    int getSelectionRegion() const { return m_selectionRegion; }

    void setMaterialLayerEvaluationEnabled(bool enabled) { change(m_materialLayers, enabled); }
    bool getMaterialLayerEvaluationEnabled() const { return m_materialLayers; }

    void setTransparencyEvaluationEnabled(bool enabled) { change(m_transparency, enabled); }
    bool getTransparencyEvaluationEnabled() const { return m_transparency; }

    void setFullyEnclosed(bool fullyEnclosed) { m_fullyEnclosed = fullyEnclosed; }
    bool getFullyEnclosed() const { return m_fullyEnclosed; }

    void setDepthSelection(bool depthSelection) { m_depthSelection = depthSelection; }
    bool getDepthSelection() const { return m_depthSelection; }

    void setMakeNormalsConsistent(bool consistent) { m_normalsConsistent = consistent; }
    bool getMakeNormalsConsistent() const { return m_normalsConsistent; }

private:
    void update(int mode, int option)
    {
        const bool isOther = m_backEnd.updateSelectionOption(option);
        if (!m_hasMode) {
            m_coverage.see("first pick");
        } else if (m_dirty) {
            m_coverage.see("pick anew, dirty");
        } else if (m_mode != mode) {
            m_coverage.see("pick anew, other mode");
        } else if (isOther) {
            // That validity is not asked for then is this library's own promise.
            m_coverage.see("pick anew, other options");
        } else if (m_backEnd.isCacheValid()) {
            m_coverage.see(mode == 0 ? "pick from the cache" : "multi-pick from the cache");
            return;
        } else {
            m_coverage.see("pick anew, cache not valid");
        }

        m_multiHit = MultiHit();
        if (mode != 0) {
            m_backEnd.computeMultiPicked(mode, m_multiHit);
            takeFirst(m_multiHit.nodes, m_hit.node);
            takeFirst(m_multiHit.points, m_hit.point);
            takeFirst(m_multiHit.normals, m_hit.normal);
            takeFirst(m_multiHit.materials, m_hit.material);
        } else {
            m_backEnd.computePicked(m_hit, option);
            m_multiHit.nodes.push_back(m_hit.node);
            m_multiHit.points.push_back(m_hit.point);
            m_multiHit.normals.push_back(m_hit.normal);
            m_multiHit.materials.push_back(m_hit.material);
        }
        m_dirty = false;
        m_mode = mode;
        m_hasMode = true;
        m_isReset = false;
    }

    void takeFirst(const std::vector<int>& all, int& single)
    {
        if (all.empty()) {
            m_coverage.see("multi-pick with an empty list");
        } else {
            single = all.front();
        }
    }

    template <typename Value>
    void change(Value& setting, Value value)
    {
        m_coverage.see(setting != value ? "setting changed" : "setting as it was");
        if (setting != value) {
            setting = value;
            m_dirty = true;
        }
    }

    BackEnd m_backEnd;
    ModelCoverage& m_coverage;
    int m_root = 0;
    bool m_dirty = true;
    bool m_hasMode = false;
    int m_mode = 0;
    Hit m_hit;
    bool m_isReset = false; ///< the results are what invalidate() left
    std::vector<int> m_nodes;
    MultiHit m_multiHit;
    bool m_fullyEnclosed = false;
    bool m_depthSelection = true;
    bool m_normalsConsistent = true;
    bool m_materialLayers = false;
    bool m_transparency = true;
    int m_selectionRegion = 0;
};

} // namespace quon::testing
