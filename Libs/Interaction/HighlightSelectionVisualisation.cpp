// SPDX-License-Identifier: MIT
#include <Interaction/HighlightSelectionVisualisation.h>

#include <SceneUtilities/koMaterials.h>

#include <OpenSG/OSGGL.h>
#include <OpenSG/OSGGeometry.h>
#include <OpenSG/OSGGroup.h>
#include <OpenSG/OSGMaterialPool.h>
#include <OpenSG/OSGMatrix.h>
#include <OpenSG/OSGPolygonChunk.h>
#include <OpenSG/OSGState.h>
#include <OpenSG/OSGTransform.h>
#include <OpenSG/OSGUberCamera.h>
#include <OpenSG/OSGUberLight.h>

#include "NewContainer.h"

#include <vector>

namespace quon::interaction {

namespace {

// A copy that waits for the copies of its children.
struct PendingCopy {
    osg::NodePtr source;
    NewContainer<osg::NodePtr> copy;
    osg::UInt32 nextChild;
};

// Lights and cameras must not act twice, inner materials must not win over the highlight's.
bool isReplacedByGroup(const osg::NodeCorePtr& core)
{
    const osg::FieldContainerType& type = core->getType();
    return type.isDerivedFrom(osg::UberLight::getClassType()) || type.isDerivedFrom(osg::UberCamera::getClassType()) ||
           type.isDerivedFrom(osg::MaterialGroup::getClassType()) ||
           type.isDerivedFrom(osg::MaterialPool::getClassType());
}

// The copy of a node without its children, its edit still open; null for a node without core.
NewContainer<osg::NodePtr> beginCopy(const osg::NodePtr& source)
{
    const osg::NodeCorePtr core = source->getCore();
    if (core == osg::NullFC) {
        return NewContainer<osg::NodePtr>(osg::NodePtr());
    }
    NewContainer<osg::NodePtr> copy(osg::Node::create());
    osg::beginEditCP(copy.get());
    copy->setTravMask(source->getTravMask());
    if (isReplacedByGroup(core)) {
        const NewContainer<osg::GroupPtr> group(osg::Group::create());
        copy->setCore(group.get());
    } else {
        copy->setCore(core);
    }
    return copy;
}

osg::TransformPtr getTransform(const osg::NodePtr& node)
{
    const osg::NodeCorePtr core = node->getCore();
    return core == osg::NullFC ? osg::TransformPtr() : osg::TransformPtr::dcast(core);
}

bool isGeometry(const osg::NodePtr& node)
{
    const osg::NodeCorePtr core = node->getCore();
    return core != osg::NullFC && core->getType().isDerivedFrom(osg::Geometry::getClassType());
}

// Without a parent there is no world matrix to read: such a node stands where it is.
osg::Matrix getParentToWorld(const osg::NodePtr& node)
{
    const osg::NodePtr parent = node->getParent();
    return parent == osg::NullFC ? osg::Matrix() : parent->getToWorld();
}

void createNode(NewContainer<osg::NodePtr>& node, const osg::NodeCorePtr& core, const osg::NodePtr& child)
{
    node.keep(osg::Node::create());
    const osg::CPEditor edit(node.get());
    node->setCore(core);
    node->addChild(child);
}

} // namespace

osg::NodePtr cloneSelectionTree(const osg::NodePtr& node)
{
    if (node == osg::NullFC) {
        return osg::NodePtr();
    }
    NewContainer<osg::NodePtr> root = beginCopy(node);
    if (root.get() == osg::NullFC) {
        return osg::NodePtr();
    }

    // Depth first with a stack of its own: trees may be deeper than the thread's stack.
    std::vector<PendingCopy> pending;
    pending.push_back({node, std::move(root), 0});
    for (;;) {
        PendingCopy& top = pending.back();
        if (top.nextChild < top.source->getNChildren()) {
            const osg::NodePtr child = top.source->getChild(top.nextChild++);
            NewContainer<osg::NodePtr> copy = beginCopy(child);
            if (copy.get() != osg::NullFC) {
                pending.push_back({child, std::move(copy), 0});
            }
            continue;
        }
        osg::endEditCP(top.copy.get());
        if (pending.size() == 1) {
            return top.copy.handOver();
        }
        pending[pending.size() - 2].copy->addChild(top.copy.get());
        pending.pop_back();
    }
}

HighlightSelectionVisualisation::HighlightSelectionVisualisation()
{
    // Held here until everything is built: what fails half-way leaves nothing behind.
    const osg::RefPtr<osg::PolygonChunkPtr> polygonChunk(osg::PolygonChunk::create());
    {
        // Pulled towards the viewer, so that the lines win against the surface that they outline.
        const osg::CPEditor edit(polygonChunk);
        polygonChunk->setFrontMode(GL_LINE);
        polygonChunk->setBackMode(GL_LINE);
        polygonChunk->setOffsetFactor(-1.0F);
        polygonChunk->setOffsetBias(-100.0F);
        polygonChunk->setOffsetLine(true);
    }
    const osg::RefPtr<osg::DepthTestChunkPtr> depthTestChunk(osg::DepthTestChunk::create());
    {
        const osg::CPEditor edit(depthTestChunk);
        depthTestChunk->setFunc(GL_ALWAYS);
    }
    const osg::RefPtr<osg::SimpleMaterialPtr> highlightMaterial(osg::SimpleMaterial::create());
    {
        const osg::CPEditor edit(highlightMaterial);
        koMaterials::setName(highlightMaterial.get(), "koScenegraph::m_highlightMaterial", true);
        highlightMaterial->setDiffuse(osg::Color3f(0.956F, 0.521F, 0.086F));
        highlightMaterial->setLit(false);
        highlightMaterial->addChunk(polygonChunk.get(), osg::State::AutoSlotReplace);
        highlightMaterial->addChunk(depthTestChunk.get(), osg::State::AutoSlotReplace);
        // Late in the transparent pass: the scene is drawn before.
        highlightMaterial->setSortKey(60000);
        highlightMaterial->setTransparency(0.001F);
        highlightMaterial->setTransparencyMode(osg::Material::TransparencyForceTransparent);
    }
    m_materialGroup = osg::MaterialGroup::create();
    {
        const osg::CPEditor edit(m_materialGroup);
        m_materialGroup->setMaterial(highlightMaterial.get());
    }
    const osg::NodePtr root = AbstractSelectionVisualisation::getVisualisation();
    {
        const osg::CPEditor edit(root, osg::Node::CoreFieldMask);
        root->setCore(m_materialGroup);
    }
    m_depthTestChunk = depthTestChunk.get();
    m_highlightMaterial = highlightMaterial.get();
    osg::addRefCP(m_highlightMaterial);
}

HighlightSelectionVisualisation::~HighlightSelectionVisualisation() = default;

void HighlightSelectionVisualisation::setColor(const osg::Color3f& color)
{
    // Also while another material is installed: that one belongs to whoever set it.
    const osg::CPEditor edit(m_highlightMaterial);
    m_highlightMaterial->setDiffuse(color);
}

osg::Color3f HighlightSelectionVisualisation::getColor() const
{
    return m_highlightMaterial->getDiffuse();
}

void HighlightSelectionVisualisation::setOverlay(bool overlay)
{
    const osg::CPEditor edit(m_depthTestChunk);
    m_depthTestChunk->setFunc(overlay ? GL_ALWAYS : GL_LEQUAL);
}

bool HighlightSelectionVisualisation::getOverlay() const
{
    return m_depthTestChunk->getFunc() == GL_ALWAYS;
}

void HighlightSelectionVisualisation::setMaterial(const osg::MaterialPtr& material)
{
    const osg::CPEditor edit(m_materialGroup);
    if (material != osg::NullFC) {
        m_materialGroup->setMaterial(material);
    }
}

osg::MaterialPtr HighlightSelectionVisualisation::getMaterial() const
{
    return m_materialGroup->getMaterial();
}

osg::NodePtr HighlightSelectionVisualisation::createVisualisation(const osg::NodePtr& node)
{
    if (node == osg::NullFC) {
        return osg::NodePtr();
    }
    // What is to hold the others ends last.
    NewContainer<osg::NodePtr> visualisation;
    NewContainer<osg::NodePtr> moved;
    const NewContainer<osg::NodePtr> copy(cloneSelectionTree(node));
    osg::NodePtr source = node;
    const osg::NodePtr parent = node->getParent();
    if (isGeometry(node) && parent != osg::NullFC) {
        const osg::TransformPtr parentTransform = getTransform(parent);
        if (parentTransform != osg::NullFC) {
            // By reference: the highlight follows a moved parent without an update.
            createNode(moved, parentTransform, copy.get());
            source = parent;
        }
    }
    const osg::Matrix toWorld = getParentToWorld(source);
    const NewContainer<osg::TransformPtr> transform(osg::Transform::create());
    {
        const osg::CPEditor edit(transform.get());
        transform->setMatrix(toWorld);
    }
    createNode(visualisation, transform.get(), moved.get() != osg::NullFC ? moved.get() : copy.get());
    return visualisation.handOver();
}

void HighlightSelectionVisualisation::removeVisualisation(const osg::NodePtr&, const osg::NodePtr&)
{
    // The base detaches the node; nobody else holds it.
}

void HighlightSelectionVisualisation::updateVisualisation(const osg::NodePtr& node, const osg::NodePtr& visualisation)
{
    if (visualisation == osg::NullFC || node == osg::NullFC) {
        return;
    }
    if (node->getTravMask() != 0xFFFFFFFF) {
        if (visualisation->getNChildren() > 0) {
            const osg::CPEditor edit(visualisation);
            visualisation->subChild(osg::UInt32(0));
        }
        return;
    }

    // Held meanwhile: a visualisation without children takes no replacement, and the copy goes with this reference.
    const osg::RefPtr<osg::NodePtr> copy(cloneSelectionTree(node));
    const osg::Matrix toWorld = getParentToWorld(node);
    // The parent's transform is part of the matrix now, unlike after createVisualisation().
    const osg::TransformPtr transform = getTransform(visualisation);
    if (transform != osg::NullFC) {
        const osg::CPEditor edit(transform);
        transform->setMatrix(toWorld);
    }
    const osg::CPEditor edit(visualisation);
    visualisation->replaceChild(0, copy);
}

} // namespace quon::interaction
