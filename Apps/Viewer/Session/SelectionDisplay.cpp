// SPDX-License-Identifier: MIT
#include "Viewer/Session/SelectionDisplay.h"

#include <Interaction/NodeSelectionModel.h>

#include <OpenSG/OSGSimpleMaterial.h>

namespace quon::viewer {

namespace {

using Kind = SelectionLook::Kind;

// The wireframe's material is its own; only the key and the transparency have no operation of the visualisation's.
osg::SimpleMaterialPtr getMaterial(const interaction::HighlightSelectionVisualisation& highlight)
{
    return osg::SimpleMaterialPtr::dcast(highlight.getMaterial());
}

void addChild(const osg::NodePtr& parent, const osg::NodePtr& child)
{
    beginEditCP(parent, osg::Node::ChildrenFieldMask);
    parent->addChild(child);
    endEditCP(parent, osg::Node::ChildrenFieldMask);
}

void removeChild(const osg::NodePtr& parent, const osg::NodePtr& child)
{
    beginEditCP(parent, osg::Node::ChildrenFieldMask);
    parent->subChild(child);
    endEditCP(parent, osg::Node::ChildrenFieldMask);
}

} // namespace

bool operator==(const SelectionLook& left, const SelectionLook& right)
{
    return left.kind == right.kind && left.colour == right.colour && left.overlay == right.overlay &&
           left.transparency == right.transparency && left.markerSize == right.markerSize &&
           left.visible == right.visible;
}

bool operator!=(const SelectionLook& left, const SelectionLook& right)
{
    return !(left == right);
}

SelectionDisplay::SelectionDisplay(const osg::NodePtr& parent, const osg::Int32 sortKey)
    : m_parent(parent)
{
    // The offset is added to the key at every call: this once, and never again.
    m_boxes.setTransparency(m_look.transparency, sortKey - DefaultSortKey);
    const osg::SimpleMaterialPtr wireframe = getMaterial(m_highlight);
    beginEditCP(wireframe, osg::Material::SortKeyFieldMask);
    wireframe->setSortKey(sortKey);
    endEditCP(wireframe, osg::Material::SortKeyFieldMask);
    m_highlight.setVisible(false);
    addChild(parent, m_boxes.getVisualisation());
    addChild(parent, m_highlight.getVisualisation());
}

SelectionDisplay::~SelectionDisplay()
{
    setModel(nullptr);
    removeChild(m_parent.get(), m_highlight.getVisualisation());
    removeChild(m_parent.get(), m_boxes.getVisualisation());
}

void SelectionDisplay::setModel(interaction::NodeSelectionModel* model)
{
    if (m_model != nullptr) {
        // Does nothing with one that is not attached.
        m_model->removeVisualisation(&m_highlight);
        m_model->removeVisualisation(&m_boxes);
        m_boxes.clear();
    }
    m_model = model;
    m_boxesAttached = m_highlightAttached = false;
    attach();
}

bool SelectionDisplay::isDrawn(const SelectionLook::Kind kind) const
{
    return m_look.visible && m_look.kind == kind;
}

void SelectionDisplay::attach()
{
    if (m_model == nullptr) {
        return;
    }
    if (isDrawn(Kind::Boxes) && !m_boxesAttached) {
        m_model->addVisualisation(&m_boxes);
        m_boxesAttached = true;
    }
    if (isDrawn(Kind::Wireframe) && !m_highlightAttached) {
        m_model->addVisualisation(&m_highlight);
        m_highlightAttached = true;
    }
}

void SelectionDisplay::setLook(const SelectionLook& look)
{
    const SelectionLook before = m_look;
    m_look = look;
    if (look.colour != before.colour) {
        m_boxes.setColor(look.colour);
        m_highlight.setColor(look.colour);
    }
    if (look.overlay != before.overlay) {
        m_boxes.setOverlay(look.overlay);
        m_highlight.setOverlay(look.overlay);
    }
    if (look.transparency != before.transparency) {
        m_boxes.setTransparency(look.transparency, 0);
        const osg::SimpleMaterialPtr wireframe = getMaterial(m_highlight);
        beginEditCP(wireframe, osg::SimpleMaterial::TransparencyFieldMask);
        wireframe->setTransparency(look.transparency);
        endEditCP(wireframe, osg::SimpleMaterial::TransparencyFieldMask);
    }
    m_boxes.setMarkerSize(look.markerSize);
    // While they are not visible yet: they draw in the order of the nodes' ids then, which is always the same.
    attach();
    m_boxes.setVisible(isDrawn(Kind::Boxes));
    m_highlight.setVisible(isDrawn(Kind::Wireframe));
    if (look.markerSize != before.markerSize) {
        // Boxes that are there keep their size until they are updated.
        m_boxes.updateAllNodes();
    }
}

} // namespace quon::viewer
