// SPDX-License-Identifier: MIT
#pragma once

#include <OpenSG/OSGConfig.h>

#include <OpenSG/OSGColor.h>

#include <GL/gl.h>

namespace quon::viewer {

class CoverMap;

/**
 * Fills a CoverMap with what OpenGL has drawn.
 *
 * All operations, construction and destruction included, need the same context. What was bound for drawing and reading
 * is bound again afterwards; no error of OpenGL stays behind.
 */
class CoverReader {
public:
    CoverReader() = default;
    ~CoverReader();

    CoverReader(const CoverReader&) = delete;
    CoverReader& operator=(const CoverReader&) = delete;

    /**
     * Lets what is drawn from here on go into a depth buffer of its own, with the given samples for each pixel.
     *
     * @return false when there is no such buffer: nothing has changed, and readDepth() must not be called
     */
    bool beginDepth(int width, int height, int samples);

    /** Forgets the errors of OpenGL that nobody has asked for. */
    static void clearErrors();

    /**
     * Reads what was drawn since beginDepth(), of each pixel the depth of the farthest sample. The map is not finished.
     */
    void readDepth(CoverMap& map);

    /**
     * Reads which pixels of the framebuffer that is drawn into have a colour already, in all their samples.
     *
     * @return false when they cannot be read
     */
    bool readColour(CoverMap& map, int width, int height, const osg::Color4f& colour);

private:
    /** Frees the buffers of beginDepth() and readColour(). */
    void releaseDepth();
    void releaseColour();

    bool makeDepth(int width, int height, int samples);
    bool makeColour(int width, int height);
    void makeFarthestProgram();
    void drawFarthest() const;

    // What is drawn into, and for several samples the farthest of them.
    GLuint m_depthFramebuffer = 0;
    GLuint m_depthTexture = 0;
    GLuint m_farthestFramebuffer = 0;
    GLuint m_farthestBuffer = 0;
    int m_depthWidth = 0;
    int m_depthHeight = 0;
    int m_depthSamples = 0;
    bool m_isDepthPossible = true;

    GLuint m_farthestProgram = 0;
    GLuint m_corners = 0;
    bool m_isFarthestPossible = true;

    // One sample for each pixel of what was drawn.
    GLuint m_colourFramebuffer = 0;
    GLuint m_colourBuffer = 0;
    int m_colourWidth = 0;
    int m_colourHeight = 0;

    GLint m_drawn = 0; ///< framebuffers that were bound at beginDepth()
    GLint m_read = 0;
};

} // namespace quon::viewer
