// SPDX-License-Identifier: MIT
#include "Viewer/Model/AssemblyGenerator.h"

#include <InteractionTesting/SceneFixture.h>

#include "Viewer/Model/GeometryData.h"
#include "Viewer/Model/ModelOutline.h"
#include "Viewer/Model/Part.h"
#include "Viewer/Model/SceneTraversal.h"

#include <SceneUtilities/NodeUtils.h>

#include <OpenSG/OSGTransform.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <set>
#include <string>
#include <vector>

namespace quon::testing {

namespace {

using ::testing::ElementsAre;
using viewer::AssemblyGenerator;
using viewer::GeometryData;
using viewer::GeometryInstance;
using viewer::ModelOutline;

/** Everything that a traversal shows of an assembly. */
class Inventory : private viewer::SceneVisitor {
public:
    explicit Inventory(const osg::NodePtr& root) { viewer::traverseScene(root, 0xFFFFFFFF, *this); }

    std::vector<GeometryInstance> instances;
    std::set<osg::NodePtr> parts;
    std::set<osg::NodeCorePtr> cores;
    std::set<osg::MaterialPtr> materials;

private:
    bool enterNode(const osg::NodePtr&) override { return true; }

    void visitGeometry(const GeometryInstance& instance) override
    {
        instances.push_back(instance);
        parts.insert(viewer::findPart(instance.node));
        cores.insert(instance.geometry);
        materials.insert(instance.material);
    }
};

// The names from the part up to the root.
std::vector<std::string> namesAbove(osg::NodePtr node)
{
    std::vector<std::string> names;
    for (; node != osg::NullFC; node = node->getParent()) {
        names.push_back(NodeUtils::getName(node));
    }
    return names;
}

class AssemblyGeneratorTest : public SceneFixture {};

class AssemblyGeneratorCountTest : public AssemblyGeneratorTest, public ::testing::WithParamInterface<int> {};

TEST_P(AssemblyGeneratorCountTest, AnAssemblyHasAsManyPartsAsWanted)
{
    const auto root = AssemblyGenerator::generate(GetParam());

    const Inventory inventory(root.get());

    EXPECT_EQ(inventory.parts.size(), static_cast<std::size_t>(GetParam()));
    EXPECT_EQ(inventory.instances.size(), static_cast<std::size_t>(GetParam()));
}

INSTANTIATE_TEST_SUITE_P(Counts, AssemblyGeneratorCountTest, ::testing::Values(1, 2, 19, 20, 21, 199, 200, 201, 5000));

TEST_F(AssemblyGeneratorTest, ACountBelowOneCountsAsOne)
{
    EXPECT_EQ(Inventory(AssemblyGenerator::generate(0).get()).parts.size(), 1U);
    EXPECT_EQ(Inventory(AssemblyGenerator::generate(-7).get()).parts.size(), 1U);
}

TEST_F(AssemblyGeneratorTest, PartsAreNamedByTheirPlaceInGroupsOfGroups)
{
    const auto root = AssemblyGenerator::generate(600);

    const Inventory inventory(root.get());

    EXPECT_THAT(namesAbove(inventory.instances.at(439).node),
                ElementsAre("", "bolt 8", "rack 2", "module 3", "level 1", "assembly"));
}

TEST_F(AssemblyGeneratorTest, PartsOfOneGroupHaveDifferentNames)
{
    const auto root = AssemblyGenerator::generate(20);

    const Inventory inventory(root.get());

    std::set<std::string> names;
    for (const osg::NodePtr& part : inventory.parts) {
        names.insert(NodeUtils::getName(part));
    }
    EXPECT_EQ(names.size(), 20U);
}

TEST_F(AssemblyGeneratorTest, ManyPartsShareFewGeometriesOfAFewTensOfTriangles)
{
    const auto root = AssemblyGenerator::generate(4000);

    const Inventory inventory(root.get());

    EXPECT_EQ(inventory.materials.size(), 8U);
    EXPECT_LE(inventory.cores.size(), 16U);
    for (const osg::NodeCorePtr& core : inventory.cores) {
        const GeometryData data = GeometryData::read(osg::GeometryPtr::dcast(core));
        EXPECT_GE(data.triangles.size() / 3, 12U);
        EXPECT_LE(data.triangles.size() / 3, 60U);
        EXPECT_EQ(data.normals.size(), data.positions.size());
    }
}

TEST_F(AssemblyGeneratorTest, TrianglesFaceTheSideOfTheirNormals)
{
    const auto root = AssemblyGenerator::generate(20);

    for (const osg::NodeCorePtr& core : Inventory(root.get()).cores) {
        const GeometryData data = GeometryData::read(osg::GeometryPtr::dcast(core));
        for (std::size_t i = 0; i < data.triangles.size(); i += 3) {
            const osg::Pnt3f& a = data.positions[data.triangles[i]];
            const osg::Vec3f ab = data.positions[data.triangles[i + 1]] - a;
            const osg::Vec3f ac = data.positions[data.triangles[i + 2]] - a;
            EXPECT_GT(ab.cross(ac).dot(data.normals[data.triangles[i]]), 0.0F);
        }
    }
}

TEST_F(AssemblyGeneratorTest, AnAssemblyExtendsAlikeInAllDirections)
{
    const auto root = AssemblyGenerator::generate(20000);

    const ModelOutline outline = ModelOutline::find(root.get());

    const osg::Vec3f extent = outline.maximum - outline.minimum;
    const auto [least, most] = std::minmax({extent[0], extent[1], extent[2]});
    EXPECT_GT(least, most / 2);
}

TEST_F(AssemblyGeneratorTest, TheSameCountGivesTheSameAssembly)
{
    const auto first = AssemblyGenerator::generate(900);
    const auto second = AssemblyGenerator::generate(900);

    const Inventory one(first.get());
    const Inventory other(second.get());

    ASSERT_EQ(one.instances.size(), other.instances.size());
    std::map<osg::GeometryPtr, osg::GeometryPtr> counterparts;
    for (std::size_t i = 0; i < one.instances.size(); ++i) {
        EXPECT_TRUE(one.instances[i].toWorld == other.instances[i].toWorld);
        EXPECT_EQ(namesAbove(one.instances[i].node), namesAbove(other.instances[i].node));
        const auto pair = counterparts.emplace(one.instances[i].geometry, other.instances[i].geometry).first;
        EXPECT_TRUE(pair->second == other.instances[i].geometry);
    }
}

} // namespace

} // namespace quon::testing
