// SPDX-License-Identifier: MIT
#pragma once

#include "ModelRun.h"

#include <algorithm>
#include <functional>
#include <map>
#include <string>
#include <vector>

namespace quon::testing {

/**
 * What an AbstractSelectionVisualisation does to the scene below its root, and which hooks it calls.
 *
 * Scene nodes and visualisation nodes are numbers, given in order of creation; 0 is no node. A kind of visualisation
 * derives from it and says what its hooks do.
 */
class AbstractSelectionVisualisationModel {
public:
    static constexpr unsigned allOnes = 0xFFFFFFFF;

    /** What the model asks of the scene nodes. */
    struct Scene {
        std::function<bool(int node)> exists;
        std::function<unsigned(int node)> getMask;
    };

    /** A visualisation node that exists. */
    struct Visualisation {
        unsigned mask = allOnes;
        int references = 0;
        bool isBelowRoot = false;
        bool isElsewhere = false; ///< below a node of the host
    };

    /** A tracked node and its visualisation node, 0 without one. */
    struct Entry {
        int node;
        int visualisation;
    };

    static std::vector<std::string> branches()
    {
        return {"setVisible as it is already",
                "setVisible after a partial mask",
                "shown again with a node that is gone",
                "node added while hidden",
                "node added that is filtered out",
                "node added again while hidden",
                "node added again that is filtered out",
                "node added again and updated",
                "node added again gets its first visualisation",
                "visualisation of a hidden node added",
                "visualisation below the root already when added",
                "null added",
                "null removed",
                "nothing to remove",
                "node without visualisation removed",
                "node with visualisation removed",
                "null updated",
                "updated while hidden",
                "unknown node updated",
                "first visualisation by update",
                "visualisation shown by update",
                "visualisation updated",
                "visualisation hidden by update",
                "hidden visualisation stays hidden",
                "hidden or filtered node without visualisation updated",
                "all updated while hidden",
                "all updated with a node that is gone",
                "all removed with a node that is gone",
                "all removed with a node without visualisation"};
    }

    AbstractSelectionVisualisationModel(Scene scene, ModelCoverage& coverage)
        : m_scene(std::move(scene))
        , m_coverage(coverage)
    {
        noteChange("root", "Core");
    }

    virtual ~AbstractSelectionVisualisationModel() = default;

    void setVisible(bool visible)
    {
        if ((m_rootMask == allOnes) == visible) {
            m_coverage.see("setVisible as it is already");
            return;
        }
        if (m_rootMask != 0 && m_rootMask != allOnes) {
            m_coverage.see("setVisible after a partial mask");
        }
        m_rootMask = visible ? allOnes : 0;
        noteChange("root", "TravMask");
        if (!visible) {
            return;
        }
        forEachNode([this](int node) {
            if (m_scene.exists(node)) {
                updateNode(node);
            } else {
                m_coverage.see("shown again with a node that is gone");
                m_messages += "AbstractSelectionVisualisation::setVisible: invalid node pointer!\n";
            }
        });
    }

    virtual bool isVisible() { return m_rootMask == allOnes; }

    void addNode(int node)
    {
        if (node == 0) {
            m_coverage.see("null added");
            return;
        }
        const bool visible = isVisible();
        Entry* entry = find(node);
        const bool wanted = visible && shouldHaveVisualization(node);
        if (!wanted) {
            if (entry == nullptr) {
                m_coverage.see(visible ? "node added that is filtered out" : "node added while hidden");
                insert(node);
            } else {
                m_coverage.see(visible ? "node added again that is filtered out" : "node added again while hidden");
            }
            return;
        }
        if (entry != nullptr && entry->visualisation != 0) {
            m_coverage.see("node added again and updated");
            updateVisualisation(node, entry->visualisation);
            return;
        }
        if (entry != nullptr) {
            m_coverage.see("node added again gets its first visualisation");
        }
        const int visualisation = createVisualisation(node);
        // Looked up again: the hook may have added other nodes.
        entry = find(node) != nullptr ? find(node) : insert(node);
        entry->visualisation = visualisation;
        ++m_visualisations[visualisation].references;
        if (m_visualisations[visualisation].isBelowRoot) {
            m_coverage.see("visualisation below the root already when added");
        } else {
            attach(visualisation);
        }
        if (m_scene.getMask(node) != allOnes) {
            m_coverage.see("visualisation of a hidden node added");
        }
        setMask(visualisation, m_scene.getMask(node) == allOnes ? allOnes : 0);
    }

    void removeNode(int node)
    {
        if (node == 0) {
            m_coverage.see("null removed");
            return;
        }
        const Entry* entry = find(node);
        if (entry == nullptr) {
            m_coverage.see("nothing to remove");
            return;
        }
        const int visualisation = entry->visualisation;
        m_coverage.see(visualisation == 0 ? "node without visualisation removed" : "node with visualisation removed");
        if (visualisation != 0) {
            removeVisualisation(node, visualisation);
            detach(visualisation);
            noteChange("root", "Children");
        }
        m_entries.erase(
            std::find_if(m_entries.begin(), m_entries.end(), [node](const Entry& each) { return each.node == node; }));
        if (visualisation != 0) {
            release(visualisation);
        }
    }

    virtual void updateNode(int node)
    {
        if (node == 0) {
            m_coverage.see("null updated");
            return;
        }
        if (!isVisible()) {
            m_coverage.see("updated while hidden");
            return;
        }
        Entry* entry = find(node);
        if (entry == nullptr) {
            m_coverage.see("unknown node updated");
            return;
        }
        if (m_scene.getMask(node) == allOnes && shouldHaveVisualization(node)) {
            entry = find(node);
            if (entry->visualisation == 0) {
                m_coverage.see("first visualisation by update");
                const int created = createVisualisation(node);
                // Looked up again: the hook may have added other nodes.
                find(node)->visualisation = created;
                ++m_visualisations[created].references;
                attach(created);
                setMask(created, allOnes);
                return;
            }
            if (m_visualisations[entry->visualisation].mask != allOnes) {
                m_coverage.see("visualisation shown by update");
                setMask(entry->visualisation, allOnes);
            }
            m_coverage.see("visualisation updated");
            updateVisualisation(node, entry->visualisation);
            return;
        }
        if (entry->visualisation == 0) {
            m_coverage.see("hidden or filtered node without visualisation updated");
        } else if (m_visualisations[entry->visualisation].mask == allOnes) {
            m_coverage.see("visualisation hidden by update");
            setMask(entry->visualisation, 0);
        } else {
            m_coverage.see("hidden visualisation stays hidden");
        }
    }

    bool hasNode(int node) { return find(node) != nullptr; }

    void updateAllNodes()
    {
        if (!isVisible()) {
            m_coverage.see("all updated while hidden");
            return;
        }
        forEachNode([this](int node) {
            if (m_scene.exists(node)) {
                updateNode(node);
            } else {
                m_coverage.see("all updated with a node that is gone");
            }
        });
    }

    void removeAllNodes()
    {
        forEachNode([this](int node) {
            const int visualisation = find(node)->visualisation;
            if (visualisation == 0) {
                m_coverage.see("all removed with a node without visualisation");
            } else if (m_scene.exists(node)) {
                removeVisualisation(node, visualisation);
            } else {
                m_coverage.see("all removed with a node that is gone");
                m_messages +=
                    "AbstractSelectionVisualisation::removeAllNodes: invalid node pointer (" + nodeName(node) + ")!\n";
            }
        });
        const std::vector<int> children = m_children;
        for (const int child : children) {
            detach(child);
        }
        noteChange("root", "Children");
        for (const Entry& entry : m_entries) {
            if (entry.visualisation != 0) {
                release(entry.visualisation);
            }
        }
        m_entries.clear();
    }

    /** The end of the object; @p isRootHeld keeps the root and what is below it. */
    void destroy(bool isRootHeld)
    {
        for (const Entry& entry : m_entries) {
            if (entry.visualisation != 0) {
                release(entry.visualisation);
            }
        }
        m_entries.clear();
        if (!isRootHeld) {
            const std::vector<int> children = m_children;
            for (const int child : children) {
                detach(child);
            }
        }
    }

    /** The host's own doing: gives the root any mask. */
    void setRootMask(unsigned mask) { m_rootMask = mask; }

    unsigned getRootMask() const { return m_rootMask; }
    const std::vector<int>& getChildren() const { return m_children; }
    const std::vector<Entry>& getEntries() const { return m_entries; }
    std::map<int, Visualisation>& visualisations() { return m_visualisations; }

    /** The changes since the last call, each as the name of a container and the name of a field. */
    std::vector<std::string> takeChanges()
    {
        std::vector<std::string> changes;
        changes.swap(m_changes);
        return changes;
    }

    /** What was written to standard error since the last call; scene nodes as n1, n2 and so on. */
    std::string takeMessages()
    {
        std::string messages;
        messages.swap(m_messages);
        return messages;
    }

    static std::string nodeName(int node) { return node == 0 ? "null" : "n" + std::to_string(node); }
    static std::string visualisationName(int visualisation) { return "v" + std::to_string(visualisation); }

protected:
    virtual int createVisualisation(int node) = 0;
    virtual void removeVisualisation(int node, int visualisation) = 0;
    virtual void updateVisualisation(int node, int visualisation) = 0;
    virtual bool shouldHaveVisualization(int) { return true; }

    /** Called when the last reference to a visualisation node goes. */
    virtual void visualisationDestroyed(int) {}

    /** Returns the number of a new visualisation node, which nobody holds. */
    int makeVisualisation()
    {
        m_visualisations[++m_lastVisualisation] = Visualisation();
        return m_lastVisualisation;
    }

    void release(int visualisation)
    {
        if (--m_visualisations[visualisation].references <= 0) {
            m_visualisations.erase(visualisation);
            visualisationDestroyed(visualisation);
        }
    }

    // What the scene graph does when a child is added.
    void appendToRoot(int visualisation)
    {
        Visualisation& node = m_visualisations[visualisation];
        ++node.references;
        if (node.isBelowRoot) {
            // Taken out first, which the scene graph records as a change of the parent.
            m_children.erase(std::find(m_children.begin(), m_children.end(), visualisation));
            noteChange("root", "Children");
            --node.references;
        }
        if (node.isElsewhere) {
            noteChange("elsewhere", "Children");
            node.isElsewhere = false;
            --node.references;
        }
        node.isBelowRoot = true;
        m_children.push_back(visualisation);
    }

    void noteChange(const std::string& container, const std::string& field)
    {
        m_changes.push_back(container + " " + field);
    }

    const Scene& scene() const { return m_scene; }
    ModelCoverage& coverage() { return m_coverage; }

private:
    // In the order of the numbers, with those that are added on the way where their turn is still to come.
    template <typename Visit>
    void forEachNode(const Visit& visit)
    {
        int last = 0;
        for (;;) {
            const auto next = std::find_if(m_entries.begin(), m_entries.end(),
                                           [last](const Entry& each) { return each.node > last; });
            if (next == m_entries.end()) {
                return;
            }
            last = next->node;
            visit(last);
        }
    }

    Entry* find(int node)
    {
        const auto entry =
            std::find_if(m_entries.begin(), m_entries.end(), [node](const Entry& each) { return each.node == node; });
        return entry != m_entries.end() ? &*entry : nullptr;
    }

    // Kept in the order of the numbers.
    Entry* insert(int node)
    {
        const auto next =
            std::find_if(m_entries.begin(), m_entries.end(), [node](const Entry& each) { return each.node > node; });
        return &*m_entries.insert(next, {node, 0});
    }

    void attach(int visualisation)
    {
        appendToRoot(visualisation);
        noteChange("root", "Children");
    }

    void detach(int visualisation)
    {
        m_visualisations[visualisation].isBelowRoot = false;
        m_children.erase(std::find(m_children.begin(), m_children.end(), visualisation));
        release(visualisation);
    }

    void setMask(int visualisation, unsigned mask)
    {
        m_visualisations[visualisation].mask = mask;
        noteChange(visualisationName(visualisation), "TravMask");
    }

    Scene m_scene;
    ModelCoverage& m_coverage;
    unsigned m_rootMask = allOnes;
    std::vector<int> m_children;
    std::vector<Entry> m_entries;
    std::map<int, Visualisation> m_visualisations;
    int m_lastVisualisation = 0;
    std::vector<std::string> m_changes;
    std::string m_messages;
};

} // namespace quon::testing
