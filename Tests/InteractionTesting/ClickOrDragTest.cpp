// SPDX-License-Identifier: MIT
#include <InteractionTools/ClickOrDrag.h>

#include <gtest/gtest.h>

namespace quon::interaction {

namespace {

TEST(ClickOrDragTest, PressWithoutMovementIsAClick)
{
    ClickOrDrag press;
    press.press(osg::Pnt2f(10, 20));

    EXPECT_TRUE(press.isPressed());
    EXPECT_FALSE(press.isDrag());
    EXPECT_TRUE(press.release());
    EXPECT_FALSE(press.isPressed());
}

TEST(ClickOrDragTest, MovementOfLessThanThreePixelsIsAClick)
{
    ClickOrDrag press;
    press.press(osg::Pnt2f(10, 20));

    EXPECT_FALSE(press.move(osg::Pnt2f(12, 22))); // 2.83 pixels away
    EXPECT_FALSE(press.isDrag());
    EXPECT_TRUE(press.release());
}

TEST(ClickOrDragTest, MovementOfThreePixelsIsADrag)
{
    ClickOrDrag press;
    press.press(osg::Pnt2f(10, 20));

    EXPECT_TRUE(press.move(osg::Pnt2f(10, 17)));
    EXPECT_TRUE(press.isDrag());
    EXPECT_TRUE(press.isPressed());
    EXPECT_FALSE(press.release());
    EXPECT_FALSE(press.isPressed());
    EXPECT_FALSE(press.isDrag());
}

TEST(ClickOrDragTest, DragBeginsOnceAndStaysADragWhereItBegan)
{
    ClickOrDrag press;
    press.press(osg::Pnt2f(10, 20));

    EXPECT_TRUE(press.move(osg::Pnt2f(20, 20)));
    EXPECT_FALSE(press.move(osg::Pnt2f(30, 20)));
    EXPECT_FALSE(press.move(osg::Pnt2f(10, 20)));
    EXPECT_TRUE(press.isDrag());
    EXPECT_EQ(press.getOrigin(), osg::Pnt2f(10, 20));
    EXPECT_FALSE(press.release());
}

TEST(ClickOrDragTest, StepsThatAreSmallOneByOneAddUp)
{
    ClickOrDrag press;
    press.press(osg::Pnt2f(10, 20));

    EXPECT_FALSE(press.move(osg::Pnt2f(11, 20)));
    EXPECT_FALSE(press.move(osg::Pnt2f(12, 20)));
    EXPECT_TRUE(press.move(osg::Pnt2f(13, 20)));
}

TEST(ClickOrDragTest, ReleaseWithoutPressIsNoClick)
{
    ClickOrDrag press;

    EXPECT_FALSE(press.isPressed());
    EXPECT_FALSE(press.move(osg::Pnt2f(100, 100)));
    EXPECT_FALSE(press.release());
    press.press(osg::Pnt2f(10, 20));
    EXPECT_TRUE(press.release());
    EXPECT_FALSE(press.release());
}

TEST(ClickOrDragTest, NextPressAfterADragMayBeAClick)
{
    ClickOrDrag press;
    press.press(osg::Pnt2f(10, 20));
    press.move(osg::Pnt2f(20, 20));
    press.release();

    press.press(osg::Pnt2f(20, 20));

    EXPECT_FALSE(press.isDrag());
    EXPECT_EQ(press.getOrigin(), osg::Pnt2f(20, 20));
    EXPECT_TRUE(press.release());
}

TEST(ClickOrDragTest, PressThatNobodyReleasedIsForgottenByTheNext)
{
    ClickOrDrag press;
    press.press(osg::Pnt2f(10, 20));
    press.move(osg::Pnt2f(20, 20));

    press.press(osg::Pnt2f(50, 50));

    EXPECT_FALSE(press.isDrag());
    EXPECT_FALSE(press.move(osg::Pnt2f(51, 50)));
    EXPECT_TRUE(press.release());
}

TEST(ClickOrDragTest, CancelledPressIsNoClick)
{
    ClickOrDrag press;
    press.press(osg::Pnt2f(10, 20));

    press.cancel();

    EXPECT_FALSE(press.isPressed());
    EXPECT_FALSE(press.move(osg::Pnt2f(50, 50)));
    EXPECT_FALSE(press.release());
}

TEST(ClickOrDragTest, DistanceIsForTheHostToChoose)
{
    ClickOrDrag press(10);
    press.press(osg::Pnt2f(10, 20));

    EXPECT_FALSE(press.move(osg::Pnt2f(19, 20)));
    EXPECT_TRUE(press.move(osg::Pnt2f(20, 20)));
}

TEST(ClickOrDragTest, AnyMovementIsADragWithoutADistance)
{
    for (const float distance : {0.0F, -3.0F}) {
        ClickOrDrag press(distance);
        press.press(osg::Pnt2f(10, 20));

        EXPECT_TRUE(press.move(osg::Pnt2f(10, 20)));
    }
}

} // namespace

} // namespace quon::interaction
