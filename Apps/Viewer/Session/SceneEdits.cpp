// SPDX-License-Identifier: MIT
#include "Viewer/Session/SceneEdits.h"

#include <Interaction/NodeSelectionModel.h>
#include <SceneUtilities/koNodeUtils.h>

#include <algorithm>
#include <iterator>
#include <set>
#include <unordered_set>
#include <utility>

namespace quon::viewer {

namespace {

using interaction::NodeSelectionModel;
using IdSet = std::unordered_set<osg::UInt32>;

// The selected nodes to go through while a visualisation may change the selection.
std::vector<osg::NodePtr> copySelection(const NodeSelectionModel& model)
{
    std::vector<osg::NodePtr> nodes(model.getSelection().begin(), model.getSelection().end());
    // Null is selected like any other handle, by whoever does that.
    nodes.erase(std::remove(nodes.begin(), nodes.end(), osg::NodePtr()), nodes.end());
    return nodes;
}

// The nodes that are selected, or those that are not; in order and each of them once.
std::vector<osg::NodePtr> filter(const std::vector<osg::NodePtr>& nodes, const NodeSelectionModel& model,
                                 const bool selected)
{
    std::vector<osg::NodePtr> result;
    result.reserve(nodes.size());
    std::copy_if(nodes.begin(), nodes.end(), std::back_inserter(result),
                 [&](const osg::NodePtr& node) { return (model.getSelection().count(node) != 0) == selected; });
    std::sort(result.begin(), result.end());
    result.erase(std::unique(result.begin(), result.end()), result.end());
    return result;
}

bool isAnyLeft(const NodeIds& ids, const osg::NodePtr& root)
{
    return std::any_of(ids.begin(), ids.end(), [&](const osg::UInt32 id) { return isWithin(findNodeById(id), root); });
}

// Refreshes the selected nodes that are asked for; the smaller of the two is walked.
void updateSelected(NodeSelectionModel& model, const IdSet& ids)
{
    if (ids.size() < model.getSelection().size()) {
        for (const osg::UInt32 id : ids) {
            const osg::NodePtr node = findNodeById(id);
            if (model.getSelection().count(node) != 0) {
                model.updateNode(node);
            }
        }
        return;
    }
    for (const osg::NodePtr& node : copySelection(model)) {
        if (ids.count(osg::getContainerId(node)) != 0) {
            model.updateNode(node);
        }
    }
}

} // namespace

void EditedScene::refreshMasks(const std::vector<osg::NodePtr>& nodes) const
{
    IdSet affected;
    affected.reserve(nodes.size() * 2);
    for (const osg::NodePtr& changed : nodes) {
        affected.insert(osg::getContainerId(changed));
        // Up to the first that is noted already: those above it are too.
        osg::NodePtr ancestor = changed->getParent();
        while (ancestor != osg::NullFC && affected.insert(osg::getContainerId(ancestor)).second) {
            ancestor = ancestor->getParent();
        }
    }
    for (NodeSelectionModel* model : followers) {
        updateSelected(*model, affected);
    }
    notify();
}

void EditedScene::refreshLocks(const std::vector<osg::NodePtr>& nodes) const
{
    const NodeIds ids = getIds(nodes);
    const IdSet changed(ids.begin(), ids.end());
    for (NodeSelectionModel* model : followers) {
        for (const osg::NodePtr& node : copySelection(*model)) {
            osg::NodePtr ancestor = node;
            while (ancestor != osg::NullFC && changed.count(osg::getContainerId(ancestor)) == 0) {
                ancestor = ancestor->getParent();
            }
            if (ancestor != osg::NullFC) {
                model->updateNode(node);
            }
        }
    }
    notify();
}

void EditedScene::notify() const
{
    if (stateChanged) {
        stateChanged();
    }
}

SelectionEdit::SelectionEdit(const EditedScene& scene, NodeSelectionModel& model, NodeIds selected, NodeIds deselected,
                             const std::size_t countBefore)
    : m_scene(scene)
    , m_model(model)
    , m_selected(std::move(selected))
    , m_deselected(std::move(deselected))
    , m_countBefore(countBefore)
{}

void SelectionEdit::undo()
{
    changeSelection(m_model, findNodes(m_selected, osg::NullFC), findNodes(m_deselected, m_scene.root));
}

void SelectionEdit::redo()
{
    changeSelection(m_model, findNodes(m_deselected, osg::NullFC), findNodes(m_selected, m_scene.root));
}

QString SelectionEdit::describe() const
{
    const std::size_t countAfter = m_countBefore + m_selected.size() - m_deselected.size();
    if (countAfter == 0) {
        return tr("Clear selection");
    }
    if (m_selected.empty()) {
        return tr("Deselect %n parts", "", static_cast<int>(m_deselected.size()));
    }
    if (m_deselected.empty() && m_countBefore > 0) {
        return tr("Add %n parts to the selection", "", static_cast<int>(m_selected.size()));
    }
    return tr("Select %n parts", "", static_cast<int>(countAfter));
}

bool SelectionEdit::isApplicable() const
{
    return isAnyLeft(m_selected, m_scene.root) || isAnyLeft(m_deselected, m_scene.root);
}

VisibilityEdit::VisibilityEdit(const EditedScene& scene, const Kind kind, const std::size_t asked,
                               std::vector<Change> changes)
    : m_scene(scene)
    , m_kind(kind)
    , m_asked(asked)
    , m_changes(std::move(changes))
{}

QString VisibilityEdit::describe() const
{
    const int asked = static_cast<int>(m_asked);
    switch (m_kind) {
    case Kind::Hide:
        return tr("Hide %n parts", "", asked);
    case Kind::Show:
        return tr("Show %n parts", "", asked);
    case Kind::Isolate:
        return tr("Isolate %n parts", "", asked);
    case Kind::ShowAll:
        break;
    }
    return tr("Show all");
}

bool VisibilityEdit::isApplicable() const
{
    return std::any_of(m_changes.begin(), m_changes.end(),
                       [&](const Change& change) { return isWithin(findNodeById(change.id), m_scene.root); });
}

void VisibilityEdit::setMasks(osg::UInt32 Change::*mask)
{
    std::vector<osg::NodePtr> nodes;
    nodes.reserve(m_changes.size());
    for (const Change& change : m_changes) {
        const osg::NodePtr node = findNodeById(change.id);
        if (isWithin(node, m_scene.root)) {
            beginEditCP(node, osg::Node::TravMaskFieldMask);
            node->setTravMask(change.*mask);
            endEditCP(node, osg::Node::TravMaskFieldMask);
            nodes.push_back(node);
        }
    }
    m_scene.refreshMasks(nodes);
}

LockEdit::LockEdit(const EditedScene& scene, NodeIds nodes, const bool locked)
    : m_scene(scene)
    , m_nodes(std::move(nodes))
    , m_locked(locked)
{}

QString LockEdit::describe() const
{
    const int count = static_cast<int>(m_nodes.size());
    return m_locked ? tr("Lock %n parts", "", count) : tr("Unlock %n parts", "", count);
}

bool LockEdit::isApplicable() const
{
    return isAnyLeft(m_nodes, m_scene.root);
}

void LockEdit::setLocked(const bool locked)
{
    const std::vector<osg::NodePtr> nodes = findNodes(m_nodes, m_scene.root);
    for (const osg::NodePtr& node : nodes) {
        koNodeUtils::setIsEditable(node, !locked);
    }
    m_scene.refreshLocks(nodes);
}

void changeSelection(NodeSelectionModel& model, const std::vector<osg::NodePtr>& deselected,
                     const std::vector<osg::NodePtr>& selected)
{
    const std::set<osg::NodePtr>& selection = model.getSelection();
    const std::vector<osg::NodePtr> leaving = filter(deselected, model, true);
    const std::vector<osg::NodePtr> joining = filter(selected, model, false);
    if (leaving.size() > selection.size() - leaving.size()) {
        std::vector<osg::NodePtr> result;
        std::set_difference(selection.begin(), selection.end(), leaving.begin(), leaving.end(),
                            std::back_inserter(result));
        result.insert(result.end(), joining.begin(), joining.end());
        model.setSelection(result);
        return;
    }
    model.removeNodes(leaving);
    // Ends at the first node that is selected already: none of these is.
    model.addNodes(joining);
}

} // namespace quon::viewer
