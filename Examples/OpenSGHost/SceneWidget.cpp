// SPDX-License-Identifier: MIT
#include "OpenSGHost/SceneWidget.h"

#include <QSurfaceFormat>

namespace quon::opensghost {

SceneWidget::SceneWidget(ExampleScene& scene, QWidget* parent)
    : QOpenGLWidget(parent)
    , m_scene(scene)
{
    // OpenSG 1.x draws with OpenGL's fixed functions, which a core profile lacks.
    QSurfaceFormat format;
    format.setVersion(2, 1);
    format.setProfile(QSurfaceFormat::CompatibilityProfile);
    format.setDepthBufferSize(24);
    setFormat(format);
}

SceneWidget::~SceneWidget()
{
    makeCurrent();
    m_painter.reset();
    doneCurrent();
}

void SceneWidget::paintGL()
{
    if (!m_painter) {
        m_painter = std::make_unique<OpenSGPainter>();
    }
    const auto physical = [this](int length) { return static_cast<int>(length * devicePixelRatioF()); };
    m_painter->draw(m_scene.getRoot(), ExampleScene::getView(), ExampleScene::getProjection(), physical(width()),
                    physical(height()));
}

} // namespace quon::opensghost
