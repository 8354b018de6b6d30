// SPDX-License-Identifier: MIT
#include "OpenSGHost/OpenSGPainter.h"

namespace quon::opensghost {

OpenSGPainter::OpenSGPainter()
    : m_camera(osg::MatrixCamera::create())
    , m_viewport(osg::Viewport::create())
    , m_window(osg::PassiveWindow::create())
    , m_action(osg::RenderAction::create())
{
    beginEditCP(m_viewport);
    m_viewport->setSize(0, 0, 1, 1);
    m_viewport->setCamera(m_camera);
    m_viewport->setBackground(osg::SolidBackground::create());
    endEditCP(m_viewport);

    osg::addRefCP(m_window);
    beginEditCP(m_window);
    m_window->addPort(m_viewport);
    endEditCP(m_window);
}

OpenSGPainter::~OpenSGPainter()
{
    delete m_action;
    // Its viewport, camera and background go with it.
    osg::subRefCP(m_window);
}

void OpenSGPainter::draw(const osg::NodePtr& root, const osg::Matrix& view, const osg::Matrix& projection, int width,
                         int height)
{
    if (!m_initialized) {
        m_window->init();
        m_initialized = true;
    }
    m_window->resize(width, height);

    beginEditCP(m_camera);
    m_camera->setModelviewMatrix(view);
    m_camera->setProjectionMatrix(projection);
    endEditCP(m_camera);
    beginEditCP(m_viewport, osg::Viewport::RootFieldMask);
    m_viewport->setRoot(root);
    endEditCP(m_viewport, osg::Viewport::RootFieldMask);

    m_window->render(m_action);
}

} // namespace quon::opensghost
