// SPDX-License-Identifier: MIT
#pragma once

#include <OpenSG/OSGConfig.h>

#include <OpenSG/OSGNode.h>
#include <OpenSG/OSGRefPtr.h>

namespace quon::viewer {

/**
 * Makes an assembly of as many parts as wanted: to see how the viewer, or a host, copes with size.
 *
 * The assembly is a building of levels, a level has modules, a module has racks, and a rack has up to twenty parts:
 * plates, brackets, rails, housings, cylinders and bolts of eight materials. It has the shape of a loaded model: every
 * level, module, rack and part is a named node with a transform core, and a part has one child with a geometry core
 * and without a name. Parts of one kind and material share one geometry core. The last rack, module and level may be
 * incomplete.
 *
 * Lengths are metres, y is up. The same count gives the same assembly, everywhere.
 */
class AssemblyGenerator {
public:
    static constexpr int LargestCount = 5000000;

    AssemblyGenerator() = delete;

    /**
     * Makes an assembly.
     *
     * @param partCount values below 1 count as 1, values above LargestCount as LargestCount
     * @return its root; nobody else holds it
     */
    static osg::RefPtr<osg::NodePtr> generate(int partCount);
};

} // namespace quon::viewer
