// SPDX-License-Identifier: MIT
#include "Viewer/Drawing/AxisCross.h"
#include "Viewer/Tools/CameraController.h"

#include <QColor>
#include <QImage>
#include <QPainter>

#include <gtest/gtest.h>

#include <string>

namespace quon::testing {

namespace {

class AxisCrossTest : public ::testing::Test {
protected:
    QImage paint(const std::string& view, const QSize& size = QSize(300, 300))
    {
        m_camera.setStandardView(view);
        QImage image(size, QImage::Format_RGB32);
        image.fill(Qt::white);
        QPainter painter(&image);
        viewer::AxisCross(m_camera).paint(painter, size);
        return image;
    }

    /** The colour channel that stands out at a place relative to the middle of the cross: r, g, b or nothing. */
    static std::string channelAt(const QImage& image, const int x, const int y)
    {
        const QColor colour = image.pixelColor(300 - 56 + x, 300 - 56 + y);
        if (colour == QColor(Qt::white)) {
            return "";
        }
        const int largest = std::max({colour.red(), colour.green(), colour.blue()});
        return largest == colour.red() ? "r" : largest == colour.green() ? "g" : "b";
    }

    viewer::CameraController m_camera;
};

TEST_F(AxisCrossTest, FromTheFrontXPointsToTheRightAndYUpwards)
{
    const QImage image = paint("front");

    EXPECT_EQ(channelAt(image, 20, 0), "r");
    EXPECT_EQ(channelAt(image, 0, -20), "g");
    EXPECT_EQ(channelAt(image, -20, 0), "");
    EXPECT_EQ(channelAt(image, 0, 20), "");
}

TEST_F(AxisCrossTest, FromTheRightZPointsToTheLeft)
{
    const QImage image = paint("right");

    EXPECT_EQ(channelAt(image, -20, 0), "b");
    EXPECT_EQ(channelAt(image, 0, -20), "g");
    EXPECT_EQ(channelAt(image, 20, 0), "");
}

TEST_F(AxisCrossTest, TheAxisThatPointsToTheEyeLiesOnTop)
{
    EXPECT_EQ(channelAt(paint("front"), 0, 0), "b");
    EXPECT_EQ(channelAt(paint("right"), 0, 0), "r");
    // From behind, z points away.
    EXPECT_NE(channelAt(paint("back"), 0, 0), "b");
}

TEST_F(AxisCrossTest, ASmallViewportHasNone)
{
    const QImage image = paint("iso", QSize(200, 300));

    QImage white(200, 300, QImage::Format_RGB32);
    white.fill(Qt::white);
    EXPECT_EQ(image, white);
}

} // namespace

} // namespace quon::testing
