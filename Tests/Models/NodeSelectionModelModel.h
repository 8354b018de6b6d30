// SPDX-License-Identifier: MIT
#pragma once

#include "ModelRun.h"

#include <algorithm>
#include <cstddef>
#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace quon::testing {

/**
 * What a NodeSelectionModel selects, and what it tells its visualisations.
 *
 * Nodes are numbers in the order of handles, 0 for null; visualisations are numbers, too.
 */
class NodeSelectionModelModel {
public:
    using Nodes = std::vector<int>;

    /** Called for every call of a visualisation; @p node is -1 for operations without one. */
    using Call = std::function<void(int visualisation, const std::string& operation, int node)>;

    static std::vector<std::string> branches()
    {
        return {"node selected",
                "node selected already",
                "null selected",
                "nodes selected up to one that was",
                "nodes selected up to a repetition",
                "all nodes selected",
                "node deselected",
                "nothing to deselect",
                "update of a node that is not selected",
                "cleared",
                "selection replaced",
                "repetition in a new selection",
                "empty new selection",
                "visualisation attached twice",
                "visualisation filled",
                "one of two entries detached",
                "detached without being attached",
                "update of a visualisation that is not attached"};
    }

    NodeSelectionModelModel(std::string name, Call call, ModelCoverage& coverage)
        : m_name(std::move(name))
        , m_call(std::move(call))
        , m_coverage(coverage)
    {}

    const std::string& getName() const { return m_name; }
    const Nodes& getSelection() const { return m_selection; }
    const std::vector<int>& getVisualisations() const { return m_visualisations; }

    void addNode(int node)
    {
        if (isSelected(node)) {
            m_coverage.see("node selected already");
            tellAll("updateNode", node);
            return;
        }
        m_coverage.see(node == 0 ? "null selected" : "node selected");
        insert(node);
        tellAll("addNode", node);
    }

    void addNodes(const Nodes& nodes)
    {
        const Nodes before = m_selection;
        for (const int node : nodes) {
            if (isSelected(node)) {
                m_coverage.see(std::count(before.begin(), before.end(), node) != 0
                                   ? "nodes selected up to one that was"
                                   : "nodes selected up to a repetition");
                tellAll("updateNode", node);
                return;
            }
            insert(node);
            tellAll("addNode", node);
        }
        m_coverage.see("all nodes selected");
    }

    void removeNode(int node)
    {
        if (!isSelected(node)) {
            m_coverage.see("nothing to deselect");
            return;
        }
        m_coverage.see("node deselected");
        tellAll("removeNode", node);
        erase(node);
    }

    void removeNodes(const Nodes& nodes)
    {
        for (const int node : nodes) {
            removeNode(node);
        }
    }

    void updateNode(int node)
    {
        if (!isSelected(node)) {
            m_coverage.see("update of a node that is not selected");
        }
        tellAll("updateNode", node);
    }

    void clearSelection()
    {
        m_coverage.see("cleared");
        m_selection.clear();
        tellAll("removeAllNodes");
    }

    void setSelection(int node) { setSelection(Nodes{node}); }

    void setSelection(const Nodes& nodes)
    {
        m_coverage.see(nodes.empty() ? "empty new selection" : "selection replaced");
        tellAll("removeAllNodes");
        m_selection.clear();
        for (const int node : nodes) {
            if (isSelected(node)) {
                m_coverage.see("repetition in a new selection");
            } else {
                insert(node);
            }
            tellAll("addNode", node);
        }
    }

    void addVisualisation(int visualisation)
    {
        m_coverage.see(isAttached(visualisation) ? "visualisation attached twice" : "visualisation filled");
        m_visualisations.push_back(visualisation);
        m_call(visualisation, "removeAllNodes", -1);
        const Nodes selection = m_selection;
        for (const int node : selection) {
            m_call(visualisation, "addNode", node);
        }
    }

    void removeVisualisation(int visualisation)
    {
        const auto count = std::count(m_visualisations.begin(), m_visualisations.end(), visualisation);
        if (count == 0) {
            m_coverage.see("detached without being attached");
        } else if (count > 1) {
            m_coverage.see("one of two entries detached");
        }
        m_call(visualisation, "removeAllNodes", -1);
        const auto entry = std::find(m_visualisations.begin(), m_visualisations.end(), visualisation);
        if (entry != m_visualisations.end()) {
            m_visualisations.erase(entry);
        }
    }

    void updateVisualisation(int visualisation)
    {
        if (!isAttached(visualisation)) {
            m_coverage.see("update of a visualisation that is not attached");
        }
        m_call(visualisation, "updateAllNodes", -1);
    }

    void updateVisualisations() { tellAll("updateAllNodes"); }

private:
    bool isSelected(int node) const
    {
        return std::find(m_selection.begin(), m_selection.end(), node) != m_selection.end();
    }

    bool isAttached(int visualisation) const
    {
        return std::find(m_visualisations.begin(), m_visualisations.end(), visualisation) != m_visualisations.end();
    }

    void insert(int node)
    {
        if (!isSelected(node)) {
            m_selection.push_back(node);
            std::sort(m_selection.begin(), m_selection.end());
        }
    }

    void erase(int node)
    {
        const auto selected = std::find(m_selection.begin(), m_selection.end(), node);
        if (selected != m_selection.end()) {
            m_selection.erase(selected);
        }
    }

    void tellAll(const std::string& operation, int node = -1)
    {
        for (std::size_t index = 0; index < m_visualisations.size(); ++index) {
            m_call(m_visualisations[index], operation, node);
        }
    }

    std::string m_name;
    Call m_call;
    ModelCoverage& m_coverage;
    Nodes m_selection;
    std::vector<int> m_visualisations;
};

} // namespace quon::testing
