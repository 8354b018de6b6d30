// SPDX-License-Identifier: MIT
#include "Viewer/Model/AssimpScene.h"

#include "Viewer/Model/ModelData.h"

#include <OpenSG/OSGGL.h>

#include <assimp/GltfMaterial.h>
#include <assimp/Importer.hpp>
#include <assimp/config.h>
#include <assimp/scene.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstring>
#include <utility>
#include <vector>

namespace quon::viewer {

namespace {

// Edges sharper than this stay sharp where normals have to be made.
constexpr float SmoothingAngle = 40.0F;

// What nobody shows, and what would keep vertices apart that look the same.
constexpr int Unused = static_cast<int>(aiComponent_ANIMATIONS) | static_cast<int>(aiComponent_BONEWEIGHTS) |
                       static_cast<int>(aiComponent_CAMERAS) | static_cast<int>(aiComponent_LIGHTS) |
                       static_cast<int>(aiComponent_TANGENTS_AND_BITANGENTS) | static_cast<int>(aiComponent_TEXTURES);

bool isFinite(const aiVector3D& vector)
{
    return std::isfinite(vector.x) && std::isfinite(vector.y) && std::isfinite(vector.z);
}

/** Takes out of a scene what would break the steps that follow or could not be drawn. */
class SceneCleaner {
public:
    SceneCleaner(aiScene& scene, const LoadControl& control)
        : m_scene(scene)
        , m_control(control)
    {}

    AssimpLosses clean()
    {
        m_losses.meshesInFile = m_scene.mNumMeshes;
        std::vector<unsigned> places(m_scene.mNumMeshes, Removed);
        unsigned kept = 0;
        for (unsigned i = 0; i < m_scene.mNumMeshes; ++i) {
            m_control.throwIfCancelled();
            aiMesh* mesh = m_scene.mMeshes[i];
            m_scene.mMeshes[i] = nullptr;
            if (mesh != nullptr && cleanMesh(*mesh)) {
                places[i] = kept;
                m_scene.mMeshes[kept++] = mesh;
            } else {
                delete mesh;
                ++m_losses.meshes;
            }
        }
        m_scene.mNumMeshes = kept;
        cleanNodes(places);
        return m_losses;
    }

private:
    static constexpr unsigned Removed = static_cast<unsigned>(-1);

    // Returns false when nothing of the mesh can be shown.
    bool cleanMesh(aiMesh& mesh)
    {
        // Nobody shows morph targets, and they need not fit the mesh.
        for (unsigned i = 0; i < mesh.mNumAnimMeshes; ++i) {
            delete mesh.mAnimMeshes[i];
        }
        delete[] mesh.mAnimMeshes;
        mesh.mAnimMeshes = nullptr;
        mesh.mNumAnimMeshes = 0;

        if (mesh.mVertices == nullptr || mesh.mNumVertices == 0) {
            return false;
        }
        if (mesh.mFaces == nullptr || mesh.mNumFaces == 0) {
            if (mesh.mPrimitiveTypes != aiPrimitiveType_POINT) {
                return false;
            }
            makePoints(mesh);
        }
        const unsigned lost = dropFaces(mesh);
        if (mesh.mNumFaces == 0) {
            return false;
        }
        m_losses.faces += lost;
        mesh.mPrimitiveTypes = kindsOfFaces(mesh) | (mesh.mPrimitiveTypes & aiPrimitiveType_NGONEncodingFlag);
        if (mesh.mNormals != nullptr && !hasUsableNormals(mesh)) {
            // New ones are made.
            delete[] mesh.mNormals;
            mesh.mNormals = nullptr;
        }
        if (mesh.mTextureCoords[0] != nullptr &&
            !std::all_of(mesh.mTextureCoords[0], mesh.mTextureCoords[0] + mesh.mNumVertices, isFinite)) {
            for (aiVector3D*& texCoords : mesh.mTextureCoords) {
                delete[] texCoords;
                texCoords = nullptr;
            }
        }
        return true;
    }

    // A cloud of points may come without faces.
    static void makePoints(aiMesh& mesh)
    {
        delete[] mesh.mFaces;
        mesh.mNumFaces = mesh.mNumVertices;
        mesh.mFaces = new aiFace[mesh.mNumFaces];
        for (unsigned i = 0; i < mesh.mNumFaces; ++i) {
            mesh.mFaces[i].mNumIndices = 1;
            mesh.mFaces[i].mIndices = new unsigned[1]{i};
        }
    }

    static unsigned dropFaces(aiMesh& mesh)
    {
        unsigned kept = 0;
        for (unsigned i = 0; i < mesh.mNumFaces; ++i) {
            aiFace& face = mesh.mFaces[i];
            const bool usable = face.mNumIndices > 0 && face.mIndices != nullptr &&
                                std::all_of(face.mIndices, face.mIndices + face.mNumIndices, [&](const unsigned index) {
                                    return index < mesh.mNumVertices && isFinite(mesh.mVertices[index]);
                                });
            if (usable) {
                std::swap(mesh.mFaces[kept].mNumIndices, face.mNumIndices);
                std::swap(mesh.mFaces[kept].mIndices, face.mIndices);
                ++kept;
            }
        }
        const unsigned lost = mesh.mNumFaces - kept;
        mesh.mNumFaces = kept;
        return lost;
    }

    // Assimp insists on it that what the mesh says of its faces is true, and ends the process where it is not.
    static unsigned kindsOfFaces(const aiMesh& mesh)
    {
        unsigned kinds = 0;
        for (unsigned i = 0; i < mesh.mNumFaces; ++i) {
            switch (mesh.mFaces[i].mNumIndices) {
            case 1:
                kinds |= aiPrimitiveType_POINT;
                break;
            case 2:
                kinds |= aiPrimitiveType_LINE;
                break;
            case 3:
                kinds |= aiPrimitiveType_TRIANGLE;
                break;
            default:
                kinds |= aiPrimitiveType_POLYGON;
                break;
            }
        }
        return kinds;
    }

    static bool hasUsableNormals(const aiMesh& mesh)
    {
        for (unsigned i = 0; i < mesh.mNumFaces; ++i) {
            const aiFace& face = mesh.mFaces[i];
            for (unsigned corner = 0; face.mNumIndices > 2 && corner < face.mNumIndices; ++corner) {
                const aiVector3D& normal = mesh.mNormals[face.mIndices[corner]];
                if (!isFinite(normal) || normal == aiVector3D(0, 0, 0)) {
                    return false;
                }
            }
        }
        return true;
    }

    void cleanNodes(const std::vector<unsigned>& places)
    {
        // Not recursive: how deep a file nests its nodes is up to the file.
        std::vector<aiNode*> pending{m_scene.mRootNode};
        while (!pending.empty()) {
            aiNode& node = *pending.back();
            pending.pop_back();
            unsigned kept = 0;
            for (unsigned i = 0; i < node.mNumMeshes; ++i) {
                const unsigned mesh = node.mMeshes[i];
                if (mesh >= places.size()) {
                    ++m_losses.meshReferences;
                } else if (places[mesh] != Removed) {
                    node.mMeshes[kept++] = places[mesh];
                }
            }
            node.mNumMeshes = kept;
            aiNode** const end = std::remove(node.mChildren, node.mChildren + node.mNumChildren, nullptr);
            node.mNumChildren = static_cast<unsigned>(end - node.mChildren);
            pending.insert(pending.end(), node.mChildren, end);
        }
    }

    aiScene& m_scene;
    const LoadControl& m_control;
    AssimpLosses m_losses;
};

osg::Color3f toColour(const aiColor4D& colour)
{
    return osg::Color3f(colour.r, colour.g, colour.b);
}

float getFloat(const aiMaterial& material, const char* key, const float fallback)
{
    float value = fallback;
    // Told how much room there is: otherwise Assimp writes as many numbers as the file has.
    unsigned count = 1;
    return material.Get(key, 0, 0, &value, &count) == aiReturn_SUCCESS && std::isfinite(value) ? value : fallback;
}

ModelData::Material convertMaterial(const aiMaterial& source)
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
    // Exporters write 0 where they mean "not used"; a part that nobody can see helps nobody. So does what is too little
    // to make a difference.
    if (!(1 - opacity < 1)) {
        opacity = 1;
    }

    ModelData::Material material;
    material.name = const_cast<aiMaterial&>(source).GetName().C_Str();
    material.diffuse = toColour(diffuse);
    // A touch of shine for files that leave it out: without it dark parts lose their shape.
    material.specular =
        osg::Color3f(std::max(specular.r, 0.12F), std::max(specular.g, 0.12F), std::max(specular.b, 0.12F));
    material.shininess = std::clamp(getFloat(source, "$mat.shininess", 24), 8.0F, 128.0F);
    material.emission = toColour(emission);
    material.transparency = 1 - std::min(opacity, 1.0F);
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

template <class Value>
std::vector<Value> convertVectors(const aiVector3D* values, const unsigned count)
{
    std::vector<Value> converted;
    converted.reserve(count);
    for (unsigned i = 0; i < count; ++i) {
        converted.emplace_back(values[i].x, values[i].y, values[i].z);
    }
    return converted;
}

ModelData::Mesh convertMesh(const aiMesh& source)
{
    ModelData::Mesh mesh;
    mesh.primitive = static_cast<osg::UInt8>(primitiveOf(source));
    mesh.material = source.mMaterialIndex;
    mesh.positions = convertVectors<osg::Pnt3f>(source.mVertices, source.mNumVertices);
    if (source.HasNormals()) {
        mesh.normals = convertVectors<osg::Vec3f>(source.mNormals, source.mNumVertices);
    }
    if (source.HasVertexColors(0)) {
        mesh.colours.reserve(source.mNumVertices);
        for (unsigned i = 0; i < source.mNumVertices; ++i) {
            const aiColor4D& colour = source.mColors[0][i];
            mesh.colours.emplace_back(colour.r, colour.g, colour.b, colour.a);
        }
    }
    if (source.HasTextureCoords(0)) {
        mesh.texCoords.reserve(source.mNumVertices);
        for (unsigned i = 0; i < source.mNumVertices; ++i) {
            mesh.texCoords.emplace_back(source.mTextureCoords[0][i].x, source.mTextureCoords[0][i].y);
        }
    }
    mesh.indices.reserve(std::size_t(source.mNumFaces) * 3);
    for (unsigned face = 0; face < source.mNumFaces; ++face) {
        const aiFace& corners = source.mFaces[face];
        mesh.indices.insert(mesh.indices.end(), corners.mIndices, corners.mIndices + corners.mNumIndices);
    }
    return mesh;
}

osg::Matrix toMatrix(const aiMatrix4x4& m)
{
    // Both take rows here.
    return osg::Matrix(m.a1, m.a2, m.a3, m.a4, m.b1, m.b2, m.b3, m.b4, m.c1, m.c2, m.c3, m.c4, m.d1, m.d2, m.d3, m.d4);
}

/** Copies a scene that is fit to be drawn into plain arrays. */
class SceneConverter {
public:
    SceneConverter(const aiScene& scene, const LoadControl& control, ModelData& data)
        : m_scene(scene)
        , m_control(control)
        , m_data(data)
    {}

    void convert()
    {
        for (unsigned i = 0; i < m_scene.mNumMaterials; ++i) {
            m_data.materials.push_back(convertMaterial(*m_scene.mMaterials[i]));
        }
        convertNodes();
        convertMeshes();
    }

private:
    void convertNodes()
    {
        struct Entry {
            const aiNode* source;
            std::size_t parent;
        };
        std::vector<Entry> pending{{m_scene.mRootNode, 0}};
        while (!pending.empty()) {
            m_control.throwIfCancelled();
            const Entry entry = pending.back();
            pending.pop_back();
            const std::size_t place = m_data.nodes.size();
            ModelData::Node node;
            node.name = entry.source->mName.C_Str();
            node.matrix = toMatrix(entry.source->mTransformation);
            node.parent = entry.parent;
            node.meshes.assign(entry.source->mMeshes, entry.source->mMeshes + entry.source->mNumMeshes);
            m_data.nodes.push_back(std::move(node));
            for (unsigned i = entry.source->mNumChildren; i > 0; --i) {
                pending.push_back({entry.source->mChildren[i - 1], place});
            }
        }
    }

    // Meshes that no node uses are not taken along.
    void convertMeshes()
    {
        std::vector<std::size_t> places(m_scene.mNumMeshes, static_cast<std::size_t>(-1));
        for (ModelData::Node& node : m_data.nodes) {
            for (std::size_t& mesh : node.meshes) {
                std::size_t& place = places.at(mesh);
                if (place == static_cast<std::size_t>(-1)) {
                    m_control.throwIfCancelled();
                    place = m_data.meshes.size();
                    m_data.meshes.push_back(convertMesh(*m_scene.mMeshes[mesh]));
                }
                mesh = place;
            }
        }
    }

    const aiScene& m_scene;
    const LoadControl& m_control;
    ModelData& m_data;
};

} // namespace

AssimpLosses cleanAssimpScene(aiScene& scene, const LoadControl& control)
{
    return SceneCleaner(scene, control).clean();
}

void configureAssimpSteps(Assimp::Importer& importer)
{
    importer.SetPropertyFloat(AI_CONFIG_PP_GSN_MAX_SMOOTHING_ANGLE, SmoothingAngle);
    importer.SetPropertyInteger(AI_CONFIG_PP_RVC_FLAGS, Unused);
}

void convertAssimpScene(const aiScene& scene, const LoadControl& control, ModelData& data)
{
    SceneConverter(scene, control, data).convert();
}

} // namespace quon::viewer
