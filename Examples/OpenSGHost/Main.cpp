// SPDX-License-Identifier: MIT
//
//   koopensghost          shows the selection visualisations in a window, drawn by OpenSG's own RenderAction
//   koopensghost FOLDER   writes pictures of them: by RenderAction, by the viewer's renderer and, where there is a
//                         display, out of the window; says in how many pixels they differ
#include "OpenSGHost/ExampleScene.h"
#include "OpenSGHost/OpenSGPainter.h"
#include "OpenSGHost/SceneWidget.h"

#include "Viewer/Drawing/OffscreenSurface.h"
#include "Viewer/Drawing/SceneRenderer.h"
#include "Viewer/Model/Matrix4.h"
#include "Viewer/Model/ViewerError.h"

#include <OpenSG/OSGBaseFunctions.h>

#include <QApplication>
#include <QDir>
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

void compare(const char* title, const QImage& left, const QImage& right)
{
    if (left.size() != right.size()) {
        std::cout << title << ": the pictures differ in size\n";
        return;
    }
    int differing = 0;
    int largest = 0;
    for (int y = 0; y < left.height(); ++y) {
        for (int x = 0; x < left.width(); ++x) {
            const int pixel = difference(left.pixel(x, y), right.pixel(x, y));
            differing += pixel > 0 ? 1 : 0;
            largest = std::max(largest, pixel);
        }
    }
    std::cout << title << ": " << differing << " of " << left.width() * left.height() << " pixels differ, by at most "
              << largest << " of 255\n";
}

int showWindow()
{
    opensghost::ExampleScene scene;
    opensghost::SceneWidget widget(scene);
    widget.setWindowTitle(QStringLiteral("Selections drawn by OpenSG"));
    widget.resize(pictureSize, pictureSize);
    widget.show();
    return QApplication::exec();
}

void writePictures(const QDir& folder, bool hasDisplay)
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
    compare("RenderAction and the viewer's renderer", own, viewers);
    if (hasDisplay) {
        opensghost::SceneWidget widget(scene);
        widget.resize(pictureSize, pictureSize);
        widget.show();
        const QImage window = widget.grabFramebuffer();
        window.save(folder.filePath("window.png"));
        compare("RenderAction in the window and the viewer's renderer", window, viewers);
    }
}

} // namespace

int main(int argc, char** argv)
{
    const bool hasDisplay = qEnvironmentVariableIsSet("DISPLAY") || qEnvironmentVariableIsSet("WAYLAND_DISPLAY");
    if (!hasDisplay) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
    }
    const QApplication application(argc, argv);
    osg::osgInit(argc, argv);
    int result = EXIT_SUCCESS;
    try {
        if (argc > 1) {
            writePictures(QDir(QString::fromLocal8Bit(argv[1])), hasDisplay);
        } else if (hasDisplay) {
            result = showWindow();
        } else {
            throw viewer::ViewerError("no display", "name a folder for pictures");
        }
    } catch (const viewer::ViewerError& error) {
        std::cerr << "koopensghost: " << error.what() << '\n';
        result = EXIT_FAILURE;
    }
    osg::osgExit();
    return result;
}
