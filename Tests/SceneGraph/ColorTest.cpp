// SPDX-License-Identifier: MIT
#include <OpenSG/OSGConfig.h>

#include <OpenSG/OSGColor.h>

#include <gtest/gtest.h>

namespace {

using namespace osg;

TEST(ColorTest, AFreshColorHasOnlyZeros)
{
    const Color3f opaque;
    const Color4f color;

    for (UInt32 i = 0; i < 3; ++i) {
        EXPECT_EQ(opaque[i], 0.0F);
    }
    for (UInt32 i = 0; i < 4; ++i) {
        EXPECT_EQ(color[i], 0.0F);
    }
}

TEST(ColorTest, ChannelsReadByName)
{
    const Color3f opaque(0.1F, 0.2F, 0.3F);
    const Color4f color(0.1F, 0.2F, 0.3F, 0.4F);

    EXPECT_EQ(opaque.red(), 0.1F);
    EXPECT_EQ(opaque.green(), 0.2F);
    EXPECT_EQ(opaque.blue(), 0.3F);
    EXPECT_EQ(color.red(), 0.1F);
    EXPECT_EQ(color.green(), 0.2F);
    EXPECT_EQ(color.blue(), 0.3F);
    EXPECT_EQ(color.alpha(), 0.4F);
}

TEST(ColorTest, ChannelsAreWrittenTogetherAndByIndex)
{
    Color3f opaque;
    Color4f color;

    opaque.setValuesRGB(0.1F, 0.2F, 0.3F);
    color.setValuesRGBA(0.1F, 0.2F, 0.3F, 0.4F);
    color[3] = 0.5F;

    EXPECT_EQ(opaque, Color3f(0.1F, 0.2F, 0.3F));
    EXPECT_EQ(color, Color4f(0.1F, 0.2F, 0.3F, 0.5F));
    EXPECT_EQ(opaque.getValuesRGB()[2], 0.3F);
}

TEST(ColorTest, ComparesWithinOneMillionthPerChannel)
{
    EXPECT_TRUE(Color3f() == Color3f(1e-6F, 0, 0));
    EXPECT_FALSE(Color3f() == Color3f(0, 1.1e-6F, 0));
    EXPECT_TRUE(Color4f() == Color4f(0, 0, 0, -1e-6F));
    EXPECT_TRUE(Color4f() != Color4f(0, 0, 0, -1.1e-6F));
}

} // namespace
