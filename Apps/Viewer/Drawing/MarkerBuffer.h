// SPDX-License-Identifier: MIT
#pragma once

#include <GL/gl.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace quon::viewer {

/** A point in the place of a geometry that there is no time for. */
struct Marker {
    std::array<float, 3> position{};      ///< middle of the geometry, in the space of its batch
    float size = 0;                       ///< side of a square as large as what is seen of its box on average
    std::array<std::uint8_t, 4> colour{}; ///< average of its vertices, where they have colours
};

/** Markers in a buffer of the current context. */
class MarkerBuffer {
public:
    /** @param doomed takes the name of the buffer, which no context may be current to delete */
    void release(std::vector<GLuint>& doomed);

    void fill(const std::vector<Marker>& markers);

    /** Binds the buffer, draws a run of markers with the current program and unbinds nothing. */
    void draw(std::size_t first, std::size_t count) const;

    /** The same with markers one by one. */
    void draw(const std::vector<std::uint32_t>& places) const;

private:
    void bind() const;

    GLuint m_name = 0;
};

} // namespace quon::viewer
