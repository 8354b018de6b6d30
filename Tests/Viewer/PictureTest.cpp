// SPDX-License-Identifier: MIT
#include "Support/ReferencePicture.h"
#include "Support/UserInput.h"

#include "Viewer/Model/ModelLoader.h"
#include "Viewer/Session/ViewerSession.h"
#include "Viewer/Window/Viewport.h"

#include <Interaction/NodeSelectionModel.h>

#include <QColor>
#include <QImage>
#include <QPainter>

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <string>

namespace quon::testing {

namespace {

/** What a user sees of the engine, drawn without any display and compared with small stored pictures. */
class PictureTest : public ::testing::Test {
protected:
    PictureTest()
        : m_viewport(m_session, viewer::Viewport::Target::Pictures)
        , m_user(m_viewport)
    {
        m_viewport.resize(800, 500);
        m_viewport.show();
        const osg::RefPtr<osg::NodePtr> model = viewer::ModelLoader().load(KO_ENGINE_MODEL).root;
        m_session.setModel(model.get());
        m_session.sendCommand("iso");
    }

    /** The share of the picture's pixels that are nearer to @p colour than 40 of 255 in every channel. */
    static double shareOf(const QImage& picture, const QColor& colour)
    {
        int count = 0;
        for (int y = 0; y < picture.height(); ++y) {
            for (int x = 0; x < picture.width(); ++x) {
                const QColor pixel = picture.pixelColor(x, y);
                const bool near = std::abs(pixel.red() - colour.red()) < 40 &&
                                  std::abs(pixel.green() - colour.green()) < 40 &&
                                  std::abs(pixel.blue() - colour.blue()) < 40;
                count += near ? 1 : 0;
            }
        }
        return static_cast<double>(count) / (picture.width() * picture.height());
    }

    viewer::ViewerSession m_session;
    viewer::Viewport m_viewport;
    UserInput m_user;

    const QPoint m_cover{590, 300}; ///< in the middle of the cover on the right
    const QColor m_orange{244, 133, 22};
};

TEST_F(PictureTest, TheEngineFillsTheViewOnALightBackground)
{
    EXPECT_TRUE(matchesReference(m_viewport.grabScene(), "engine"));
}

TEST_F(PictureTest, TheBackgroundTurnsDark)
{
    m_user.type(Qt::Key_D);

    EXPECT_TRUE(matchesReference(m_viewport.grabScene(), "engine-dark"));
    EXPECT_LT(m_viewport.grabScene().pixelColor(5, 5).lightness(), 64);
}

TEST_F(PictureTest, AClickDrawsAnOrangeBoxAroundThePart)
{
    const double before = shareOf(m_viewport.grabScene(), m_orange);

    m_user.click(m_cover);
    m_user.leave();

    EXPECT_EQ(m_session.getSelection().getSelection().size(), 1U);
    EXPECT_GT(shareOf(m_viewport.grabScene(), m_orange), before + 0.001);
    EXPECT_TRUE(matchesReference(m_viewport.grabScene(), "engine-box"));
}

TEST_F(PictureTest, TheWireframeLiesOverThePart)
{
    m_user.click(m_cover);
    m_user.leave();
    m_user.type(Qt::Key_B);

    EXPECT_TRUE(matchesReference(m_viewport.grabScene(), "engine-wireframe"));
}

TEST_F(PictureTest, AHiddenPartShowsWhatIsBehindIt)
{
    m_user.click(m_cover);
    m_user.type(Qt::Key_H);
    m_user.type(Qt::Key_Escape);
    m_user.leave();

    EXPECT_TRUE(matchesReference(m_viewport.grabScene(), "engine-hidden"));
}

TEST_F(PictureTest, AnIsolatedPartStandsAlone)
{
    m_user.click(m_cover);
    m_user.type(Qt::Key_I);
    m_user.leave();

    EXPECT_TRUE(matchesReference(m_viewport.grabScene(), "engine-isolated"));
}

TEST_F(PictureTest, ALockedPartHasADarkBox)
{
    m_user.click(m_cover);
    m_user.type(Qt::Key_L);
    m_user.leave();

    EXPECT_LT(shareOf(m_viewport.grabScene(), m_orange), 0.001);
    EXPECT_TRUE(matchesReference(m_viewport.grabScene(), "engine-locked"));
}

TEST_F(PictureTest, APictureThatLacksSomethingDoesNotMatch)
{
    QImage picture = m_viewport.grabScene();
    ASSERT_TRUE(matchesReference(picture, "engine"));
    QPainter painter(&picture);
    painter.fillRect(QRect(560, 260, 90, 80), QColor(200, 200, 200));
    painter.end();

    EXPECT_FALSE(matchesReference(picture, "engine"));
    EXPECT_FALSE(matchesReference(picture, "no such picture"));
}

} // namespace

} // namespace quon::testing
