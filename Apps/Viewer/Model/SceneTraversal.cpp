// SPDX-License-Identifier: MIT
#include "Viewer/Model/SceneTraversal.h"

#include <Extensions/SceneExtensions.h>

#include <OpenSG/OSGMaterialGroup.h>
#include <OpenSG/OSGSwitch.h>
#include <OpenSG/OSGTransform.h>

#include <vector>

namespace quon::viewer {

namespace {

// The choice of a switch that lets all children through; its name differs between versions of the scene graph.
constexpr osg::Int32 AllChildren = -2;

struct Entry {
    osg::NodePtr node;
    osg::Matrix parentToWorld;
    osg::MaterialPtr groupMaterial;
};

template <class Pointer>
Pointer coreOf(const osg::NodePtr& node)
{
    const osg::NodeCorePtr core = node->getCore();
    return core == osg::NullFC ? Pointer(osg::NullFC) : Pointer::dcast(core);
}

osg::MaterialPtr groupMaterialAbove(const osg::NodePtr& root)
{
    osg::MaterialPtr outermost;
    for (osg::NodePtr node = root->getParent(); node != osg::NullFC; node = node->getParent()) {
        const osg::MaterialGroupPtr group = coreOf<osg::MaterialGroupPtr>(node);
        if (group != osg::NullFC && group->getMaterial() != osg::NullFC) {
            outermost = group->getMaterial();
        }
    }
    return outermost;
}

} // namespace

void traverseScene(const osg::NodePtr& root, const osg::UInt32 mask, SceneVisitor& visitor)
{
    if (root == osg::NullFC) {
        return;
    }
    Entry start;
    start.node = root;
    start.groupMaterial = groupMaterialAbove(root);
    if (root->getParent() != osg::NullFC) {
        start.parentToWorld = root->getParent()->getToWorld();
    }

    std::vector<Entry> pending{start};
    while (!pending.empty()) {
        Entry entry = pending.back();
        pending.pop_back();
        if (!visitor.enterNode(entry.node) || (entry.node->getTravMask() & mask) == 0) {
            continue;
        }

        osg::Int32 choice = AllChildren;
        const osg::NodeCorePtr core = entry.node->getCore();
        if (core != osg::NullFC) {
            if (const osg::TransformPtr transform = osg::TransformPtr::dcast(core); transform != osg::NullFC) {
                entry.parentToWorld.mult(transform->getMatrix());
            } else if (const osg::MaterialGroupPtr group = osg::MaterialGroupPtr::dcast(core); group != osg::NullFC) {
                if (entry.groupMaterial == osg::NullFC) {
                    entry.groupMaterial = group->getMaterial();
                }
            } else if (const osg::SwitchPtr choosing = osg::SwitchPtr::dcast(core); choosing != osg::NullFC) {
                choice = choosing->getChoice();
            } else if (const osg::GeometryPtr geometry = osg::GeometryPtr::dcast(core); geometry != osg::NullFC) {
                const bool keepsOwn = entry.groupMaterial == osg::NullFC || extensions::getOverwriteMaterial(geometry);
                const osg::MaterialPtr ownMaterial = geometry->getMaterial();
                visitor.visitGeometry(
                    {entry.node, geometry, entry.parentToWorld, keepsOwn ? ownMaterial : entry.groupMaterial});
            }
        }

        // Last child first, so that the first one is on top.
        for (osg::UInt32 i = entry.node->getNChildren(); i > 0; --i) {
            if (choice == AllChildren || choice == static_cast<osg::Int32>(i - 1)) {
                pending.push_back({entry.node->getChild(i - 1), entry.parentToWorld, entry.groupMaterial});
            }
        }
    }
}

} // namespace quon::viewer
