// SPDX-License-Identifier: MIT
#include "Viewer/Session/SceneEditor.h"

#include "Viewer/Model/NodeWalk.h"

#include <Interaction/NodeSelectionModel.h>
#include <SceneUtilities/koNodeUtils.h>

#include <set>
#include <utility>

namespace quon::viewer {

namespace {

constexpr osg::UInt32 Shown = 0xFFFFFFFF;
constexpr osg::UInt32 Hidden = 0;

void setTravMask(const osg::NodePtr& node, const osg::UInt32 mask)
{
    beginEditCP(node, osg::Node::TravMaskFieldMask);
    node->setTravMask(mask);
    endEditCP(node, osg::Node::TravMaskFieldMask);
}

} // namespace

SceneEditor::SceneEditor(interaction::NodeSelectionModel& selection)
    : m_selection(selection)
{}

void SceneEditor::setRoot(const osg::NodePtr& root)
{
    m_root = root;
}

void SceneEditor::setStateChanged(std::function<void()> changed)
{
    m_stateChanged = std::move(changed);
}

void SceneEditor::select(const std::vector<osg::NodePtr>& nodes)
{
    m_selection.setSelection(nodes);
}

void SceneEditor::add(const std::vector<osg::NodePtr>& nodes)
{
    for (const osg::NodePtr& node : nodes) {
        if (m_selection.getSelection().count(node) == 0) {
            m_selection.addNode(node);
        }
    }
}

void SceneEditor::remove(const std::vector<osg::NodePtr>& nodes)
{
    m_selection.removeNodes(nodes);
}

void SceneEditor::toggle(const osg::NodePtr& node)
{
    if (node == osg::NullFC) {
        return;
    }
    if (m_selection.getSelection().count(node) != 0) {
        remove({node});
    } else {
        add({node});
    }
}

void SceneEditor::hide(const std::vector<osg::NodePtr>& nodes)
{
    for (const osg::NodePtr& node : nodes) {
        setTravMask(node, Hidden);
        m_selection.updateNode(node);
    }
    stateChanged();
}

void SceneEditor::isolate(const std::vector<osg::NodePtr>& nodes)
{
    std::set<osg::NodePtr> kept;
    for (const osg::NodePtr& isolated : nodes) {
        walkNodes(isolated, [&](const osg::NodePtr& node) { return kept.insert(node), true; });
        for (osg::NodePtr node = isolated; node != osg::NullFC && node != m_root; node = node->getParent()) {
            kept.insert(node);
        }
    }
    walkNodes(m_root, [&](const osg::NodePtr& node) {
        if (node != m_root) {
            setTravMask(node, kept.count(node) != 0 ? Shown : Hidden);
        }
        return true;
    });
    m_selection.updateVisualisations();
    stateChanged();
}

void SceneEditor::showAll()
{
    walkNodes(m_root, [](const osg::NodePtr& node) {
        if (node->getTravMask() == Hidden) {
            setTravMask(node, Shown);
        }
        return true;
    });
    m_selection.updateVisualisations();
    stateChanged();
}

void SceneEditor::setLocked(const std::vector<osg::NodePtr>& nodes, const bool locked)
{
    for (const osg::NodePtr& node : nodes) {
        koNodeUtils::setIsEditable(node, !locked);
    }
    // After all of them: the lock of one counts for those below it.
    m_selection.updateVisualisations();
    stateChanged();
}

void SceneEditor::stateChanged()
{
    if (m_stateChanged) {
        m_stateChanged();
    }
}

} // namespace quon::viewer
