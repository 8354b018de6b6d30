// SPDX-License-Identifier: MIT
#pragma once

#include <Interaction/BoxSelectionVisualisation.h>
#include <Interaction/HighlightSelectionVisualisation.h>

#include <OpenSG/OSGConfig.h>

#include <OpenSG/OSGBaseTypes.h>
#include <OpenSG/OSGColor.h>
#include <OpenSG/OSGNode.h>
#include <OpenSG/OSGRefPtr.h>

namespace quon::interaction {
class NodeSelectionModel;
}

namespace quon::viewer {

/** How a selection is drawn. */
struct SelectionLook {
    enum class Kind {
        Boxes,     ///< the edges of a box around each node, near black around locked ones
        Wireframe, ///< the edges of the triangles of each node
    };

    Kind kind = Kind::Boxes;
    osg::Color3f colour{0.956F, 0.521F, 0.086F};
    bool overlay = true;         ///< over everything, or in its place, where nearer parts hide it
    float transparency = 0.001F; ///< 0 is opaque, 1 invisible
    float markerSize = 1;        ///< half the edge of the cube around nodes without extent, in world units
    bool visible = true;
};

bool operator==(const SelectionLook& left, const SelectionLook& right);
bool operator!=(const SelectionLook& left, const SelectionLook& right);

/**
 * Shows one selection model with two visualisations of the library, boxes and wireframe, of which one is drawn.
 *
 * Each is attached to the model when it is first drawn, since it costs time and memory for each node, and stays so:
 * switching back draws what is there.
 */
class SelectionDisplay {
public:
    /** The sort key of what the library draws of a selection. */
    static constexpr osg::Int32 DefaultSortKey = 60000;

    /**
     * Adds the roots of the visualisations to @p parent, which must have no transformation.
     *
     * @param sortKey place in the order of drawing, higher is later
     */
    explicit SelectionDisplay(const osg::NodePtr& parent, osg::Int32 sortKey = DefaultSortKey);

    /** Takes the roots out again and leaves no box behind; the materials stay, as the library says. */
    ~SelectionDisplay();

    SelectionDisplay(const SelectionDisplay&) = delete;
    SelectionDisplay& operator=(const SelectionDisplay&) = delete;

    /**
     * Shows another model.
     *
     * @param model borrowed, must outlive the display or be replaced before its end; null shows none and lets go of
     *     everything that was made for the old one
     */
    void setModel(interaction::NodeSelectionModel* model);

    /** Draws the selection another way, at once. */
    void setLook(const SelectionLook& look);
    const SelectionLook& getLook() const { return m_look; }

    interaction::BoxSelectionVisualisation& getBoxes() { return m_boxes; }
    interaction::HighlightSelectionVisualisation& getHighlight() { return m_highlight; }

private:
    bool isDrawn(SelectionLook::Kind kind) const;
    void attach();

    osg::RefPtr<osg::NodePtr> m_parent;
    interaction::BoxSelectionVisualisation m_boxes;
    interaction::HighlightSelectionVisualisation m_highlight;
    interaction::NodeSelectionModel* m_model = nullptr;
    bool m_boxesAttached = false;
    bool m_highlightAttached = false;
    SelectionLook m_look;
};

} // namespace quon::viewer
