// SPDX-License-Identifier: MIT
#pragma once

#include <InteractionTesting/SceneBuilder.h>

#include <OpenSG/OSGConfig.h>

#include <OpenSG/OSGNode.h>
#include <OpenSG/OSGTransform.h>

#include <cstddef>
#include <vector>

namespace quon::benchmarks {

/**
 * A scene like that of a machine: assemblies of a hundred parts each, which share a hundred shapes.
 *
 * A part is a node with a geometry, below the transform of its assembly, below the root. All boxes differ and all of
 * them are known to the scene graph already.
 */
class PartScene {
public:
    /** Builds a scene of @p partCount parts. */
    explicit PartScene(std::size_t partCount);

    /**
     * Returns a scene of @p partCount parts, the one of the last call where that has as many: the larger ones take
     * longer to build than what is done with them.
     */
    static PartScene& get(std::size_t partCount);

    /** Returns the root; the scene holds it. */
    osg::NodePtr getRoot() const { return m_root.get(); }

    /** Returns all parts, in the order of the scene. */
    const std::vector<osg::NodePtr>& getParts() const { return m_parts; }

    /** Returns the parts from the last to the first. */
    std::vector<osg::NodePtr> getPartsBackward() const;

    /** Returns the parts in an order without order, always the same. */
    std::vector<osg::NodePtr> getPartsShuffled() const;

    /** Moves all assemblies, and with them the boxes of all parts, to a place where they were not before the call. */
    void moveAssemblies();

private:
    testing::NodeRef m_root;
    std::vector<osg::TransformPtr> m_assemblies;
    std::vector<osg::NodePtr> m_parts;
    float m_height = 0;
};

} // namespace quon::benchmarks
