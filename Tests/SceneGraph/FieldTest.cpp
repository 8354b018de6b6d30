// SPDX-License-Identifier: MIT
#include <OpenSG/OSGConfig.h>

#include <OpenSG/OSGMFSysTypes.h>
#include <OpenSG/OSGSFSysTypes.h>

#include <gtest/gtest.h>

#include <vector>

namespace {

using namespace osg;

std::vector<Int32> valuesOf(const MFInt32& field)
{
    return std::vector<Int32>(field.begin(), field.end());
}

TEST(FieldTest, ASingleFieldKeepsItsValue)
{
    SFInt32 field;

    field.setValue(7);

    EXPECT_EQ(field.getValue(), 7);
}

TEST(FieldTest, AMultiFieldGrowsLikeAVector)
{
    MFInt32 field;
    EXPECT_TRUE(field.empty());

    field.push_back(1);
    field.push_back(2);
    field.push_back(3);

    EXPECT_EQ(field.size(), 3U);
    EXPECT_EQ(field[1], 2);
    EXPECT_EQ(valuesOf(field), (std::vector<Int32>{1, 2, 3}));
}

TEST(FieldTest, AMultiFieldFindsErasesAndInserts)
{
    MFInt32 field;
    field.push_back(1);
    field.push_back(2);
    field.push_back(3);

    field.erase(field.find(2));
    EXPECT_EQ(valuesOf(field), (std::vector<Int32>{1, 3}));
    EXPECT_TRUE(field.find(2) == field.end());

    field.insert(field.begin(), 9);
    EXPECT_EQ(valuesOf(field), (std::vector<Int32>{9, 1, 3}));
}

TEST(FieldTest, AMultiFieldResizesAndClears)
{
    MFInt32 field;

    field.resize(3);
    EXPECT_EQ(field.size(), 3U);

    field.clear();
    EXPECT_EQ(field.size(), 0U);
}

} // namespace
