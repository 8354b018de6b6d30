// SPDX-License-Identifier: MIT
#pragma once

#include <OpenSG/OSGConfig.h>

#include <OpenSG/OSGMatrix.h>
#include <OpenSG/OSGMatrixCamera.h>
#include <OpenSG/OSGNode.h>
#include <OpenSG/OSGPassiveWindow.h>
#include <OpenSG/OSGRenderAction.h>
#include <OpenSG/OSGSolidBackground.h>
#include <OpenSG/OSGViewport.h>

namespace quon::opensghost {

/**
 * Draws a scene with OpenSG's own RenderAction into whatever OpenGL context and framebuffer are current.
 *
 * The context may be that of a QOpenGLWidget: a PassiveWindow leaves context and buffers to the host.
 */
class OpenSGPainter {
public:
    OpenSGPainter();
    ~OpenSGPainter();

    OpenSGPainter(const OpenSGPainter&) = delete;
    OpenSGPainter& operator=(const OpenSGPainter&) = delete;

    /**
     * Clears the viewport to black and draws the scene below @p root, which is held until the next call.
     *
     * @param view, projection from the world to the eye, from the eye to the clip space
     * @param width, height in physical pixels
     */
    void draw(const osg::NodePtr& root, const osg::Matrix& view, const osg::Matrix& projection, int width, int height);

private:
    osg::MatrixCameraPtr m_camera;
    osg::ViewportPtr m_viewport;
    osg::PassiveWindowPtr m_window;
    osg::RenderAction* m_action;
    bool m_initialized = false;
};

} // namespace quon::opensghost
