// SPDX-License-Identifier: MIT
#include "Viewer/Model/ModelBuilder.h"

#include <SceneUtilities/NodeUtils.h>
#include <SceneUtilities/koMaterials.h>

#include <OpenSG/OSGSimpleMaterial.h>
#include <OpenSG/OSGTransform.h>

#include <algorithm>
#include <string>
#include <utility>

namespace quon::viewer {

namespace {

// How many values are copied between two looks at the clock: well below a millisecond's worth.
constexpr std::size_t ValuesPerStep = 1U << 15;

osg::SimpleMaterialPtr makeMaterial(const ModelData::Material& source)
{
    const osg::SimpleMaterialPtr material = osg::SimpleMaterial::create();
    beginEditCP(material);
    material->setDiffuse(source.diffuse);
    material->setSpecular(source.specular);
    material->setShininess(source.shininess);
    material->setEmission(source.emission);
    material->setTransparency(source.transparency);
    endEditCP(material);
    koMaterials::setName(material, source.name.empty() ? "material" : source.name, source.name.empty());
    return material;
}

/**
 * Copies the next values of an array into a property, and gives the array back after the last one.
 *
 * @return true when the property has all of them
 */
template <class Property, class Value>
bool fillProperty(const Property& property, std::vector<Value>& values)
{
    if (values.empty()) {
        return true;
    }
    auto& field = *property->editFieldPtr();
    const std::size_t begin = field.size();
    if (begin == 0) {
        field.reserve(values.size());
    }
    const std::size_t end = std::min(begin + ValuesPerStep, values.size());
    beginEditCP(property);
    for (std::size_t i = begin; i < end; ++i) {
        field.push_back(values[i]);
    }
    endEditCP(property);
    if (end < values.size()) {
        return false;
    }
    std::vector<Value>().swap(values);
    return true;
}

} // namespace

ModelBuilder::ModelBuilder(ModelData data)
    : m_data(std::move(data))
    , m_materials(m_data.materials.size())
    , m_geometries(m_data.meshes.size())
    , m_parts(m_data.countParts())
{
    m_nodes.reserve(m_data.nodes.size());
}

bool ModelBuilder::advance(const Clock::time_point deadline)
{
    while (!isComplete()) {
        step();
        if (Clock::now() >= deadline) {
            break;
        }
    }
    return isComplete();
}

bool ModelBuilder::isComplete() const
{
    return m_nodes.size() == m_data.nodes.size() && m_nextMesh == m_data.nodes.back().meshes.size();
}

void ModelBuilder::step()
{
    if (m_nodes.empty() || m_nextMesh == m_data.nodes[m_nodes.size() - 1].meshes.size()) {
        addNode();
    } else {
        addMesh();
    }
}

void ModelBuilder::addNode()
{
    const ModelData::Node& source = m_data.nodes[m_nodes.size()];
    const osg::TransformPtr transform = osg::Transform::create();
    beginEditCP(transform, osg::Transform::MatrixFieldMask);
    transform->setMatrix(source.matrix);
    endEditCP(transform, osg::Transform::MatrixFieldMask);

    const osg::NodePtr node = osg::Node::create();
    beginEditCP(node, osg::Node::CoreFieldMask);
    node->setCore(transform);
    endEditCP(node, osg::Node::CoreFieldMask);
    if (m_nodes.empty()) {
        m_root = node;
    } else {
        const osg::NodePtr parent = m_nodes[source.parent];
        beginEditCP(parent, osg::Node::ChildrenFieldMask);
        parent->addChild(node);
        endEditCP(parent, osg::Node::ChildrenFieldMask);
    }
    m_nodes.push_back(node);
    m_nextMesh = 0;
    // Made up or not: it is the user's name of the part.
    NodeUtils::setName(node, source.name.empty() ? "node " + std::to_string(++m_unnamed) : source.name, false);
}

void ModelBuilder::addMesh()
{
    const std::vector<std::size_t>& meshes = m_data.nodes[m_nodes.size() - 1].meshes;
    const std::size_t index = meshes[m_nextMesh];
    if (m_geometries[index] == osg::NullFC) {
        ModelData::Mesh& mesh = m_data.meshes[index];
        if (m_filling.geometry == osg::NullFC) {
            startGeometry(mesh);
        }
        if (!fillGeometry(mesh)) {
            return;
        }
        m_geometries[index] = m_filling.geometry;
        m_filling = Filling();
        m_prepared.add(m_geometries[index].get(), std::exchange(mesh.content, nullptr));
    }
    addPiece(m_geometries[index].get());
    ++m_nextMesh;
    if (m_nextMesh == meshes.size()) {
        ++m_builtParts;
    }
}

void ModelBuilder::addPiece(const osg::GeometryPtr& geometry)
{
    const osg::NodePtr piece = osg::Node::create();
    beginEditCP(piece, osg::Node::CoreFieldMask);
    piece->setCore(geometry);
    endEditCP(piece, osg::Node::CoreFieldMask);
    const osg::NodePtr node = m_nodes.back();
    beginEditCP(node, osg::Node::ChildrenFieldMask);
    node->addChild(piece);
    endEditCP(node, osg::Node::ChildrenFieldMask);
}

void ModelBuilder::startGeometry(const ModelData::Mesh& mesh)
{
    const osg::GeoPTypesUI8Ptr types = osg::GeoPTypesUI8::create();
    beginEditCP(types);
    types->push_back(mesh.primitive);
    endEditCP(types);
    const osg::GeoPLengthsUI32Ptr lengths = osg::GeoPLengthsUI32::create();
    beginEditCP(lengths);
    lengths->push_back(static_cast<osg::UInt32>(mesh.indices.size()));
    endEditCP(lengths);

    m_filling.geometry = osg::Geometry::create();
    m_filling.positions = osg::GeoPositions3f::create();
    m_filling.indices = osg::GeoIndicesUI32::create();
    const osg::GeometryPtr geometry = m_filling.geometry.get();
    beginEditCP(geometry);
    geometry->setTypes(types);
    geometry->setLengths(lengths);
    geometry->setIndices(m_filling.indices);
    geometry->setPositions(m_filling.positions);
    if (!mesh.normals.empty()) {
        m_filling.normals = osg::GeoNormals3f::create();
        geometry->setNormals(m_filling.normals);
    }
    if (!mesh.colours.empty()) {
        m_filling.colours = osg::GeoColors4f::create();
        geometry->setColors(m_filling.colours);
    }
    if (!mesh.texCoords.empty()) {
        m_filling.texCoords = osg::GeoTexCoords2f::create();
        geometry->setTexCoords(m_filling.texCoords);
    }
    geometry->setMaterial(getMaterial(mesh.material));
    endEditCP(geometry);
}

// One array at a time, none of them in one go.
bool ModelBuilder::fillGeometry(ModelData::Mesh& mesh)
{
    return fillProperty(m_filling.positions, mesh.positions) && fillProperty(m_filling.normals, mesh.normals) &&
           fillProperty(m_filling.colours, mesh.colours) && fillProperty(m_filling.texCoords, mesh.texCoords) &&
           fillProperty(m_filling.indices, mesh.indices);
}

osg::MaterialPtr ModelBuilder::getMaterial(const std::size_t index)
{
    if (index >= m_materials.size()) {
        return osg::NullFC;
    }
    osg::RefPtr<osg::MaterialPtr>& material = m_materials[index];
    if (material == osg::NullFC) {
        material = makeMaterial(m_data.materials[index]);
    }
    return material.get();
}

} // namespace quon::viewer
