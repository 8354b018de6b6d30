// SPDX-License-Identifier: MIT
#pragma once

namespace quon::viewer {

struct GeometryData;

/** To which side the triangles of a geometry turn the face of which the corners run counter-clockwise. */
enum class SurfaceFacing {
    Any,     ///< to both, or nobody knows: both sides have to be drawn
    Outward, ///< of bodies without holes: the other side is never seen from outside
    Inward,
};

/**
 * Finds out whether all triangles enclose bodies.
 *
 * Each body has to be closed, with all triangles running the same way round, and to be seen as a whole from its middle,
 * as boxes, cylinders and bolts are: then nothing of it is inside out, even where bodies overlap. Other shapes, and
 * very large ones, count as Any. Lines and points do not matter; corners in the same place are one corner.
 */
SurfaceFacing findSurfaceFacing(const GeometryData& data);

} // namespace quon::viewer
