// SPDX-License-Identifier: MIT
#include "Viewer/Session/ViewerSession.h"

#include "Viewer/Model/ModelOutline.h"
#include "Viewer/Model/Part.h"

#include <Interaction/InteractionManager.h>
#include <Interaction/NodeSelectionModel.h>
#include <Interaction/SelectionManager.h>
#include <Notification/NotificationManager.h>
#include <Notification/TextNotification.h>
#include <SceneUtilities/NodeUtils.h>
#include <SceneUtilities/koNodeUtils.h>

#include <OpenSG/OSGGeometry.h>
#include <OpenSG/OSGGroup.h>
#include <OpenSG/OSGTransform.h>

#include <Qt>

#include <algorithm>
#include <set>
#include <utility>

namespace quon::viewer {

namespace {

constexpr osg::UInt32 Shown = 0xFFFFFFFF;
constexpr osg::UInt32 Hidden = 0;

struct KeyBinding {
    int key;
    const char* category;
    const char* description;
};

// Without modifiers: such a key binding fires whatever modifiers are held.
constexpr KeyBinding KeyBindings[] = {
    {Qt::Key_L, "view:lock", "Lock or unlock the selected parts"},
    {Qt::Key_H, "view:hide", "Hide the selected parts"},
    {Qt::Key_U, "view:show-all", "Show all hidden parts again"},
    {Qt::Key_B, "view:visualisation", "Switch between boxes and wireframe"},
    {Qt::Key_O, "view:overlay", "Draw the selection over everything or in its place"},
    {Qt::Key_Escape, "view:clear", "Clear the selection"},
    {Qt::Key_F, "view:fit", "Fit the model into the view"},
    {Qt::Key_1, "view:front", "Look from the front"},
    {Qt::Key_2, "view:right", "Look from the right"},
    {Qt::Key_3, "view:top", "Look from above"},
    {Qt::Key_4, "view:iso", "Look from above at an angle"},
};

struct MouseBinding {
    Qt::MouseButton button;
    int modifiers;
    const char* category;
    const char* description;
};

constexpr MouseBinding MouseBindings[] = {
    {Qt::LeftButton, Qt::NoModifier, "tool:select", "Select the part under the pointer"},
    {Qt::LeftButton, Qt::ControlModifier, "tool:toggle", "Add the part under the pointer or take it out"},
    {Qt::RightButton, Qt::NoModifier, "navigate:orbit", "Turn the view"},
    {Qt::MiddleButton, Qt::NoModifier, "navigate:pan", "Move the view"},
    {Qt::RightButton, Qt::ShiftModifier, "navigate:pan", "Move the view"},
    {Qt::RightButton, Qt::ControlModifier, "navigate:zoom", "Zoom the view"},
};

osg::NodePtr makeGroup(const char* name)
{
    const osg::NodePtr node = osg::Node::create();
    beginEditCP(node, osg::Node::CoreFieldMask);
    node->setCore(osg::Group::create());
    endEditCP(node, osg::Node::CoreFieldMask);
    NodeUtils::setName(node, name, true);
    return node;
}

void addChild(const osg::NodePtr& parent, const osg::NodePtr& child)
{
    beginEditCP(parent, osg::Node::ChildrenFieldMask);
    parent->addChild(child);
    endEditCP(parent, osg::Node::ChildrenFieldMask);
}

void setTravMask(const osg::NodePtr& node, const osg::UInt32 mask)
{
    beginEditCP(node, osg::Node::TravMaskFieldMask);
    node->setTravMask(mask);
    endEditCP(node, osg::Node::TravMaskFieldMask);
}

// Calls visit for every node from root down, in preorder, until it returns false.
template <class Visit>
void walk(const osg::NodePtr& root, const Visit& visit)
{
    std::vector<osg::NodePtr> pending;
    if (root != osg::NullFC) {
        pending.push_back(root);
    }
    while (!pending.empty()) {
        const osg::NodePtr node = pending.back();
        pending.pop_back();
        if (!visit(node)) {
            return;
        }
        for (osg::UInt32 i = node->getNChildren(); i > 0; --i) {
            pending.push_back(node->getChild(i - 1));
        }
    }
}

} // namespace

const char* const ViewerSession::SelectionName = "selection";

ViewerSession::ViewerSession()
    : m_interactionManager(interaction::InteractionManager::getInstance())
    , m_selection(interaction::SelectionManager::getInstance()->createSelectionModel(SelectionName))
    , m_scene(makeGroup("scene"))
    , m_visualisations(makeGroup("selection visualisations"))
    , m_camera([this] { cameraChanged(); })
    , m_selectionTool(m_selection)
    , m_navigationContext(&m_camera)
    , m_status(nullptr)
{
    SceneChanges::startRecording();
    koNodeUtils::setIsAuxiliaryNode(m_visualisations.get(), true);
    addChild(m_scene.get(), m_visualisations.get());
    addChild(m_visualisations.get(), m_boxes.getVisualisation());
    addChild(m_visualisations.get(), m_highlight.getVisualisation());
    m_highlight.setVisible(false);
    m_selection->addVisualisation(&m_boxes);
    m_selection->addVisualisation(&m_highlight);
    m_interactionManager->setVisualisationRoot(m_visualisations.get());

    m_selectionTool.setDescription("Click selects a part, Ctrl+click adds it or takes it out");
    m_selectionTool.setSelectionChanged([this] { reportSelection(); });
    m_selectionTool.setHovered([this](const osg::NodePtr& node) {
        if (m_hovered) {
            m_hovered(NodeUtils::getName(node));
        }
    });
    m_selectionContext.setTool(&m_selectionTool);
    m_selectionContext.setPicker(&m_picker);
    addCommands();
    m_interactionManager->addContext(&m_commandContext);
    m_interactionManager->addContext(&m_navigationContext);
    m_interactionManager->addContext(&m_selectionContext);

    m_mapper.setInteractionManager(m_interactionManager);
    addBindings();
    m_status = notification::NotificationManager::getInstance()->createTextNotification("selection", "");
    reportSelection();
}

ViewerSession::~ViewerSession()
{
    m_hovered = nullptr;
    m_redraw = nullptr;
    focusLost();
    for (const KeyBinding& binding : KeyBindings) {
        m_mapper.removeKeyboardMapping(binding.key, Qt::NoModifier, binding.category);
    }
    for (const MouseBinding& binding : MouseBindings) {
        m_mapper.removeMouseMapping(binding.button, binding.modifiers, binding.category);
    }
    m_interactionManager->removeContext(&m_selectionContext);
    m_interactionManager->removeContext(&m_navigationContext);
    m_interactionManager->removeContext(&m_commandContext);
    notification::NotificationManager::getInstance()->removeNotification(m_status);

    m_selection->clearSelection();
    m_selection->removeVisualisation(&m_highlight);
    m_selection->removeVisualisation(&m_boxes);
    interaction::SelectionManager::getInstance()->removeSelectionModel(m_selection);
    m_interactionManager->setVisualisationRoot(osg::NullFC);
}

void ViewerSession::setModel(const osg::NodePtr& model)
{
    m_selectionTool.cancel();
    m_selection->clearSelection();
    if (m_model != osg::NullFC) {
        const osg::NodePtr old = m_model.get();
        beginEditCP(m_scene, osg::Node::ChildrenFieldMask);
        m_scene->subChild(old);
        endEditCP(m_scene, osg::Node::ChildrenFieldMask);
    }
    m_picker.setRoot(model);
    m_model = model;
    if (model != osg::NullFC) {
        beginEditCP(m_scene, osg::Node::ChildrenFieldMask);
        // In front of the visualisations, which are drawn over it by their sort keys and not by their place.
        m_scene->insertChild(0, model);
        endEditCP(m_scene, osg::Node::ChildrenFieldMask);
    }

    const ModelOutline outline = ModelOutline::find(model);
    m_modelMinimum = outline.minimum;
    m_modelMaximum = outline.maximum;
    m_camera.setSceneBounds(outline.minimum, outline.maximum, outline.points);
    m_camera.setStandardView("iso");
    // Two hundredths of the model: to be found with the eye, not to be taken for a part.
    m_boxes.setMarkerSize(static_cast<float>(m_camera.getSceneRadius() * 0.02));
    reportSelection();
}

void ViewerSession::setViewportSize(const int width, const int height)
{
    m_picker.setViewportSize(width, height);
    m_camera.setViewportSize(width, height);
}

void ViewerSession::addSceneChangeListener(SceneChangeListener* listener)
{
    m_listeners.push_back(listener);
}

void ViewerSession::removeSceneChangeListener(SceneChangeListener* listener)
{
    m_listeners.erase(std::remove(m_listeners.begin(), m_listeners.end(), listener), m_listeners.end());
}

void ViewerSession::processSceneChanges()
{
    const SceneChanges changes = SceneChanges::take();
    if (changes.isEmpty()) {
        return;
    }
    m_picker.sceneChanged(changes);
    for (SceneChangeListener* listener : m_listeners) {
        listener->sceneChanged(changes);
    }
    redraw();
}

void ViewerSession::focusLost()
{
    // The events that end a pending press are those of a click: the tool must not take them for one.
    m_selectionTool.cancel();
    m_mapper.resetEvents();
}

void ViewerSession::setRedraw(std::function<void()> redraw)
{
    m_redraw = std::move(redraw);
}

void ViewerSession::setHovered(std::function<void(const std::string&)> hovered)
{
    m_hovered = std::move(hovered);
}

void ViewerSession::toggleNode(const osg::NodePtr& node)
{
    if (node == osg::NullFC) {
        return;
    }
    if (m_selection->getSelection().count(node) != 0) {
        m_selection->removeNode(node);
    } else {
        m_selection->addNode(node);
    }
    reportSelection();
}

osg::NodePtr ViewerSession::addEmptyGroup(const std::string& name, const osg::Pnt3f& place)
{
    if (m_model == osg::NullFC) {
        return osg::NullFC;
    }
    osg::Matrix toModel = m_model->getToWorld();
    toModel.invert();
    osg::Matrix matrix;
    matrix.setTranslate(place);
    matrix.multLeft(toModel);

    const osg::TransformPtr transform = osg::Transform::create();
    beginEditCP(transform, osg::Transform::MatrixFieldMask);
    transform->setMatrix(matrix);
    endEditCP(transform, osg::Transform::MatrixFieldMask);
    const osg::NodePtr node = osg::Node::create();
    beginEditCP(node, osg::Node::CoreFieldMask);
    node->setCore(transform);
    endEditCP(node, osg::Node::CoreFieldMask);
    NodeUtils::setName(node, name, false);
    addChild(m_model.get(), node);
    return node;
}

osg::NodePtr ViewerSession::findNode(const std::string& name) const
{
    osg::NodePtr found;
    walk(m_model.get(), [&](const osg::NodePtr& node) {
        if (NodeUtils::getName(node) != name) {
            return true;
        }
        found = node;
        return false;
    });
    return found;
}

int ViewerSession::countParts() const
{
    std::set<osg::NodePtr> parts;
    walk(m_model.get(), [&](const osg::NodePtr& node) {
        const osg::NodeCorePtr core = node->getCore();
        if (core != osg::NullFC && osg::GeometryPtr::dcast(core) != osg::NullFC) {
            parts.insert(findPart(node));
        }
        return true;
    });
    return static_cast<int>(parts.size());
}

void ViewerSession::addBindings()
{
    for (const KeyBinding& binding : KeyBindings) {
        m_mapper.addKeyboardMapping(binding.key, Qt::NoModifier, binding.category,
                                    QString::fromLatin1(binding.description));
    }
    for (const MouseBinding& binding : MouseBindings) {
        m_mapper.addMouseMapping(binding.button, binding.modifiers, binding.category,
                                 QString::fromLatin1(binding.description));
    }
}

void ViewerSession::addCommands()
{
    m_commandContext.setCommand("lock", [this] { toggleLock(); });
    m_commandContext.setCommand("hide", [this] { hideSelected(); });
    m_commandContext.setCommand("show-all", [this] { showAll(); });
    m_commandContext.setCommand("visualisation", [this] { switchVisualisation(); });
    m_commandContext.setCommand("overlay", [this] { switchOverlay(); });
    m_commandContext.setCommand("clear", [this] { clearSelection(); });
    m_commandContext.setCommand("fit", [this] { m_camera.fit(); });
    for (const char* view : {"front", "right", "top", "iso"}) {
        m_commandContext.setCommand(view, [this, view] { m_camera.setStandardView(view); });
    }
}

void ViewerSession::toggleLock()
{
    const auto& selection = m_selection->getSelection();
    const bool anyEditable = std::any_of(selection.begin(), selection.end(), koNodeUtils::isEditable);
    for (const osg::NodePtr& node : selection) {
        koNodeUtils::setIsEditable(node, !anyEditable);
    }
    // After all of them: the lock of one counts for those below it.
    m_selection->updateVisualisations();
    reportSelection();
}

void ViewerSession::hideSelected()
{
    for (const osg::NodePtr& node : m_selection->getSelection()) {
        setTravMask(node, Hidden);
        m_selection->updateNode(node);
    }
    reportSelection();
}

void ViewerSession::showAll()
{
    walk(m_model.get(), [](const osg::NodePtr& node) {
        if (node->getTravMask() == Hidden) {
            setTravMask(node, Shown);
        }
        return true;
    });
    m_selection->updateVisualisations();
    reportSelection();
}

void ViewerSession::switchVisualisation()
{
    const bool boxes = !m_boxes.isVisible();
    m_boxes.setVisible(boxes);
    m_highlight.setVisible(!boxes);
    reportSelection();
}

void ViewerSession::switchOverlay()
{
    const bool overlay = !m_boxes.getOverlay();
    m_boxes.setOverlay(overlay);
    m_highlight.setOverlay(overlay);
    reportSelection();
}

void ViewerSession::clearSelection()
{
    m_selection->clearSelection();
    reportSelection();
}

void ViewerSession::reportSelection()
{
    const auto& selection = m_selection->getSelection();
    const auto count = [&](const auto& condition) {
        return std::count_if(selection.begin(), selection.end(), condition);
    };
    const auto locked = count([](const osg::NodePtr& node) { return !koNodeUtils::isEditable(node); });
    const auto hidden = count([](const osg::NodePtr& node) { return node->getTravMask() == Hidden; });

    std::string text = selection.empty() ? "Nothing selected" : std::to_string(selection.size()) + " selected";
    if (locked > 0) {
        text += ", " + std::to_string(locked) + " locked";
    }
    if (hidden > 0) {
        text += ", " + std::to_string(hidden) + " hidden";
    }
    text += m_boxes.isVisible() ? "  |  boxes" : "  |  wireframe";
    text += m_boxes.getOverlay() ? " over the scene" : " in the scene";
    if (m_status != nullptr) {
        m_status->setText(text);
    }
    redraw();
}

void ViewerSession::cameraChanged()
{
    m_interactionManager->cameraMoved(m_camera.getWorldToClip());
    redraw();
}

void ViewerSession::redraw()
{
    if (m_redraw) {
        m_redraw();
    }
}

} // namespace quon::viewer
