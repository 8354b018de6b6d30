// SPDX-License-Identifier: MIT
#pragma once

#include <QImage>

#include <functional>

namespace quon::viewer {

/**
 * A place to draw with OpenGL where there is no window system at all.
 *
 * Mesa's EGL on its surfaceless platform gives a context of desktop OpenGL without X server, Wayland compositor or
 * graphics card; a framebuffer object takes the place of the window. Qt's offscreen platform has no OpenGL of its own,
 * and a virtual X server would be one more process to start and to wait for. The software renderer is asked for, so
 * that pictures are the same on every machine; where only the driver of a graphics card is there, that card draws.
 *
 * One context for each surface; it is current inside draw() only and restores what was current before.
 */
class OffscreenSurface {
public:
    /** @throws ViewerError when there is no such context here */
    OffscreenSurface();
    ~OffscreenSurface();

    OffscreenSurface(const OffscreenSurface&) = delete;
    OffscreenSurface& operator=(const OffscreenSurface&) = delete;

    /** Whether pictures are antialiased with several samples a pixel; on at first, off for exact colours. */
    void setMultisampling(bool multisampling) { m_multisampling = multisampling; }

    /**
     * Calls @p draw with the context current and a framebuffer of the given size bound, and reads back the picture.
     *
     * @param width, height in pixels; must be positive (not checked)
     * @return the picture, upright and opaque
     * @throws ViewerError when the framebuffer cannot be made, and whatever @p draw throws
     */
    QImage draw(int width, int height, const std::function<void()>& draw);

    /** Calls @p work with the context current, to free resources in it. */
    void withContext(const std::function<void()>& work);

private:
    class CurrentContext;

    void* m_display;
    void* m_context;
    bool m_multisampling = true;
};

} // namespace quon::viewer
