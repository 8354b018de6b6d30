// SPDX-License-Identifier: MIT
#include "Viewer/Model/AssimpScene.h"

#include "Viewer/Model/ModelData.h"

#include <assimp/scene.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <initializer_list>
#include <vector>

namespace {

using quon::viewer::AssimpLosses;
using quon::viewer::LoadControl;
using quon::viewer::ModelData;

/** A scene of one node, made by hand as no well-meant file has it. */
class AssimpSceneTest : public ::testing::Test {
protected:
    AssimpSceneTest() { m_scene.mRootNode = new aiNode; }

    // Three corners of a triangle, and a fourth that is not there.
    aiMesh& addMesh(const std::initializer_list<std::vector<unsigned>> faces, const unsigned kinds)
    {
        auto* const mesh = new aiMesh;
        mesh->mPrimitiveTypes = kinds;
        mesh->mNumVertices = 3;
        mesh->mVertices = new aiVector3D[3]{{0, 0, 0}, {1, 0, 0}, {0, 1, 0}};
        mesh->mFaces = new aiFace[faces.size()];
        for (const std::vector<unsigned>& corners : faces) {
            aiFace& face = mesh->mFaces[mesh->mNumFaces++];
            face.mNumIndices = static_cast<unsigned>(corners.size());
            face.mIndices = new unsigned[corners.size()];
            std::copy(corners.begin(), corners.end(), face.mIndices);
        }
        m_scene.mNumMeshes = 1;
        m_scene.mMeshes = new aiMesh* [1] { mesh };
        return *mesh;
    }

    aiMaterial& addMaterial()
    {
        auto* const material = new aiMaterial;
        m_scene.mNumMaterials = 1;
        m_scene.mMaterials = new aiMaterial* [1] { material };
        return *material;
    }

    aiScene m_scene;
    LoadControl m_control;
};

TEST_F(AssimpSceneTest, AMeshSaysOfWhichKindsTheFacesAreThatItKept)
{
    const aiMesh& mesh = addMesh({{0}, {0, 1}, {0, 1, 2}, {0, 1, 2, 3}},
                                 aiPrimitiveType_POINT | aiPrimitiveType_LINE | aiPrimitiveType_TRIANGLE |
                                     aiPrimitiveType_POLYGON | aiPrimitiveType_NGONEncodingFlag);

    const AssimpLosses losses = quon::viewer::cleanAssimpScene(m_scene, m_control);

    EXPECT_EQ(losses.faces, 1U);
    EXPECT_EQ(mesh.mPrimitiveTypes, unsigned(aiPrimitiveType_POINT | aiPrimitiveType_LINE | aiPrimitiveType_TRIANGLE |
                                             aiPrimitiveType_NGONEncodingFlag));
}

TEST_F(AssimpSceneTest, APolygonThatStaysIsOne)
{
    const aiMesh& mesh = addMesh({{0, 1, 2, 0}, {0, 9}}, aiPrimitiveType_LINE);

    quon::viewer::cleanAssimpScene(m_scene, m_control);

    EXPECT_EQ(mesh.mPrimitiveTypes, unsigned(aiPrimitiveType_POLYGON));
}

TEST_F(AssimpSceneTest, OfSeveralNumbersForOneTheFirstCounts)
{
    // As many as would run over the place for one by far.
    std::array<float, 64> numbers{};
    numbers.fill(1);
    numbers[0] = 0.25F;
    addMaterial().AddProperty(numbers.data(), unsigned(numbers.size()), "$mat.opacity", 0, 0);

    ModelData data;
    quon::viewer::convertAssimpScene(m_scene, m_control, data);

    ASSERT_EQ(data.materials.size(), 1U);
    EXPECT_EQ(data.materials[0].transparency, 0.75F);
}

} // namespace
