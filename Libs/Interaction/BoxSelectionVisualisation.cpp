// SPDX-License-Identifier: MIT
#include <Interaction/BoxSelectionVisualisation.h>

#include <Extensions/SceneExtensions.h>
#include <SceneUtilities/NodeUtils.h>
#include <SceneUtilities/koMaterials.h>
#include <SceneUtilities/koNodeUtils.h>
#include <SceneUtilities/koUberCameraUtils.h>

#include <OpenSG/OSGBlendChunk.h>
#include <OpenSG/OSGGL.h>
#include <OpenSG/OSGGeoProperty.h>
#include <OpenSG/OSGGeometry.h>
#include <OpenSG/OSGLineChunk.h>
#include <OpenSG/OSGMaterialGroup.h>
#include <OpenSG/OSGMatrix.h>
#include <OpenSG/OSGRefPtr.h>
#include <OpenSG/OSGState.h>

#include "NewContainer.h"

#include <array>
#include <new>
#include <string>

namespace quon::interaction {

namespace {

constexpr osg::UInt32 cornerCount = 8;
constexpr osg::Real32 tolerance = 1e-6F;

// The bit of the host's node field by which it knows the boxes.
constexpr osg::UInt32 boxHostFlags = 8;

// Late in the transparent pass: the scene is drawn before.
constexpr osg::Int32 defaultSortKey = 60000;
constexpr osg::Real32 defaultTransparency = 0.001F;

osg::SimpleMaterialPtr createMaterial(const std::string& name, const osg::Color3f& color,
                                      const osg::DepthTestChunkPtr& depthTestChunk, const osg::LineChunkPtr& lineChunk,
                                      const osg::BlendChunkPtr& blendChunk)
{
    NewContainer<osg::SimpleMaterialPtr> created(osg::SimpleMaterial::create());
    const osg::SimpleMaterialPtr material = created.get();
    const osg::CPEditor edit(material);
    koMaterials::setName(material, name, true);
    material->setDiffuse(color);
    material->setLit(false);
    extensions::setHostOption(material, false);
    material->addChunk(depthTestChunk, osg::State::AutoSlotReplace);
    material->addChunk(lineChunk, osg::State::AutoSlotReplace);
    material->addChunk(blendChunk, osg::State::AutoSlotReplace);
    material->setSortKey(defaultSortKey);
    material->setTransparency(defaultTransparency);
    material->setTransparencyMode(osg::Material::TransparencyForceTransparent);
    return created.handOver();
}

// Corner 0 is min, corner 7 max: the bits of the index take x, y and z from max.
osg::Pnt3f getCorner(osg::UInt32 index, const osg::Pnt3f& min, const osg::Pnt3f& max)
{
    return osg::Pnt3f((index & 1U) != 0 ? max[0] : min[0], (index & 2U) != 0 ? max[1] : min[1],
                      (index & 4U) != 0 ? max[2] : min[2]);
}

// Exactly, unlike the tolerant comparisons of points.
bool isOrigin(const osg::Pnt3f& point)
{
    return point[0] == 0.0F && point[1] == 0.0F && point[2] == 0.0F;
}

// False for coordinates that are no numbers: those are written again each time.
bool isNear(const osg::Pnt3f& left, const osg::Pnt3f& right)
{
    for (osg::UInt32 i = 0; i < 3; ++i) {
        if (!(left[i] - right[i] <= tolerance && right[i] - left[i] <= tolerance)) {
            return false;
        }
    }
    return true;
}

NewContainer<osg::GeoPTypesUI8Ptr> createTypes()
{
    NewContainer<osg::GeoPTypesUI8Ptr> types(osg::GeoPTypesUI8::create());
    const osg::CPEditor edit(types.get());
    types->resize(2);
    types->setValue(GL_LINE_STRIP, 0);
    types->setValue(GL_LINES, 1);
    return types;
}

NewContainer<osg::GeoPLengthsUI32Ptr> createLengths()
{
    NewContainer<osg::GeoPLengthsUI32Ptr> lengths(osg::GeoPLengthsUI32::create());
    const osg::CPEditor edit(lengths.get());
    lengths->resize(2);
    lengths->setValue(10, 0);
    lengths->setValue(6, 1);
    return lengths;
}

NewContainer<osg::GeoIndicesUI32Ptr> createIndices()
{
    // The strip draws the bottom face, one vertical edge and the top face, the lines the other vertical edges.
    constexpr std::array<osg::UInt32, 16> values{0, 1, 3, 2, 0, 4, 5, 7, 6, 4, 1, 5, 2, 6, 3, 7};

    NewContainer<osg::GeoIndicesUI32Ptr> indices(osg::GeoIndicesUI32::create());
    const osg::CPEditor edit(indices.get());
    indices->resize(values.size());
    for (osg::UInt32 i = 0; i < values.size(); ++i) {
        indices->setValue(values[i], i);
    }
    return indices;
}

// A template only: the real corners are written before a box is shown.
NewContainer<osg::GeoPositions3fPtr> createPositions()
{
    const osg::Pnt3f min(-1.0F, -1.0F, -1.0F);
    const osg::Pnt3f max(1.0F, 1.0F, 1.0F);

    NewContainer<osg::GeoPositions3fPtr> positions(osg::GeoPositions3f::create());
    const osg::CPEditor edit(positions.get());
    positions->resize(cornerCount);
    for (osg::UInt32 i = 0; i < cornerCount; ++i) {
        positions->setValue(getCorner(i, min, max), i);
    }
    return positions;
}

// A box of no particular place; its one reference is the caller's.
osg::NodePtr createBox(const osg::MaterialPtr& material)
{
    // What is to hold the others ends last.
    NewContainer<osg::NodePtr> box;
    NewContainer<osg::GeometryPtr> geometry;
    const NewContainer<osg::GeoPTypesUI8Ptr> types = createTypes();
    const NewContainer<osg::GeoPLengthsUI32Ptr> lengths = createLengths();
    const NewContainer<osg::GeoIndicesUI32Ptr> indices = createIndices();
    const NewContainer<osg::GeoPositions3fPtr> positions = createPositions();

    geometry.keep(extensions::createGeometry());
    {
        const osg::CPEditor edit(geometry.get());
        geometry->setTypes(types.get());
        geometry->setLengths(lengths.get());
        geometry->setIndices(indices.get());
        geometry->setPositions(positions.get());
        geometry->setMaterial(material);
    }
    box.keep(osg::Node::create());
    // Before the host's services see it: what they refer to for a moment must not end with that.
    box.addRef();
    {
        const osg::CPEditor edit(box.get());
        extensions::setHostFlags(box.get(), boxHostFlags);
        box->setCore(geometry.get());
    }
    // With a z, unlike the name of the root.
    NodeUtils::setName(box.get(), "VisualizationHighlightNode", true);
    koNodeUtils::setIsAuxiliaryNode(box.get(), true);
    return box.handOver();
}

} // namespace

BoxSelectionVisualisation::BoxSelectionVisualisation()
{
    // Held here until everything is built: what fails half-way leaves nothing behind.
    const osg::RefPtr<osg::DepthTestChunkPtr> depthTestChunk(osg::DepthTestChunk::create());
    {
        const osg::CPEditor edit(depthTestChunk);
        depthTestChunk->setFunc(GL_ALWAYS);
    }
    const osg::RefPtr<osg::LineChunkPtr> lineChunk(osg::LineChunk::create());
    {
        const osg::CPEditor edit(lineChunk);
        lineChunk->setWidth(1.0F);
        lineChunk->setSmooth(true);
    }
    const osg::RefPtr<osg::BlendChunkPtr> blendChunk(osg::BlendChunk::create());
    {
        const osg::CPEditor edit(blendChunk);
        blendChunk->setSrcFactor(GL_SRC_ALPHA);
        blendChunk->setDestFactor(GL_ONE_MINUS_SRC_ALPHA);
    }
    const osg::RefPtr<osg::SimpleMaterialPtr> highlightMaterial(createMaterial("koScenegraph::m_highlightMaterial",
                                                                               osg::Color3f(0.956F, 0.521F, 0.086F),
                                                                               depthTestChunk, lineChunk, blendChunk));
    const osg::RefPtr<osg::MaterialGroupPtr> materialGroup(osg::MaterialGroup::create());
    {
        const osg::CPEditor edit(materialGroup);
        materialGroup->setMaterial(highlightMaterial);
    }
    const osg::RefPtr<osg::SimpleMaterialPtr> lockedNodeMaterial(createMaterial("koScenegraph::m_lockedNodeMaterial",
                                                                                osg::Color3f(0.046F, 0.046F, 0.046F),
                                                                                depthTestChunk, lineChunk, blendChunk));

    const osg::NodePtr root = AbstractSelectionVisualisation::getVisualisation();
    {
        const osg::CPEditor edit(root, osg::Node::CoreFieldMask);
        root->setCore(materialGroup);
    }
    NodeUtils::setName(root, "VisualisationRootMaterialGroup", true);

    m_depthTestChunk = depthTestChunk;
    m_highlightMaterial = highlightMaterial;
    m_lockedNodeMaterial = lockedNodeMaterial;
    osg::addRefCP(m_highlightMaterial);
    osg::addRefCP(m_lockedNodeMaterial);
}

// The materials and the boxes in use keep their references: a host may still hold them in its scene.
BoxSelectionVisualisation::~BoxSelectionVisualisation()
{
    clear();
}

void BoxSelectionVisualisation::clear()
{
    while (!m_spareNodes.empty()) {
        // A copy: the release of a last reference writes null into the handle.
        osg::NodePtr spare = m_spareNodes.top();
        m_spareNodes.pop();
        osg::subRefCP(spare);
    }
}

void BoxSelectionVisualisation::setMarkerSize(float markerSize)
{
    m_markerSize = markerSize;
}

float BoxSelectionVisualisation::getMarkerSize() const
{
    return m_markerSize;
}

void BoxSelectionVisualisation::setColor(const osg::Color3f& color)
{
    const osg::CPEditor edit(m_highlightMaterial);
    m_highlightMaterial->setDiffuse(color);
}

osg::Color3f BoxSelectionVisualisation::getColor() const
{
    return m_highlightMaterial->getDiffuse();
}

void BoxSelectionVisualisation::setLockedColor(const osg::Color3f& color)
{
    const osg::CPEditor edit(m_lockedNodeMaterial);
    m_lockedNodeMaterial->setDiffuse(color);
}

void BoxSelectionVisualisation::setTransparency(float transparency, int sortKeyOffset)
{
    // Offsets accumulate: in unsigned numbers, where they may run over.
    const osg::Int32 sortKey = static_cast<osg::Int32>(static_cast<osg::UInt32>(m_highlightMaterial->getSortKey()) +
                                                       static_cast<osg::UInt32>(sortKeyOffset));
    {
        const osg::CPEditor edit(m_highlightMaterial);
        m_highlightMaterial->setTransparency(transparency);
        m_highlightMaterial->setSortKey(sortKey);
    }
    // The locked-node material's own key does not count: both are drawn in one place of the order.
    const osg::CPEditor edit(m_lockedNodeMaterial);
    m_lockedNodeMaterial->setTransparency(transparency);
    m_lockedNodeMaterial->setSortKey(sortKey);
}

void BoxSelectionVisualisation::setOverlay(bool overlay)
{
    const osg::CPEditor edit(m_depthTestChunk);
    m_depthTestChunk->setFunc(overlay ? GL_ALWAYS : GL_LEQUAL);
}

bool BoxSelectionVisualisation::getOverlay() const
{
    return m_depthTestChunk->getFunc() == GL_ALWAYS;
}

osg::NodePtr BoxSelectionVisualisation::createVisualisation(const osg::NodePtr& node)
{
    if (node == osg::NullFC) {
        return osg::NodePtr();
    }
    osg::NodePtr box;
    if (m_spareNodes.empty()) {
        box = createBox(m_highlightMaterial);
    } else {
        box = m_spareNodes.top();
        m_spareNodes.pop();
    }
    try {
        updateVisualisation(node, box);
    } catch (...) {
        // Let go of, or nobody would know it any more.
        osg::subRefCP(box);
        throw;
    }
    return box;
}

void BoxSelectionVisualisation::removeVisualisation(const osg::NodePtr&, const osg::NodePtr& visualisation)
{
    if (visualisation == osg::NullFC) {
        return;
    }
    try {
        m_spareNodes.push(visualisation);
    } catch (const std::bad_alloc&) {
        // Not worth a failure: the next box is made anew.
        osg::NodePtr unwanted = visualisation;
        osg::subRefCP(unwanted);
    }
}

void BoxSelectionVisualisation::updateVisualisation(const osg::NodePtr& node, const osg::NodePtr& visualisation)
{
    if (visualisation == osg::NullFC || node == osg::NullFC) {
        return;
    }
    osg::Pnt3f min;
    osg::Pnt3f max;
    extensions::getWorldBounds(node, min, max);
    if (isOrigin(min) && isOrigin(max)) {
        const osg::Matrix toWorld = node->getToWorld();
        const osg::Pnt3f place(toWorld[3][0], toWorld[3][1], toWorld[3][2]);
        const osg::Vec3f extent(m_markerSize, m_markerSize, m_markerSize);
        min = place - extent;
        max = place + extent;
    }

    const osg::NodeCorePtr core = visualisation->getCore();
    if (core == osg::NullFC) {
        return;
    }
    const osg::GeometryPtr geometry = osg::GeometryPtr::dcast(core);
    if (geometry == osg::NullFC || geometry->getPositions() == osg::NullFC) {
        return;
    }
    const osg::GeoPositions3fPtr positions = osg::GeoPositions3fPtr::dcast(geometry->getPositions());
    if (positions == osg::NullFC || positions->getSize() < cornerCount) {
        return;
    }

    if (!isNear(positions->getValue(0), min) || !isNear(positions->getValue(cornerCount - 1), max)) {
        const osg::CPEditor editGeometry(geometry, osg::Geometry::PositionsFieldMask);
        const osg::CPEditor editPositions(positions);
        for (osg::UInt32 i = 0; i < cornerCount; ++i) {
            positions->setValue(getCorner(i, min, max), i);
        }
    }

    // The flag doubles as the record of which material the box carries, so that equal means nothing to do.
    const bool isLocked = !koNodeUtils::isEditable(node);
    if (extensions::getOverwriteMaterial(geometry) == isLocked) {
        return;
    }
    const osg::CPEditor edit(geometry,
                             osg::MaterialDrawable::MaterialFieldMask | extensions::getOverwriteMaterialFieldMask());
    extensions::setOverwriteMaterial(geometry, isLocked);
    geometry->setMaterial(isLocked ? m_lockedNodeMaterial : m_highlightMaterial);
}

bool BoxSelectionVisualisation::shouldHaveVisualization(const osg::NodePtr& node) const
{
    return !koUberCameraUtils::isUberCamera(node);
}

} // namespace quon::interaction
