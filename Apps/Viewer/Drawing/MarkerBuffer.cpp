// SPDX-License-Identifier: MIT
#include "Viewer/Drawing/MarkerBuffer.h"

#include "Viewer/Drawing/VertexBuffers.h"

#include <GL/glext.h>

namespace quon::viewer {

void MarkerBuffer::release(std::vector<GLuint>& doomed)
{
    if (m_name != 0) {
        doomed.push_back(m_name);
        m_name = 0;
    }
}

void MarkerBuffer::fill(const std::vector<Marker>& markers)
{
    if (m_name == 0) {
        glGenBuffers(1, &m_name);
    }
    glBindBuffer(GL_ARRAY_BUFFER, m_name);
    glBufferData(GL_ARRAY_BUFFER, static_cast<GLsizeiptr>(markers.size() * sizeof(Marker)), markers.data(),
                 GL_STATIC_DRAW);
}

void MarkerBuffer::draw(const std::size_t first, const std::size_t count) const
{
    bind();
    glDrawArrays(GL_POINTS, static_cast<GLint>(first), static_cast<GLsizei>(count));
}

void MarkerBuffer::draw(const std::vector<std::uint32_t>& places) const
{
    bind();
    glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, 0);
    glDrawElements(GL_POINTS, static_cast<GLsizei>(places.size()), GL_UNSIGNED_INT, places.data());
}

void MarkerBuffer::bind() const
{
    static_assert(offsetof(Marker, size) == 3 * sizeof(float), "the size is the fourth component of the position");
    const auto stride = static_cast<GLsizei>(sizeof(Marker));
    glBindBuffer(GL_ARRAY_BUFFER, m_name);
    glEnableVertexAttribArray(PositionAttribute);
    glVertexAttribPointer(PositionAttribute, 4, GL_FLOAT, GL_FALSE, stride, nullptr);
    glDisableVertexAttribArray(NormalAttribute);
    glEnableVertexAttribArray(ColourAttribute);
    // OpenGL takes offsets in the clothes of pointers.
    glVertexAttribPointer(ColourAttribute, 4, GL_UNSIGNED_BYTE, GL_TRUE, stride,
                          reinterpret_cast<const void*>(offsetof(Marker, colour))); // NOLINT(performance-no-int-to-ptr)
}

} // namespace quon::viewer
