// SPDX-License-Identifier: MIT
#include <InteractionTesting/SceneFixture.h>

#include "Support/TemporaryFolder.h"

#include "Viewer/Model/GeometryData.h"
#include "Viewer/Model/ModelLoader.h"
#include "Viewer/Model/Part.h"
#include "Viewer/Model/ViewerError.h"

#include <SceneUtilities/NodeUtils.h>
#include <SceneUtilities/koMaterials.h>

#include <OpenSG/OSGGeoProperty.h>
#include <OpenSG/OSGGeometry.h>
#include <OpenSG/OSGSimpleMaterial.h>
#include <OpenSG/OSGTransform.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <ostream>
#include <random>
#include <set>
#include <string>
#include <vector>

namespace quon::testing {

namespace {

using ::testing::Each;
using ::testing::ElementsAre;
using ::testing::Le;
using ::testing::StartsWith;
using Step = viewer::LoadControl::Step;
using viewer::ModelLoader;
using viewer::ViewerError;

const char* const TriangleObj = "o first\n"
                                "v 0 0 0\nv 1 0 0\nv 0 1 0\n"
                                "usemtl red\nf 1 2 3\n";

// Two nodes with one mesh of two triangles each way, the second one moved and below the first.
const char* const SharedMeshGltf = R"({
 "asset": {"version": "2.0"}, "scene": 0, "scenes": [{"nodes": [0]}],
 "nodes": [{"name": "frame", "children": [1, 2]},
           {"name": "left", "mesh": 0, "translation": [-1, 0, 0]},
           {"name": "right", "mesh": 0, "translation": [1, 0, 0]}],
 "meshes": [{"name": "plate", "primitives": [{"attributes": {"POSITION": 0}, "material": 0}]}],
 "materials": [{"name": "glass", "alphaMode": "BLEND",
                "pbrMetallicRoughness": {"baseColorFactor": [0.25, 0.5, 0.75, 0.5]}}],
 "accessors": [{"bufferView": 0, "componentType": 5126, "count": 3, "type": "VEC3",
                "min": [0, 0, 0], "max": [1, 1, 0]}],
 "bufferViews": [{"buffer": 0, "byteLength": 36}],
 "buffers": [{"byteLength": 36,
   "uri": "data:application/octet-stream;base64,AAAAAAAAAAAAAAAAAACAPwAAAAAAAAAAAAAAAAAAgD8AAAAA"}]
})";

class ModelLoaderTest : public SceneFixture {
protected:
    // What loading the file reports; empty when it loads.
    static std::string loadAndFail(const std::string& file)
    {
        try {
            ModelLoader().load(file);
            return {};
        } catch (const ViewerError& error) {
            return error.what();
        }
    }

    std::string write(const std::string& name, const std::string& content) { return m_folder.write(name, content); }

    static osg::NodePtr findNode(const osg::NodePtr& node, const std::string& name)
    {
        if (NodeUtils::getName(node) == name) {
            return node;
        }
        for (osg::UInt32 i = 0; i < node->getNChildren(); ++i) {
            const osg::NodePtr found = findNode(node->getChild(i), name);
            if (found != osg::NullFC) {
                return found;
            }
        }
        return osg::NullFC;
    }

    TemporaryFolder m_folder;
};

TEST_F(ModelLoaderTest, AMissingFileIsNamed)
{
    EXPECT_EQ(loadAndFail(m_folder.path("none.obj")), m_folder.path("none.obj") + ": no such file");
}

TEST_F(ModelLoaderTest, AFolderIsNoModel)
{
    EXPECT_EQ(loadAndFail(m_folder.path()), m_folder.path() + ": is a directory");
}

TEST_F(ModelLoaderTest, ADeviceIsNoModel)
{
    EXPECT_EQ(loadAndFail("/dev/null"), "/dev/null: is not a regular file");
}

TEST_F(ModelLoaderTest, AnEmptyFileIsNamed)
{
    const std::string file = write("empty.glb", "");

    EXPECT_EQ(loadAndFail(file), file + ": is empty");
}

TEST_F(ModelLoaderTest, AnUnknownFormatIsNamed)
{
    const std::string file = write("letter.doc", "Dear reader,\nthere is no model in here.\n");

    EXPECT_EQ(loadAndFail(file), file + ": unknown format");
}

TEST_F(ModelLoaderTest, AModelWithoutMeshesIsNamed)
{
    const std::string file = write("empty.gltf", R"({"asset": {"version": "2.0"}, "scene": 0,
                                                     "scenes": [{"nodes": [0]}], "nodes": [{"name": "alone"}]})");

    EXPECT_EQ(loadAndFail(file), file + ": holds no meshes");
}

TEST_F(ModelLoaderTest, EveryTruncationOfAModelIsRefusedOrLoadsWhatIsThere)
{
    std::ifstream stream(KO_ENGINE_MODEL, std::ios::binary);
    const std::string whole{std::istreambuf_iterator<char>(stream), {}};
    ASSERT_GT(whole.size(), 1000U);

    for (const std::size_t size : {std::size_t(1), std::size_t(11), std::size_t(12), std::size_t(20), std::size_t(500),
                                   whole.size() / 4, whole.size() / 2, whole.size() - 1}) {
        const std::string file = write("truncated.glb", whole.substr(0, size));

        const std::string error = loadAndFail(file);

        EXPECT_THAT(error, StartsWith(file + ": ")) << size << " bytes";
        EXPECT_EQ(error.find('\n'), std::string::npos);
    }
}

TEST_F(ModelLoaderTest, DamagedBytesAnywhereNeverCrash)
{
    std::mt19937 random(4711);
    const std::string whole = SharedMeshGltf;

    int refused = 0;
    for (int i = 0; i < 200; ++i) {
        std::string damaged = whole;
        for (int byte = 0; byte < 4; ++byte) {
            damaged[random() % damaged.size()] = static_cast<char>(random() % 256);
        }
        refused += loadAndFail(write("damaged.gltf", damaged)).empty() ? 0 : 1;
    }

    EXPECT_GT(refused, 20);
}

/** A file name whose extension promises a format that the random bytes inside do not keep. */
class ModelLoaderRandomFileTest : public ModelLoaderTest, public ::testing::WithParamInterface<const char*> {};

TEST_P(ModelLoaderRandomFileTest, IsRefusedInOneLine)
{
    std::mt19937 random(99);
    std::string noise(5000, ' ');
    for (char& byte : noise) {
        byte = static_cast<char>(random() % 256);
    }
    const std::string file = write(std::string("random.") + GetParam(), noise);

    const std::string error = loadAndFail(file);

    EXPECT_THAT(error, StartsWith(file + ": "));
    EXPECT_EQ(error.find('\n'), std::string::npos);
}

INSTANTIATE_TEST_SUITE_P(Extensions, ModelLoaderRandomFileTest,
                         ::testing::Values("glb", "gltf", "obj", "stl", "ply", "dae", "3ds", "fbx", "x", "blend", "off",
                                           "xyz"));

TEST_F(ModelLoaderTest, ATriangleBecomesAPartWithPositionsNormalsAndMaterial)
{
    write("red.mtl", "newmtl red\nKd 1 0.25 0\nNs 50\n");
    const std::string file = write("triangle.obj", std::string("mtllib red.mtl\n") + TriangleObj);

    const osg::RefPtr<osg::NodePtr> model = ModelLoader().load(file).root;

    const osg::NodePtr part = findNode(model.get(), "first");
    ASSERT_NE(part, osg::NullFC);
    EXPECT_NE(osg::TransformPtr::dcast(part->getCore()), osg::NullFC);
    ASSERT_EQ(part->getNChildren(), 1U);
    const osg::NodePtr piece = part->getChild(0);
    EXPECT_EQ(viewer::findPart(piece), part);
    const osg::GeometryPtr geometry = osg::GeometryPtr::dcast(piece->getCore());
    ASSERT_NE(geometry, osg::NullFC);
    const viewer::GeometryData data = viewer::GeometryData::read(geometry);
    EXPECT_EQ(data.triangles.size(), 3U);
    ASSERT_EQ(data.normals.size(), 3U);
    EXPECT_EQ(data.normals[0], osg::Vec3f(0, 0, 1));
    const osg::SimpleMaterialPtr material = osg::SimpleMaterialPtr::dcast(geometry->getMaterial());
    ASSERT_NE(material, osg::NullFC);
    EXPECT_EQ(koMaterials::getName(material), "red");
    EXPECT_EQ(material->getDiffuse(), osg::Color3f(1, 0.25F, 0));
    EXPECT_EQ(material->getShininess(), 50);
    EXPECT_TRUE(material->getLit());
    EXPECT_FALSE(material->isTransparent());
}

TEST_F(ModelLoaderTest, NodesWithOneMeshShareItsGeometry)
{
    const std::string file = write("shared.gltf", SharedMeshGltf);

    const osg::RefPtr<osg::NodePtr> model = ModelLoader().load(file).root;

    const osg::NodePtr left = findNode(model.get(), "left");
    const osg::NodePtr right = findNode(model.get(), "right");
    ASSERT_NE(left, osg::NullFC);
    ASSERT_NE(right, osg::NullFC);
    EXPECT_EQ(left->getParent(), findNode(model.get(), "frame"));
    EXPECT_EQ(left->getChild(0)->getCore(), right->getChild(0)->getCore());
    EXPECT_EQ(left->getToWorld()[3][0], -1);
    EXPECT_EQ(right->getToWorld()[3][0], 1);
}

TEST_F(ModelLoaderTest, OpacityBecomesTransparency)
{
    const std::string file = write("shared.gltf", SharedMeshGltf);

    const osg::RefPtr<osg::NodePtr> model = ModelLoader().load(file).root;

    const osg::GeometryPtr geometry = osg::GeometryPtr::dcast(findNode(model.get(), "left")->getChild(0)->getCore());
    const osg::SimpleMaterialPtr material = osg::SimpleMaterialPtr::dcast(geometry->getMaterial());
    EXPECT_EQ(material->getDiffuse(), osg::Color3f(0.25F, 0.5F, 0.75F));
    EXPECT_EQ(material->getTransparency(), 0.5F);
    EXPECT_TRUE(material->isTransparent());
}

TEST_F(ModelLoaderTest, PolygonsBecomeTriangles)
{
    const std::string file = write("quad.obj", "o quad\nv 0 0 0\nv 1 0 0\nv 1 1 0\nv 0 1 0\nf 1 2 3 4\n");

    const osg::RefPtr<osg::NodePtr> model = ModelLoader().load(file).root;

    const osg::GeometryPtr geometry = osg::GeometryPtr::dcast(findNode(model.get(), "quad")->getChild(0)->getCore());
    EXPECT_EQ(viewer::GeometryData::read(geometry).triangles.size(), 6U);
}

TEST_F(ModelLoaderTest, ColoursOfVerticesArriveWithTheirAlpha)
{
    const std::string file = write("colours.ply", "ply\nformat ascii 1.0\nelement vertex 3\n"
                                                  "property float x\nproperty float y\nproperty float z\n"
                                                  "property uchar red\nproperty uchar green\nproperty uchar blue\n"
                                                  "element face 1\nproperty list uchar int vertex_indices\n"
                                                  "end_header\n"
                                                  "0 0 0 255 0 0\n1 0 0 255 0 0\n0 1 0 255 0 0\n3 0 1 2\n");

    const osg::RefPtr<osg::NodePtr> model = ModelLoader().load(file).root;

    osg::NodePtr node = model.get();
    while (node->getNChildren() > 0) {
        node = node->getChild(0);
    }
    const viewer::GeometryData data = viewer::GeometryData::read(osg::GeometryPtr::dcast(node->getCore()));
    ASSERT_EQ(data.colours.size(), 3U);
    EXPECT_EQ(data.colours[0].red(), 1);
    EXPECT_EQ(data.colours[0].green(), 0);
    EXPECT_EQ(data.colours[0].alpha(), 1);
}

TEST_F(ModelLoaderTest, TheEngineArrivesWithItsNodesAndParts)
{
    const osg::RefPtr<osg::NodePtr> model = ModelLoader().load(KO_ENGINE_MODEL).root;

    std::set<osg::NodePtr> parts;
    int named = 0;
    std::vector<osg::NodePtr> pending{model.get()};
    while (!pending.empty()) {
        const osg::NodePtr node = pending.back();
        pending.pop_back();
        named += NodeUtils::getName(node).empty() || NodeUtils::isNameGivenByProgram(node) ? 0 : 1;
        if (osg::GeometryPtr::dcast(node->getCore()) != osg::NullFC) {
            parts.insert(viewer::findPart(node));
        }
        for (osg::UInt32 i = 0; i < node->getNChildren(); ++i) {
            pending.push_back(node->getChild(i));
        }
    }
    EXPECT_EQ(named, 83);
    EXPECT_EQ(parts.size(), 67U);
}

TEST_F(ModelLoaderTest, TheRootPutsTheModelInItsPlace)
{
    const std::string file =
        write("plate.fbx", "; FBX 7.3.0 project file\nFBXHeaderExtension:  {\n\tFBXVersion: 7300\n}\n"
                           "GlobalSettings:  {\n\tVersion: 1000\n\tProperties70:  {\n"
                           "\t\tP: \"UpAxis\", \"int\", \"Integer\", \"\",2\n"
                           "\t\tP: \"UnitScaleFactor\", \"double\", \"Number\", \"\",100\n\t}\n}\n"
                           "Objects:  {\n\tGeometry: 1, \"Geometry::\", \"Mesh\" {\n"
                           "\t\tVertices: *9 {\n\t\t\ta: 0,0,0,4,0,0,1,2,3\n\t\t}\n"
                           "\t\tPolygonVertexIndex: *3 {\n\t\t\ta: 0,1,-3\n\t\t}\n\t}\n"
                           "\tModel: 2, \"Model::part\", \"Mesh\" {\n\t\tVersion: 232\n\t}\n}\n"
                           "Connections:  {\n\tC: \"OO\",2,0\n\tC: \"OO\",1,2\n}\n");

    const viewer::LoadedModel model = ModelLoader().load(file);

    EXPECT_EQ(model.file, file);
    EXPECT_EQ(NodeUtils::getName(model.root.get()), "plate.fbx");
    EXPECT_TRUE(NodeUtils::isNameGivenByProgram(model.root.get()));
    ASSERT_EQ(model.root->getNChildren(), 1U);
    EXPECT_EQ(model.placement.upAxis, viewer::UpAxis::Z);
    EXPECT_EQ(model.placement.metresPerUnit, 1);
    EXPECT_TRUE(model.isUpAxisStated);
    EXPECT_TRUE(model.isUnitStated);
    EXPECT_EQ(model.parts, 1U);
    osg::Pnt3f corner(1, 2, 3);
    model.root->getToWorld().multMatrixPnt(corner);
    EXPECT_EQ(corner, osg::Pnt3f(1, 3, -2));
}

TEST_F(ModelLoaderTest, APlacementTurnsEitherAxisUpAndScales)
{
    const osg::RefPtr<osg::NodePtr> node(osg::Node::create());
    const auto place = [&](const viewer::ModelPlacement& placement) {
        placement.applyTo(node.get());
        osg::Pnt3f corner(1, 2, 3);
        node->getToWorld().multMatrixPnt(corner);
        return corner;
    };
    EXPECT_EQ(place({viewer::UpAxis::Z, 2}), osg::Pnt3f(1, 2, 3)) << "nothing to write it into";
    beginEditCP(node, osg::Node::CoreFieldMask);
    node->setCore(osg::Transform::create());
    endEditCP(node, osg::Node::CoreFieldMask);

    EXPECT_EQ(place({viewer::UpAxis::Y, 0}), osg::Pnt3f(1, 2, 3));
    EXPECT_EQ(place({viewer::UpAxis::Y, 2}), osg::Pnt3f(2, 4, 6));
    EXPECT_EQ(place({viewer::UpAxis::Z, 2}), osg::Pnt3f(2, 6, -4));
    EXPECT_EQ(place({viewer::UpAxis::X, 1}), osg::Pnt3f(-2, 1, 3));
    viewer::ModelPlacement().applyTo(osg::NullFC);
}

TEST_F(ModelLoaderTest, ProgressIsReportedStepByStep)
{
    std::vector<Step> steps;
    std::vector<double> shares;

    ModelLoader([&](const Step step, const double share) {
        if (steps.empty() || steps.back() != step) {
            steps.push_back(step);
        }
        shares.push_back(share);
    }).load(KO_ENGINE_MODEL);

    EXPECT_THAT(steps, ElementsAre(Step::Reading, Step::Preparing, Step::Building));
    EXPECT_THAT(shares, Each(Le(1)));
    EXPECT_EQ(shares.front(), 0);
    EXPECT_EQ(shares.back(), 1);
}

TEST_F(ModelLoaderTest, AFileNameMayHoldAnything)
{
    const std::string file = write("with blanks \xff and more.obj", TriangleObj);

    EXPECT_EQ(loadAndFail(file), "");
}

} // namespace

} // namespace quon::testing
