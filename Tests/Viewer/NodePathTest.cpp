// SPDX-License-Identifier: MIT
#include <InteractionTesting/SceneFixture.h>

#include "Support/DrawnScene.h"

#include "Viewer/Model/NodePath.h"

#include <SceneUtilities/NodeUtils.h>
#include <SceneUtilities/koNodeUtils.h>

#include <OpenSG/OSGRefPtr.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <set>
#include <string>
#include <vector>

namespace quon::testing {

namespace {

using viewer::NodeDigest;
using viewer::NodePath;

/** A root with two groups of many children each. */
class NodePathTest : public SceneFixture {
protected:
    static constexpr osg::UInt32 Children = 40;

    NodePathTest()
        : m_root(makeTree())
    {}

    static osg::NodePtr makeTree()
    {
        const osg::NodePtr root = makeGroup({makeGroup(), makeGroup()});
        for (osg::UInt32 group = 0; group < 2; ++group) {
            for (osg::UInt32 i = 0; i < Children; ++i) {
                const osg::NodePtr child = makeGroup();
                NodeUtils::setName(child, "part", false);
                root->getChild(group)->addChild(child);
            }
        }
        return root;
    }

    osg::NodePtr node(const std::string& path) const { return NodePath::find(m_root.get(), path); }

    std::set<osg::NodePtr> nodes(const std::vector<std::string>& paths) const
    {
        std::set<osg::NodePtr> result;
        for (const std::string& path : paths) {
            result.insert(node(path));
        }
        return result;
    }

    osg::RefPtr<osg::NodePtr> m_root;
};

TEST_F(NodePathTest, EveryNodeIsFoundAtItsPath)
{
    EXPECT_EQ(NodePath::get(m_root.get(), m_root.get()), "/");
    EXPECT_EQ(node("/"), m_root.get());
    const osg::NodePtr child = m_root->getChild(1)->getChild(17);
    EXPECT_EQ(NodePath::get(m_root.get(), child), "/1/17");
    EXPECT_EQ(node("/1/17"), child);
}

TEST_F(NodePathTest, FewNodesAndManyHaveTheSamePaths)
{
    const osg::RefPtr<osg::NodePtr> other(makeGroup());
    std::vector<osg::NodePtr> some{m_root->getChild(1), osg::NullFC, other.get(), m_root.get()};
    const std::vector<std::string> expected{"/1", "", "", "/"};

    EXPECT_EQ(NodePath::getAll(m_root.get(), some), expected);

    std::vector<std::string> all = expected;
    for (osg::UInt32 i = Children; i > 0; --i) {
        some.push_back(m_root->getChild(1)->getChild(i - 1));
        all.push_back("/1/" + std::to_string(i - 1));
    }
    some.push_back(m_root.get());
    all.emplace_back("/");
    EXPECT_EQ(NodePath::getAll(m_root.get(), some), all);
    EXPECT_EQ(NodePath::getAll(osg::NullFC, {}), std::vector<std::string>());
}

TEST_F(NodePathTest, WhatIsNotWithinTheRootHasNoPath)
{
    const osg::RefPtr<osg::NodePtr> other(makeGroup());

    EXPECT_EQ(NodePath::get(m_root.get(), other.get()), "");
    EXPECT_EQ(NodePath::get(m_root->getChild(0), m_root.get()), "");
    EXPECT_EQ(NodePath::get(m_root.get(), osg::NullFC), "");
    for (const char* path : {"", "1", "/2", "/0/40", "/0/0/0", "/-1", "//0", "/0/", "/x", "/1000000000000"}) {
        EXPECT_EQ(node(path), osg::NodePtr()) << path;
    }
    EXPECT_EQ(NodePath::find(osg::NullFC, "/0"), osg::NodePtr());
}

TEST_F(NodePathTest, APathIsWrittenWithPlacesBehindSlashes)
{
    EXPECT_TRUE(NodePath::isPath("/"));
    EXPECT_TRUE(NodePath::isPath("/0/12"));
    for (const char* text : {"", "0", "name", "/name", "/0/", "//", "/1x", "/0 "}) {
        EXPECT_FALSE(NodePath::isPath(text)) << text;
    }
}

TEST_F(NodePathTest, TheSameNodesOfAnEqualModelHaveTheSameDigest)
{
    const NodeDigest first = NodeDigest::of(m_root.get(), nodes({"/0/3", "/1", "/1/39"}));
    m_root = makeTree();
    const NodeDigest second = NodeDigest::of(m_root.get(), nodes({"/0/3", "/1", "/1/39"}));

    EXPECT_EQ(first.count, 3U);
    EXPECT_EQ(first.checksum, second.checksum);
    EXPECT_NE(first.checksum, 0U);
}

TEST_F(NodePathTest, OtherNodesHaveAnotherDigestEvenWhereNamesAreEqual)
{
    std::set<std::uint64_t> checksums;
    for (const std::vector<std::string>& paths : std::vector<std::vector<std::string>>{
             {"/0/0"}, {"/0/1"}, {"/1/0"}, {"/1/1"}, {"/0"}, {"/"}, {"/0/0", "/1/1"}, {"/0/1", "/1/0"}}) {
        checksums.insert(NodeDigest::of(m_root.get(), nodes(paths)).checksum);
    }
    EXPECT_EQ(checksums.size(), 8U);

    const NodeDigest before = NodeDigest::of(m_root.get(), nodes({"/0/0"}));
    NodeUtils::setName(m_root->getChild(0), "renamed", false);
    EXPECT_NE(NodeDigest::of(m_root.get(), nodes({"/0/0"})), before);
}

TEST_F(NodePathTest, FewNodesAndManyAreCountedTheSameWay)
{
    std::set<osg::NodePtr> many;
    std::uint64_t sum = 0;
    for (osg::UInt32 i = 0; i < Children; ++i) {
        const std::set<osg::NodePtr> one = nodes({"/0/" + std::to_string(i)});
        many.insert(one.begin(), one.end());
        sum += NodeDigest::of(m_root.get(), one).checksum;
    }

    const NodeDigest digest = NodeDigest::of(m_root.get(), many);

    EXPECT_EQ(digest.count, Children);
    EXPECT_EQ(digest.checksum, sum);
}

TEST_F(NodePathTest, HiddenAndLockedNodesAreThoseOfTheirMarks)
{
    EXPECT_EQ(NodeDigest::ofHidden(m_root.get()), NodeDigest());
    EXPECT_EQ(NodeDigest::ofLocked(m_root.get()), NodeDigest());

    setTravMask(node("/0/5"), 0);
    koNodeUtils::setIsEditable(node("/1"), false);

    EXPECT_EQ(NodeDigest::ofHidden(m_root.get()), NodeDigest::of(m_root.get(), nodes({"/0/5"})));
    EXPECT_EQ(NodeDigest::ofLocked(m_root.get()).count, Children + 1);
    EXPECT_EQ(NodeDigest::ofModel(m_root.get(), 7).count, 7U);
    EXPECT_EQ(NodeDigest::ofModel(osg::NullFC, 0), NodeDigest());
}

} // namespace

} // namespace quon::testing
