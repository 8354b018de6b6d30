// SPDX-License-Identifier: MIT
#pragma once

#include "Viewer/Model/Matrix4.h"
#include "Viewer/Model/SceneChanges.h"

#include <OpenSG/OSGConfig.h>

#include <OpenSG/OSGColor.h>
#include <OpenSG/OSGNode.h>

#include <cstddef>
#include <memory>

namespace quon::viewer {

class PreparedGeometries;

/**
 * Draws a scene graph with OpenGL.
 *
 * Needs a context of OpenGL 2.1 or a later compatibility profile and works through the scene graph's public interface
 * alone, so that it shows what any host could draw.
 *
 * @par Passes
 * Opaque geometry first, by ascending sort key, within a key by material in the order in which the materials came into
 * the scene; then transparent geometry, by ascending sort key and within a key from back to front, without writing
 * depth. A material is transparent when it says so or when its transparency mode forces it; its opacity is
 * 1 - transparency.
 * @par From back to front
 * Up to 4096 transparent geometries of one sort key are ordered one by one by their middles; where there are more, the
 * batches that they are drawn in are. There is no order among geometries of one unlit colour with the usual blending,
 * for which none is needed: a hundred thousand selection boxes are drawn as fast as lines can be.
 * @par Materials
 * Simple materials are lit by lights that sit at the camera, or drawn in their plain diffuse colour when not lit; the
 * colours of a geometry take the place of the diffuse colour. Of a material's chunks the depth chunks (with the
 * depth-test chunk), line, blend and polygon chunks count; of two chunks of one kind the later one. What decides the
 * material of a geometry says traverseScene().
 * @par Size
 * Small geometries of one material are drawn together, see BatchList; what is out of view is not drawn. Drawing an
 * unchanged scene costs as much as there are batches, not as much as there are nodes, and an edit costs as much as the
 * batches of what it touched. sceneChanged() has to hear of every edit before the next drawing; the values of materials
 * and chunks are read anew at every drawing.
 * Where a picture takes long, it is found out first what is hidden behind opaque surfaces, and of many geometries of
 * one unlit colour those are left out that touch no pixel of another colour. Where those are lines that are drawn last and
 * over everything, what they cover is left out as well. What is seen stays the same.
 * @par Resources
 * Geometry lives in buffers of the context from its first drawing until it changes or is destroyed. All operations
 * except the setters and sceneChanged() need the same context to be current; releaseResources() must be called with it
 * before the renderer or the context is destroyed.
 */
class SceneRenderer : public SceneChangeListener {
public:
    /** How much a drawing shows. */
    enum class Detail {
        Full, ///< everything, the same picture every time
        /// For a picture that another one follows: as much as there is time for, the larger geometries first. Others
        /// are points of about their size and colour, as far as there is time for those. What was never drawn comes
        /// into such pictures little by little, see Statistics::waiting.
        Moving,
    };

    /** What the last draw() did. */
    struct Statistics {
        std::size_t opaque = 0;      ///< geometry nodes drawn in the opaque pass
        std::size_t transparent = 0; ///< geometry nodes drawn in the transparent pass
        std::size_t hidden = 0;      ///< geometry nodes left out because nothing is seen of them
        std::size_t leftOut = 0;     ///< geometry nodes in view that there was no time for
        std::size_t marked = 0;      ///< how many of those were drawn as points
        bool simplified = false;  ///< something is left out, or drawn with one sample and hard lines, for lack of time
        std::size_t waiting = 0;  ///< batches, and geometries drawn by themselves, that have no buffers yet
        std::size_t uploaded = 0; ///< geometries read from the scene
        std::size_t cached = 0;   ///< geometries kept afterwards
        std::size_t batches = 0;  ///< batches kept afterwards
        std::size_t built = 0;    ///< batches, and geometries drawn by themselves, copied into buffers
        std::size_t drawCalls = 0;
        std::size_t primitives = 0; ///< triangles, lines and points drawn
    };

    SceneRenderer();
    ~SceneRenderer();

    SceneRenderer(const SceneRenderer&) = delete;
    SceneRenderer& operator=(const SceneRenderer&) = delete;

    /** The colours at the upper and the lower edge of the viewport; black at first. */
    void setBackground(const osg::Color3f& top, const osg::Color3f& bottom);

    /** Physical pixels per pixel of the user interface: line widths are multiplied by it. */
    void setPixelRatio(double ratio);

    /** Nodes are drawn whose traversal mask has a bit in common with @p mask; all bits at first. */
    void setTravMask(osg::UInt32 mask);

    /** How long a drawing with Detail::Moving should take, in seconds; 0.15 at first. */
    void setMovingTime(double seconds);

    /**
     * How many primitives are expected to be drawn in the moving time, until drawings with Detail::Moving tell better;
     * 300,000 at first. Whatever the detail, what is hidden is looked for in pictures with more than that.
     */
    void setExpectedPrimitives(double count);

    /**
     * How long a drawing with Detail::Moving copies into buffers what was never drawn before, in seconds; 0.03 at
     * first. One batch is copied in any case.
     */
    void setBuildingTime(double seconds);

    /** Takes contents of geometries that need not be read then; borrowed, null for none. */
    void setPrepared(const PreparedGeometries* prepared);

    void sceneChanged(const SceneChanges& changes) override;

    /**
     * Clears the current framebuffer's viewport of the given size and draws the scene below @p root into it.
     *
     * Leaves the state of OpenGL as in a new context, apart from the viewport.
     *
     * @param root null draws the background alone
     * @param width, height in physical pixels
     * @param detail Moving waits until it is drawn, to learn how much can be drawn the next time; where time is short
     * it draws one sample for each pixel, and lines without shades at their edges, before it leaves anything out
     */
    void draw(const osg::NodePtr& root, const Matrix4& view, const Matrix4& projection, int width, int height,
              Detail detail = Detail::Full);

    /** Frees everything in the context; a later draw() starts afresh. */
    void releaseResources();

    const Statistics& getStatistics() const { return m_statistics; }

private:
    class Implementation;

    std::unique_ptr<Implementation> m_implementation;
    Statistics m_statistics;
};

} // namespace quon::viewer
