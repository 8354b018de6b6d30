// SPDX-License-Identifier: MIT
#include <Interaction/LazyPicker.h>

namespace quon::interaction {

namespace {

template <typename Value>
void copyUnlessNull(const std::vector<Value>& from, std::vector<Value>* to)
{
    if (to != nullptr) {
        *to = from;
    }
}

template <typename Value>
void copyFirst(const std::vector<Value>& from, Value& to)
{
    // A multi-pick without result leaves the single result of before.
    if (!from.empty()) {
        to = from.front();
    }
}

} // namespace

LazyPicker::LazyPicker()
    : m_dirty(true)
    , m_pickedPoint(0.f, 0.f, 0.f)
    , m_pickedNormal(0.f, 0.f, 0.f)
    , m_pickedUV(0.f, 0.f)
    , m_lastMultiMode(noMode)
    , m_fullyEnclosed(false)
    , m_depthSelection(true)
    , m_makeNormalsConsistent(true)
    , m_materialLayerEvaluationEnabled(false)
    , m_transparencyEvaluationEnabled(true)
    , m_selectionRegion(0)
{}

void LazyPicker::getPicked(osg::NodePtr& node, osg::Pnt3f& point, osg::Vec3f& normal, osg::SelectionOption* option)
{
    tryToUpdateIfNeeded(SinglePick, option);
    node = m_pickedNode;
    point = m_pickedPoint;
    normal = m_pickedNormal;
}

osg::Pnt3f LazyPicker::getPickedPoint(osg::SelectionOption* option)
{
    tryToUpdateIfNeeded(SinglePick, option);
    return m_pickedPoint;
}

osg::NodePtr LazyPicker::getPickedNode(osg::SelectionOption* option)
{
    tryToUpdateIfNeeded(SinglePick, option);
    return m_pickedNode;
}

osg::Vec3f LazyPicker::getPickedNormal(osg::SelectionOption* option)
{
    tryToUpdateIfNeeded(SinglePick, option);
    return m_pickedNormal;
}

osg::Vec2f LazyPicker::getPickedUV(osg::SelectionOption* option)
{
    tryToUpdateIfNeeded(SinglePick, option);
    return m_pickedUV;
}

osg::MaterialPtr LazyPicker::getPickedMaterial(osg::SelectionOption* option)
{
    tryToUpdateIfNeeded(SinglePick, option);
    return m_pickedMaterial;
}

void LazyPicker::getMultiPicked(MultiMode mode, std::vector<osg::NodePtr>* nodes, std::vector<osg::Pnt3f>* points,
                                std::vector<osg::Vec3f>* normals, std::vector<osg::MaterialPtr>* materials)
{
    tryToUpdateIfNeeded(mode, nullptr);
    copyUnlessNull(m_multiNodes, nodes);
    copyUnlessNull(m_multiPoints, points);
    copyUnlessNull(m_multiNormals, normals);
    copyUnlessNull(m_multiMaterials, materials);
}

void LazyPicker::setFullyEnclosed(bool fullyEnclosed)
{
    // On purpose no reason to pick again; so with the depth selection and the consistent normals.
    m_fullyEnclosed = fullyEnclosed;
}

bool LazyPicker::getFullyEnclosed() const
{
    return m_fullyEnclosed;
}

void LazyPicker::setDepthSelection(bool depthSelection)
{
    m_depthSelection = depthSelection;
}

bool LazyPicker::getDepthSelection() const
{
    return m_depthSelection;
}

void LazyPicker::setSelectionRegion(int selectionRegion)
{
    if (m_selectionRegion == selectionRegion) {
        return;
    }
    m_selectionRegion = selectionRegion;
    m_dirty = true;
}

int LazyPicker::getSelectionRegion() const
{
    return m_selectionRegion;
}

const std::vector<osg::NodePtr>& LazyPicker::getPickedNodes(osg::SelectionOption* option)
{
    const bool optionsChanged = updateSelectionOption(option);
    if (!m_dirty && !optionsChanged && isCacheValid()) {
        return m_pickedNodes;
    }

    try {
        computePickedNodes(&m_pickedNodes, option);
    } catch (...) {
        m_dirty = true;
        throw;
    }
    // Clears the mark for the picks as well, and records no mode: one flag serves all caches.
    m_dirty = false;
    return m_pickedNodes;
}

void LazyPicker::setRoot(const osg::NodePtr& root)
{
    // Assigning a handle would release the old root first, and with it a new root that only the old one keeps alive.
    const osg::RefPtr<osg::NodePtr> newRoot(root);
    m_root = newRoot;
    m_dirty = true;
}

osg::NodePtr LazyPicker::getRoot() const
{
    return m_root.get();
}

void LazyPicker::setMakeNormalsConsistent(bool makeNormalsConsistent)
{
    m_makeNormalsConsistent = makeNormalsConsistent;
}

bool LazyPicker::getMakeNormalsConsistent() const
{
    return m_makeNormalsConsistent;
}

void LazyPicker::setMaterialLayerEvaluationEnabled(bool enabled)
{
    if (m_materialLayerEvaluationEnabled == enabled) {
        return;
    }
    m_materialLayerEvaluationEnabled = enabled;
    m_dirty = true;
}

void LazyPicker::setTransparencyEvaluationEnabled(bool enabled)
{
    if (m_transparencyEvaluationEnabled == enabled) {
        return;
    }
    m_transparencyEvaluationEnabled = enabled;
    m_dirty = true;
}

LazyPicker::~LazyPicker() = default;

void LazyPicker::invalidate()
{
    m_dirty = true;
    m_pickedNode = osg::NullFC;
    m_pickedPoint = osg::Pnt3f(0.f, 0.f, 0.f);
    m_pickedNormal = osg::Vec3f(0.f, 0.f, 0.f);
    m_pickedUV = osg::Vec2f(0.f, 0.f);
    m_pickedMaterial = osg::NullFC;
    m_multiNodes.clear();
    m_multiPoints.clear();
    m_multiNormals.clear();
    m_multiMaterials.clear();
    // The list of getPickedNodes() and the last mode stay.
}

bool LazyPicker::getMaterialLayerEvaluationEnabled() const
{
    return m_materialLayerEvaluationEnabled;
}

bool LazyPicker::getTransparencyEvaluationEnabled() const
{
    return m_transparencyEvaluationEnabled;
}

bool LazyPicker::updateSelectionOption(osg::SelectionOption*&)
{
    return false;
}

void LazyPicker::tryToUpdateIfNeeded(MultiMode mode, osg::SelectionOption* option)
{
    // First and always: the back end may note the option, or even invalidate, before anything is decided.
    const bool optionsChanged = updateSelectionOption(option);
    if (!m_dirty && m_lastMultiMode == mode && !optionsChanged && isCacheValid()) {
        return;
    }

    m_multiNodes.clear();
    m_multiPoints.clear();
    m_multiNormals.clear();
    m_multiMaterials.clear();
    try {
        if (mode != SinglePick) {
            computeMultiPicked(mode, &m_multiNodes, &m_multiPoints, &m_multiNormals, &m_multiMaterials);
            copyFirst(m_multiNodes, m_pickedNode);
            copyFirst(m_multiPoints, m_pickedPoint);
            copyFirst(m_multiNormals, m_pickedNormal);
            copyFirst(m_multiMaterials, m_pickedMaterial);
            // A multi-pick has no texture coordinates: the one of the last single pick stays.
        } else {
            computePicked(m_pickedNode, m_pickedPoint, m_pickedNormal, m_pickedUV, m_pickedMaterial, option);
            m_multiNodes.push_back(m_pickedNode);
            m_multiPoints.push_back(m_pickedPoint);
            m_multiNormals.push_back(m_pickedNormal);
            m_multiMaterials.push_back(m_pickedMaterial);
        }
    } catch (...) {
        // Nobody may take half an answer for a whole one.
        m_dirty = true;
        throw;
    }
    m_dirty = false;
    m_lastMultiMode = mode;
}

} // namespace quon::interaction
