// SPDX-License-Identifier: MIT
#include "Viewer/Session/Preselection.h"

#include <Interaction/NodeSelectionModel.h>
#include <Interaction/SelectionManager.h>

#include <OpenSG/OSGGL.h>
#include <OpenSG/OSGPolygonChunk.h>
#include <OpenSG/OSGSimpleMaterial.h>
#include <OpenSG/OSGState.h>

#include <algorithm>
#include <iterator>

namespace quon::viewer {

namespace {

// Opaque and in the place of the part: it takes another colour and keeps its shape. Part of the blue is a glow, since
// colours of a geometry's own take the place of the diffuse one.
osg::SimpleMaterialPtr makeMaterial()
{
    const osg::PolygonChunkPtr nearer = osg::PolygonChunk::create();
    beginEditCP(nearer);
    nearer->setOffsetFill(true);
    nearer->setOffsetFactor(-1);
    nearer->setOffsetBias(-1);
    endEditCP(nearer);

    const osg::SimpleMaterialPtr material = osg::SimpleMaterial::create();
    beginEditCP(material);
    material->setDiffuse(osg::Color3f(0.46F, 0.67F, 0.92F));
    material->setEmission(osg::Color3f(0.00F, 0.05F, 0.12F));
    material->setSpecular(osg::Color3f(0.15F, 0.15F, 0.15F));
    material->setShininess(20);
    material->addChunk(nearer, osg::State::AutoSlotReplace);
    endEditCP(material);
    return material;
}

} // namespace

const char* const Preselection::ModelName = "preselection";

Preselection::Preselection(const interaction::NodeSelectionModel& selection, const osg::NodePtr& parent)
    : m_selection(selection)
    , m_model(interaction::SelectionManager::getInstance()->createSelectionModel(ModelName))
    , m_parent(parent)
{
    m_highlight.setMaterial(makeMaterial());
    const osg::NodePtr root = m_highlight.getVisualisation();
    beginEditCP(m_parent, osg::Node::ChildrenFieldMask);
    m_parent->addChild(root);
    endEditCP(m_parent, osg::Node::ChildrenFieldMask);
    m_model->addVisualisation(&m_highlight);
}

Preselection::~Preselection()
{
    m_model->removeVisualisation(&m_highlight);
    interaction::SelectionManager::getInstance()->removeSelectionModel(m_model);
    const osg::NodePtr root = m_highlight.getVisualisation();
    beginEditCP(m_parent, osg::Node::ChildrenFieldMask);
    m_parent->subChild(root);
    endEditCP(m_parent, osg::Node::ChildrenFieldMask);
}

void Preselection::show(const std::vector<osg::NodePtr>& nodes)
{
    const auto& selected = m_selection.getSelection();
    std::vector<osg::NodePtr> wanted;
    if (m_enabled) {
        std::copy_if(nodes.begin(), nodes.end(), std::back_inserter(wanted),
                     [&](const osg::NodePtr& node) { return node != osg::NullFC && selected.count(node) == 0; });
        std::sort(wanted.begin(), wanted.end());
        wanted.erase(std::unique(wanted.begin(), wanted.end()), wanted.end());
    }

    const auto& shown = m_model->getSelection();
    std::vector<osg::NodePtr> removed;
    std::vector<osg::NodePtr> added;
    std::set_difference(shown.begin(), shown.end(), wanted.begin(), wanted.end(), std::back_inserter(removed));
    std::set_difference(wanted.begin(), wanted.end(), shown.begin(), shown.end(), std::back_inserter(added));
    if (removed.empty() && added.empty()) {
        return;
    }
    // A rectangle grows by a few parts at a time: the copies of the others stay.
    m_model->removeNodes(removed);
    m_model->addNodes(added);
    m_held.assign(wanted.begin(), wanted.end());
}

void Preselection::setEnabled(const bool enabled)
{
    m_enabled = enabled;
    if (!enabled) {
        clear();
    }
}

} // namespace quon::viewer
