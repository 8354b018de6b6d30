// SPDX-License-Identifier: MIT
#include "Viewer/Model/SceneMirror.h"

#include <InteractionTesting/SceneFixture.h>

#include "Support/DrawnScene.h"

#include <Extensions/SceneExtensions.h>

#include <OpenSG/OSGMaterialGroup.h>
#include <OpenSG/OSGRefPtr.h>
#include <OpenSG/OSGSwitch.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <map>
#include <random>
#include <set>
#include <tuple>
#include <vector>

namespace quon::testing {

namespace {

using ::testing::IsEmpty;
using viewer::GeometryInstance;
using viewer::SceneChanges;
using viewer::SceneMirror;

constexpr osg::UInt32 AllBits = 0xFFFFFFFF;

/** What is said of a geometry node: geometry, material, place. By ids, so that nothing of the scene is touched. */
using Said = std::tuple<osg::UInt32, osg::UInt32, std::array<float, 16>>;
using Shown = std::map<osg::UInt32, Said>;

Said say(const GeometryInstance& instance)
{
    std::array<float, 16> values{};
    std::copy_n(instance.toWorld.getValues(), 16, values.begin());
    return {osg::getContainerId(instance.geometry),
            instance.material == osg::NullFC ? 0 : osg::getContainerId(instance.material), values};
}

class Reference : private viewer::SceneVisitor {
public:
    explicit Reference(const osg::NodePtr& root, const osg::UInt32 mask = AllBits)
    {
        viewer::traverseScene(root, mask, *this);
    }

    Shown shown;

private:
    bool enterNode(const osg::NodePtr&) override { return true; }

    void visitGeometry(const GeometryInstance& instance) override
    {
        shown[osg::getContainerId(instance.node)] = say(instance);
    }
};

class SceneMirrorTest : public SceneFixture, protected SceneMirror::Listener {
protected:
    SceneMirrorTest()
        : m_root(makeGroup())
        , m_mirror(*this)
    {}

    ~SceneMirrorTest() override { m_root = osg::NullFC; }

    bool isWanted(const osg::NodePtr& node) override { return m_unwanted.count(osg::getContainerId(node)) == 0; }

    void geometryShown(const std::size_t place, const GeometryInstance& instance) override
    {
        ++m_calls;
        m_shown[place] = {osg::getContainerId(instance.node), say(instance)};
    }

    void geometryGone(const std::size_t place) override
    {
        ++m_calls;
        EXPECT_EQ(m_shown.erase(place), 1U);
    }

    Shown update(const osg::UInt32 mask = AllBits)
    {
        m_calls = 0;
        m_mirror.sceneChanged(SceneChanges::take());
        m_mirror.update(m_root.get(), mask);
        return getShown();
    }

    Shown getShown() const
    {
        Shown shown;
        for (const auto& [place, entry] : m_shown) {
            EXPECT_TRUE(shown.emplace(entry.first, entry.second).second) << "shown twice";
        }
        return shown;
    }

    static void add(const osg::NodePtr& parent, const osg::NodePtr& child)
    {
        beginEditCP(parent, osg::Node::ChildrenFieldMask);
        parent->addChild(child);
        endEditCP(parent, osg::Node::ChildrenFieldMask);
    }

    static osg::NodePtr makeLeaf() { return makeNode(makeRectangle(0, 0, 1, 1, 0, osg::NullFC)); }

    osg::RefPtr<osg::NodePtr> m_root;
    SceneMirror m_mirror;
    std::map<std::size_t, std::pair<osg::UInt32, Said>> m_shown;
    std::set<osg::UInt32> m_unwanted;
    int m_calls = 0;
};

TEST_F(SceneMirrorTest, NothingIsShownOfANullRoot)
{
    add(m_root.get(), makeLeaf());
    EXPECT_EQ(update().size(), 1U);

    m_root = osg::NullFC;

    EXPECT_THAT(update(), IsEmpty());
    EXPECT_EQ(m_mirror.getNodeCount(), 0U);
}

TEST_F(SceneMirrorTest, AnotherMaskBeginsAfresh)
{
    const osg::NodePtr leaf = makeLeaf();
    setTravMask(leaf, 2);
    add(m_root.get(), leaf);

    EXPECT_EQ(update(3).size(), 1U);
    EXPECT_THAT(update(1), IsEmpty());
}

TEST_F(SceneMirrorTest, AnUnchangedSceneIsNotToldAgain)
{
    add(m_root.get(), makeTransform(translation(1, 2, 3), {makeLeaf(), makeLeaf()}));
    update();

    update();

    EXPECT_EQ(m_calls, 0);
}

TEST_F(SceneMirrorTest, OneMoreAmongManyIsToldAlone)
{
    for (int i = 0; i < 5000; ++i) {
        add(m_root.get(), makeLeaf());
    }
    update();

    const osg::NodePtr late = makeLeaf();
    add(m_root.get(), late);
    const Shown shown = update();

    EXPECT_EQ(m_calls, 1);
    EXPECT_EQ(shown.count(osg::getContainerId(late)), 1U);
}

TEST_F(SceneMirrorTest, OneLessAmongManyIsToldAlone)
{
    for (int i = 0; i < 5000; ++i) {
        add(m_root.get(), makeLeaf());
    }
    update();

    const osg::NodePtr removed = m_root->getChild(2500);
    beginEditCP(m_root, osg::Node::ChildrenFieldMask);
    m_root->subChild(removed);
    endEditCP(m_root, osg::Node::ChildrenFieldMask);

    EXPECT_EQ(update().size(), 4999U);
    EXPECT_EQ(m_calls, 1);
}

TEST_F(SceneMirrorTest, WhatNobodyWantsIsLeftOutWithAllBelow)
{
    const osg::NodePtr group = makeGroup({makeLeaf()});
    add(m_root.get(), group);
    add(m_root.get(), makeLeaf());
    EXPECT_EQ(update().size(), 2U);

    m_unwanted.insert(osg::getContainerId(group));
    beginEditCP(group, osg::AttachmentContainer::AttachmentsFieldMask);
    endEditCP(group, osg::AttachmentContainer::AttachmentsFieldMask);

    EXPECT_EQ(update().size(), 1U);
}

TEST_F(SceneMirrorTest, ARootFollowsTheTransformsAboveIt)
{
    const osg::TransformPtr transform = osg::Transform::create();
    const osg::NodePtr inner = makeGroup({makeLeaf()});
    const osg::RefPtr<osg::NodePtr> outer(makeNode(transform, {inner}));
    m_root = inner;
    update();

    beginEditCP(transform, osg::Transform::MatrixFieldMask);
    transform->setMatrix(translation(7, 0, 0));
    endEditCP(transform, osg::Transform::MatrixFieldMask);

    EXPECT_EQ(update(), Reference(inner).shown);
    m_root = osg::NullFC;
    m_mirror.clear();
}

TEST_F(SceneMirrorTest, AnEditThatNobodyReportedIsFoundAtOnceInASmallScene)
{
    const osg::TransformPtr transform = osg::Transform::create();
    add(m_root.get(), makeNode(transform, {makeLeaf()}));
    update();

    transform->setMatrix(translation(7, 0, 0));

    EXPECT_EQ(update(), Reference(m_root.get()).shown);
}

TEST_F(SceneMirrorTest, AnEditThatNobodyReportedIsFoundInTheEndInALargeScene)
{
    const osg::NodePtr leaf = makeLeaf();
    add(m_root.get(), leaf);
    for (int i = 0; i < 9999; ++i) {
        add(m_root.get(), makeLeaf());
    }
    update();

    leaf->setTravMask(0);
    for (int i = 0; i < 10; ++i) {
        update();
    }

    EXPECT_EQ(getShown().size(), 9999U);
}

TEST_F(SceneMirrorTest, TheDestructionOfTheRootEndsEverything)
{
    add(m_root.get(), makeLeaf());
    update();

    m_root = makeGroup();
    m_mirror.sceneChanged(SceneChanges::take());

    EXPECT_THAT(getShown(), IsEmpty());
    EXPECT_THAT(update(), IsEmpty());
}

/** A scene that changes at random: the mirror has to say what a traversal of the whole says. */
class SceneMirrorRandomTest : public SceneMirrorTest, public ::testing::WithParamInterface<unsigned> {
protected:
    SceneMirrorRandomTest()
        : m_random(GetParam())
    {
        for (int i = 0; i < 3; ++i) {
            m_materials.emplace_back(osg::MaterialPtr(makePlainMaterial(osg::Color3f(1, 0, 0))));
            m_geometries.emplace_back(makeRectangle(0, 0, 1, 1, 0, m_materials.back().get()));
        }
    }

    ~SceneMirrorRandomTest() override { m_root = osg::NullFC; }

    unsigned roll(const unsigned sides) { return static_cast<unsigned>(m_random() % sides); }

    osg::NodeCorePtr makeCore()
    {
        switch (roll(8)) {
        case 0:
        case 1: {
            const osg::TransformPtr transform = osg::Transform::create();
            transform->setMatrix(translation(static_cast<float>(roll(9)), 0, 0));
            return transform;
        }
        case 2: {
            const osg::MaterialGroupPtr group = osg::MaterialGroup::create();
            if (roll(3) > 0) {
                group->setMaterial(m_materials[roll(3)].get());
            }
            return group;
        }
        case 3: {
            const osg::SwitchPtr choosing = osg::Switch::create();
            choosing->setChoice(static_cast<osg::Int32>(roll(5)) - 2);
            return choosing;
        }
        case 4:
            return osg::Group::create();
        default:
            return m_geometries[roll(3)].get();
        }
    }

    osg::NodePtr makeTree(const unsigned depth)
    {
        const osg::NodePtr node = makeNode(makeCore());
        for (unsigned i = roll(4); depth > 0 && i > 0; --i) {
            node->addChild(makeTree(depth - 1));
        }
        return node;
    }

    std::vector<osg::NodePtr> getNodes() const
    {
        std::vector<osg::NodePtr> nodes{m_root.get()};
        for (std::size_t i = 0; i < nodes.size(); ++i) {
            for (osg::UInt32 child = 0; child < nodes[i]->getNChildren(); ++child) {
                nodes.push_back(nodes[i]->getChild(child));
            }
        }
        return nodes;
    }

    static bool isBelow(osg::NodePtr node, const osg::NodePtr& ancestor)
    {
        while (node != osg::NullFC && node != ancestor) {
            node = node->getParent();
        }
        return node == ancestor;
    }

    void editCore(const osg::NodePtr& node)
    {
        const osg::NodeCorePtr core = node->getCore();
        beginEditCP(core);
        if (const osg::TransformPtr transform = osg::TransformPtr::dcast(core); transform != osg::NullFC) {
            transform->setMatrix(translation(0, static_cast<float>(roll(9)), 0));
        } else if (const osg::SwitchPtr choosing = osg::SwitchPtr::dcast(core); choosing != osg::NullFC) {
            choosing->setChoice(static_cast<osg::Int32>(roll(5)) - 2);
        } else if (const osg::MaterialGroupPtr group = osg::MaterialGroupPtr::dcast(core); group != osg::NullFC) {
            group->setMaterial(m_materials[roll(3)].get());
        } else if (const osg::GeometryPtr geometry = osg::GeometryPtr::dcast(core); geometry != osg::NullFC) {
            extensions::setOverwriteMaterial(geometry, roll(2) == 0);
            geometry->setMaterial(m_materials[roll(3)].get());
        }
        endEditCP(core);
    }

    void edit()
    {
        const std::vector<osg::NodePtr> nodes = getNodes();
        const osg::NodePtr node = nodes[roll(static_cast<unsigned>(nodes.size()))];
        const osg::NodePtr other = nodes[roll(static_cast<unsigned>(nodes.size()))];
        switch (roll(6)) {
        case 0:
            setTravMask(node, roll(3) == 0 ? 0 : AllBits);
            break;
        case 1:
            editCore(node);
            break;
        case 2:
            beginEditCP(node, osg::Node::CoreFieldMask);
            node->setCore(makeCore());
            endEditCP(node, osg::Node::CoreFieldMask);
            break;
        case 3:
            if (!isBelow(other, node)) {
                beginEditCP(other, osg::Node::ChildrenFieldMask);
                other->insertChild(roll(3), node);
                endEditCP(other, osg::Node::ChildrenFieldMask);
            }
            break;
        case 4:
            if (nodes.size() > 60 && node != m_root) {
                const osg::NodePtr parent = node->getParent();
                beginEditCP(parent, osg::Node::ChildrenFieldMask);
                parent->subChild(node);
                endEditCP(parent, osg::Node::ChildrenFieldMask);
            }
            break;
        default:
            if (nodes.size() < 300) {
                add(node, makeTree(3));
            }
        }
    }

    std::mt19937 m_random;
    std::vector<osg::RefPtr<osg::MaterialPtr>> m_materials;
    std::vector<osg::RefPtr<osg::GeometryPtr>> m_geometries;
};

TEST_P(SceneMirrorRandomTest, TheMirrorSaysWhatATraversalSays)
{
    std::size_t most = 0;
    for (int round = 0; round < 300; ++round) {
        for (unsigned i = roll(4); i > 0; --i) {
            edit();
        }
        const Shown expected = Reference(m_root.get()).shown;
        ASSERT_EQ(update(), expected) << "round " << round;
        most = std::max(most, expected.size());
    }
    EXPECT_GT(most, 0U);
}

TEST_P(SceneMirrorRandomTest, TheReportsAloneAreEnough)
{
    m_mirror.setChecksPerUpdate(0);
    for (int round = 0; round < 300; ++round) {
        for (unsigned i = roll(4); i > 0; --i) {
            edit();
        }
        ASSERT_EQ(update(), Reference(m_root.get()).shown) << "round " << round;
    }
}

INSTANTIATE_TEST_SUITE_P(Seeds, SceneMirrorRandomTest, ::testing::Range(1U, 21U));

} // namespace

} // namespace quon::testing
