// SPDX-License-Identifier: MIT
#pragma once

#include <QOpenGLWidget>

#include <functional>

namespace quon::viewer {

/** The part of a viewport that is drawn with OpenGL in a window; all input passes through it to the viewport. */
class GlSurface : public QOpenGLWidget {
public:
    using Draw = std::function<void(int width, int height, double pixelRatio)>;

    /**
     * @param draw called with the context and the widget's framebuffer current, sizes in physical pixels
     * @param release called with the context current before it goes
     */
    GlSurface(Draw draw, std::function<void()> release, QWidget* parent);
    ~GlSurface() override;

    GlSurface(const GlSurface&) = delete;
    GlSurface& operator=(const GlSurface&) = delete;

protected:
    void initializeGL() override;
    void paintGL() override;

private:
    void release();

    Draw m_draw;
    std::function<void()> m_release;
    QMetaObject::Connection m_contextGoes;
};

} // namespace quon::viewer
