// SPDX-License-Identifier: MIT
//
// Draws the same scene with OpenSG's own RenderAction and with the viewer's renderer, and says how the pictures differ.
#include "OpenSGHost/ExampleScene.h"
#include "OpenSGHost/OpenSGPainter.h"

#include "Viewer/Matrix4.h"
#include "Viewer/OffscreenSurface.h"
#include "Viewer/SceneRenderer.h"
#include "Viewer/ViewerError.h"

#include <OpenSG/OSGBaseFunctions.h>

#include <QDir>
#include <QGuiApplication>
#include <QImage>

#include <algorithm>
#include <cstdlib>
#include <iostream>

using namespace quon;

namespace {

constexpr int pictureSize = 400;

int difference(QRgb left, QRgb right)
{
    return std::max({std::abs(qRed(left) - qRed(right)), std::abs(qGreen(left) - qGreen(right)),
                     std::abs(qBlue(left) - qBlue(right))});
}

void compare(const QImage& left, const QImage& right)
{
    int differing = 0;
    int largest = 0;
    for (int y = 0; y < left.height(); ++y) {
        for (int x = 0; x < left.width(); ++x) {
            const int pixel = difference(left.pixel(x, y), right.pixel(x, y));
            differing += pixel > 0 ? 1 : 0;
            largest = std::max(largest, pixel);
        }
    }
    std::cout << differing << " of " << left.width() * left.height() << " pixels differ, by at most " << largest
              << " of 255\n";
}

void run(const QDir& folder)
{
    viewer::OffscreenSurface surface;
    surface.setMultisampling(false);
    const osg::Matrix view = opensghost::ExampleScene::getView();
    const osg::Matrix projection = opensghost::ExampleScene::getProjection();
    opensghost::ExampleScene scene;

    opensghost::OpenSGPainter painter;
    const QImage own = surface.draw(pictureSize, pictureSize,
                                    [&] { painter.draw(scene.getRoot(), view, projection, pictureSize, pictureSize); });
    viewer::SceneRenderer renderer;
    const QImage viewers = surface.draw(pictureSize, pictureSize, [&] {
        renderer.draw(scene.getRoot(), viewer::Matrix4(view), viewer::Matrix4(projection), pictureSize, pictureSize);
    });
    surface.withContext([&] { renderer.releaseResources(); });

    own.save(folder.filePath("opensg.png"));
    viewers.save(folder.filePath("viewer.png"));
    compare(own, viewers);
}

} // namespace

int main(int argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QGuiApplication application(argc, argv);
    osg::osgInit(argc, argv);
    int result = EXIT_SUCCESS;
    try {
        run(QDir(argc > 1 ? QString::fromLocal8Bit(argv[1]) : QStringLiteral(".")));
    } catch (const viewer::ViewerError& error) {
        std::cerr << "koopensghost: " << error.what() << '\n';
        result = EXIT_FAILURE;
    }
    osg::osgExit();
    return result;
}
