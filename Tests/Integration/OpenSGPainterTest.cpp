// SPDX-License-Identifier: MIT
//
// Only with an installed OpenSG: the embedded scene graph has no RenderAction to draw with.
#include <InteractionTesting/SceneFixture.h>

#include "Support/DrawnScene.h"

#include "OpenSGHost/ExampleScene.h"
#include "OpenSGHost/OpenSGPainter.h"
#include "Viewer/Drawing/OffscreenSurface.h"
#include "Viewer/Drawing/SceneRenderer.h"
#include "Viewer/Model/Matrix4.h"

#include <Extensions/SceneExtensions.h>

#include <OpenSG/OSGMaterialGroup.h>
#include <OpenSG/OSGRefPtr.h>

#include <QColor>
#include <QImage>

#include <gtest/gtest.h>

namespace quon::testing {

namespace {

using opensghost::ExampleScene;
using opensghost::OpenSGPainter;

constexpr int size = 200;

// The containers that OpenSG makes for itself while it draws stay: no count of living ones here.
class OpenSGPainterTest : public ::testing::Test {
protected:
    OpenSGPainterTest() { m_surface.setMultisampling(false); }

    QImage paint(const osg::NodePtr& root, const osg::Matrix& view, const osg::Matrix& projection)
    {
        return m_surface.draw(size, size, [&] { m_painter.draw(root, view, projection, size, size); });
    }

    QImage paint(const ExampleScene& scene)
    {
        return paint(scene.getRoot(), ExampleScene::getView(), ExampleScene::getProjection());
    }

    viewer::OffscreenSurface m_surface;
    OpenSGPainter m_painter;
};

int countColour(const QImage& picture, const QRgb colour)
{
    int count = 0;
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x) {
            count += picture.pixel(x, y) == colour ? 1 : 0;
        }
    }
    return count;
}

TEST_F(OpenSGPainterTest, BoxesAndHighlightLookAsInTheViewerToThePixel)
{
    const ExampleScene scene;

    const QImage own = paint(scene);
    viewer::SceneRenderer renderer;
    const QImage viewers = m_surface.draw(size, size, [&] {
        renderer.draw(scene.getRoot(), viewer::Matrix4(ExampleScene::getView()),
                      viewer::Matrix4(ExampleScene::getProjection()), size, size);
    });
    m_surface.withContext([&] { renderer.releaseResources(); });

    EXPECT_EQ(own, viewers);
}

TEST_F(OpenSGPainterTest, TheSelectionIsSeen)
{
    ExampleScene scene;
    const QImage selected = paint(scene);

    scene.deselect();
    const QImage plain = paint(scene);

    const QRgb grey = qRgb(128, 128, 128);
    EXPECT_GT(countColour(plain, grey), 1000);
    EXPECT_LT(countColour(selected, grey), countColour(plain, grey) - 100);
}

TEST_F(OpenSGPainterTest, AGeometryIsDrawnWithItsOwnMaterialBelowAMaterialGroupOnceItsFlagIsOn)
{
    const osg::GeometryPtr geometry = extensions::createGeometry();
    const osg::GeometryPtr rectangle = makeRectangle(-1, -1, 1, 1, 0, makePlainMaterial(osg::Color3f(1, 0, 0)));
    const osg::RefPtr<osg::GeometryPtr> holder(rectangle);
    beginEditCP(geometry);
    geometry->setTypes(rectangle->getTypes());
    geometry->setLengths(rectangle->getLengths());
    geometry->setPositions(rectangle->getPositions());
    geometry->setMaterial(rectangle->getMaterial());
    endEditCP(geometry);
    const osg::MaterialGroupPtr group = osg::MaterialGroup::create();
    beginEditCP(group);
    group->setMaterial(makePlainMaterial(osg::Color3f(0, 0, 1)));
    endEditCP(group);
    // A second geometry after it: the group's material holds for that one again.
    const osg::RefPtr<osg::NodePtr> root(
        makeNode(group, {makeNode(geometry), makeNode(makeRectangle(-1, -1, 0, 1, 0.5F, osg::NullFC))}));
    const auto colourAt = [&](const int x) {
        return QColor(paint(root, osg::Matrix(), osg::Matrix()).pixel(x, size / 2)).name().toStdString();
    };
    EXPECT_EQ(colourAt(size - 10), "#0000ff");

    const osg::BitVector mask = extensions::getOverwriteMaterialFieldMask();
    beginEditCP(geometry, mask);
    extensions::setOverwriteMaterial(geometry, true);
    endEditCP(geometry, mask);

    EXPECT_EQ(colourAt(size - 10), "#ff0000");
    root->getChild(0)->setTravMask(0);
    EXPECT_EQ(colourAt(10), "#0000ff");
    EXPECT_EQ(colourAt(size - 10), "#000000");
}

} // namespace

} // namespace quon::testing
