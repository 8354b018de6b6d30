// SPDX-License-Identifier: MIT
//
// The bytes are a scene as Assimp's readers hand it over at their worst: arrays that are missing, indices that lead
// nowhere, numbers that are none. The viewer cleans it, Assimp carries out its steps on what is left, and the viewer
// makes arrays and a scene graph of that. No reader of Assimp takes part, which have bugs of their own; its steps do,
// which the cleaning has to protect.
#include "Support/ByteReader.h"
#include "Support/Fuzzer.h"
#include "Support/Require.h"

#include "Viewer/Model/AssimpScene.h"
#include "Viewer/Model/GeometryData.h"
#include "Viewer/Model/ModelBuilder.h"
#include "Viewer/Model/ModelData.h"
#include "Viewer/Model/PreparedGeometries.h"

#include <OpenSG/OSGConfig.h>

#include <OpenSG/OSGBaseFunctions.h>
#include <OpenSG/OSGChangeList.h>
#include <OpenSG/OSGFieldContainerFactory.h>
#include <OpenSG/OSGGL.h>
#include <OpenSG/OSGThread.h>

#include <assimp/BaseImporter.h>
#include <assimp/IOStream.hpp>
#include <assimp/IOSystem.hpp>
#include <assimp/Importer.hpp>
#include <assimp/importerdesc.h>
#include <assimp/scene.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <exception>
#include <limits>
#include <string>
#include <utility>
#include <vector>

namespace {

using quon::fuzzing::ByteReader;
using quon::fuzzing::require;
using quon::viewer::GeometryData;
using quon::viewer::LoadControl;
using quon::viewer::ModelBuilder;
using quon::viewer::ModelData;

constexpr unsigned mostNodes = 40;
const std::array<float, 10> oddNumbers = {0,
                                          1,
                                          -1,
                                          0.5F,
                                          1e-30F,
                                          std::numeric_limits<float>::max(),
                                          std::numeric_limits<float>::denorm_min(),
                                          std::numeric_limits<float>::infinity(),
                                          -std::numeric_limits<float>::infinity(),
                                          std::numeric_limits<float>::quiet_NaN()};

/** Makes a scene of bytes. What it allocates belongs to the scene, as aiScene wants it. */
class SceneMaker {
public:
    SceneMaker(ByteReader& bytes, aiScene& scene)
        : m_bytes(bytes)
        , m_scene(scene)
    {}

    void make()
    {
        m_scene.mNumMaterials = static_cast<unsigned>(m_bytes.pick(4));
        m_scene.mMaterials = makeArray<aiMaterial*>(m_scene.mNumMaterials);
        for (unsigned index = 0; index < m_scene.mNumMaterials; ++index) {
            m_scene.mMaterials[index] = makeMaterial();
        }
        m_scene.mNumMeshes = static_cast<unsigned>(m_bytes.pick(5));
        m_scene.mMeshes = makeArray<aiMesh*>(m_scene.mNumMeshes);
        for (unsigned index = 0; index < m_scene.mNumMeshes; ++index) {
            m_scene.mMeshes[index] = m_bytes.pick(16) == 15 ? nullptr : makeMesh();
        }
        delete m_scene.mRootNode;
        m_scene.mRootNode = makeNode(nullptr, 0);
    }

private:
    float number() { return m_bytes.pick(4) == 3 ? m_bytes.take<float>() : m_bytes.pickOf(oddNumbers); }

    // An aiScene does not delete an array of nothing.
    template <class Value>
    static Value* makeArray(const unsigned count)
    {
        return count == 0 ? nullptr : new Value[count];
    }

    // Mostly below the count, and now and then anything.
    unsigned index(const unsigned count)
    {
        const std::uint8_t byte = m_bytes.takeByte();
        return byte > 250 ? m_bytes.take<unsigned>() : count == 0 ? byte : byte % count;
    }

    aiMaterial* makeMaterial()
    {
        auto* const material = new aiMaterial;
        const std::string name = m_bytes.takeText(4);
        const aiString text(name);
        material->AddProperty(&text, AI_MATKEY_NAME);
        static const std::array<const char*, 8> keys = {"$clr.diffuse",        "$clr.base",    "$clr.specular",
                                                        "$clr.emissive",       "$mat.opacity", "$mat.shininess",
                                                        "$mat.gltf.alphaMode", "$tex.file"};
        for (std::size_t count = m_bytes.pick(6); count > 0; --count) {
            const char* const key = m_bytes.pickOf(keys);
            // Often more than there should be.
            std::array<float, 64> numbers{};
            numbers[0] = number();
            numbers[1] = number();
            const std::size_t kind = m_bytes.pick(5);
            if (kind == 3) {
                // As text, which it should not be for all but two.
                const aiString word(m_bytes.takeFlag() ? "OPAQUE" : "BLEND");
                material->AddProperty(&word, key, aiTextureType_NONE, 0);
            } else {
                const std::size_t length = kind == 4 ? numbers.size() : kind + 1;
                material->AddProperty(numbers.data(), static_cast<unsigned>(length), key, aiTextureType_NONE, 0);
            }
        }
        return material;
    }

    aiVector3D* makeVectors(const unsigned count)
    {
        auto* const vectors = new aiVector3D[count];
        for (unsigned index = 0; index < count; ++index) {
            vectors[index] = aiVector3D(number(), static_cast<float>(index % 3), static_cast<float>(index / 3));
        }
        return vectors;
    }

    aiMesh* makeMesh()
    {
        auto* const mesh = new aiMesh;
        mesh->mMaterialIndex = index(m_scene.mNumMaterials);
        const unsigned count = static_cast<unsigned>(m_bytes.pick(10));
        const std::uint8_t arrays = m_bytes.takeByte();
        mesh->mNumVertices = count;
        if ((arrays & 1U) == 0) {
            mesh->mVertices = makeVectors(count);
        }
        if ((arrays & 2U) != 0) {
            mesh->mNormals = makeVectors(count);
        }
        if ((arrays & 4U) != 0) {
            mesh->mColors[0] = new aiColor4D[count];
            std::fill(mesh->mColors[0], mesh->mColors[0] + count, aiColor4D(number(), 0, 0, 1));
        }
        if ((arrays & 8U) != 0) {
            mesh->mTextureCoords[0] = makeVectors(count);
            mesh->mNumUVComponents[0] = 2;
        }
        if ((arrays & 16U) != 0) {
            mesh->mNumAnimMeshes = 1;
            mesh->mAnimMeshes = new aiAnimMesh* [1] { m_bytes.takeFlag() ? new aiAnimMesh : nullptr };
        }
        if ((arrays & 32U) != 0 && count > 0) {
            mesh->mTextureCoords[1] = makeVectors(count);
            mesh->mNumUVComponents[1] = 3;
        }
        makeFaces(*mesh, (arrays & 64U) != 0);
        return mesh;
    }

    void makeFaces(aiMesh& mesh, const bool isMissing)
    {
        mesh.mNumFaces = static_cast<unsigned>(m_bytes.pick(8));
        // A reader says truly what kinds of faces there are, unless there are none.
        mesh.mPrimitiveTypes = mesh.mNumFaces == 0 || isMissing ? static_cast<unsigned>(m_bytes.pick(16)) : 0;
        if (isMissing) {
            return;
        }
        mesh.mFaces = new aiFace[mesh.mNumFaces];
        for (unsigned face = 0; face < mesh.mNumFaces; ++face) {
            const unsigned corners = static_cast<unsigned>(m_bytes.pick(7));
            mesh.mFaces[face].mNumIndices = corners;
            mesh.mFaces[face].mIndices = m_bytes.pick(16) == 15 ? nullptr : new unsigned[corners];
            for (unsigned corner = 0; mesh.mFaces[face].mIndices != nullptr && corner < corners; ++corner) {
                mesh.mFaces[face].mIndices[corner] = index(mesh.mNumVertices);
            }
            mesh.mPrimitiveTypes |= corners == 1   ? aiPrimitiveType_POINT
                                    : corners == 2 ? aiPrimitiveType_LINE
                                    : corners == 3 ? aiPrimitiveType_TRIANGLE
                                    : corners > 3  ? aiPrimitiveType_POLYGON
                                                   : 0;
        }
    }

    aiNode* makeNode(aiNode* parent, const int depth)
    {
        ++m_nodes;
        auto* const node = new aiNode(m_bytes.takeText(3));
        node->mParent = parent;
        node->mTransformation.a1 = number();
        node->mTransformation.d4 = number();
        node->mNumMeshes = static_cast<unsigned>(m_bytes.pick(4));
        node->mMeshes = makeArray<unsigned>(node->mNumMeshes);
        for (unsigned place = 0; place < node->mNumMeshes; ++place) {
            node->mMeshes[place] = index(m_scene.mNumMeshes);
        }
        node->mNumChildren = depth > 6 ? 0 : static_cast<unsigned>(m_bytes.pick(4));
        node->mChildren = makeArray<aiNode*>(node->mNumChildren);
        for (unsigned place = 0; place < node->mNumChildren; ++place) {
            const bool isMissing = m_nodes >= mostNodes || m_bytes.pick(16) == 15;
            node->mChildren[place] = isMissing ? nullptr : makeNode(node, depth + 1);
        }
        return node;
    }

    ByteReader& m_bytes;
    aiScene& m_scene;
    unsigned m_nodes = 0;
};

/** A reader of Assimp that hands over a scene with nothing but a root. */
class EmptyImporter final : public Assimp::BaseImporter {
public:
    bool CanRead(const std::string&, Assimp::IOSystem*, bool) const override { return true; }

protected:
    const aiImporterDesc* GetInfo() const override
    {
        static const aiImporterDesc description = {"Nothing", "", "", "", 0, 0, 0, 0, 0, "nothing"};
        return &description;
    }

    void InternReadFile(const std::string&, aiScene* scene, Assimp::IOSystem*) override
    {
        scene->mFlags = AI_SCENE_FLAGS_INCOMPLETE;
        scene->mRootNode = new aiNode;
    }
};

/** The one file that there seems to be. */
class OneFile final : public Assimp::IOSystem {
public:
    bool Exists(const char*) const override { return true; }
    char getOsSeparator() const override { return '/'; }
    Assimp::IOStream* Open(const char*, const char*) override { return nullptr; }
    void Close(Assimp::IOStream*) override {}
};

bool hasMeshInNode(const aiNode& node)
{
    return node.mNumMeshes > 0 || std::any_of(node.mChildren, node.mChildren + node.mNumChildren,
                                              [](const aiNode* child) { return hasMeshInNode(*child); });
}

/** Does to a scene what ModelReader does to it; false where that one says that there is nothing to show. */
bool read(ByteReader& bytes, ModelData& data)
{
    const LoadControl control;
    Assimp::Importer importer;
    importer.SetIOHandler(new OneFile);
    importer.RegisterLoader(new EmptyImporter);
    quon::viewer::configureAssimpSteps(importer);
    // Filled when Assimp's reading, which is not what is tested here, is over.
    const aiScene* scene = importer.ReadFile("scene.nothing", 0);
    require(scene != nullptr, "an empty scene arrives");
    SceneMaker(bytes, *const_cast<aiScene*>(scene)).make();

    const quon::viewer::AssimpLosses losses = quon::viewer::cleanAssimpScene(*const_cast<aiScene*>(scene), control);
    require(losses.meshes + scene->mNumMeshes == losses.meshesInFile, "a mesh stays or is lost");
    if (scene->mNumMeshes == 0 || !hasMeshInNode(*scene->mRootNode)) {
        return false;
    }
    for (const unsigned step : quon::viewer::AssimpSteps) {
        scene = importer.ApplyPostProcessing(step);
        if (scene == nullptr) {
            return false;
        }
    }
    try {
        quon::viewer::convertAssimpScene(*scene, control, data);
    } catch (const std::exception&) {
        // Assimp, of a material whose colour is a word: the reader says that the file cannot be read.
        return false;
    }
    return true;
}

template <class Value>
bool fits(const std::vector<Value>& values, const ModelData::Mesh& mesh)
{
    return values.empty() || values.size() == mesh.positions.size();
}

// What ModelData says of itself.
void requireSound(const ModelData& data)
{
    for (const ModelData::Mesh& mesh : data.meshes) {
        require(mesh.primitive == GL_POINTS || mesh.primitive == GL_LINES || mesh.primitive == GL_TRIANGLES,
                "the primitives of a mesh are of one kind");
        const std::size_t corners = mesh.primitive == GL_POINTS ? 1 : mesh.primitive == GL_LINES ? 2 : 3;
        require(!mesh.indices.empty() && mesh.indices.size() % corners == 0, "a mesh has whole primitives");
        require(std::all_of(mesh.indices.begin(), mesh.indices.end(),
                            [&](const osg::UInt32 index) { return index < mesh.positions.size(); }),
                "each index is below the number of positions");
        require(fits(mesh.normals, mesh) && fits(mesh.colours, mesh) && fits(mesh.texCoords, mesh),
                "there is one of everything for each position");
    }
    for (std::size_t place = 0; place < data.nodes.size(); ++place) {
        const ModelData::Node& node = data.nodes[place];
        require(place == 0 || node.parent < place, "parents come before their children");
        for (const std::size_t mesh : node.meshes) {
            require(mesh < data.meshes.size(), "the meshes of a node exist");
        }
    }
    for (const ModelData::Material& material : data.materials) {
        require(material.transparency >= 0 && material.transparency < 1, "a material can be seen");
        require(material.shininess >= 8 && material.shininess <= 128, "a material shines as far as it can be drawn");
    }
}

void build(ModelData data)
{
    quon::viewer::prepareGeometries(data, LoadControl());
    for (const ModelData::Mesh& mesh : data.meshes) {
        const GeometryData content = GeometryData::read(mesh);
        require(std::all_of(content.triangles.begin(), content.triangles.end(),
                            [&](const osg::UInt32 index) { return index < content.positions.size(); }),
                "each corner of a triangle exists");
    }
    const std::size_t parts = data.countParts();
    ModelBuilder builder(std::move(data));
    require(builder.advance(), "a model is complete when there is time enough");
    require(builder.countBuiltParts() == parts && builder.getRoot() != osg::NullFC, "every part is built");
    quon::viewer::PreparedGeometries prepared = builder.takePrepared();
}

} // namespace

int LLVMFuzzerInitialize(int* argc, char*** argv)
{
    osg::ChangeList::setReadWriteDefault();
    osg::osgInit(*argc, *argv);
    return 0;
}

int LLVMFuzzerTestOneInput(const std::uint8_t* data, const std::size_t size)
{
    const osg::UInt32 containers = osg::FieldContainerFactory::the()->getLiveContainerCount();
    {
        ByteReader bytes(data, size);
        ModelData model;
        if (read(bytes, model)) {
            requireSound(model);
            build(std::move(model));
        }
    }
    osg::Thread::getCurrentChangeList()->clearAll();
    require(osg::FieldContainerFactory::the()->getLiveContainerCount() == containers,
            "a model that nobody holds is gone");
    return 0;
}
