// SPDX-License-Identifier: MIT
#include "Viewer/Drawing/MeasureLine.h"
#include "Viewer/Tools/CameraController.h"

#include <QColor>
#include <QImage>
#include <QPainter>
#include <QPoint>
#include <QRect>

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <utility>

namespace quon::testing {

namespace {

using viewer::CameraController;
using viewer::MeasureLine;

/** A line in a view from the front, painted over one colour. */
class MeasureLineTest : public ::testing::Test {
protected:
    MeasureLineTest()
        : m_line(m_camera)
    {
        m_camera.setViewportSize(400, 300);
        m_camera.setSceneBounds(osg::Pnt3f(-1, -1, -1), osg::Pnt3f(1, 1, 1));
        m_camera.setParallel(true);
        m_camera.setStandardView("front");
        m_content.first = osg::Pnt3f(-1, 0, 0);
        m_content.second = osg::Pnt3f(1, 0.5F, 0);
        m_content.texts.distance = QStringLiteral("2.062 m");
        m_line.setContent(m_content);
    }

    QImage paint(const QColor& background)
    {
        QImage picture(400, 300, QImage::Format_RGB32);
        picture.fill(background);
        QPainter painter(&picture);
        m_line.paint(painter, picture.size());
        return picture;
    }

    QPoint at(const osg::Pnt3f& point) const
    {
        const std::array<double, 2> place = *m_camera.getPlace(point);
        return QPoint(static_cast<int>(place[0]), static_cast<int>(place[1]));
    }

    // The darkest and the lightest pixel around a place.
    static std::pair<int, int> lightnessAround(const QImage& picture, const QPoint& place, const int radius)
    {
        int darkest = 255;
        int lightest = 0;
        for (int y = place.y() - radius; y <= place.y() + radius; ++y) {
            for (int x = place.x() - radius; x <= place.x() + radius; ++x) {
                darkest = std::min(darkest, qGray(picture.pixel(x, y)));
                lightest = std::max(lightest, qGray(picture.pixel(x, y)));
            }
        }
        return {darkest, lightest};
    }

    static int countChanged(const QImage& picture, const QColor& background)
    {
        int changed = 0;
        for (int y = 0; y < picture.height(); ++y) {
            for (int x = 0; x < picture.width(); ++x) {
                changed += picture.pixel(x, y) != background.rgb() ? 1 : 0;
            }
        }
        return changed;
    }

    CameraController m_camera;
    MeasureLine m_line;
    MeasureLine::Content m_content;
};

TEST_F(MeasureLineTest, LineAndEndsStandOutFromLightAndDarkBackgrounds)
{
    for (const QColor& background : {QColor(242, 245, 247), QColor(33, 38, 46), QColor(128, 128, 128)}) {
        const QImage picture = paint(background);

        for (const osg::Pnt3f& place : {osg::Pnt3f(-1, 0, 0), osg::Pnt3f(-0.8F, 0.05F, 0), osg::Pnt3f(1, 0.5F, 0)}) {
            const auto [darkest, lightest] = lightnessAround(picture, at(place), 6);
            EXPECT_GT(lightest - darkest, 110) << background.name().toStdString();
        }
    }
}

TEST_F(MeasureLineTest, TheTextsStandInADarkBoxAtTheMiddle)
{
    const QPoint middle = at(osg::Pnt3f(0, 0.25F, 0));
    for (const QColor& background : {QColor(255, 255, 255), QColor(0, 0, 0)}) {
        const auto [darkest, lightest] = lightnessAround(paint(background), middle, 12);

        EXPECT_LT(darkest, 60);
        EXPECT_GT(lightest, 200) << "letters";
    }
}

TEST_F(MeasureLineTest, TheBoxLeavesTheEndsOfAShortLineFreeAndStaysInTheViewport)
{
    // Ends a few pixels apart, anywhere: the box moves aside, and back into the picture.
    for (const osg::Pnt3f& place : {osg::Pnt3f(0, 0, 0), osg::Pnt3f(-1.6F, 1.2F, 0), osg::Pnt3f(1.55F, -1.2F, 0)}) {
        m_content.first = place;
        m_content.second = place + osg::Vec3f(0.1F, 0.02F, 0);
        m_line.setContent(m_content);
        const QImage picture = paint(Qt::white);

        // The blue of the ends, which the box would darken.
        for (const osg::Pnt3f& end : {*m_content.first, *m_content.second}) {
            EXPECT_GT(QColor(picture.pixel(at(end))).blue(), 120);
        }
        int border = 0;
        for (int x = 0; x < 400; ++x) {
            border += picture.pixel(x, 0) != qRgb(255, 255, 255) || picture.pixel(x, 299) != qRgb(255, 255, 255);
        }
        EXPECT_EQ(border, 0);
    }
}

TEST_F(MeasureLineTest, TheLineFollowsTheCamera)
{
    const QPoint before = at(*m_content.first);
    ASSERT_LT(lightnessAround(paint(Qt::white), before, 2).first, 90);

    m_camera.pan(0, 60);

    EXPECT_EQ(lightnessAround(paint(Qt::white), before, 2).first, 255);
    EXPECT_LT(lightnessAround(paint(Qt::white), before + QPoint(0, 60), 2).first, 90);
}

TEST_F(MeasureLineTest, WhatLiesBehindTheEyeIsNotDrawn)
{
    m_camera.setParallel(false);
    m_content.first = osg::Pnt3f(0, 0, 1000);
    m_line.setContent(m_content);

    // Only the other end is left.
    const int changed = countChanged(paint(Qt::white), Qt::white);
    EXPECT_GT(changed, 20);
    EXPECT_LT(changed, 150);

    m_content.second = osg::Pnt3f(0.5F, 0, 1000);
    m_line.setContent(m_content);
    EXPECT_EQ(countChanged(paint(Qt::white), Qt::white), 0);
}

TEST_F(MeasureLineTest, StepsAreDrawnInTheColoursOfTheAxesOnceTheMeasurementStands)
{
    // A corner of the way along x, then y: there is nothing else.
    const QPoint corner = at(osg::Pnt3f(0.9F, 0, 0));
    const QPoint upwards = at(osg::Pnt3f(1, 0.3F, 0));
    const QImage picture = paint(Qt::white);

    EXPECT_GT(QColor(picture.pixel(corner)).red(), QColor(picture.pixel(corner)).green() + 60);
    EXPECT_GT(QColor(picture.pixel(upwards)).green(), QColor(picture.pixel(upwards)).red() + 20);

    m_content.isPreview = true;
    m_line.setContent(m_content);
    EXPECT_EQ(paint(Qt::white).pixel(corner), qRgb(255, 255, 255));
}

TEST_F(MeasureLineTest, TellsWhetherSomethingElseIsToBeDrawn)
{
    EXPECT_FALSE(m_line.setContent(m_content));

    m_content.first = osg::Pnt3f(-1, 1e-7F, 0);
    EXPECT_TRUE(m_line.setContent(m_content));
    m_content.pointer = osg::Pnt3f(0, 0, 0);
    EXPECT_TRUE(m_line.setContent(m_content));
    m_content.texts.steps[2] = QStringLiteral("1 m");
    EXPECT_TRUE(m_line.setContent(m_content));
    EXPECT_FALSE(m_line.setContent(m_content));
}

} // namespace

} // namespace quon::testing
