// SPDX-License-Identifier: MIT
#pragma once

#include "Viewer/Model/SceneChanges.h"
#include "Viewer/Model/SceneTraversal.h"

#include <OpenSG/OSGConfig.h>

#include <OpenSG/OSGBaseTypes.h>
#include <OpenSG/OSGNode.h>

#include <cstddef>
#include <unordered_set>
#include <vector>

namespace quon::viewer {

/**
 * The parts of a model of which some geometry is shown, see findPart().
 *
 * Asking for them walks over the model once; after that the list is kept until the model changes. Auxiliary nodes and
 * what is below them are no parts.
 */
class ShownParts : public SceneChangeListener, private SceneVisitor {
public:
    /** Lists the parts of another model. The handle keeps nothing alive; null has no parts. */
    void setRoot(const osg::NodePtr& root);

    /** Returns each part once, in the order of the scene; valid until the model changes. */
    const std::vector<osg::NodePtr>& get();

    /** Returns how often the model was walked over. */
    std::size_t getWalkCount() const { return m_walkCount; }

    /** Forgets the list when a node of the model was hidden, shown, named, added or taken out. */
    void sceneChanged(const SceneChanges& changes) override;

private:
    void forget();
    bool enterNode(const osg::NodePtr& node) override;
    void visitGeometry(const GeometryInstance& instance) override;

    osg::NodePtr m_root;
    bool m_listed = false;
    std::vector<osg::NodePtr> m_parts;
    std::unordered_set<osg::UInt32> m_partIds;
    std::vector<osg::UInt32> m_nodeIds;   ///< that the list was made from, sorted
    std::vector<osg::UInt32> m_switchIds; ///< of cores that choose among children, sorted
    std::size_t m_walkCount = 0;
};

} // namespace quon::viewer
