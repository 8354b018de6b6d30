// SPDX-License-Identifier: MIT
#include "Viewer/Model/IdTable.h"

#include <gtest/gtest.h>

namespace quon::testing {

namespace {

using viewer::IdTable;

TEST(IdTableTest, AnEmptyTableKnowsNoId)
{
    const IdTable table;

    EXPECT_EQ(IdTable::None, table.find(0));
    EXPECT_EQ(IdTable::None, table.find(0xFFFFFFFF));
    EXPECT_EQ(0U, table.size());
}

TEST(IdTableTest, NumbersAreFoundByTheirIdsAlone)
{
    IdTable table;

    table.set(1023, 7);
    table.set(1024, 8);
    table.set(500000, 9);

    EXPECT_EQ(7U, table.find(1023));
    EXPECT_EQ(8U, table.find(1024));
    EXPECT_EQ(9U, table.find(500000));
    EXPECT_EQ(IdTable::None, table.find(1022));
    EXPECT_EQ(IdTable::None, table.find(499999));
    EXPECT_EQ(3U, table.size());
}

TEST(IdTableTest, ASecondNumberTakesThePlaceOfTheFirst)
{
    IdTable table;
    table.set(5, 1);

    table.set(5, 2);

    EXPECT_EQ(2U, table.find(5));
    EXPECT_EQ(1U, table.size());
}

TEST(IdTableTest, AnErasedIdIsUnknownAndItsNeighboursStay)
{
    IdTable table;
    table.set(5, 1);
    table.set(6, 2);

    table.erase(5);
    table.erase(5);
    table.erase(4000000000U);

    EXPECT_EQ(IdTable::None, table.find(5));
    EXPECT_EQ(2U, table.find(6));
    EXPECT_EQ(1U, table.size());
}

TEST(IdTableTest, AnIdComesBackAfterTheLastOfItsPageWent)
{
    IdTable table;
    table.set(5, 1);
    table.erase(5);

    table.set(6, 2);

    EXPECT_EQ(IdTable::None, table.find(5));
    EXPECT_EQ(2U, table.find(6));
}

TEST(IdTableTest, AClearedTableKnowsNoId)
{
    IdTable table;
    table.set(5, 1);

    table.clear();

    EXPECT_EQ(IdTable::None, table.find(5));
    EXPECT_EQ(0U, table.size());
}

} // namespace

} // namespace quon::testing
