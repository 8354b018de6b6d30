// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <memory>

struct RTCDeviceTy;
struct RTCSceneTy;

namespace quon::viewer {

struct GeometryData;

/**
 * The triangles of a geometry, sorted into a tree of Embree's in which rays find them.
 *
 * Making one takes about half a microsecond per triangle and may be done in any thread; it uses all processors. It
 * keeps copies of what it needs.
 */
class TriangleTree {
public:
    /** Hears from 0 to 1 how far it is, in any thread and in several at once; false ends it. */
    using Progress = std::function<bool(double share)>;

    /** @param progress not called any more afterwards; after it has returned false, the tree is of no use */
    explicit TriangleTree(const GeometryData& data, const Progress& progress = {});
    ~TriangleTree();

    TriangleTree(const TriangleTree&) = delete;
    TriangleTree& operator=(const TriangleTree&) = delete;

    /** What instances are made of; its triangles are those of the geometry, by their numbers. */
    RTCSceneTy* getScene() const { return m_scene; }

    /** The device of all trees, which scenes with instances of them have to be made with. */
    static std::shared_ptr<RTCDeviceTy> getDevice();

private:
    std::shared_ptr<RTCDeviceTy> m_device;
    RTCSceneTy* m_scene;
};

} // namespace quon::viewer
