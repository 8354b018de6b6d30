// SPDX-License-Identifier: MIT
#pragma once

#include <OpenSG/OSGConfig.h>

#include <OpenSG/OSGBaseTypes.h>

#include <GL/gl.h>

#include <cstddef>
#include <cstdint>
#include <vector>

namespace quon::viewer {

/** Numbers of the vertex attributes in all programs. */
enum VertexAttribute : GLuint { PositionAttribute, NormalAttribute, ColourAttribute, AttributeCount };

/** What a vertex has: three floats of position, then three shorts of normal and four bytes of colour, or neither. */
struct VertexFormat {
    bool hasNormals = false;
    bool hasColours = false;

    std::size_t getNormalOffset() const { return 3 * sizeof(float); }
    std::size_t getColourOffset() const { return getNormalOffset() + (hasNormals ? 4 * sizeof(std::int16_t) : 0); }
    std::size_t getSize() const { return getColourOffset() + (hasColours ? 4 : 0); }
};

/** How many indices of each kind; those of triangles come first in a buffer, then lines, then points. */
struct IndexCounts {
    std::size_t triangles = 0;
    std::size_t lines = 0;
    std::size_t points = 0;

    std::size_t getSum() const { return triangles + lines + points; }
    std::size_t getPrimitives() const { return triangles / 3 + lines / 2 + points; }

    IndexCounts& operator+=(const IndexCounts& other)
    {
        triangles += other.triangles;
        lines += other.lines;
        points += other.points;
        return *this;
    }
};

/** What buffers are filled with. */
struct VertexData {
    VertexFormat format;
    std::vector<std::byte> vertices;
    std::size_t vertexCount = 0;
    std::vector<osg::UInt32> triangles;
    std::vector<osg::UInt32> lines;
    std::vector<osg::UInt32> points;

    /** Makes room for more vertices, all zero, and returns the place of the first. */
    std::byte* addVertices(std::size_t count);
    void clear();
};

/** Vertices and indices in buffers of the current context; indices are short ones where they can be. */
class VertexBuffers {
public:
    /** @param doomed takes the names of buffers that no context may be current to delete */
    void release(std::vector<GLuint>& doomed);

    void fill(const VertexData& data);

    /** Fills the vertices alone, up to 65536 of them: what is drawn comes with indices of its own until fillIndices().
     */
    void fillVertices(const VertexData& data);

    /** Adds short indices to the vertices. */
    void fillIndices(const std::vector<GLushort>& triangles, const std::vector<GLushort>& lines,
                     const std::vector<GLushort>& points);

    bool hasIndices() const { return m_hasIndices; }

    bool isFilled() const { return m_vertices != 0; }
    const VertexFormat& getFormat() const { return m_format; }
    const IndexCounts& getCounts() const { return m_counts; }

    /** Binds both buffers and points the attributes at them. */
    void bind() const;

    /** Draws a run of indices of the bound buffers; @p first counts within the kind. */
    void drawTriangles(std::size_t first, std::size_t count) const;
    void drawLines(std::size_t first, std::size_t count) const;
    void drawPoints(std::size_t first, std::size_t count) const;

    /** Draws with indices that are in no buffer; bind() is to be called before anything else is drawn. */
    static void draw(GLenum mode, const std::vector<GLushort>& indices);

    static void unbind();

private:
    void drawElements(GLenum mode, std::size_t first, std::size_t count) const;

    GLuint m_vertices = 0;
    GLuint m_indices = 0;
    VertexFormat m_format;
    IndexCounts m_counts;
    bool m_shortIndices = false;
    bool m_hasIndices = false;
};

} // namespace quon::viewer
