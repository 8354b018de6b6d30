// SPDX-License-Identifier: MIT
#pragma once

#include <OpenSG/OSGConfig.h>

#include <OpenSG/OSGBaseTypes.h>
#include <OpenSG/OSGColor.h>
#include <OpenSG/OSGMaterial.h>

#include <GL/gl.h>

namespace quon::viewer {

/**
 * What a material means to the renderer, read from the material and its chunks, with values that OpenGL may see: no
 * number is infinite or not a number.
 */
struct MaterialState {
    /** Points have no chunk of their own; this is the size at which one is still found with the eye. */
    static constexpr float PointSize = 3;

    bool transparent = false; ///< belongs to the transparent pass
    osg::Int32 sortKey = 0;

    bool lit = true;
    bool coloursCount = true; ///< the colours of a geometry take the place of the diffuse colour
    osg::Color4f diffuse;     ///< with the opacity as alpha
    osg::Color3f emission;
    osg::Color3f specular;
    float shininess = 1;

    bool depthTest = true;
    bool depthReadOnly = false;
    GLenum depthFunction = GL_LEQUAL;
    double depthNear = 0;
    double depthFar = 1;

    float lineWidth = 1;
    bool lineSmooth = false;
    GLint stippleRepeat = 1;
    GLushort stipplePattern = 0xFFFF;

    bool hasBlending = false; ///< the material says how it is blended
    GLenum sourceFactor = GL_SRC_ALPHA;
    GLenum destinationFactor = GL_ONE_MINUS_SRC_ALPHA;
    GLenum blendEquation = GL_NONE;
    osg::Color4f blendColour;
    GLenum alphaFunction = GL_NONE;
    float alphaValue = 0;

    GLenum cullFace = GL_NONE;
    GLenum frontFace = GL_CCW;
    GLenum frontMode = GL_FILL;
    GLenum backMode = GL_FILL;
    bool polygonSmooth = false;
    bool offsetPoint = false;
    bool offsetLine = false;
    bool offsetFill = false;
    float offsetFactor = 0;
    float offsetBias = 0;

    /** @param material null is a grey one that is lit */
    static MaterialState read(const osg::MaterialPtr& material);

    /**
     * Whether geometries of this material, drawn into the transparent pass without colours of their own, give the same
     * picture in whatever order: one colour, blended the usual way or not at all.
     */
    bool isOrderless() const;

    /** Whether it writes depths as opaque surfaces do, so that nothing is seen of what is behind it. */
    bool isCovering() const;

    /** Whether of it and of other opaque surfaces the nearest is seen, whatever else is drawn behind that or not. */
    bool isNearestSeen() const;

    /** Whether nothing is seen of it behind an opaque surface. */
    bool isCoverable() const;

    /** Whether it is drawn over whatever was drawn before, without gaps. */
    bool isOverlay() const;

    /**
     * Sets the state of the current context.
     *
     * @param pixelRatio physical pixels per pixel of the user interface
     * @param smoothLines false draws lines without shades at their edges whatever the material says
     */
    void apply(float pixelRatio, bool smoothLines) const;

    /** Sets back everything that apply() sets to what it is in a new context. */
    static void reset();

private:
    bool passesNearer() const;
};

} // namespace quon::viewer
