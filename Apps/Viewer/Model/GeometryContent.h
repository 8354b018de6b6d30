// SPDX-License-Identifier: MIT
#pragma once

#include "Viewer/Model/GeometryData.h"
#include "Viewer/Model/SurfaceFacing.h"
#include "Viewer/Model/TriangleTree.h"

#include <OpenSG/OSGConfig.h>

#include <OpenSG/OSGVector.h>

#include <cstddef>
#include <memory>
#include <optional>
#include <vector>

namespace quon::viewer {

/**
 * The content of a geometry with what is derived from it, for all who need it: picking, drawing, the outline of the
 * model.
 *
 * What takes long is made when it is first asked for, or by prepare(), which may be in another thread. There are no
 * locks: one thread at a time.
 */
class GeometryContent {
public:
    /** Positions that follow each other, with the box around those of them that a primitive uses. */
    struct Block {
        std::size_t begin = 0;
        std::size_t end = 0; ///< behind the last one
        osg::Pnt3f minimum;
        osg::Pnt3f maximum;
    };

    explicit GeometryContent(GeometryData data);

    GeometryContent(const GeometryContent&) = delete;
    GeometryContent& operator=(const GeometryContent&) = delete;

    const GeometryData& getData() const { return m_data; }

    /** The box around all that is used; zero when nothing is. */
    const osg::Pnt3f& getMinimum() const { return m_minimum; }
    const osg::Pnt3f& getMaximum() const { return m_maximum; }

    /** All positions that are used, in blocks of a few hundred; blocks of which nothing is used are left out. */
    const std::vector<Block>& getBlocks() const;

    /** Whether a primitive uses a position; call getBlocks() first. */
    bool isUsed(const std::size_t position) const { return m_used.empty() || m_used[position]; }

    /** The triangles as rays look for them. */
    const TriangleTree& getTree() const;

    /** Whether the triangles enclose bodies, and from which side they are seen. */
    SurfaceFacing getFacing() const;

    /** Makes everything that takes long. After @p progress has returned false, the content is of no use. */
    void prepare(const TriangleTree::Progress& progress) const;

private:
    void findUsed() const;

    GeometryData m_data;
    osg::Pnt3f m_minimum;
    osg::Pnt3f m_maximum;
    mutable bool m_hasBlocks = false;
    mutable std::vector<Block> m_blocks;
    mutable std::vector<bool> m_used; ///< by position; empty when all are
    mutable std::unique_ptr<const TriangleTree> m_tree;
    mutable std::optional<SurfaceFacing> m_facing;
};

} // namespace quon::viewer
