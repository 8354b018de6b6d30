// SPDX-License-Identifier: MIT
#pragma once

#include "Viewer/Drawing/AxisCross.h"
#include "Viewer/Model/PreparedGeometries.h"
#include "Viewer/Model/SceneChanges.h"
#include "Viewer/Model/ShownParts.h"
#include "Viewer/Session/InputBindings.h"
#include "Viewer/Session/Preselection.h"
#include "Viewer/Session/SceneEditor.h"
#include "Viewer/Session/SelectionDisplay.h"
#include "Viewer/Session/SelectionKeeper.h"
#include "Viewer/Session/SelectionSets.h"
#include "Viewer/Session/SelectionWatcher.h"
#include "Viewer/Tools/CameraController.h"
#include "Viewer/Tools/CommandContext.h"
#include "Viewer/Tools/EmbreePicker.h"
#include "Viewer/Tools/InteractionTrace.h"
#include "Viewer/Tools/MeasureTool.h"
#include "Viewer/Tools/NavigationContext.h"
#include "Viewer/Tools/SelectionTool.h"
#include "Viewer/Tools/ToolContext.h"
#include "Viewer/Tools/Traced.h"

#include <Interaction/QtEventMapper.h>

#include <OpenSG/OSGConfig.h>

#include <OpenSG/OSGNode.h>
#include <OpenSG/OSGRefPtr.h>

#include <QObject>
#include <QString>
#include <QTimer>

#include <memory>
#include <string>
#include <vector>

namespace quon::interaction {
class InteractionManager;
class NodeSelectionModel;
} // namespace quon::interaction

namespace quon::notification {
class TextNotification;
}

namespace quon::viewer {

class OverlayItem;

/**
 * Everything of the viewer but its windows: the scene, the selection with its two visualisations, camera, picker,
 * contexts, tool and bindings.
 *
 * The scene is a group with the model as its first child and, beside it, a group with the roots of the visualisations:
 * there the library's manager knows it as the visualisation root.
 *
 * Works with the process-wide managers of interaction, selection and notification and leaves them as they were when it
 * is destroyed; one session at a time.
 */
class ViewerSession : public QObject {
    Q_OBJECT

public:
    /** Name of the selection model in the selection manager. */
    static const char* const SelectionName;

    ViewerSession();
    ~ViewerSession() override;

    ViewerSession(const ViewerSession&) = delete;
    ViewerSession& operator=(const ViewerSession&) = delete;

    /**
     * Shows another model: clears the selection, replaces the old model and looks at the new one.
     *
     * @param model root of the model; null shows none
     * @param prepared contents of its geometries, which need not be read then
     */
    void setModel(const osg::NodePtr& model, const PreparedGeometries& prepared = {});

    /**
     * Has to be told when the transform of the model's root was edited: looks at the model anew, with everything of it
     * in view, and lets the visualisations follow. Selection and history stay. Without a model nothing happens.
     */
    void modelMoved();

    /** Returns the model, null when none is shown. */
    osg::NodePtr getModel() const { return m_model.get(); }

    /** What is known of the model's geometries without reading them. */
    const PreparedGeometries& getPrepared() const { return m_prepared; }

    /** Returns the root of everything that is drawn. */
    osg::NodePtr getScene() const { return m_scene.get(); }

    CameraController& getCamera() { return m_camera; }
    EmbreePicker& getPicker() { return m_picker; }
    interaction::QtEventMapper& getMapper() { return m_mapper; }
    interaction::InteractionManager& getInteractionManager() { return *m_interactionManager; }
    interaction::NodeSelectionModel& getSelection() { return *m_selection; }
    Preselection& getPreselection() { return m_preselection; }
    /** What every change of selection, visibility and locks goes through. */
    SceneEditor& getEditor() { return m_editor; }

    InputBindings& getBindings() { return m_bindings; }
    CommandContext& getCommands() { return m_commandContext; }
    ToolContext& getTools() { return m_toolContext; }
    NavigationContext& getNavigation() { return m_navigationContext; }
    MeasureTool& getMeasureTool() { return m_measureTool; }
    /** Watches the events and the stack of the contexts. */
    InteractionTrace& getTrace() { return m_trace; }
    interaction::BoxSelectionVisualisation& getBoxes() { return m_display.getBoxes(); }
    interaction::HighlightSelectionVisualisation& getHighlight() { return m_display.getHighlight(); }

    /** How the selection is drawn. */
    const SelectionLook& getSelectionLook() const { return m_display.getLook(); }
    void setSelectionLook(const SelectionLook& look);

    /** The named sets of nodes that the user keeps of this model. */
    SelectionSets& getSets() { return m_sets; }

    /** @param width, height of the viewport in pixels */
    void setViewportSize(int width, int height);

    /** Adds somebody to tell about changes of the scene; borrowed. The session's own picker hears of them first. */
    void addSceneChangeListener(SceneChangeListener* listener);
    void removeSceneChangeListener(SceneChangeListener* listener);

    /**
     * Passes on what happened to the scene since the last call and empties the scene graph's change list.
     *
     * Called before and after every input event and before drawing: nobody picks in or draws a stale scene, and the
     * list does not grow. Then tells with selectionChanged() when the selection changed since the last call.
     */
    void processSceneChanges();

    /**
     * Lets the tool catch up with the pointer: hovering and rectangles pick here, at most once per frame.
     *
     * Called before drawing, and by itself soon after the pointer moved in case nothing is drawn. Includes
     * processSceneChanges().
     */
    void beginFrame();

    /**
     * Preselects a node as if the pointer were over it, from the next frame on: the pointer is over its name elsewhere.
     * Over the view, what is under the pointer there counts.
     *
     * @param node null when the pointer is over none any more
     */
    void pointAt(const osg::NodePtr& node);

    /** Ends everything pending without selecting anything. */
    void focusLost();

    /** Carries out a command of Command::getAll() the way a key does: as an interaction event. */
    void sendCommand(const std::string& name);

    /** Starts a mode of the tools, or stops it when it is the current one; by interaction events. */
    void toggleMode(const std::string& mode);

    /** Adds something that is painted over the scene, on top of the items so far; borrowed. */
    void addOverlay(OverlayItem* item);
    void removeOverlay(OverlayItem* item);
    const std::vector<OverlayItem*>& getOverlays() const { return m_overlays; }

    /** Returns the shape of the pointer over the view. */
    Qt::CursorShape getCursor() const;

    /** Whether the view has a dark background. */
    bool isDark() const { return m_dark; }

    /** Asks for all texts again, after the language changed. */
    void retranslate();

    /** Adds or removes a node by program, as a toggling click on it would. Null is ignored. */
    void toggleNode(const osg::NodePtr& node);

    /** Adds a node without extent to the model, at a place in world space. Without a model nothing happens. */
    osg::NodePtr addEmptyGroup(const std::string& name, const osg::Pnt3f& place);

    /** Returns the first node of the model with this name, in preorder; null when there is none. */
    osg::NodePtr findNode(const std::string& name) const;

    /** The number of parts of the model. */
    int countParts() const;

    /** The tightest box around the geometry that the model showed when it was set or moved, in world space. */
    const osg::Pnt3f& getModelMinimum() const { return m_modelMinimum; }
    const osg::Pnt3f& getModelMaximum() const { return m_modelMaximum; }

signals:
    /** The model is about to be replaced: forget its nodes. */
    void modelAboutToChange();

    /** Another model, or none, is there. */
    void modelChanged();

    /** A group without extent is about to be added to the model, see addEmptyGroup(). */
    void groupAboutToBeAdded(const std::string& name, const osg::Pnt3f& place);

    /** Nodes were selected or deselected; once for all changes of one operation. */
    void selectionChanged();

    /** Nodes were hidden, shown, locked or unlocked. */
    void stateChanged();

    /** Something else can be undone or redone. */
    void historyChanged();

    /** The selection is drawn another way. */
    void selectionLookChanged();

    /** Another part is under the pointer; empty for none. */
    void hoveredChanged(const QString& name);

    /** Another mode of the tools is current. */
    void modeChanged();

    /** What the overlays paint is out of date, but not the scene below. */
    void overlaysChanged();

    /** The picture is out of date. */
    void redrawNeeded();

private:
    void lookAtModel();
    void addCommands();
    void addSelectionCommands();
    void toggleLock();
    void switchVisualisation();
    void switchOverlay();
    void reportSelection();
    void cameraChanged();
    std::vector<osg::NodePtr> getSelectedNodes() const;
    std::vector<osg::Pnt3f> getSelectionExtent() const;

    interaction::InteractionManager* m_interactionManager;
    interaction::NodeSelectionModel* m_selection;
    osg::RefPtr<osg::NodePtr> m_scene;
    osg::RefPtr<osg::NodePtr> m_visualisations;
    osg::RefPtr<osg::NodePtr> m_model;
    osg::Pnt3f m_modelMinimum;
    osg::Pnt3f m_modelMaximum;
    CameraController m_camera;
    PreparedGeometries m_prepared;
    EmbreePicker m_picker;
    ShownParts m_shownParts;
    SelectionDisplay m_display;
    interaction::QtEventMapper m_mapper;
    InputBindings m_bindings;
    SceneEditor m_editor;
    SelectionSets m_sets;
    SelectionWatcher m_selectionWatcher;
    std::unique_ptr<SelectionKeeper> m_selectionKeeper;
    Preselection m_preselection;
    SelectionTool m_selectionTool;
    MeasureTool m_measureTool;
    InteractionTrace m_trace;
    Traced<ToolContext> m_toolContext;
    Traced<NavigationContext> m_navigationContext;
    Traced<CommandContext> m_commandContext;
    AxisCross m_axisCross;
    notification::TextNotification* m_status;
    std::vector<SceneChangeListener*> m_listeners;
    std::vector<OverlayItem*> m_overlays;
    QTimer m_frameTimer; ///< runs out when no picture was drawn after the pointer moved
    bool m_dark = false;
};

} // namespace quon::viewer
