// SPDX-License-Identifier: MIT
#include "Viewer/Drawing/VertexBuffers.h"

#include <GL/glext.h>

#include <array>

namespace quon::viewer {

namespace {

constexpr std::size_t MostShortIndices = 65536;

const void* offsetInBuffer(const std::size_t offset)
{
    // OpenGL takes offsets in the clothes of pointers.
    return reinterpret_cast<const void*>(offset); // NOLINT(performance-no-int-to-ptr)
}

constexpr std::size_t KindCount = 3;

// The kinds in one buffer, one behind the other.
template <class Index>
void fillBuffer(const std::array<const std::vector<Index>*, KindCount>& kinds)
{
    std::size_t count = 0;
    for (const std::vector<Index>* kind : kinds) {
        count += kind->size();
    }
    glBufferData(GL_ELEMENT_ARRAY_BUFFER, static_cast<GLsizeiptr>(count * sizeof(Index)), nullptr, GL_STATIC_DRAW);
    GLintptr offset = 0;
    for (const std::vector<Index>* kind : kinds) {
        const auto size = static_cast<GLsizeiptr>(kind->size() * sizeof(Index));
        glBufferSubData(GL_ELEMENT_ARRAY_BUFFER, offset, size, kind->data());
        offset += size;
    }
}

std::vector<GLushort> shorten(const std::vector<osg::UInt32>& indices)
{
    std::vector<GLushort> result;
    result.reserve(indices.size());
    for (const osg::UInt32 index : indices) {
        result.push_back(static_cast<GLushort>(index));
    }
    return result;
}

} // namespace

std::byte* VertexData::addVertices(const std::size_t count)
{
    const std::size_t before = vertices.size();
    vertices.resize(before + count * format.getSize());
    vertexCount += count;
    return vertices.data() + before;
}

void VertexData::clear()
{
    vertices.clear();
    vertexCount = 0;
    triangles.clear();
    lines.clear();
    points.clear();
}

void VertexBuffers::release(std::vector<GLuint>& doomed)
{
    if (m_vertices != 0) {
        doomed.insert(doomed.end(), {m_vertices, m_indices});
    }
    *this = VertexBuffers();
}

void VertexBuffers::fill(const VertexData& data)
{
    fillVertices(data);
    if (data.vertexCount <= MostShortIndices) {
        fillIndices(shorten(data.triangles), shorten(data.lines), shorten(data.points));
        return;
    }
    m_counts = {data.triangles.size(), data.lines.size(), data.points.size()};
    m_shortIndices = false;
    m_hasIndices = true;
    glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, m_indices);
    fillBuffer<osg::UInt32>({&data.triangles, &data.lines, &data.points});
}

void VertexBuffers::fillVertices(const VertexData& data)
{
    if (m_vertices == 0) {
        glGenBuffers(1, &m_vertices);
        glGenBuffers(1, &m_indices);
    }
    m_format = data.format;
    m_counts = {};
    m_hasIndices = false;
    glBindBuffer(GL_ARRAY_BUFFER, m_vertices);
    glBufferData(GL_ARRAY_BUFFER, static_cast<GLsizeiptr>(data.vertices.size()), data.vertices.data(), GL_STATIC_DRAW);
}

void VertexBuffers::fillIndices(const std::vector<GLushort>& triangles, const std::vector<GLushort>& lines,
                                const std::vector<GLushort>& points)
{
    m_counts = {triangles.size(), lines.size(), points.size()};
    m_shortIndices = true;
    m_hasIndices = true;
    glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, m_indices);
    fillBuffer<GLushort>({&triangles, &lines, &points});
}

void VertexBuffers::bind() const
{
    const auto stride = static_cast<GLsizei>(m_format.getSize());
    glBindBuffer(GL_ARRAY_BUFFER, m_vertices);
    glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, m_indices);
    glEnableVertexAttribArray(PositionAttribute);
    glVertexAttribPointer(PositionAttribute, 3, GL_FLOAT, GL_FALSE, stride, nullptr);
    if (m_format.hasNormals) {
        glEnableVertexAttribArray(NormalAttribute);
        glVertexAttribPointer(NormalAttribute, 3, GL_SHORT, GL_TRUE, stride,
                              offsetInBuffer(m_format.getNormalOffset()));
    } else {
        glDisableVertexAttribArray(NormalAttribute);
        glVertexAttrib3f(NormalAttribute, 0, 0, 0);
    }
    if (m_format.hasColours) {
        glEnableVertexAttribArray(ColourAttribute);
        glVertexAttribPointer(ColourAttribute, 4, GL_UNSIGNED_BYTE, GL_TRUE, stride,
                              offsetInBuffer(m_format.getColourOffset()));
    } else {
        glDisableVertexAttribArray(ColourAttribute);
    }
}

void VertexBuffers::drawTriangles(const std::size_t first, const std::size_t count) const
{
    drawElements(GL_TRIANGLES, first, count);
}

void VertexBuffers::drawLines(const std::size_t first, const std::size_t count) const
{
    drawElements(GL_LINES, m_counts.triangles + first, count);
}

void VertexBuffers::drawPoints(const std::size_t first, const std::size_t count) const
{
    drawElements(GL_POINTS, m_counts.triangles + m_counts.lines + first, count);
}

void VertexBuffers::drawElements(const GLenum mode, const std::size_t first, const std::size_t count) const
{
    if (count > 0) {
        glDrawElements(mode, static_cast<GLsizei>(count), m_shortIndices ? GL_UNSIGNED_SHORT : GL_UNSIGNED_INT,
                       offsetInBuffer(first * (m_shortIndices ? sizeof(GLushort) : sizeof(GLuint))));
    }
}

void VertexBuffers::draw(const GLenum mode, const std::vector<GLushort>& indices)
{
    if (!indices.empty()) {
        glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, 0);
        glDrawElements(mode, static_cast<GLsizei>(indices.size()), GL_UNSIGNED_SHORT, indices.data());
    }
}

void VertexBuffers::unbind()
{
    glBindBuffer(GL_ARRAY_BUFFER, 0);
    glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, 0);
    for (GLuint attribute = 0; attribute < AttributeCount; ++attribute) {
        glDisableVertexAttribArray(attribute);
    }
}

} // namespace quon::viewer
