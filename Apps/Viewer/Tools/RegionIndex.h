// SPDX-License-Identifier: MIT
#pragma once

#include "Viewer/Model/Matrix4.h"

#include <OpenSG/OSGConfig.h>

#include <OpenSG/OSGNode.h>
#include <OpenSG/OSGVector.h>

#include <array>
#include <cstddef>
#include <unordered_map>
#include <vector>

namespace quon::viewer {

struct GeometryData;
struct PixelRectangle;

/**
 * Finds the parts whose geometry lies in a rectangle of the view.
 *
 * Filled once with every geometry that is to be seen and asked often, while a rectangle is being drawn. Most of it is
 * decided by boxes in world space; only geometry whose box crosses the border is looked into, triangle by triangle,
 * line by line.
 */
class RegionIndex {
public:
    /** Where something lies, seen from a region. */
    enum class Place { Outside, Across, Inside };

    /** The part of space that is seen in a rectangle of the viewport, between near and far plane. */
    class Region {
    public:
        static constexpr std::size_t PlaneCount = 6;

        /**
         * @param worldToClip projection times view
         * @param width, height of the viewport in pixels, positive
         */
        Region(const PixelRectangle& rectangle, const Matrix4& worldToClip, int width, int height);

        const Matrix4& getWorldToClip() const { return m_worldToClip; }

        /** The planes in clip space: a point is inside when its product with every one is not negative. */
        const std::array<Vector4, PlaneCount>& getClipPlanes() const { return m_clipPlanes; }

        /** The same planes in world space. */
        const std::array<Vector4, PlaneCount>& getWorldPlanes() const { return m_worldPlanes; }

    private:
        Matrix4 m_worldToClip;
        std::array<Vector4, PlaneCount> m_clipPlanes;
        std::array<Vector4, PlaneCount> m_worldPlanes;
    };

    /** Forgets everything. */
    void clear();

    /**
     * Adds a geometry to the part that @p node belongs to, see findPart().
     *
     * @param toWorld finite (not checked)
     * @param data borrowed until clear(); nothing happens when it has no primitives
     */
    void add(const osg::NodePtr& node, const Matrix4& toWorld, const GeometryData& data);

    /**
     * Finds parts.
     *
     * @param fullyEnclosed only parts of which everything lies in the region, in place of those that reach into it
     * @return in the order of their first add()
     */
    std::vector<osg::NodePtr> find(const Region& region, bool fullyEnclosed);

    /** The number of geometries that the last find() had to look into. */
    std::size_t getExactTestCount() const { return m_exactTestCount; }

private:
    /** A box by its middle and half its edges. */
    struct Box {
        std::array<double, 3> centre{};
        std::array<double, 3> extent{};
    };

    struct Item {
        Box box; ///< in world space
        bool isBoxed = false;
        Matrix4 toWorld;
        const GeometryData* data = nullptr;
        std::size_t part = 0;
    };

    static Place classify(const Box& box, const Region& region);
    const Box& getLocalBox(const GeometryData& data);

    std::vector<osg::NodePtr> m_parts;
    std::vector<Item> m_items;
    std::unordered_map<osg::UInt32, std::size_t> m_partIndices; ///< by container id of the part
    std::unordered_map<const GeometryData*, Box> m_localBoxes;
    std::size_t m_exactTestCount = 0;
};

} // namespace quon::viewer
