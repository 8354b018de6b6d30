// SPDX-License-Identifier: MIT
#pragma once

#include "OpenSGHost/ExampleScene.h"
#include "OpenSGHost/OpenSGPainter.h"

#include <QOpenGLWidget>

#include <memory>

namespace quon::opensghost {

/** Shows the example's scene in Qt's OpenGL context, drawn by OpenSG's own RenderAction. */
class SceneWidget : public QOpenGLWidget {
public:
    /** @param scene borrowed, must outlive the widget */
    explicit SceneWidget(ExampleScene& scene, QWidget* parent = nullptr);
    ~SceneWidget() override;

protected:
    void paintGL() override;

private:
    ExampleScene& m_scene;
    std::unique_ptr<OpenSGPainter> m_painter; ///< made in the context that it draws with
};

} // namespace quon::opensghost
