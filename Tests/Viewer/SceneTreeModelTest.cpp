// SPDX-License-Identifier: MIT
#include <InteractionTesting/SceneBuilder.h>
#include <InteractionTesting/SceneFixture.h>

#include "Viewer/Model/SceneChanges.h"
#include "Viewer/Window/SceneTreeModel.h"

#include <SceneUtilities/NodeUtils.h>
#include <SceneUtilities/koNodeUtils.h>

#include <OpenSG/OSGConfig.h>

#include <OpenSG/OSGGroup.h>

#include <QAbstractItemModelTester>
#include <QSignalSpy>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <set>
#include <string>
#include <vector>

namespace quon::testing {

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using viewer::SceneTreeModel;

osg::NodePtr addNamed(const osg::NodePtr& parent, const std::string& name)
{
    const osg::NodePtr node = addChild(parent, osg::Group::create());
    NodeUtils::setName(node, name, false);
    return node;
}

osg::NodePtr addPiece(const osg::NodePtr& parent)
{
    return addChild(parent, makeExtent(osg::Pnt3f(0, 0, 0), osg::Pnt3f(1, 1, 1)));
}

class SceneTreeModelTest : public SceneFixture {
protected:
    SceneTreeModelTest()
        : m_root(makeNode(osg::Group::create()))
        , m_tester(&m_tree, QAbstractItemModelTester::FailureReportingMode::Fatal)
    {
        viewer::SceneChanges::startRecording();
        NodeUtils::setName(m_root, "machine", false);
    }

    /** What a view shows when everything is expanded: names, indented. */
    std::vector<std::string> lines(const QModelIndex& parent = QModelIndex(), const std::string& indent = "") const
    {
        std::vector<std::string> found;
        for (int row = 0; row < m_tree.rowCount(parent); ++row) {
            const QModelIndex index = m_tree.index(row, 0, parent);
            found.push_back(indent + index.data().toString().toStdString());
            const std::vector<std::string> below = lines(index, indent + " ");
            found.insert(found.end(), below.begin(), below.end());
        }
        return found;
    }

    QVariant ask(const osg::NodePtr& node, int role, int column = 0) const
    {
        const QModelIndex index = m_tree.getIndex(node);
        return index.siblingAtColumn(column).data(role);
    }

    void followScene() { m_tree.sceneChanged(viewer::SceneChanges::take()); }

    NodeRef m_root;
    SceneTreeModel m_tree;
    QAbstractItemModelTester m_tester;
};

TEST_F(SceneTreeModelTest, NamedNodesAreRowsAndPiecesAreNot)
{
    const osg::NodePtr gear = addNamed(m_root, "gear");
    addPiece(gear);
    addPiece(gear);
    addNamed(gear, "pin");
    addNamed(m_root, "shaft");

    m_tree.setRoot(m_root);

    EXPECT_THAT(lines(), ElementsAre("machine", " gear", "  pin", " shaft"));
    EXPECT_EQ(m_tree.getTotalCount(), 4);
}

TEST_F(SceneTreeModelTest, NodesWithoutANameLetTheRowsBelowThemMoveUp)
{
    const osg::NodePtr between = addChild(m_root, osg::Group::create());
    addNamed(between, "gear");
    const osg::NodePtr named = addNamed(m_root, "group of the program");
    NodeUtils::setName(named, "group of the program", true);
    addNamed(named, "shaft");

    m_tree.setRoot(m_root);

    EXPECT_THAT(lines(), ElementsAre("machine", " gear", " shaft"));
}

TEST_F(SceneTreeModelTest, GeometryThatNoPartClaimsIsAPart)
{
    const NodeRef root = makeNode(osg::Group::create());
    const osg::NodePtr piece = addPiece(root);
    addNamed(root, "shaft");

    m_tree.setRoot(root);

    EXPECT_THAT(lines(), ElementsAre("Unnamed part", "shaft"));
    EXPECT_EQ(m_tree.getNode(m_tree.index(0, 0)), piece);
    m_tree.setRoot(osg::NullFC);
}

TEST_F(SceneTreeModelTest, AuxiliaryNodesAreLeftOutWithAllThatIsBelow)
{
    const osg::NodePtr helper = addNamed(m_root, "helper");
    addNamed(helper, "below");
    koNodeUtils::setIsAuxiliaryNode(helper, true);

    m_tree.setRoot(m_root);

    EXPECT_THAT(lines(), ElementsAre("machine"));
}

TEST_F(SceneTreeModelTest, WithoutARootThereAreNoRows)
{
    m_tree.setRoot(m_root);
    m_tree.setRoot(osg::NullFC);

    EXPECT_EQ(m_tree.rowCount(), 0);
    EXPECT_FALSE(m_tree.getIndex(m_root).isValid());
    EXPECT_FALSE(m_tree.getIndex(osg::NullFC).isValid());
    EXPECT_EQ(m_tree.getNode(QModelIndex()), osg::NullFC);
}

TEST_F(SceneTreeModelTest, EveryRowFindsItsNodeAndEveryNodeItsRow)
{
    const osg::NodePtr gear = addNamed(m_root, "gear");
    const osg::NodePtr piece = addPiece(gear);
    const osg::NodePtr pin = addNamed(gear, "pin");
    m_tree.setRoot(m_root);

    const QModelIndex index = m_tree.getIndex(pin);

    EXPECT_EQ(m_tree.getNode(index), pin);
    EXPECT_EQ(m_tree.getNode(index.parent()), gear);
    EXPECT_EQ(m_tree.getNode(index.parent().parent()), m_root.get());
    EXPECT_FALSE(index.parent().parent().parent().isValid());
    EXPECT_EQ(m_tree.findIndex(osg::getContainerId(pin)), index);
    EXPECT_FALSE(m_tree.getIndex(piece).isValid());
}

TEST_F(SceneTreeModelTest, ARowTellsHowManyRowsAreBelow)
{
    const osg::NodePtr gear = addNamed(m_root, "gear");
    addNamed(gear, "pin");
    addNamed(gear, "bolt");
    m_tree.setRoot(m_root);

    EXPECT_EQ(ask(gear, SceneTreeModel::ChildCountRole).toInt(), 2);

    m_tree.setFilter(QStringLiteral("pin"));
    EXPECT_EQ(ask(gear, SceneTreeModel::ChildCountRole).toInt(), 2);
    EXPECT_EQ(m_tree.rowCount(m_tree.getIndex(gear)), 1);
}

TEST_F(SceneTreeModelTest, TheToolTipIsTheWayToThePart)
{
    const osg::NodePtr pin = addNamed(addNamed(m_root, "gear"), "pin");
    m_tree.setRoot(m_root);

    EXPECT_EQ(ask(pin, Qt::ToolTipRole).toString(), QStringLiteral("machine / gear / pin"));
}

TEST_F(SceneTreeModelTest, ARowTellsWhetherItsPartOrAnythingAboveIsHidden)
{
    const osg::NodePtr gear = addNamed(m_root, "gear");
    const osg::NodePtr pin = addNamed(gear, "pin");
    m_tree.setRoot(m_root);

    osg::beginEditCP(gear, osg::Node::TravMaskFieldMask);
    gear->setTravMask(0);
    osg::endEditCP(gear, osg::Node::TravMaskFieldMask);

    EXPECT_TRUE(ask(gear, SceneTreeModel::HiddenRole).toBool());
    EXPECT_FALSE(ask(gear, SceneTreeModel::HiddenAboveRole).toBool());
    EXPECT_FALSE(ask(pin, SceneTreeModel::HiddenRole).toBool());
    EXPECT_TRUE(ask(pin, SceneTreeModel::HiddenAboveRole).toBool());
    EXPECT_EQ(ask(gear, Qt::ToolTipRole, SceneTreeModel::Visibility).toString(), QStringLiteral("Hidden"));
    EXPECT_EQ(ask(pin, Qt::ToolTipRole, SceneTreeModel::Visibility).toString(),
              QStringLiteral("Hidden with its group"));
    EXPECT_EQ(ask(m_root, Qt::ToolTipRole, SceneTreeModel::Visibility).toString(), QStringLiteral("Shown"));
}

TEST_F(SceneTreeModelTest, ARowTellsWhetherItsPartOrAnythingAboveIsLocked)
{
    const osg::NodePtr gear = addNamed(m_root, "gear");
    const osg::NodePtr pin = addNamed(gear, "pin");
    m_tree.setRoot(m_root);

    koNodeUtils::setIsEditable(gear, false);

    EXPECT_TRUE(ask(gear, SceneTreeModel::LockedRole).toBool());
    EXPECT_FALSE(ask(gear, SceneTreeModel::LockedAboveRole).toBool());
    EXPECT_FALSE(ask(pin, SceneTreeModel::LockedRole).toBool());
    EXPECT_TRUE(ask(pin, SceneTreeModel::LockedAboveRole).toBool());
    EXPECT_EQ(ask(pin, Qt::AccessibleTextRole, SceneTreeModel::Lock).toString(),
              QStringLiteral("Locked with its group"));
    EXPECT_EQ(ask(m_root, Qt::AccessibleTextRole, SceneTreeModel::Lock).toString(), QStringLiteral("Not locked"));
}

TEST_F(SceneTreeModelTest, NeighboursAreOneRange)
{
    std::vector<osg::NodePtr> parts;
    for (int i = 0; i < 6; ++i) {
        parts.push_back(addNamed(m_root, "part"));
    }
    const osg::NodePtr nested = addNamed(parts[5], "nested");
    m_tree.setRoot(m_root);

    const QItemSelection ranges = m_tree.getRanges(
        m_tree.getRows(std::set<osg::NodePtr>{parts[0], parts[1], parts[2], parts[4], parts[5], nested}));

    ASSERT_EQ(ranges.size(), 3);
    EXPECT_EQ(ranges[0].topLeft(), m_tree.getIndex(parts[0]));
    EXPECT_EQ(ranges[0].height(), 3);
    EXPECT_EQ(ranges[0].width(), SceneTreeModel::ColumnCount);
    EXPECT_EQ(ranges[1].topLeft(), m_tree.getIndex(parts[4]));
    EXPECT_EQ(ranges[1].height(), 2);
    // Next in number, but below another row.
    EXPECT_EQ(ranges[2].topLeft(), m_tree.getIndex(nested));
    EXPECT_EQ(m_tree.getRows(ranges).size(), 6U);
}

TEST_F(SceneTreeModelTest, NodesWithoutARowAreInNoRange)
{
    const osg::NodePtr piece = addPiece(m_root);
    m_tree.setRoot(m_root);

    EXPECT_THAT(m_tree.getRows(std::set<osg::NodePtr>{piece, osg::NullFC}), IsEmpty());
    EXPECT_TRUE(m_tree.getRanges({}).isEmpty());
}

TEST_F(SceneTreeModelTest, AFilterLeavesMatchesAndWhatIsAboveThem)
{
    const osg::NodePtr gear = addNamed(m_root, "Gear");
    addNamed(gear, "pin");
    addNamed(addNamed(m_root, "box"), "bevel gear");
    addNamed(m_root, "shaft");
    m_tree.setRoot(m_root);

    m_tree.setFilter(QStringLiteral("gear"));

    EXPECT_THAT(lines(), ElementsAre("machine", " Gear", " box", "  bevel gear"));
    EXPECT_TRUE(ask(gear, SceneTreeModel::MatchRole).toBool());
    EXPECT_FALSE(ask(m_root, SceneTreeModel::MatchRole).toBool());
    EXPECT_EQ(m_tree.rowCount(m_tree.getIndex(gear)), 0);

    m_tree.setFilter(QString());
    EXPECT_EQ(lines().size(), 6U);
    EXPECT_FALSE(ask(gear, SceneTreeModel::MatchRole).toBool());
}

TEST_F(SceneTreeModelTest, MatchesAreCountedFromTopToBottom)
{
    const osg::NodePtr box = addNamed(m_root, "box");
    const osg::NodePtr inBox = addNamed(box, "gear 1");
    const osg::NodePtr after = addNamed(m_root, "gear 2");
    m_tree.setRoot(m_root);

    m_tree.setFilter(QStringLiteral("gear"));

    ASSERT_EQ(m_tree.getMatchCount(), 2);
    EXPECT_EQ(m_tree.getNode(m_tree.getMatch(0)), inBox);
    EXPECT_EQ(m_tree.getNode(m_tree.getMatch(1)), after);
    EXPECT_EQ(m_tree.findMatch(m_tree.getIndex(after)), 1);
    EXPECT_EQ(m_tree.findMatch(m_tree.getIndex(box)), -1);
    EXPECT_EQ(m_tree.findMatch(QModelIndex()), -1);
    EXPECT_FALSE(m_tree.getMatch(2).isValid());
    EXPECT_FALSE(m_tree.getMatch(-1).isValid());
}

TEST_F(SceneTreeModelTest, AFilterThatNothingMatchesLeavesNothing)
{
    addNamed(m_root, "gear");
    m_tree.setRoot(m_root);

    m_tree.setFilter(QStringLiteral("screw"));

    EXPECT_EQ(m_tree.rowCount(), 0);
    EXPECT_EQ(m_tree.getMatchCount(), 0);
    EXPECT_FALSE(m_tree.getIndex(m_root).isValid());
}

TEST_F(SceneTreeModelTest, NodesThatComeAndGoAreFollowed)
{
    const osg::NodePtr gear = addNamed(m_root, "gear");
    m_tree.setRoot(m_root);
    followScene();

    addNamed(gear, "pin");
    followScene();
    EXPECT_THAT(lines(), ElementsAre("machine", " gear", "  pin"));

    osg::beginEditCP(m_root, osg::Node::ChildrenFieldMask);
    m_root->subChild(gear);
    osg::endEditCP(m_root, osg::Node::ChildrenFieldMask);
    followScene();
    EXPECT_THAT(lines(), ElementsAre("machine"));
}

TEST_F(SceneTreeModelTest, APieceThatGetsANameBecomesARow)
{
    const osg::NodePtr piece = addPiece(m_root);
    m_tree.setRoot(m_root);
    followScene();

    NodeUtils::setName(piece, "cover", false);
    followScene();

    EXPECT_THAT(lines(), ElementsAre("machine", " cover"));
}

TEST_F(SceneTreeModelTest, ChangesElsewhereChangeNothing)
{
    addNamed(m_root, "gear");
    m_tree.setRoot(m_root);
    followScene();
    const NodeRef other = makeNode(osg::Group::create());
    addNamed(other, "elsewhere");
    QSignalSpy resets(&m_tree, &QAbstractItemModel::modelReset);
    QSignalSpy changes(&m_tree, &QAbstractItemModel::dataChanged);

    followScene();

    EXPECT_EQ(resets.count(), 0);
    EXPECT_EQ(changes.count(), 0);
}

TEST_F(SceneTreeModelTest, RowsThatLookDifferentAreToldOncePerParent)
{
    std::vector<osg::NodePtr> parts;
    for (int i = 0; i < 4; ++i) {
        parts.push_back(addNamed(m_root, "part"));
    }
    const osg::NodePtr nested = addNamed(parts[3], "nested");
    m_tree.setRoot(m_root);
    followScene();
    QSignalSpy resets(&m_tree, &QAbstractItemModel::modelReset);
    QSignalSpy changes(&m_tree, &QAbstractItemModel::dataChanged);

    koNodeUtils::setIsEditable(parts[1], false);
    koNodeUtils::setIsEditable(parts[3], false);
    koNodeUtils::setIsEditable(nested, false);
    followScene();

    EXPECT_EQ(resets.count(), 0);
    ASSERT_EQ(changes.count(), 2);
    EXPECT_EQ(changes[0][0].toModelIndex(), m_tree.getIndex(parts[1]));
    EXPECT_EQ(changes[0][1].toModelIndex().siblingAtColumn(0), m_tree.getIndex(parts[3]));
    EXPECT_EQ(changes[1][0].toModelIndex(), m_tree.getIndex(nested));
}

TEST_F(SceneTreeModelTest, ChangesOfRowsThatTheFilterLeavesOutAreNotTold)
{
    const osg::NodePtr gear = addNamed(m_root, "gear");
    addNamed(m_root, "shaft");
    m_tree.setRoot(m_root);
    followScene();
    m_tree.setFilter(QStringLiteral("shaft"));
    QSignalSpy changes(&m_tree, &QAbstractItemModel::dataChanged);

    koNodeUtils::setIsEditable(gear, false);
    followScene();

    EXPECT_EQ(changes.count(), 0);
}

TEST_F(SceneTreeModelTest, VeryDeepRowsBecomeSiblings)
{
    osg::NodePtr deepest = m_root;
    for (int i = 0; i < SceneTreeModel::MaximumDepth + 50; ++i) {
        deepest = addNamed(deepest, "link");
    }

    m_tree.setRoot(m_root);

    int depth = 0;
    for (QModelIndex index = m_tree.getIndex(deepest); index.isValid(); index = index.parent()) {
        ++depth;
    }
    EXPECT_EQ(depth, SceneTreeModel::MaximumDepth);
    EXPECT_EQ(m_tree.getTotalCount(), SceneTreeModel::MaximumDepth + 51);
}

TEST_F(SceneTreeModelTest, ColumnsHaveTitles)
{
    EXPECT_EQ(m_tree.headerData(0, Qt::Horizontal).toString(), QStringLiteral("Name"));
    EXPECT_EQ(m_tree.headerData(1, Qt::Horizontal).toString(), QStringLiteral("Shown"));
    EXPECT_EQ(m_tree.headerData(2, Qt::Horizontal).toString(), QStringLiteral("Locked"));
    EXPECT_FALSE(m_tree.headerData(0, Qt::Vertical).isValid());
}

} // namespace

} // namespace quon::testing
