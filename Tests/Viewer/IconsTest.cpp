// SPDX-License-Identifier: MIT
#include "Viewer/Window/Icons.h"
#include "Viewer/Session/Commands.h"

#include <QApplication>
#include <QImage>
#include <QPainter>
#include <QPalette>
#include <QPixmap>

#include <gtest/gtest.h>

namespace quon::testing {

namespace {

int countPixels(const QImage& image, const QColor& colour)
{
    int count = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            count += image.pixelColor(x, y) == colour ? 1 : 0;
        }
    }
    return count;
}

class IconsTest : public ::testing::Test {
protected:
    IconsTest()
        : m_palette(QApplication::palette())
    {}

    ~IconsTest() override { QApplication::setPalette(m_palette); }

    static void setTextColour(const QColor& colour)
    {
        QPalette palette;
        palette.setColor(QPalette::Active, QPalette::ButtonText, colour);
        QApplication::setPalette(palette);
    }

private:
    QPalette m_palette;
};

TEST_F(IconsTest, EveryCommandThatNamesAnIconHasOne)
{
    for (const viewer::Command& command : viewer::Command::getAll()) {
        EXPECT_EQ(viewer::getIcon(command.icon).isNull(), std::string(command.icon).empty()) << command.name;
    }
}

TEST_F(IconsTest, AnUnknownNameAndTheEmptyOneGiveNoIcon)
{
    EXPECT_TRUE(viewer::getIcon("no such icon").isNull());
    EXPECT_TRUE(viewer::getIcon("").isNull());
}

TEST_F(IconsTest, AnIconHasTheColourOfTheTextAlsoAfterThatChanged)
{
    const QIcon icon = viewer::getIcon("select-all");

    setTextColour(Qt::red);
    const QImage red = icon.pixmap(48, 48).toImage();
    setTextColour(Qt::green);
    const QImage green = icon.pixmap(64, 64).toImage();

    EXPECT_GT(countPixels(red, Qt::red), 200);
    EXPECT_GT(countPixels(green, Qt::green), 400);
    EXPECT_EQ(countPixels(green, Qt::red), 0);
}

TEST_F(IconsTest, APictureIsDrawnOncePerSizeModeAndColour)
{
    const QIcon icon = viewer::getIcon("select-all");
    const auto key = [&](const int size, const QIcon::Mode mode) { return icon.pixmap(size, size, mode).cacheKey(); };
    const qint64 small = key(16, QIcon::Normal);
    const qint64 disabled = key(16, QIcon::Disabled);

    EXPECT_EQ(key(16, QIcon::Normal), small);
    EXPECT_EQ(key(16, QIcon::Disabled), disabled);
    EXPECT_NE(disabled, small);
    EXPECT_NE(key(32, QIcon::Normal), small);

    setTextColour(Qt::red);
    EXPECT_NE(key(16, QIcon::Normal), small);
}

TEST_F(IconsTest, AnIconIsPaintedWhereAndAsLargeAsItIsAskedFor)
{
    const QIcon icon = viewer::getIcon("select-all");
    setTextColour(Qt::red);
    QImage image(200, 200, QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(2);
    image.fill(Qt::white);
    {
        QPainter painter(&image);
        icon.paint(&painter, QRect(50, 50, 48, 48));
    }

    // As sharp as a picture of that many pixels.
    EXPECT_EQ(countPixels(image, Qt::red), countPixels(icon.pixmap(96, 96).toImage(), Qt::red));
    EXPECT_GT(countPixels(image.copy(100, 100, 96, 96), Qt::red), 800);
    EXPECT_EQ(countPixels(image.copy(100, 100, 96, 96), Qt::red), countPixels(image, Qt::red));
}

} // namespace

} // namespace quon::testing
