// SPDX-License-Identifier: MIT
#include "Viewer/Drawing/OffscreenSurface.h"

#include "Viewer/Model/ViewerError.h"

#include <EGL/egl.h>
#include <EGL/eglext.h>
#include <GL/gl.h>
#include <GL/glext.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdlib>
#include <string>

namespace quon::viewer {

namespace {

std::string eglErrorText()
{
    const EGLint error = eglGetError();
    switch (error) {
    case EGL_NOT_INITIALIZED:
        return "EGL cannot be initialised";
    case EGL_BAD_ALLOC:
        return "EGL has no resources left";
    case EGL_BAD_MATCH:
    case EGL_BAD_CONFIG:
        return "EGL offers no matching configuration";
    default:
        return "EGL error " + std::to_string(error);
    }
}

bool isUsable(EGLDisplay display)
{
    return display != EGL_NO_DISPLAY && eglInitialize(display, nullptr, nullptr) == EGL_TRUE;
}

/** The display of no window system: Mesa's, or that of a graphics card where there is its driver alone. */
EGLDisplay openDisplay()
{
    EGLDisplay display = eglGetPlatformDisplay(EGL_PLATFORM_SURFACELESS_MESA, EGL_DEFAULT_DISPLAY, nullptr);
    if (isUsable(display)) {
        return display;
    }
    const auto queryDevices = reinterpret_cast<PFNEGLQUERYDEVICESEXTPROC>(eglGetProcAddress("eglQueryDevicesEXT"));
    std::array<EGLDeviceEXT, 16> devices{};
    EGLint count = 0;
    if (queryDevices == nullptr || queryDevices(devices.size(), devices.data(), &count) != EGL_TRUE) {
        return EGL_NO_DISPLAY;
    }
    for (EGLint i = 0; i < count; ++i) {
        display = eglGetPlatformDisplay(EGL_PLATFORM_DEVICE_EXT, devices[static_cast<std::size_t>(i)], nullptr);
        if (isUsable(display)) {
            return display;
        }
    }
    return EGL_NO_DISPLAY;
}

/** A framebuffer object with colour and depth; gone at the end of the scope, whatever happens in it. */
class Framebuffer {
public:
    Framebuffer(const int width, const int height, const int samples)
    {
        glGenFramebuffers(1, &m_framebuffer);
        glGenRenderbuffers(2, m_buffers);
        glBindFramebuffer(GL_FRAMEBUFFER, m_framebuffer);
        const GLenum formats[] = {GL_RGBA8, GL_DEPTH_COMPONENT24};
        const GLenum attachments[] = {GL_COLOR_ATTACHMENT0, GL_DEPTH_ATTACHMENT};
        for (int i = 0; i < 2; ++i) {
            glBindRenderbuffer(GL_RENDERBUFFER, m_buffers[i]);
            glRenderbufferStorageMultisample(GL_RENDERBUFFER, samples, formats[i], width, height);
            glFramebufferRenderbuffer(GL_FRAMEBUFFER, attachments[i], GL_RENDERBUFFER, m_buffers[i]);
        }
    }

    ~Framebuffer()
    {
        glBindFramebuffer(GL_FRAMEBUFFER, 0);
        glDeleteFramebuffers(1, &m_framebuffer);
        glDeleteRenderbuffers(2, m_buffers);
    }

    Framebuffer(const Framebuffer&) = delete;
    Framebuffer& operator=(const Framebuffer&) = delete;

    bool isComplete() const { return glCheckFramebufferStatus(GL_FRAMEBUFFER) == GL_FRAMEBUFFER_COMPLETE; }

    GLuint getName() const { return m_framebuffer; }

private:
    GLuint m_framebuffer = 0;
    GLuint m_buffers[2] = {};
};

} // namespace

class OffscreenSurface::CurrentContext {
public:
    CurrentContext(EGLDisplay display, EGLContext context)
        : m_previousDisplay(eglGetCurrentDisplay())
        , m_previousContext(eglGetCurrentContext())
        , m_previousDraw(eglGetCurrentSurface(EGL_DRAW))
        , m_previousRead(eglGetCurrentSurface(EGL_READ))
        , m_display(display)
    {
        if (eglMakeCurrent(display, EGL_NO_SURFACE, EGL_NO_SURFACE, context) != EGL_TRUE) {
            throw ViewerError("drawing without a display", eglErrorText());
        }
    }

    ~CurrentContext()
    {
        if (m_previousContext != EGL_NO_CONTEXT) {
            eglMakeCurrent(m_previousDisplay, m_previousDraw, m_previousRead, m_previousContext);
        } else {
            eglMakeCurrent(m_display, EGL_NO_SURFACE, EGL_NO_SURFACE, EGL_NO_CONTEXT);
        }
    }

    CurrentContext(const CurrentContext&) = delete;
    CurrentContext& operator=(const CurrentContext&) = delete;

private:
    EGLDisplay m_previousDisplay;
    EGLContext m_previousContext;
    EGLSurface m_previousDraw;
    EGLSurface m_previousRead;
    EGLDisplay m_display;
};

OffscreenSurface::OffscreenSurface()
    : m_display(EGL_NO_DISPLAY)
    , m_context(EGL_NO_CONTEXT)
{
    // Without overwriting: whoever wants to try the graphics card can say so.
    setenv("LIBGL_ALWAYS_SOFTWARE", "true", 0);
    m_display = openDisplay();
    if (m_display == EGL_NO_DISPLAY || eglBindAPI(EGL_OPENGL_API) != EGL_TRUE) {
        throw ViewerError("drawing without a display", eglErrorText());
    }
    const EGLint wanted[] = {EGL_RENDERABLE_TYPE, EGL_OPENGL_BIT, EGL_SURFACE_TYPE, EGL_PBUFFER_BIT, EGL_NONE};
    EGLConfig config = nullptr;
    EGLint count = 0;
    if (eglChooseConfig(m_display, wanted, &config, 1, &count) != EGL_TRUE || count < 1) {
        config = EGL_NO_CONFIG_KHR;
    }
    m_context = eglCreateContext(m_display, config, EGL_NO_CONTEXT, nullptr);
    if (m_context == EGL_NO_CONTEXT) {
        throw ViewerError("drawing without a display", eglErrorText());
    }
}

OffscreenSurface::~OffscreenSurface()
{
    // The display stays initialised: it is the process's, and other surfaces may use it.
    eglDestroyContext(m_display, m_context);
}

QImage OffscreenSurface::draw(const int width, const int height, const std::function<void()>& draw)
{
    const CurrentContext current(m_display, m_context);
    GLint largest = 0;
    GLint samples = 0;
    glGetIntegerv(GL_MAX_RENDERBUFFER_SIZE, &largest);
    glGetIntegerv(GL_MAX_SAMPLES, &samples);
    if (width > largest || height > largest) {
        throw ViewerError("drawing without a display",
                          "the picture would be larger than " + std::to_string(largest) + " pixels");
    }

    const Framebuffer resolved(width, height, 0);
    const Framebuffer drawn(width, height, m_multisampling ? std::min<GLint>(samples, 4) : 0);
    if (!drawn.isComplete()) {
        throw ViewerError("drawing without a display", "the framebuffer is not complete");
    }
    draw();

    glBindFramebuffer(GL_READ_FRAMEBUFFER, drawn.getName());
    glBindFramebuffer(GL_DRAW_FRAMEBUFFER, resolved.getName());
    glBlitFramebuffer(0, 0, width, height, 0, 0, width, height, GL_COLOR_BUFFER_BIT, GL_NEAREST);
    glBindFramebuffer(GL_READ_FRAMEBUFFER, resolved.getName());
    QImage image(width, height, QImage::Format_RGBX8888);
    glPixelStorei(GL_PACK_ALIGNMENT, 4);
    glReadPixels(0, 0, width, height, GL_RGBA, GL_UNSIGNED_BYTE, image.bits());
    // OpenGL begins at the lower edge, and what alpha the scene left behind is nobody's business.
    return image.mirrored().convertToFormat(QImage::Format_RGB32);
}

void OffscreenSurface::withContext(const std::function<void()>& work)
{
    const CurrentContext current(m_display, m_context);
    work();
}

} // namespace quon::viewer
