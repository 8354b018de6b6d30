// SPDX-License-Identifier: MIT
#include "SceneParts.h"
#include "Support/StandardError.h"

#include <OpenSG/OSGBoxVolume.h>
#include <OpenSG/OSGChangeList.h>
#include <OpenSG/OSGColor.h>
#include <OpenSG/OSGGroup.h>
#include <OpenSG/OSGMatrix.h>
#include <OpenSG/OSGQuaternion.h>

#include <gtest/gtest.h>

#include <sstream>
#include <string>

// What a look from a debugger shows.
namespace {

using namespace osg;
using quon::testing::addNode;
using quon::testing::hold;
using quon::testing::makeNode;
using quon::testing::StandardError;

class EmbeddedDumpTest : public quon::testing::SceneFixture {};

template <class ValueT>
std::string toText(const ValueT& value)
{
    std::ostringstream stream;
    stream << value;
    return stream.str();
}

template <class HandleT>
std::string idOf(const HandleT& handle)
{
    return std::to_string(getContainerId(handle));
}

TEST_F(EmbeddedDumpTest, AContainerTellsItsTypeItsNumberAndItsReferences)
{
    const auto group = hold(Group::create());

    group->dump();
    EXPECT_EQ(StandardError::take(), "Group (" + idOf(group.get()) + "), 1 references\n");

    group->dump(2);
    EXPECT_EQ(StandardError::take(), "  Group (" + idOf(group.get()) + "), 1 references\n");
}

TEST_F(EmbeddedDumpTest, ANodeTellsItsMaskItsChildrenAndItsCore)
{
    const auto node = hold(makeNode(Group::create()));
    addNode(node);
    addNode(node);
    node->setTravMask(0xff);

    node->dump(1);

    EXPECT_EQ(StandardError::take(), " Node (" + idOf(node.get()) +
                                         "), 1 references\n"
                                         "     mask 0xff, 2 children\n"
                                         "     Group (" +
                                         idOf(node->getCore()) + "), 1 references\n");
}

TEST_F(EmbeddedDumpTest, ANodeWithoutCoreSaysSo)
{
    const auto node = hold(Node::create());

    node->dump();

    EXPECT_EQ(StandardError::take(), "Node (" + idOf(node.get()) +
                                         "), 1 references\n"
                                         "    mask 0xffffffff, 0 children\n"
                                         "    NullFC\n");
}

TEST_F(EmbeddedDumpTest, AHandleTellsOfItsContainerOrThatItIsNull)
{
    const auto group = hold(Group::create());

    group.get().dump(1);
    EXPECT_EQ(StandardError::take(), " Group (" + idOf(group.get()) + "), 1 references\n");

    GroupPtr().dump(3);
    EXPECT_EQ(StandardError::take(), "   NullFC\n");
}

TEST_F(EmbeddedDumpTest, AHandleIsWrittenAsTypeAndNumber)
{
    const auto group = hold(Group::create());

    EXPECT_EQ(toText(group.get()), "Group (" + idOf(group.get()) + ")");
    EXPECT_EQ(toText(NodePtr()), "NullFC");
}

TEST_F(EmbeddedDumpTest, AListOfChangesTellsEachKindInALineOfItsOwn)
{
    ChangeList list;
    list.setReadOnly(false);
    list.addCreated(1);
    list.addCreated(2);
    list.addAddRefd(3);
    list.addSubRefd(4);
    list.addDestroyed(5);
    list.addChanged(6, 0x40);
    list.addChanged(7, FieldBits::AllFields);

    list.dump();

    EXPECT_EQ(StandardError::take(), "addRefd: 3\n"
                                     "subRefd: 4\n"
                                     "created: 1 2\n"
                                     "destroyed: 5\n"
                                     "changed: (6, 0x40) (7, 0xffffffffffffffff)\n");
}

TEST_F(EmbeddedDumpTest, AnEmptyListOfChangesTellsOnlyTheKinds)
{
    ChangeList().dump();

    EXPECT_EQ(StandardError::take(), "addRefd:\nsubRefd:\ncreated:\ndestroyed:\nchanged:\n");
}

TEST_F(EmbeddedDumpTest, ABoxTellsItsCornersAndWhatIsSpecialAboutIt)
{
    BoxVolume box(1, 2, 3, 4, 5, 6);

    box.dump(2);
    EXPECT_EQ(StandardError::take(), "  BoxVolume (1 2 3) (4 5 6)\n");

    box.setStatic();
    box.setEmpty();
    box.setValid(false);
    EXPECT_EQ(toText(box), "BoxVolume (1 2 3) (4 5 6) invalid empty static");

    box.setInfinite();
    EXPECT_EQ(toText(box), "BoxVolume (1 2 3) (4 5 6) static infinite");
}

TEST_F(EmbeddedDumpTest, NumbersAreWrittenWithSpacesBetween)
{
    EXPECT_EQ(toText(Pnt3f(1, 2.5F, -3)), "1 2.5 -3");
    EXPECT_EQ(toText(Vec2f(4, 5)), "4 5");
    EXPECT_EQ(toText(Quaternion(1, 2, 3, 4)), "1 2 3 4");
    EXPECT_EQ(toText(Color3f(0, 0.5F, 1)), "0 0.5 1");
    EXPECT_EQ(toText(Color4f(0, 0.5F, 1, 0.25F)), "0 0.5 1 0.25");
}

TEST_F(EmbeddedDumpTest, NumbersOfTheTypesOfCharactersAreNumbers)
{
    EXPECT_EQ(toText(Point<UInt8, 3>(65, 66, 67)), "65 66 67");
}

TEST_F(EmbeddedDumpTest, AMatrixIsWrittenRowByRow)
{
    const Matrix matrix(1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16);

    EXPECT_EQ(toText(matrix), "1 2 3 4\n5 6 7 8\n9 10 11 12\n13 14 15 16\n");
}

} // namespace
