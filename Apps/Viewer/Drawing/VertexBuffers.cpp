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

using Kinds = std::array<const std::vector<osg::UInt32>*, KindCount>;

void fillShortIndices(const Kinds& kinds, const std::size_t count)
{
    std::vector<GLushort> indices;
    indices.reserve(count);
    for (const std::vector<osg::UInt32>* kind : kinds) {
        for (const osg::UInt32 index : *kind) {
            indices.push_back(static_cast<GLushort>(index));
        }
    }
    glBufferData(GL_ELEMENT_ARRAY_BUFFER, static_cast<GLsizeiptr>(count * sizeof(GLushort)), indices.data(),
                 GL_STATIC_DRAW);
}

// Large ones are handed over as they are.
void fillLongIndices(const Kinds& kinds, const std::size_t count)
{
    glBufferData(GL_ELEMENT_ARRAY_BUFFER, static_cast<GLsizeiptr>(count * sizeof(GLuint)), nullptr, GL_STATIC_DRAW);
    GLintptr offset = 0;
    for (const std::vector<osg::UInt32>* kind : kinds) {
        const auto size = static_cast<GLsizeiptr>(kind->size() * sizeof(GLuint));
        glBufferSubData(GL_ELEMENT_ARRAY_BUFFER, offset, size, kind->data());
        offset += size;
    }
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
    if (m_vertices == 0) {
        glGenBuffers(1, &m_vertices);
        glGenBuffers(1, &m_indices);
    }
    m_format = data.format;
    m_counts = {data.triangles.size(), data.lines.size(), data.points.size()};
    m_shortIndices = data.vertexCount <= MostShortIndices;
    glBindBuffer(GL_ARRAY_BUFFER, m_vertices);
    glBufferData(GL_ARRAY_BUFFER, static_cast<GLsizeiptr>(data.vertices.size()), data.vertices.data(), GL_STATIC_DRAW);
    glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, m_indices);
    const Kinds kinds{&data.triangles, &data.lines, &data.points};
    if (m_shortIndices) {
        fillShortIndices(kinds, m_counts.getSum());
    } else {
        fillLongIndices(kinds, m_counts.getSum());
    }
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
