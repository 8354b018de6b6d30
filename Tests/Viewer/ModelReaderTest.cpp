// SPDX-License-Identifier: MIT
#include "Support/TemporaryFolder.h"

#include "Viewer/Model/ModelReader.h"
#include "Viewer/Model/ViewerError.h"

#include <OpenSG/OSGGL.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <ostream>
#include <string>
#include <thread>
#include <vector>

namespace quon::testing {

namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using viewer::LoadCancelled;
using viewer::LoadControl;
using viewer::ModelData;
using viewer::ModelReader;
using viewer::UpAxis;
using viewer::ViewerError;

const char* const Triangle = "o first\nv 0 0 0\nv 1 0 0\nv 0 1 0\nf 1 2 3\n";

// A triangle with a corner at 1, 2, 3, in a node of its own. %ASSET% and %NODE% are replaced.
const char* const Collada = R"(<?xml version="1.0"?>
<COLLADA xmlns="http://www.collada.org/2005/11/COLLADASchema" version="1.4.1">
 <asset>%ASSET%</asset>
 <library_geometries><geometry id="plate" name="plate"><mesh>
  <source id="p"><float_array id="a" count="9">0 0 0 4 0 0 1 2 3</float_array>
   <technique_common><accessor source="#a" count="3" stride="3">
    <param name="X" type="float"/><param name="Y" type="float"/><param name="Z" type="float"/>
   </accessor></technique_common></source>
  <vertices id="v"><input semantic="POSITION" source="#p"/></vertices>
  <triangles count="1"><input semantic="VERTEX" source="#v" offset="0"/><p>0 1 2</p></triangles>
 </mesh></geometry></library_geometries>
 <library_visual_scenes><visual_scene id="scene">
  <node id="part" name="part"><instance_geometry url="#plate"/>%NODE%</node>
 </visual_scene></library_visual_scenes>
 <scene><instance_visual_scene url="#scene"/></scene>
</COLLADA>)";

std::string replaced(std::string text, const std::string& from, const std::string& to)
{
    return text.replace(text.find(from), from.size(), to);
}

std::string makeCollada(const std::string& asset, const std::string& node = {})
{
    return replaced(replaced(Collada, "%ASSET%", asset), "%NODE%", node);
}

std::string makeFbx(const std::string& settings)
{
    return "; FBX 7.3.0 project file\n"
           "FBXHeaderExtension:  {\n\tFBXVersion: 7300\n}\n"
           "GlobalSettings:  {\n\tVersion: 1000\n\tProperties70:  {\n" +
           settings +
           "\t}\n}\n"
           "Objects:  {\n"
           "\tGeometry: 1, \"Geometry::\", \"Mesh\" {\n"
           "\t\tVertices: *9 {\n\t\t\ta: 0,0,0,4,0,0,1,2,3\n\t\t}\n"
           "\t\tPolygonVertexIndex: *3 {\n\t\t\ta: 0,1,-3\n\t\t}\n"
           "\t}\n"
           "\tModel: 2, \"Model::part\", \"Mesh\" {\n\t\tVersion: 232\n\t}\n"
           "}\n"
           "Connections:  {\n\tC: \"OO\",2,0\n\tC: \"OO\",1,2\n}\n";
}

// Where the model's third corner comes to lie, in the coordinates that the reader hands over.
osg::Pnt3f thirdCorner(const ModelData& data)
{
    osg::Matrix toWorld;
    for (std::size_t node = data.nodes.size() - 1;; node = data.nodes[node].parent) {
        osg::Matrix matrix = data.nodes[node].matrix;
        matrix.mult(toWorld);
        toWorld = matrix;
        if (node == 0) {
            break;
        }
    }
    osg::Pnt3f corner = data.meshes.at(0).positions.at(2);
    toWorld.multMatrixPnt(corner);
    return corner;
}

MATCHER_P3(IsAt, x, y, z, "")
{
    static_cast<void>(result_listener);
    return std::abs(arg[0] - static_cast<float>(x)) < 1e-5F && std::abs(arg[1] - static_cast<float>(y)) < 1e-5F &&
           std::abs(arg[2] - static_cast<float>(z)) < 1e-5F;
}

class ModelReaderTest : public ::testing::Test {
protected:
    static ModelData read(const std::string& file)
    {
        const LoadControl control;
        return ModelReader::read(file, control);
    }

    ModelData readText(const std::string& name, const std::string& content)
    {
        return read(m_folder.write(name, content));
    }

    std::string readAndFail(const std::string& file)
    {
        try {
            read(file);
            return {};
        } catch (const ViewerError& error) {
            return error.what();
        }
    }

    static std::vector<std::string> linesOf(const ModelData& data)
    {
        std::vector<std::string> lines;
        for (const QString& line : data.missing) {
            lines.push_back(line.toStdString());
        }
        return lines;
    }

    TemporaryFolder m_folder;
};

TEST_F(ModelReaderTest, AFormatWithoutUnitsLeavesThemToTheUser)
{
    for (const auto& [name, content] : std::vector<std::pair<std::string, std::string>>{
             {"plate.obj", Triangle},
             {"plate.stl", "solid a\nfacet normal 0 0 1\nouter loop\nvertex 0 0 0\nvertex 1 0 0\nvertex 0 1 0\n"
                           "endloop\nendfacet\nendsolid a\n"},
             {"plate.ply", "ply\nformat ascii 1.0\nelement vertex 3\nproperty float x\nproperty float y\n"
                           "property float z\nelement face 1\nproperty list uchar int vertex_indices\nend_header\n"
                           "0 0 0\n1 0 0\n0 1 0\n3 0 1 2\n"}}) {
        const ModelData data = readText(name, content);

        EXPECT_EQ(data.metresPerUnit, 0) << name;
        EXPECT_EQ(data.upAxis, UpAxis::Y) << name;
        EXPECT_FALSE(data.isUpAxisStated) << name;
        EXPECT_THAT(linesOf(data), IsEmpty()) << name;
    }
}

TEST_F(ModelReaderTest, ColladaArrivesInMetresWithYUp)
{
    const ModelData data =
        readText("plate.dae", makeCollada("<unit meter=\"0.01\" name=\"centimeter\"/><up_axis>Z_UP</up_axis>"));

    EXPECT_EQ(data.metresPerUnit, 1);
    EXPECT_EQ(data.upAxis, UpAxis::Y);
    EXPECT_TRUE(data.isUpAxisStated);
    EXPECT_THAT(thirdCorner(data), IsAt(0.01, 0.03, -0.02));
}

TEST_F(ModelReaderTest, FbxKeepsItsCoordinatesAndSaysWhatTheyMean)
{
    const ModelData data =
        readText("plate.fbx", makeFbx("\t\tP: \"UpAxis\", \"int\", \"Integer\", \"\",2\n"
                                      "\t\tP: \"UnitScaleFactor\", \"double\", \"Number\", \"\",2.54\n"));

    EXPECT_NEAR(data.metresPerUnit, 0.0254, 1e-8);
    EXPECT_EQ(data.upAxis, UpAxis::Z);
    EXPECT_TRUE(data.isUpAxisStated);
    EXPECT_THAT(thirdCorner(data), IsAt(1, 2, 3));
}

TEST_F(ModelReaderTest, FbxWithoutSettingsIsInCentimetresWithYUp)
{
    const ModelData data = readText("plate.fbx", makeFbx(""));

    EXPECT_NEAR(data.metresPerUnit, 0.01, 1e-8);
    EXPECT_EQ(data.upAxis, UpAxis::Y);
    EXPECT_TRUE(data.isUpAxisStated);
}

TEST_F(ModelReaderTest, AmfIsInItsUnitOrInMillimetres)
{
    const auto makeAmf = [](const std::string& attributes) {
        return "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n<amf " + attributes +
               "version=\"1.1\"><object id=\"0\"><mesh><vertices>"
               "<vertex><coordinates><x>0</x><y>0</y><z>0</z></coordinates></vertex>"
               "<vertex><coordinates><x>1</x><y>0</y><z>0</z></coordinates></vertex>"
               "<vertex><coordinates><x>0</x><y>1</y><z>0</z></coordinates></vertex></vertices>"
               "<volume><triangle><v1>0</v1><v2>1</v2><v3>2</v3></triangle></volume></mesh></object></amf>\n";
    };

    EXPECT_EQ(readText("a.amf", makeAmf("")).metresPerUnit, 0.001);
    EXPECT_EQ(readText("b.amf", makeAmf("unit=\"inch\" ")).metresPerUnit, 0.0254);
    EXPECT_EQ(readText("c.amf", makeAmf("unit=\"meter\" ")).metresPerUnit, 1);
}

TEST_F(ModelReaderTest, AMissingMaterialLibraryIsMentioned)
{
    EXPECT_THAT(linesOf(readText("plate.obj", std::string("mtllib red.mtl\n") + Triangle)),
                ElementsAre("The file red.mtl is missing."));
    EXPECT_THAT(linesOf(readText("plate.obj", std::string("mtllib plate.mtl\n") + Triangle)),
                ElementsAre("The file plate.mtl is missing."));
}

TEST_F(ModelReaderTest, AMissingTextureIsNotMentioned)
{
    m_folder.write("wood.mtl", "newmtl wood\nKd 1 0.5 0\nmap_Kd wood.png\n");

    EXPECT_THAT(linesOf(readText("plate.obj", std::string("mtllib wood.mtl\nusemtl wood\n") + Triangle)), IsEmpty());
}

TEST_F(ModelReaderTest, AMaterialThatNobodyCouldSeeIsOpaque)
{
    for (const char* opacity : {"0", "-1", "1e-30"}) {
        m_folder.write("glass.mtl", std::string("newmtl glass\nd ") + opacity + "\n");
        const ModelData data = readText("pane.obj", std::string("mtllib glass.mtl\nusemtl glass\n") + Triangle);

        ASSERT_LT(data.meshes.at(0).material, data.materials.size());
        EXPECT_EQ(data.materials[data.meshes[0].material].transparency, 0) << opacity;
    }
}

TEST_F(ModelReaderTest, AMissingBufferIsTheReasonWhyAModelCannotBeRead)
{
    const std::string file = m_folder.write("plate.gltf", R"({"asset": {"version": "2.0"}, "scene": 0,
 "scenes": [{"nodes": [0]}], "nodes": [{"mesh": 0}], "meshes": [{"primitives": [{"attributes": {"POSITION": 0}}]}],
 "accessors": [{"bufferView": 0, "componentType": 5126, "count": 3, "type": "VEC3", "min": [0,0,0], "max": [1,1,0]}],
 "bufferViews": [{"buffer": 0, "byteLength": 36}], "buffers": [{"byteLength": 36, "uri": "plate.bin"}]})");

    EXPECT_EQ(readAndFail(file), file + ": refers to plate.bin, which is not there");
}

TEST_F(ModelReaderTest, AGeometryThatIsNotInTheFileIsMentioned)
{
    const ModelData data = readText("plate.dae", makeCollada("", "<instance_geometry url=\"#gone\"/>"));

    EXPECT_EQ(data.meshes.size(), 1U);
    EXPECT_THAT(linesOf(data), ElementsAre(HasSubstr("\"gone\"")));
}

TEST_F(ModelReaderTest, FacesWithoutAPlaceAreLeftOutAndCounted)
{
    const ModelData data =
        readText("plate.obj", "o a\nv 0 0 0\nv 1 0 0\nv 0 1 0\nv nan 0 0\nf 1 2 3\nf 2 3 4\nf 1 3 4\n");

    ASSERT_EQ(data.meshes.size(), 1U);
    EXPECT_EQ(data.meshes[0].indices.size(), 3U);
    EXPECT_THAT(linesOf(data), ElementsAre("2 faces could not be read."));
}

TEST_F(ModelReaderTest, AMeshMayLoseItsOnlyPolygon)
{
    // Assimp would end the process: the mesh still said that it had one.
    const ModelData data = readText("plate.obj", "o a\nv 0 0 0\nv 1 0 0\nv 0 1 0\nv nan 0 0\nf 1 2 3\nf 1 2 3 4\n");

    ASSERT_EQ(data.meshes.size(), 1U);
    EXPECT_EQ(data.meshes[0].indices.size(), 3U);
    EXPECT_THAT(linesOf(data), ElementsAre("1 faces could not be read."));
}

TEST_F(ModelReaderTest, MeshesThatCannotBeShownAreLeftOutAndCounted)
{
    const ModelData data = readText("plates.obj", "o a\nv 0 0 0\nv 1 0 0\nv 0 1 0\nf 1 2 3\n"
                                                  "o b\nv nan 0 0\nv 1 0 0\nv 0 1 0\nf 4 5 6\n"
                                                  "o c\nv 0 0 1\nv 1 0 1\nv 0 1 1\nf 7 8 9\n");

    EXPECT_EQ(data.meshes.size(), 2U);
    EXPECT_EQ(data.countParts(), 2U);
    EXPECT_THAT(linesOf(data), ElementsAre("1 of 3 meshes could not be read."));
}

TEST_F(ModelReaderTest, AModelOfWhichNothingCanBeShownIsRefused)
{
    const std::string file = m_folder.write("plate.obj", "o a\nv nan 0 0\nv 1 0 0\nv 0 1 0\nf 1 2 3\n");

    EXPECT_EQ(readAndFail(file), file + ": none of its meshes can be shown");
}

TEST_F(ModelReaderTest, ACloudOfPointsIsAMeshOfPoints)
{
    const ModelData data = readText("cloud.ply", "ply\nformat ascii 1.0\nelement vertex 3\nproperty float x\n"
                                                 "property float y\nproperty float z\nend_header\n"
                                                 "0 0 0\n1 0 0\n0 1 0\n");

    ASSERT_EQ(data.meshes.size(), 1U);
    EXPECT_EQ(data.meshes[0].primitive, GL_POINTS);
    EXPECT_EQ(data.meshes[0].positions.size(), 3U);
    EXPECT_THAT(data.meshes[0].indices, ElementsAre(0U, 1U, 2U));
}

TEST_F(ModelReaderTest, ACancelledReadEndsBeforeItBegins)
{
    LoadControl control;
    control.cancel();

    EXPECT_THROW(ModelReader::read(m_folder.write("plate.obj", Triangle), control), LoadCancelled);
}

TEST_F(ModelReaderTest, AReadCanBeCancelledAtEveryReport)
{
    std::string content = "o strip\n";
    for (int i = 0; i < 3000; ++i) {
        content += "v " + std::to_string(i) + " " + std::to_string(i % 2) + " 0\n";
    }
    for (int i = 1; i + 2 <= 3000; ++i) {
        content += "f " + std::to_string(i) + " " + std::to_string(i + 1) + " " + std::to_string(i + 2) + "\n";
    }
    const std::string file = m_folder.write("plate.obj", content);
    int reports = 0;
    const LoadControl counting([&](LoadControl::Step, double) { ++reports; });
    ModelReader::read(file, counting);
    ASSERT_GT(reports, 10);

    // The last report is that all is done.
    for (int last = 1; last < reports; last += 7) {
        LoadControl* pointer = nullptr;
        int heard = 0;
        LoadControl control([&](LoadControl::Step, double) {
            if (++heard == last) {
                pointer->cancel();
            }
        });
        pointer = &control;

        EXPECT_THROW(ModelReader::read(file, control), LoadCancelled) << "at report " << last;
        EXPECT_LE(heard, reports);
    }
}

TEST_F(ModelReaderTest, WhatAFileLacksIsToldToItsOwnReaderAlone)
{
    const std::string good = m_folder.write("good.obj", Triangle);
    const std::string bad = m_folder.write("bad.dae", makeCollada("", "<instance_geometry url=\"#gone\"/>"));
    std::atomic<int> rightAnswers{0};
    const auto readOften = [&](const std::string& file, const bool lacksSomething) {
        for (int i = 0; i < 50; ++i) {
            rightAnswers += read(file).missing.isEmpty() != lacksSomething ? 1 : 0;
        }
    };

    std::thread other(readOften, good, false);
    readOften(bad, true);
    other.join();

    EXPECT_EQ(rightAnswers, 100);
}

TEST_F(ModelReaderTest, FormatsHaveNamesAndExtensions)
{
    std::vector<std::string> extensions;
    for (const ModelReader::Format& format : ModelReader::getFormats()) {
        EXPECT_FALSE(format.name.isEmpty());
        EXPECT_FALSE(format.extensions.isEmpty());
        for (const QString& extension : format.extensions) {
            extensions.push_back(extension.toStdString());
        }
    }
    for (const char* extension : {"obj", "glb", "gltf", "stl", "ply", "dae", "fbx", "3ds"}) {
        EXPECT_THAT(extensions, Contains(extension));
    }
}

} // namespace

} // namespace quon::testing
