// SPDX-License-Identifier: MIT
#include "Viewer/Model/ModelLoader.h"

#include "Viewer/Model/ViewerError.h"

#include <SceneUtilities/NodeUtils.h>
#include <SceneUtilities/koMaterials.h>

#include <OpenSG/OSGGL.h>
#include <OpenSG/OSGGeoProperty.h>
#include <OpenSG/OSGGeometry.h>
#include <OpenSG/OSGSimpleMaterial.h>
#include <OpenSG/OSGTransform.h>

#include <assimp/GltfMaterial.h>
#include <assimp/Importer.hpp>
#include <assimp/ProgressHandler.hpp>
#include <assimp/config.h>
#include <assimp/postprocess.h>
#include <assimp/scene.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <exception>
#include <filesystem>
#include <system_error>
#include <utility>
#include <vector>

namespace quon::viewer {

namespace {

// Edges sharper than this stay sharp where normals have to be made.
constexpr float SmoothingAngle = 40.0F;

class ForwardingProgress : public Assimp::ProgressHandler {
public:
    explicit ForwardingProgress(ModelLoader::Progress progress)
        : m_progress(std::move(progress))
    {}

    bool Update(const float percentage) override
    {
        if (m_progress) {
            m_progress(percentage);
        }
        return true;
    }

private:
    ModelLoader::Progress m_progress;
};

osg::Color3f toColour(const aiColor4D& colour)
{
    return osg::Color3f(colour.r, colour.g, colour.b);
}

float getFloat(const aiMaterial& material, const char* key, const float fallback)
{
    float value = fallback;
    return material.Get(key, 0, 0, value) == aiReturn_SUCCESS && std::isfinite(value) ? value : fallback;
}

osg::SimpleMaterialPtr convertMaterial(const aiMaterial& source)
{
    aiColor4D diffuse(0.7F, 0.7F, 0.7F, 1);
    if (source.Get(AI_MATKEY_BASE_COLOR, diffuse) != aiReturn_SUCCESS) {
        source.Get(AI_MATKEY_COLOR_DIFFUSE, diffuse);
    }
    if (source.GetTextureCount(aiTextureType_DIFFUSE) > 0) {
        // The picture itself is not shown: a light grey comes nearest to what it would cover.
        diffuse = aiColor4D(0.8F, 0.8F, 0.8F, diffuse.a);
    }
    aiColor4D specular(0, 0, 0, 1);
    aiColor4D emission(0, 0, 0, 1);
    source.Get(AI_MATKEY_COLOR_SPECULAR, specular);
    source.Get(AI_MATKEY_COLOR_EMISSIVE, emission);

    float opacity = getFloat(source, "$mat.opacity", 1);
    aiString alphaMode;
    if (source.Get(AI_MATKEY_GLTF_ALPHAMODE, alphaMode) == aiReturn_SUCCESS &&
        std::strcmp(alphaMode.C_Str(), "OPAQUE") == 0) {
        opacity = 1;
    }
    // Exporters write 0 where they mean "not used"; a part that nobody can see helps nobody.
    if (!(opacity > 0)) {
        opacity = 1;
    }

    const osg::SimpleMaterialPtr material = osg::SimpleMaterial::create();
    beginEditCP(material);
    material->setDiffuse(toColour(diffuse));
    // A touch of shine for files that leave it out: without it dark parts lose their shape.
    const osg::Color3f shine(std::max(specular.r, 0.12F), std::max(specular.g, 0.12F), std::max(specular.b, 0.12F));
    material->setSpecular(shine);
    material->setShininess(std::clamp(getFloat(source, "$mat.shininess", 24), 8.0F, 128.0F));
    material->setEmission(toColour(emission));
    material->setTransparency(1 - std::min(opacity, 1.0F));
    endEditCP(material);

    const aiString name = const_cast<aiMaterial&>(source).GetName();
    koMaterials::setName(material, name.length > 0 ? name.C_Str() : "material", name.length == 0);
    return material;
}

GLenum primitiveOf(const aiMesh& mesh)
{
    // The meshes are sorted: one kind each.
    switch (mesh.mPrimitiveTypes & (aiPrimitiveType_POINT | aiPrimitiveType_LINE | aiPrimitiveType_TRIANGLE)) {
    case aiPrimitiveType_POINT:
        return GL_POINTS;
    case aiPrimitiveType_LINE:
        return GL_LINES;
    default:
        return GL_TRIANGLES;
    }
}

template <class Property>
typename Property::PtrType fillProperty(const aiVector3D* values, const unsigned count)
{
    using Value = typename Property::StoredFieldType::StoredType;
    const typename Property::PtrType property = Property::create();
    beginEditCP(property);
    auto& field = *property->editFieldPtr();
    field.resize(count);
    for (unsigned i = 0; i < count; ++i) {
        field[i] = Value(values[i].x, values[i].y, values[i].z);
    }
    endEditCP(property);
    return property;
}

osg::GeometryPtr convertMesh(const aiMesh& mesh, const osg::MaterialPtr& material)
{
    const osg::GeoPTypesUI8Ptr types = osg::GeoPTypesUI8::create();
    const osg::GeoPLengthsUI32Ptr lengths = osg::GeoPLengthsUI32::create();
    const osg::GeoIndicesUI32Ptr indices = osg::GeoIndicesUI32::create();
    beginEditCP(indices);
    for (unsigned face = 0; face < mesh.mNumFaces; ++face) {
        for (unsigned corner = 0; corner < mesh.mFaces[face].mNumIndices; ++corner) {
            indices->editFieldPtr()->push_back(mesh.mFaces[face].mIndices[corner]);
        }
    }
    endEditCP(indices);
    beginEditCP(types);
    types->push_back(static_cast<osg::UInt8>(primitiveOf(mesh)));
    endEditCP(types);
    beginEditCP(lengths);
    lengths->push_back(indices->getSize());
    endEditCP(lengths);

    const osg::GeometryPtr geometry = osg::Geometry::create();
    beginEditCP(geometry);
    geometry->setTypes(types);
    geometry->setLengths(lengths);
    geometry->setIndices(indices);
    geometry->setPositions(fillProperty<osg::GeoPositions3f>(mesh.mVertices, mesh.mNumVertices));
    if (mesh.HasNormals()) {
        geometry->setNormals(fillProperty<osg::GeoNormals3f>(mesh.mNormals, mesh.mNumVertices));
    }
    if (mesh.HasVertexColors(0)) {
        const osg::GeoColors4fPtr colours = osg::GeoColors4f::create();
        beginEditCP(colours);
        for (unsigned i = 0; i < mesh.mNumVertices; ++i) {
            const aiColor4D& colour = mesh.mColors[0][i];
            colours->editFieldPtr()->push_back(osg::Color4f(colour.r, colour.g, colour.b, colour.a));
        }
        endEditCP(colours);
        geometry->setColors(colours);
    }
    if (mesh.HasTextureCoords(0)) {
        const osg::GeoTexCoords2fPtr texCoords = osg::GeoTexCoords2f::create();
        beginEditCP(texCoords);
        for (unsigned i = 0; i < mesh.mNumVertices; ++i) {
            const aiVector3D& texCoord = mesh.mTextureCoords[0][i];
            texCoords->editFieldPtr()->push_back(osg::Vec2f(texCoord.x, texCoord.y));
        }
        endEditCP(texCoords);
        geometry->setTexCoords(texCoords);
    }
    geometry->setMaterial(material);
    endEditCP(geometry);
    return geometry;
}

osg::Matrix toMatrix(const aiMatrix4x4& m)
{
    // Both take rows here.
    return osg::Matrix(m.a1, m.a2, m.a3, m.a4, m.b1, m.b2, m.b3, m.b4, m.c1, m.c2, m.c3, m.c4, m.d1, m.d2, m.d3, m.d4);
}

/** Builds the nodes of one imported file. */
class SceneBuilder {
public:
    explicit SceneBuilder(const aiScene& scene)
        : m_scene(scene)
        , m_materials(scene.mNumMaterials)
        , m_geometries(scene.mNumMeshes)
    {}

    osg::RefPtr<osg::NodePtr> build()
    {
        struct Entry {
            const aiNode* source;
            osg::NodePtr parent;
        };
        osg::RefPtr<osg::NodePtr> root;
        // Not recursive: how deep a file nests its nodes is up to the file.
        std::vector<Entry> pending{{m_scene.mRootNode, osg::NodePtr(osg::NullFC)}};
        while (!pending.empty()) {
            const Entry entry = pending.back();
            pending.pop_back();
            const osg::NodePtr node = convertNode(*entry.source);
            if (entry.parent == osg::NullFC) {
                root = node;
            } else {
                beginEditCP(entry.parent, osg::Node::ChildrenFieldMask);
                entry.parent->addChild(node);
                endEditCP(entry.parent, osg::Node::ChildrenFieldMask);
            }
            for (unsigned i = entry.source->mNumChildren; i > 0; --i) {
                pending.push_back({entry.source->mChildren[i - 1], node});
            }
        }
        return root;
    }

private:
    osg::NodePtr convertNode(const aiNode& source)
    {
        const osg::TransformPtr transform = osg::Transform::create();
        beginEditCP(transform, osg::Transform::MatrixFieldMask);
        transform->setMatrix(toMatrix(source.mTransformation));
        endEditCP(transform, osg::Transform::MatrixFieldMask);

        const bool named = source.mName.length > 0;
        const std::string name = named ? source.mName.C_Str() : "node " + std::to_string(++m_unnamed);
        const osg::NodePtr node = osg::Node::create();
        // Made up or not: it is the user's name of the part.
        NodeUtils::setName(node, name, false);
        beginEditCP(node, osg::Node::CoreFieldMask | osg::Node::ChildrenFieldMask);
        node->setCore(transform);
        for (unsigned i = 0; i < source.mNumMeshes; ++i) {
            const osg::GeometryPtr geometry = getGeometry(source.mMeshes[i]);
            const osg::NodePtr piece = osg::Node::create();
            beginEditCP(piece, osg::Node::CoreFieldMask);
            piece->setCore(geometry);
            endEditCP(piece, osg::Node::CoreFieldMask);
            node->addChild(piece);
        }
        endEditCP(node, osg::Node::CoreFieldMask | osg::Node::ChildrenFieldMask);
        return node;
    }

    osg::GeometryPtr getGeometry(const unsigned index)
    {
        osg::RefPtr<osg::GeometryPtr>& geometry = m_geometries.at(index);
        if (geometry == osg::NullFC) {
            const aiMesh& mesh = *m_scene.mMeshes[index];
            geometry = convertMesh(mesh, getMaterial(mesh.mMaterialIndex));
        }
        return geometry.get();
    }

    osg::MaterialPtr getMaterial(const unsigned index)
    {
        if (index >= m_materials.size()) {
            return osg::NullFC;
        }
        osg::RefPtr<osg::MaterialPtr>& material = m_materials[index];
        if (material == osg::NullFC) {
            material = convertMaterial(*m_scene.mMaterials[index]);
        }
        return material.get();
    }

    const aiScene& m_scene;
    std::vector<osg::RefPtr<osg::MaterialPtr>> m_materials;
    std::vector<osg::RefPtr<osg::GeometryPtr>> m_geometries;
    unsigned m_unnamed = 0;
};

bool hasMeshInNode(const aiScene& scene)
{
    std::vector<const aiNode*> pending{scene.mRootNode};
    while (!pending.empty()) {
        const aiNode* node = pending.back();
        pending.pop_back();
        for (unsigned i = 0; i < node->mNumMeshes; ++i) {
            if (node->mMeshes[i] < scene.mNumMeshes && scene.mMeshes[node->mMeshes[i]]->mNumFaces > 0) {
                return true;
            }
        }
        pending.insert(pending.end(), node->mChildren, node->mChildren + node->mNumChildren);
    }
    return false;
}

std::string explain(const Assimp::Importer& importer, const std::string& file)
{
    const std::string assimpError = importer.GetErrorString();
    if (assimpError.find("No suitable reader") != std::string::npos) {
        const std::string extension = std::filesystem::path(file).extension().string();
        return !extension.empty() && importer.IsExtensionSupported(extension)
                   ? "is damaged, or not of the format that its name says"
                   : "unknown format";
    }
    if (assimpError.find("no meshes") != std::string::npos) {
        return "holds no meshes";
    }
    return assimpError.empty() ? "cannot be read" : "cannot be read: " + assimpError;
}

} // namespace

ModelLoader::ModelLoader(Progress progress)
    : m_progress(std::move(progress))
{}

void ModelLoader::checkFile(const std::string& file)
{
    namespace fs = std::filesystem;
    std::error_code error;
    const fs::file_status status = fs::status(file, error);
    if (status.type() == fs::file_type::not_found) {
        throw ViewerError(file, "no such file");
    }
    if (error) {
        throw ViewerError(file, error.message());
    }
    if (fs::is_directory(status)) {
        throw ViewerError(file, "is a directory");
    }
    if (!fs::is_regular_file(status)) {
        throw ViewerError(file, "is not a regular file");
    }
    const auto size = fs::file_size(file, error);
    if (error) {
        throw ViewerError(file, error.message());
    }
    if (size == 0) {
        throw ViewerError(file, "is empty");
    }
}

osg::RefPtr<osg::NodePtr> ModelLoader::load(const std::string& file) const
{
    checkFile(file);
    try {
        Assimp::Importer importer;
        importer.SetProgressHandler(new ForwardingProgress(m_progress)); // the importer's from here on
        importer.SetPropertyFloat(AI_CONFIG_PP_GSN_MAX_SMOOTHING_ANGLE, SmoothingAngle);
        const aiScene* scene = importer.ReadFile(file, aiProcess_Triangulate | aiProcess_JoinIdenticalVertices |
                                                           aiProcess_GenSmoothNormals | aiProcess_SortByPType |
                                                           aiProcess_FindInvalidData | aiProcess_ValidateDataStructure);
        if (scene == nullptr || scene->mRootNode == nullptr) {
            throw ViewerError(file, explain(importer, file));
        }
        if (!hasMeshInNode(*scene)) {
            throw ViewerError(file, "holds no meshes");
        }
        return SceneBuilder(*scene).build();
    } catch (const ViewerError&) {
        throw;
    } catch (const std::exception& error) {
        throw ViewerError(file, std::string("cannot be read: ") + error.what());
    }
}

} // namespace quon::viewer
