// SPDX-License-Identifier: MIT
#pragma once

#include "Viewer/Model/Matrix4.h"

#include <OpenSG/OSGConfig.h>

#include <OpenSG/OSGColor.h>

#include <GL/gl.h>

#include <array>

namespace quon::viewer {

struct MaterialState;

/** The programs of the renderer. All operations, construction and destruction included, need the same context. */
class ShaderPrograms {
public:
    /** @throws ViewerError with what the driver says when it takes one of them for wrong */
    ShaderPrograms();
    ~ShaderPrograms();

    ShaderPrograms(const ShaderPrograms&) = delete;
    ShaderPrograms& operator=(const ShaderPrograms&) = delete;

    /** Fills the viewport with colours from the upper to the lower edge; nothing of it stays bound. */
    void drawBackground(const osg::Color3f& top, const osg::Color3f& bottom) const;

    /**
     * Makes the program for a material current, with the material's colours.
     *
     * @param coloured vertices have their own
     * @param markers draws the points of a MarkerBuffer
     */
    void use(const MaterialState& material, bool coloured, bool markers = false);

    /** For the program in use. */
    void setMatrices(const Matrix4& modelToEye, const Matrix4& projection) const;

    /**
     * For the program in use, one for markers.
     *
     * @param pixels how many a length of one has at a distance of one
     * @param mostPixels the largest side of a marker
     * @param lift how far markers are moved towards the eye, in their own sizes
     */
    void setMarkerSizes(double pixels, double mostPixels, double lift) const;

private:
    struct Program {
        GLuint name = 0;
        GLint modelToEye = -1;
        GLint modelToClip = -1;
        GLint eyeToClip = -1;
        GLint normalToEye = -1;
        GLint diffuse = -1;
        GLint emission = -1;
        GLint specular = -1;
        GLint shininess = -1;
        GLint markerSizes = -1;
    };

    void release();

    // By three bits: lit or not, with colours of the vertices or without, for markers or not.
    std::array<Program, 8> m_programs;
    const Program* m_current = nullptr;
    GLuint m_background = 0;
    GLuint m_backgroundVertices = 0;
};

} // namespace quon::viewer
