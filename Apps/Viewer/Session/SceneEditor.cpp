// SPDX-License-Identifier: MIT
#include "Viewer/Session/SceneEditor.h"

#include "Viewer/Model/NodeWalk.h"

#include <Interaction/NodeSelectionModel.h>
#include <SceneUtilities/HostMarks.h>

#include <algorithm>
#include <iterator>
#include <unordered_map>
#include <unordered_set>
#include <utility>

namespace quon::viewer {

namespace {

using Kind = VisibilityEdit::Kind;
using Change = VisibilityEdit::Change;

constexpr osg::UInt32 Shown = 0xFFFFFFFF;
constexpr osg::UInt32 Hidden = 0;

/** Masks that nodes are going to have, before any of them has it. */
class MaskPlan {
public:
    void hideTree(const osg::NodePtr& root)
    {
        walkNodes(root, [this](const osg::NodePtr& node) { return setMask(node, Hidden), true; });
    }

    void showTree(const osg::NodePtr& root)
    {
        walkNodes(root, [this](const osg::NodePtr& node) { return show(node), true; });
    }

    /** Shows the hidden ones above @p node; what else is in them was not seen and stays so. */
    void showWayTo(const osg::NodePtr& node)
    {
        // From the topmost hidden one down: nothing below it was seen, whatever its own mask says.
        const osg::NodePtr topmost = findTopmostHiddenAbove(node);
        for (osg::NodePtr onTheWay = node; topmost != osg::NullFC && onTheWay != topmost;) {
            const osg::NodePtr above = onTheWay->getParent();
            show(above);
            for (osg::UInt32 i = 0; i < above->getNChildren(); ++i) {
                if (const osg::NodePtr child = above->getChild(i); child != onTheWay) {
                    hideTree(child);
                }
            }
            onTheWay = above;
        }
    }

    void show(const osg::NodePtr& node)
    {
        if (getMask(node) == Hidden) {
            setMask(node, Shown);
        }
    }

    std::vector<Change> getChanges() const
    {
        std::vector<Change> changes;
        for (const auto& [id, masks] : m_masks) {
            if (masks.before != masks.after) {
                changes.push_back({id, masks.before, masks.after});
            }
        }
        return changes;
    }

private:
    struct Masks {
        osg::UInt32 before;
        osg::UInt32 after;
    };

    osg::NodePtr findTopmostHiddenAbove(const osg::NodePtr& node) const
    {
        osg::NodePtr topmost = osg::NullFC;
        for (osg::NodePtr above = node->getParent(); above != osg::NullFC; above = above->getParent()) {
            if (getMask(above) == Hidden) {
                topmost = above;
            }
        }
        return topmost;
    }

    osg::UInt32 getMask(const osg::NodePtr& node) const
    {
        const auto planned = m_masks.find(osg::getContainerId(node));
        return planned == m_masks.end() ? node->getTravMask() : planned->second.after;
    }

    void setMask(const osg::NodePtr& node, const osg::UInt32 mask)
    {
        m_masks.try_emplace(osg::getContainerId(node), Masks{node->getTravMask(), mask}).first->second.after = mask;
    }

    std::unordered_map<osg::UInt32, Masks> m_masks;
};

// Without null handles, each node once, in the order of the model's own set.
std::vector<osg::NodePtr> tidy(std::vector<osg::NodePtr> nodes)
{
    nodes.erase(std::remove(nodes.begin(), nodes.end(), osg::NodePtr()), nodes.end());
    std::sort(nodes.begin(), nodes.end());
    nodes.erase(std::unique(nodes.begin(), nodes.end()), nodes.end());
    return nodes;
}

NodeIds getSortedIds(const interaction::NodeSelectionModel& model)
{
    NodeIds ids = getIds(tidy({model.getSelection().begin(), model.getSelection().end()}));
    std::sort(ids.begin(), ids.end());
    return ids;
}

NodeIds subtract(const NodeIds& all, const NodeIds& taken)
{
    NodeIds left;
    std::set_difference(all.begin(), all.end(), taken.begin(), taken.end(), std::back_inserter(left));
    return left;
}

} // namespace

SceneEditor::SceneEditor(interaction::NodeSelectionModel& selection)
    : m_selection(selection)
{
    m_scene.followers.push_back(&selection);
    m_history.setUndoLimit(HistoryLimit);
}

void SceneEditor::setRoot(const osg::NodePtr& root)
{
    m_gestureDepth = 0;
    m_scene.root = root;
    clearHistory();
}

void SceneEditor::setStateChanged(std::function<void()> changed)
{
    m_scene.stateChanged = std::move(changed);
}

void SceneEditor::addFollower(interaction::NodeSelectionModel* model)
{
    m_scene.followers.push_back(model);
}

void SceneEditor::removeFollower(interaction::NodeSelectionModel* model)
{
    auto& followers = m_scene.followers;
    followers.erase(std::remove(followers.begin(), followers.end(), model), followers.end());
}

void SceneEditor::setEditListener(std::function<void(Edit, const std::vector<osg::NodePtr>&)> listener)
{
    m_editListener = std::move(listener);
}

void SceneEditor::report(const Edit edit, const std::vector<osg::NodePtr>& nodes) const
{
    if (m_editListener) {
        m_editListener(edit, nodes);
    }
}

void SceneEditor::select(const std::vector<osg::NodePtr>& nodes)
{
    report(Edit::Select, nodes);
    const std::vector<osg::NodePtr> wanted = tidy(nodes);
    const auto& selection = m_selection.getSelection();
    std::vector<osg::NodePtr> deselected;
    std::set_difference(selection.begin(), selection.end(), wanted.begin(), wanted.end(),
                        std::back_inserter(deselected));
    changeSelectionBy(wanted, deselected);
}

void SceneEditor::add(const std::vector<osg::NodePtr>& nodes)
{
    report(Edit::Add, nodes);
    changeSelectionBy(tidy(nodes), {});
}

void SceneEditor::remove(const std::vector<osg::NodePtr>& nodes)
{
    report(Edit::Remove, nodes);
    changeSelectionBy({}, tidy(nodes));
}

void SceneEditor::toggle(const osg::NodePtr& node)
{
    if (m_selection.getSelection().count(node) != 0) {
        remove({node});
    } else {
        add({node});
    }
}

void SceneEditor::hide(const std::vector<osg::NodePtr>& nodes)
{
    report(Edit::Hide, nodes);
    const std::vector<osg::NodePtr> hidden = tidy(nodes);
    MaskPlan plan;
    for (const osg::NodePtr& node : hidden) {
        plan.hideTree(node);
    }
    changeVisibility(Kind::Hide, hidden.size(), plan.getChanges());
}

void SceneEditor::show(const std::vector<osg::NodePtr>& nodes)
{
    report(Edit::Show, nodes);
    const std::vector<osg::NodePtr> shown = tidy(nodes);
    MaskPlan plan;
    for (const osg::NodePtr& node : shown) {
        plan.showWayTo(node);
        plan.showTree(node);
    }
    changeVisibility(Kind::Show, shown.size(), plan.getChanges());
}

void SceneEditor::isolate(const std::vector<osg::NodePtr>& nodes)
{
    report(Edit::Isolate, nodes);
    std::unordered_set<osg::UInt32> kept;
    std::size_t count = 0;
    for (const osg::NodePtr& isolated : tidy(nodes)) {
        if (m_scene.root == osg::NullFC || !isWithin(isolated, m_scene.root)) {
            continue;
        }
        ++count;
        walkNodes(isolated, [&](const osg::NodePtr& node) { return kept.insert(osg::getContainerId(node)), true; });
        for (osg::NodePtr node = isolated; node != m_scene.root; node = node->getParent()) {
            kept.insert(osg::getContainerId(node->getParent()));
        }
    }
    if (count == 0) {
        return;
    }
    std::vector<Change> changes;
    walkNodes(m_scene.root, [&](const osg::NodePtr& node) {
        const osg::UInt32 id = osg::getContainerId(node);
        const osg::UInt32 mask = node->getTravMask();
        const bool isKept = kept.count(id) != 0;
        if (isKept == (mask == Hidden)) {
            changes.push_back({id, mask, isKept ? Shown : Hidden});
        }
        return true;
    });
    changeVisibility(Kind::Isolate, count, std::move(changes));
}

void SceneEditor::showAll()
{
    report(Edit::ShowAll, {});
    std::vector<Change> changes;
    walkNodes(m_scene.root, [&](const osg::NodePtr& node) {
        if (node->getTravMask() == Hidden) {
            changes.push_back({osg::getContainerId(node), Hidden, Shown});
        }
        return true;
    });
    changeVisibility(Kind::ShowAll, 0, std::move(changes));
}

void SceneEditor::setLocked(const std::vector<osg::NodePtr>& nodes, const bool locked)
{
    report(locked ? Edit::Lock : Edit::Unlock, nodes);
    std::vector<osg::NodePtr> changed = tidy(nodes);
    changed.erase(std::remove_if(changed.begin(), changed.end(),
                                 [&](const osg::NodePtr& node) { return isLocked(node) == locked; }),
                  changed.end());
    if (!changed.empty()) {
        carryOut(std::make_unique<LockEdit>(m_scene, getIds(changed), locked));
    }
}

bool SceneEditor::isLocked(const osg::NodePtr& node)
{
    return host::hasMark(node, host::Mark::Locked);
}

void SceneEditor::beginGesture()
{
    if (m_gestureDepth++ == 0) {
        m_beforeGesture = getSortedIds(m_selection);
    }
}

void SceneEditor::endGesture()
{
    if (m_gestureDepth > 0 && --m_gestureDepth == 0) {
        finishGestureSoFar();
    }
}

void SceneEditor::cancelGesture()
{
    if (m_gestureDepth == 0) {
        return;
    }
    m_gestureDepth = 0;
    const NodeIds now = getSortedIds(m_selection);
    changeSelection(m_selection, findNodes(subtract(now, m_beforeGesture), osg::NullFC),
                    findNodes(subtract(m_beforeGesture, now), m_scene.root));
}

void SceneEditor::carryOut(std::unique_ptr<SceneEdit> edit)
{
    if (isInGesture()) {
        // In the order in which it happened.
        finishGestureSoFar();
    }
    m_history.push(edit.release());
    if (isInGesture()) {
        m_beforeGesture = getSortedIds(m_selection);
    }
}

void SceneEditor::undo()
{
    bool effective = false;
    while (canUndo() && !effective) {
        effective = getStep(m_history.index() - 1).isApplicable();
        m_history.undo();
    }
}

void SceneEditor::redo()
{
    bool effective = false;
    while (canRedo() && !effective) {
        effective = getStep(m_history.index()).isApplicable();
        m_history.redo();
    }
}

QString SceneEditor::getUndoText() const
{
    for (int index = canUndo() ? m_history.index() : 0; index > 0; --index) {
        if (const SceneEdit& step = getStep(index - 1); step.isApplicable()) {
            return step.describe();
        }
    }
    return {};
}

QString SceneEditor::getRedoText() const
{
    for (int index = m_history.index(); canRedo() && index < m_history.count(); ++index) {
        if (const SceneEdit& step = getStep(index); step.isApplicable()) {
            return step.describe();
        }
    }
    return {};
}

void SceneEditor::clearHistory()
{
    m_history.clear();
}

void SceneEditor::changeSelectionBy(const std::vector<osg::NodePtr>& selected,
                                    const std::vector<osg::NodePtr>& deselected)
{
    const auto& selection = m_selection.getSelection();
    std::vector<osg::NodePtr> joining;
    std::copy_if(selected.begin(), selected.end(), std::back_inserter(joining),
                 [&](const osg::NodePtr& node) { return selection.count(node) == 0; });
    std::vector<osg::NodePtr> leaving;
    std::copy_if(deselected.begin(), deselected.end(), std::back_inserter(leaving),
                 [&](const osg::NodePtr& node) { return selection.count(node) != 0; });
    if (joining.empty() && leaving.empty()) {
        return;
    }
    if (isInGesture()) {
        changeSelection(m_selection, leaving, joining);
        return;
    }
    carryOut(std::make_unique<SelectionEdit>(m_scene, m_selection, getIds(joining), getIds(leaving), selection.size()));
}

void SceneEditor::changeVisibility(const VisibilityEdit::Kind kind, const std::size_t asked,
                                   std::vector<VisibilityEdit::Change> changes)
{
    if (!changes.empty()) {
        carryOut(std::make_unique<VisibilityEdit>(m_scene, kind, asked, std::move(changes)));
    }
}

void SceneEditor::finishGestureSoFar()
{
    const NodeIds now = getSortedIds(m_selection);
    NodeIds selected = subtract(now, m_beforeGesture);
    NodeIds deselected = subtract(m_beforeGesture, now);
    if (!selected.empty() || !deselected.empty()) {
        // Stands already: carrying it out changes nothing.
        m_history.push(new SelectionEdit(m_scene, m_selection, std::move(selected), std::move(deselected),
                                         m_beforeGesture.size()));
    }
}

const SceneEdit& SceneEditor::getStep(const int index) const
{
    return static_cast<const SceneEdit&>(*m_history.command(index));
}

} // namespace quon::viewer
