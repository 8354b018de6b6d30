// SPDX-License-Identifier: MIT
#include "Viewer/Drawing/GlSurface.h"

#include "Viewer/Model/ViewerError.h"

#include <QOpenGLContext>

#include <cmath>
#include <utility>

namespace quon::viewer {

GlSurface::GlSurface(Draw draw, std::function<void()> release, QWidget* parent)
    : QOpenGLWidget(parent)
    , m_draw(std::move(draw))
    , m_release(std::move(release))
{
    QSurfaceFormat format;
    format.setRenderableType(QSurfaceFormat::OpenGL);
    format.setVersion(2, 1);
    format.setDepthBufferSize(24);
    format.setSamples(4);
    setFormat(format);
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setFocusPolicy(Qt::NoFocus);
}

GlSurface::~GlSurface()
{
    disconnect(m_contextGoes);
    release();
}

void GlSurface::initializeGL()
{
    // Called again when the window gets another context: what was made in the old one goes with it.
    disconnect(m_contextGoes);
    m_contextGoes = connect(context(), &QOpenGLContext::aboutToBeDestroyed, this, [this] { release(); });
}

void GlSurface::paintGL()
{
    const double ratio = devicePixelRatioF();
    m_draw(static_cast<int>(std::lround(width() * ratio)), static_cast<int>(std::lround(height() * ratio)), ratio);
}

void GlSurface::release()
{
    if (context() != nullptr && isValid()) {
        makeCurrent();
        m_release();
        doneCurrent();
    }
}

} // namespace quon::viewer
