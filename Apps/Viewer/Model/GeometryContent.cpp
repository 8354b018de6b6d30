// SPDX-License-Identifier: MIT
#include "Viewer/Model/GeometryContent.h"

#include <algorithm>
#include <utility>

namespace quon::viewer {

namespace {

// Neighbours in a file are mostly neighbours in space: small enough for tight boxes, large enough for few of them.
constexpr std::size_t PositionsPerBlock = 256;

} // namespace

GeometryContent::GeometryContent(GeometryData data)
    : m_data(std::move(data))
{
    m_data.getBounds(m_minimum, m_maximum);
}

const std::vector<GeometryContent::Block>& GeometryContent::getBlocks() const
{
    if (m_hasBlocks) {
        return m_blocks;
    }
    m_hasBlocks = true;
    findUsed();
    const std::size_t count = m_data.positions.size();
    for (std::size_t begin = 0; begin < count; begin += PositionsPerBlock) {
        Block block;
        block.begin = begin;
        block.end = std::min(begin + PositionsPerBlock, count);
        bool isAny = false;
        for (std::size_t i = begin; i < block.end; ++i) {
            if (!isUsed(i)) {
                continue;
            }
            const osg::Pnt3f& position = m_data.positions[i];
            if (!isAny) {
                block.minimum = block.maximum = position;
                isAny = true;
            }
            for (osg::UInt32 axis = 0; axis < 3; ++axis) {
                block.minimum[axis] = std::min(block.minimum[axis], position[axis]);
                block.maximum[axis] = std::max(block.maximum[axis], position[axis]);
            }
        }
        if (isAny) {
            m_blocks.push_back(block);
        }
    }
    return m_blocks;
}

const TriangleTree& GeometryContent::getTree() const
{
    if (m_tree == nullptr) {
        m_tree = std::make_unique<TriangleTree>(m_data);
    }
    return *m_tree;
}

SurfaceFacing GeometryContent::getFacing() const
{
    if (m_facing == std::nullopt) {
        m_facing = findSurfaceFacing(m_data);
    }
    return *m_facing;
}

void GeometryContent::prepare(const TriangleTree::Progress& progress) const
{
    getBlocks();
    getFacing();
    if (m_tree == nullptr) {
        m_tree = std::make_unique<TriangleTree>(m_data, progress);
    }
}

void GeometryContent::findUsed() const
{
    m_used.assign(m_data.positions.size(), false);
    std::size_t unused = m_used.size();
    for (const std::vector<osg::UInt32>* indices : {&m_data.triangles, &m_data.lines, &m_data.points}) {
        for (const osg::UInt32 index : *indices) {
            unused -= m_used[index] ? 0U : 1U;
            m_used[index] = true;
        }
    }
    if (unused == 0) {
        m_used = {};
    }
}

} // namespace quon::viewer
