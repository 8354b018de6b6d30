// SPDX-License-Identifier: MIT
#include "Viewer/Session/ViewerSession.h"

#include "Viewer/Model/ModelOutline.h"
#include "Viewer/Model/NodeWalk.h"
#include "Viewer/Model/Part.h"
#include "Viewer/Model/PartRelations.h"

#include <Extensions/SceneExtensions.h>
#include <Interaction/InteractionEvent.h>
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

#include <QClipboard>
#include <QGuiApplication>
#include <QStringList>

#include <algorithm>
#include <set>
#include <utility>

namespace quon::viewer {

namespace {

using Kind = SelectionLook::Kind;

constexpr osg::UInt32 Hidden = 0;

// Milliseconds: as long as a picture stands at 60 per second.
constexpr int FrameInterval = 16;

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

} // namespace

const char* const ViewerSession::SelectionName = "selection";

ViewerSession::ViewerSession()
    : m_interactionManager(interaction::InteractionManager::getInstance())
    , m_selection(interaction::SelectionManager::getInstance()->createSelectionModel(SelectionName))
    , m_scene(makeGroup("scene"))
    , m_visualisations(makeGroup("selection visualisations"))
    , m_camera([this] { cameraChanged(); })
    , m_display(m_visualisations.get())
    , m_bindings(m_mapper)
    , m_editor(*m_selection)
    , m_sets(m_editor, *m_selection, m_visualisations.get())
    , m_selectionKeeper(std::make_unique<SelectionKeeper>(*m_selection))
    , m_preselection(*m_selection, m_visualisations.get())
    , m_selectionTool(m_editor, m_preselection)
    , m_measureTool(m_camera)
    , m_trace(*m_interactionManager)
    , m_toolContext(m_trace, "tools")
    , m_navigationContext(m_trace, "navigation", &m_camera, &m_picker)
    , m_commandContext(m_trace, "commands")
    , m_axisCross(m_camera)
    , m_status(nullptr)
{
    SceneChanges::startRecording();
    m_picker.setPrepared(&m_prepared);
    koNodeUtils::setIsAuxiliaryNode(m_visualisations.get(), true);
    addChild(m_scene.get(), m_visualisations.get());
    m_display.setModel(m_selection);
    m_interactionManager->setVisualisationRoot(m_visualisations.get());
    m_editor.addFollower(&m_preselection.getModel());

    m_selection->addVisualisation(&m_selectionWatcher);
    m_editor.setStateChanged([this] {
        reportSelection();
        emit stateChanged();
    });
    connect(&m_editor.getHistory(), &QUndoStack::indexChanged, this, &ViewerSession::historyChanged);
    connect(&m_sets, &SelectionSets::changed, this, &ViewerSession::redrawNeeded);
    m_selectionTool.setHovered(
        [this](const osg::NodePtr& node) { emit hoveredChanged(QString::fromStdString(NodeUtils::getName(node))); });
    m_selectionTool.getRubberBand().setChanged([this] { emit overlaysChanged(); });
    m_measureTool.setChanged([this] { emit overlaysChanged(); });
    m_toolContext.addTool("", &m_selectionTool);
    m_toolContext.addTool("measure", &m_measureTool);
    m_toolContext.setPicker(&m_picker);
    m_toolContext.setModeChanged([this] { emit modeChanged(); });
    m_toolContext.setIdleEscape([this] {
        const bool any = !m_selection->getSelection().empty();
        m_editor.select({});
        return any;
    });
    m_frameTimer.setSingleShot(true);
    m_frameTimer.setInterval(FrameInterval);
    connect(&m_frameTimer, &QTimer::timeout, this, &ViewerSession::beginFrame);
    m_toolContext.setFrameWanted([this] {
        if (!m_frameTimer.isActive()) {
            m_frameTimer.start();
        }
    });
    m_navigationContext.setSelectionExtent([this] { return getSelectionExtent(); });
    addOverlay(&m_axisCross);
    connect(&m_bindings, &InputBindings::aboutToChange, this, &ViewerSession::focusLost);
    addOverlay(&m_selectionTool.getRubberBand());
    addOverlay(&m_measureTool.getLine());
    addCommands();
    m_interactionManager->addContext(&m_commandContext);
    m_interactionManager->addContext(&m_navigationContext);
    m_interactionManager->addContext(&m_toolContext);

    m_mapper.setInteractionManager(m_interactionManager);
    m_status = notification::NotificationManager::getInstance()->createTextNotification("selection", "");
    reportSelection();
}

ViewerSession::~ViewerSession()
{
    // Nobody is told any more: the windows are gone or about to go.
    blockSignals(true);
    focusLost();
    m_interactionManager->removeContext(&m_toolContext);
    m_interactionManager->removeContext(&m_navigationContext);
    m_interactionManager->removeContext(&m_commandContext);
    notification::NotificationManager::getInstance()->removeNotification(m_status);

    m_sets.clear();
    m_editor.setRoot(osg::NullFC);
    m_editor.removeFollower(&m_preselection.getModel());
    m_selection->clearSelection();
    m_selection->removeVisualisation(&m_selectionWatcher);
    m_display.setModel(nullptr);
    m_selectionKeeper.reset();
    interaction::SelectionManager::getInstance()->removeSelectionModel(m_selection);
    m_interactionManager->setVisualisationRoot(osg::NullFC);
}

void ViewerSession::setModel(const osg::NodePtr& model, const PreparedGeometries& prepared)
{
    emit modelAboutToChange();
    if (ViewerTool* tool = m_toolContext.getCurrentTool(); tool != nullptr) {
        tool->cancel();
    }
    m_measureTool.clear();
    m_selection->clearSelection();
    // The boxes that a large model needed are not for the small one after it.
    m_display.getBoxes().clear();
    m_sets.clear();
    if (m_model != osg::NullFC) {
        const osg::NodePtr old = m_model.get();
        beginEditCP(m_scene, osg::Node::ChildrenFieldMask);
        m_scene->subChild(old);
        endEditCP(m_scene, osg::Node::ChildrenFieldMask);
    }
    m_prepared = prepared;
    m_picker.setRoot(model);
    m_shownParts.setRoot(model);
    m_editor.setRoot(model);
    m_model = model;
    if (model != osg::NullFC) {
        beginEditCP(m_scene, osg::Node::ChildrenFieldMask);
        // In front of the visualisations, which are drawn over it by their sort keys and not by their place.
        m_scene->insertChild(0, model);
        endEditCP(m_scene, osg::Node::ChildrenFieldMask);
    }

    lookAtModel();
    reportSelection();
    emit modelChanged();
}

void ViewerSession::modelMoved()
{
    if (m_model == osg::NullFC) {
        return;
    }
    // Before geometries are looked at: what was prepared of them may no longer be true.
    processSceneChanges();
    m_measureTool.clear();
    m_selection->updateVisualisations();
    lookAtModel();
    processSceneChanges();
    emit redrawNeeded();
}

void ViewerSession::lookAtModel()
{
    const ModelOutline outline = ModelOutline::find(m_model.get(), &m_prepared);
    m_modelMinimum = outline.minimum;
    m_modelMaximum = outline.maximum;
    m_camera.changeAtOnce([&] {
        m_camera.setSceneBounds(outline.minimum, outline.maximum, outline.points);
        m_camera.setStandardView("iso");
    });
    // Two hundredths of the model: to be found with the eye, not to be taken for a part.
    SelectionLook look = m_display.getLook();
    look.markerSize = static_cast<float>(m_camera.getSceneRadius() * 0.02);
    m_sets.setDefaultMarkerSize(look.markerSize);
    setSelectionLook(look);
}

void ViewerSession::setSelectionLook(const SelectionLook& look)
{
    if (look != m_display.getLook()) {
        m_display.setLook(look);
        reportSelection();
        emit selectionLookChanged();
    }
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
    if (!changes.isEmpty()) {
        // Before anybody looks at what is selected.
        m_selectionKeeper->sceneChanged(changes);
        m_sets.sceneChanged(changes);
        m_prepared.sceneChanged(changes);
        m_picker.sceneChanged(changes);
        m_shownParts.sceneChanged(changes);
        for (SceneChangeListener* listener : m_listeners) {
            listener->sceneChanged(changes);
        }
        emit redrawNeeded();
    }
    if (m_selectionWatcher.takeChanged()) {
        reportSelection();
        emit selectionChanged();
    }
}

void ViewerSession::beginFrame()
{
    m_frameTimer.stop();
    processSceneChanges();
    m_toolContext.beginFrame();
    processSceneChanges();
}

void ViewerSession::pointAt(const osg::NodePtr& node)
{
    m_selectionTool.pointAt(node);
    if (!m_frameTimer.isActive()) {
        m_frameTimer.start();
    }
}

void ViewerSession::focusLost()
{
    // The events that end a pending press are those of a click: the tool must not take them for one.
    if (ViewerTool* tool = m_toolContext.getCurrentTool(); tool != nullptr) {
        tool->cancel();
    }
    m_mapper.resetEvents();
}

void ViewerSession::sendCommand(const std::string& name)
{
    processSceneChanges();
    for (const char* verb : {"start", "stop", "trigger"}) {
        m_interactionManager->triggerEvent(interaction::InteractionEvent("view:" + name, verb));
    }
    processSceneChanges();
}

void ViewerSession::toggleMode(const std::string& mode)
{
    const char* verb = m_toolContext.getCurrentMode() == mode ? "stop" : "start";
    m_interactionManager->triggerEvent(interaction::InteractionEvent("mode:" + mode, verb));
}

void ViewerSession::addOverlay(OverlayItem* item)
{
    m_overlays.push_back(item);
    emit redrawNeeded();
}

void ViewerSession::removeOverlay(OverlayItem* item)
{
    m_overlays.erase(std::remove(m_overlays.begin(), m_overlays.end(), item), m_overlays.end());
    emit redrawNeeded();
}

Qt::CursorShape ViewerSession::getCursor() const
{
    const ViewerTool* tool = m_toolContext.getCurrentTool();
    return tool == nullptr ? Qt::ArrowCursor : tool->getCursor();
}

void ViewerSession::retranslate()
{
    m_bindings.retranslate();
    m_selectionTool.retranslate();
    m_measureTool.retranslate();
    reportSelection();
}

void ViewerSession::toggleNode(const osg::NodePtr& node)
{
    m_editor.toggle(node);
    processSceneChanges();
}

osg::NodePtr ViewerSession::addEmptyGroup(const std::string& name, const osg::Pnt3f& place)
{
    if (m_model == osg::NullFC) {
        return osg::NullFC;
    }
    emit groupAboutToBeAdded(name, place);
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
    walkNodes(m_model.get(), [&](const osg::NodePtr& node) {
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
    walkNodes(m_model.get(), [&](const osg::NodePtr& node) {
        const osg::NodeCorePtr core = node->getCore();
        if (core != osg::NullFC && osg::GeometryPtr::dcast(core) != osg::NullFC) {
            parts.insert(findPart(node));
        }
        return true;
    });
    return static_cast<int>(parts.size());
}

void ViewerSession::addCommands()
{
    CommandContext& commands = m_commandContext;
    const auto anySelected = [this] { return !m_selection->getSelection().empty(); };
    commands.setCommand("undo", {[this] { m_editor.undo(); },
                                 {},
                                 [this] { return m_editor.canUndo(); },
                                 [this] {
                                     const QString step = m_editor.getUndoText();
                                     return step.isEmpty() ? QString() : tr("Undo %1").arg(step);
                                 }});
    commands.setCommand("redo", {[this] { m_editor.redo(); },
                                 {},
                                 [this] { return m_editor.canRedo(); },
                                 [this] {
                                     const QString step = m_editor.getRedoText();
                                     return step.isEmpty() ? QString() : tr("Redo %1").arg(step);
                                 }});
    commands.setCommand("lock", {[this] { toggleLock(); }, {}, anySelected});
    commands.setCommand("hide", {[this] { m_editor.hide(getSelectedNodes()); }, {}, anySelected});
    commands.setCommand("show", {[this] { m_editor.show(getSelectedNodes()); }, {}, anySelected});
    commands.setCommand("isolate", {[this] { m_editor.isolate(getSelectedNodes()); }, {}, anySelected});
    commands.setCommand("show-all", {[this] { m_editor.showAll(); }, {}, {}});
    commands.setCommand("new-set", {[this] { m_sets.create(); }, {}, anySelected});
    addSelectionCommands();
    commands.setCommand(
        "visualisation",
        {[this] { switchVisualisation(); }, [this] { return m_display.getLook().kind == Kind::Wireframe; }, {}});
    commands.setCommand("overlay", {[this] { switchOverlay(); }, [this] { return m_display.getLook().overlay; }, {}});
    // Where to look is the business of navigation, whoever asks for it.
    const auto navigate = [this](const std::string& hint, const char* verb) {
        m_interactionManager->triggerEvent(interaction::InteractionEvent("navigate:" + hint, verb));
    };
    for (const char* view : {"fit", "fit-selection", "front", "right", "top", "iso", "back", "left", "bottom"}) {
        commands.setCommand(view, {[navigate, view] { navigate(view, "trigger"); }, {}, {}});
    }
    commands.setCommand(
        "parallel", {[navigate] { navigate("parallel", "trigger"); }, [this] { return m_camera.isParallel(); }, {}});
    for (const char* step : {"orbit-left", "orbit-right", "orbit-up", "orbit-down", "pan-left", "pan-right", "pan-up",
                             "pan-down", "zoom-in", "zoom-out"}) {
        commands.setCommand(
            step,
            {[navigate, step] { navigate(step, "start"); }, {}, {}, {}, [navigate, step] { navigate(step, "stop"); }});
    }
    commands.setCommand(
        "measure",
        {[this] { toggleMode("measure"); }, [this] { return m_toolContext.getCurrentMode() == "measure"; }, {}});
    commands.setCommand("copy-measurement",
                        {[this] { QGuiApplication::clipboard()->setText(m_measureTool.getResult()); },
                         {},
                         [this] { return m_measureTool.isFinished(); }});
    commands.setCommand("dark", {[this] {
                                     m_dark = !m_dark;
                                     emit redrawNeeded();
                                 },
                                 [this] { return m_dark; },
                                 {}});
}

std::vector<osg::NodePtr> ViewerSession::getSelectedNodes() const
{
    const auto& selection = m_selection->getSelection();
    return {selection.begin(), selection.end()};
}

void ViewerSession::addSelectionCommands()
{
    CommandContext& commands = m_commandContext;
    const auto anyModel = [this] { return m_model != osg::NullFC; };
    const auto anySelected = [this] { return !m_selection->getSelection().empty(); };
    commands.setCommand("select-all", {[this] { m_editor.select(m_shownParts.get()); }, {}, anyModel});
    commands.setCommand("select-none", {[this] { m_editor.select({}); }, {}, anySelected});
    commands.setCommand(
        "invert",
        {[this] { m_editor.select(findOthers(m_shownParts.get(), m_selection->getSelection())); }, {}, anyModel});
    commands.setCommand("select-parent",
                        {[this] { m_editor.select(findParents(getSelectedNodes(), m_model.get())); }, {}, anySelected});
    commands.setCommand("select-children",
                        {[this] { m_editor.select(viewer::findChildren(getSelectedNodes())); }, {}, anySelected});
    commands.setCommand("preselection", {[this] {
                                             m_preselection.setEnabled(!m_preselection.isEnabled());
                                             emit redrawNeeded();
                                         },
                                         [this] { return m_preselection.isEnabled(); },
                                         {}});
    commands.setCommand("visible-only", {[this] {
                                             m_selectionTool.setVisibleOnly(!m_selectionTool.isVisibleOnly());
                                             emit redrawNeeded();
                                         },
                                         [this] { return m_selectionTool.isVisibleOnly(); },
                                         {}});
}

void ViewerSession::toggleLock()
{
    const auto& selection = m_selection->getSelection();
    const bool anyEditable = std::any_of(selection.begin(), selection.end(), koNodeUtils::isEditable);
    m_editor.setLocked(getSelectedNodes(), anyEditable);
}

std::vector<osg::Pnt3f> ViewerSession::getSelectionExtent() const
{
    std::vector<osg::Pnt3f> corners;
    for (const osg::NodePtr& node : m_selection->getSelection()) {
        osg::Pnt3f bounds[2];
        extensions::getWorldBounds(node, bounds[0], bounds[1]);
        if (bounds[0] == osg::Pnt3f() && bounds[1] == osg::Pnt3f()) {
            // Without extent: what is seen of it is the marker at its place.
            const osg::Matrix toWorld = node->getToWorld();
            const osg::Pnt3f place(toWorld[3][0], toWorld[3][1], toWorld[3][2]);
            const float markerSize = m_display.getLook().markerSize;
            const osg::Vec3f extent(markerSize, markerSize, markerSize);
            bounds[0] = place - extent;
            bounds[1] = place + extent;
        }
        for (unsigned corner = 0; corner < 8; ++corner) {
            corners.emplace_back(bounds[corner & 1U][0], bounds[corner >> 1U & 1U][1], bounds[corner >> 2U][2]);
        }
    }
    return corners;
}

void ViewerSession::switchVisualisation()
{
    SelectionLook look = m_display.getLook();
    look.kind = look.kind == Kind::Boxes ? Kind::Wireframe : Kind::Boxes;
    setSelectionLook(look);
}

void ViewerSession::switchOverlay()
{
    SelectionLook look = m_display.getLook();
    look.overlay = !look.overlay;
    setSelectionLook(look);
}

void ViewerSession::reportSelection()
{
    const auto& selection = m_selection->getSelection();
    int locked = 0;
    int hidden = 0;
    for (const osg::NodePtr& node : selection) {
        locked += koNodeUtils::isEditable(node) ? 0 : 1;
        hidden += node->getTravMask() == Hidden ? 1 : 0;
    }

    QStringList texts;
    texts << (selection.empty() ? tr("Nothing selected") : tr("%n selected", "", static_cast<int>(selection.size())));
    if (locked > 0) {
        texts << tr("%n locked", "", locked);
    }
    if (hidden > 0) {
        texts << tr("%n hidden", "", hidden);
    }
    const bool overlay = m_display.getLook().overlay;
    const QString visualisation = m_display.getLook().kind == Kind::Boxes
                                      ? (overlay ? tr("boxes over the scene") : tr("boxes in the scene"))
                                      : (overlay ? tr("wireframe over the scene") : tr("wireframe in the scene"));
    if (m_status != nullptr) {
        m_status->setText(tr("%1  |  %2").arg(texts.join(tr(", ")), visualisation).toStdString());
    }
    emit redrawNeeded();
}

void ViewerSession::cameraChanged()
{
    m_interactionManager->cameraMoved(m_camera.getWorldToClip());
    emit redrawNeeded();
}

} // namespace quon::viewer
