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

#include <vector>

namespace quon::interaction {

namespace {

// A copy that waits for the copies of its children.
struct PendingCopy {
    osg::NodePtr source;
    osg::NodePtr copy;
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
osg::NodePtr beginCopy(const osg::NodePtr& source)
{
    const osg::NodeCorePtr core = source->getCore();
    if (core == osg::NullFC) {
        return osg::NodePtr();
    }
    const osg::NodePtr copy = osg::Node::create();
    osg::beginEditCP(copy);
    copy->setTravMask(source->getTravMask());
    if (isReplacedByGroup(core)) {
        copy->setCore(osg::Group::create());
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

osg::NodePtr createNode(const osg::NodeCorePtr& core, const osg::NodePtr& child)
{
    const osg::NodePtr node = osg::Node::create();
    const osg::CPEditor edit(node);
    node->setCore(core);
    node->addChild(child);
    return node;
}

} // namespace

osg::NodePtr cloneSelectionTree(const osg::NodePtr& node)
{
    if (node == osg::NullFC) {
        return osg::NodePtr();
    }
    osg::NodePtr finished = beginCopy(node);
    if (finished == osg::NullFC) {
        return finished;
    }

    // Depth first with a stack of its own: trees may be deeper than the thread's stack.
    std::vector<PendingCopy> pending;
    pending.push_back({node, finished, 0});
    while (!pending.empty()) {
        PendingCopy& top = pending.back();
        if (top.nextChild < top.source->getNChildren()) {
            const osg::NodePtr child = top.source->getChild(top.nextChild++);
            const osg::NodePtr copy = beginCopy(child);
            if (copy != osg::NullFC) {
                pending.push_back({child, copy, 0});
            }
            continue;
        }
        finished = top.copy;
        osg::endEditCP(finished);
        pending.pop_back();
        if (!pending.empty()) {
            pending.back().copy->addChild(finished);
        }
    }
    return finished;
}

HighlightSelectionVisualisation::HighlightSelectionVisualisation()
{
    const osg::PolygonChunkPtr polygonChunk = osg::PolygonChunk::create();
    {
        // Pulled towards the viewer, so that the lines win against the surface that they outline.
        const osg::CPEditor edit(polygonChunk);
        polygonChunk->setFrontMode(GL_LINE);
        polygonChunk->setBackMode(GL_LINE);
        polygonChunk->setOffsetFactor(-1.0F);
        polygonChunk->setOffsetBias(-100.0F);
        polygonChunk->setOffsetLine(true);
    }
    m_depthTestChunk = osg::DepthTestChunk::create();
    {
        const osg::CPEditor edit(m_depthTestChunk);
        m_depthTestChunk->setFunc(GL_ALWAYS);
    }
    m_highlightMaterial = osg::SimpleMaterial::create();
    osg::addRefCP(m_highlightMaterial);
    {
        const osg::CPEditor edit(m_highlightMaterial);
        koMaterials::setName(m_highlightMaterial, "koScenegraph::m_highlightMaterial", true);
        m_highlightMaterial->setDiffuse(osg::Color3f(0.956F, 0.521F, 0.086F));
        m_highlightMaterial->setLit(false);
        m_highlightMaterial->addChunk(polygonChunk, osg::State::AutoSlotReplace);
        m_highlightMaterial->addChunk(m_depthTestChunk, osg::State::AutoSlotReplace);
        // Late in the transparent pass: the scene is drawn before.
        m_highlightMaterial->setSortKey(60000);
        m_highlightMaterial->setTransparency(0.001F);
        m_highlightMaterial->setTransparencyMode(osg::Material::TransparencyForceTransparent);
    }
    m_materialGroup = osg::MaterialGroup::create();
    {
        const osg::CPEditor edit(m_materialGroup);
        m_materialGroup->setMaterial(m_highlightMaterial);
    }
    const osg::NodePtr root = AbstractSelectionVisualisation::getVisualisation();
    const osg::CPEditor edit(root, osg::Node::CoreFieldMask);
    root->setCore(m_materialGroup);
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
    osg::NodePtr copy = cloneSelectionTree(node);
    osg::NodePtr source = node;
    const osg::NodePtr parent = node->getParent();
    if (isGeometry(node) && parent != osg::NullFC) {
        const osg::TransformPtr parentTransform = getTransform(parent);
        if (parentTransform != osg::NullFC) {
            // By reference: the highlight follows a moved parent without an update.
            copy = createNode(parentTransform, copy);
            source = parent;
        }
    }
    const osg::Matrix toWorld = getParentToWorld(source);
    const osg::TransformPtr transform = osg::Transform::create();
    {
        const osg::CPEditor edit(transform);
        transform->setMatrix(toWorld);
    }
    return createNode(transform, copy);
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
