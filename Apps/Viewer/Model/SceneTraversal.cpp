// SPDX-License-Identifier: MIT
#include "Viewer/Model/SceneTraversal.h"

#include <Extensions/SceneExtensions.h>

#include <OpenSG/OSGMaterialGroup.h>
#include <OpenSG/OSGSwitch.h>
#include <OpenSG/OSGTransform.h>

#include <unordered_map>
#include <vector>

namespace quon::viewer {

namespace {

// The choice of a switch that lets all children through; its name differs between versions of the scene graph.
constexpr osg::Int32 AllChildren = -2;

struct Entry {
    osg::NodePtr node;
    InheritedState inherited;
};

CoreKind findCoreKind(const osg::NodeCorePtr& core)
{
    if (osg::GeometryPtr::dcast(core) != osg::NullFC) {
        return CoreKind::Geometry;
    }
    if (osg::TransformPtr::dcast(core) != osg::NullFC) {
        return CoreKind::Transform;
    }
    if (osg::MaterialGroupPtr::dcast(core) != osg::NullFC) {
        return CoreKind::MaterialGroup;
    }
    return osg::SwitchPtr::dcast(core) != osg::NullFC ? CoreKind::Switch : CoreKind::Other;
}

} // namespace

CoreKind getCoreKind(const osg::NodeCorePtr& core)
{
    if (core == osg::NullFC) {
        return CoreKind::Other;
    }
    // Casts that fail take long, and nearly all cores are of a few types.
    thread_local std::unordered_map<osg::UInt32, CoreKind> kinds;
    const auto [kind, isNew] = kinds.try_emplace(core->getType().getId(), CoreKind::Other);
    if (isNew) {
        kind->second = findCoreKind(core);
    }
    return kind->second;
}

InheritedState InheritedState::find(const osg::NodePtr& node)
{
    InheritedState state;
    const osg::NodePtr parent = node->getParent();
    if (parent == osg::NullFC) {
        return state;
    }
    state.toWorld = parent->getToWorld();
    for (osg::NodePtr above = parent; above != osg::NullFC; above = above->getParent()) {
        const osg::NodeCorePtr core = above->getCore();
        if (getCoreKind(core) == CoreKind::MaterialGroup) {
            const osg::MaterialPtr material = osg::MaterialGroupPtr::dcast(core)->getMaterial();
            state.groupMaterial = material != osg::NullFC ? material : state.groupMaterial;
        }
    }
    return state;
}

void traverseScene(const osg::NodePtr& root, const osg::UInt32 mask, SceneVisitor& visitor)
{
    if (root != osg::NullFC) {
        traverseScene(root, InheritedState::find(root), mask, visitor);
    }
}

void traverseScene(const osg::NodePtr& root, const InheritedState& inherited, const osg::UInt32 mask,
                   SceneVisitor& visitor)
{
    std::vector<Entry> pending;
    if (root != osg::NullFC) {
        pending.push_back({root, inherited});
    }
    while (!pending.empty()) {
        const osg::NodePtr node = pending.back().node;
        InheritedState state = pending.back().inherited;
        pending.pop_back();
        if (!visitor.enterNode(node) || (node->getTravMask() & mask) == 0) {
            continue;
        }

        osg::Int32 choice = AllChildren;
        const osg::NodeCorePtr core = node->getCore();
        switch (getCoreKind(core)) {
        case CoreKind::Transform:
            state.toWorld.mult(osg::TransformPtr::dcast(core)->getMatrix());
            break;
        case CoreKind::MaterialGroup:
            if (state.groupMaterial == osg::NullFC) {
                state.groupMaterial = osg::MaterialGroupPtr::dcast(core)->getMaterial();
            }
            break;
        case CoreKind::Switch:
            choice = osg::SwitchPtr::dcast(core)->getChoice();
            break;
        case CoreKind::Geometry: {
            const osg::GeometryPtr geometry = osg::GeometryPtr::dcast(core);
            const bool keepsOwn = state.groupMaterial == osg::NullFC || extensions::getOverwriteMaterial(geometry);
            const osg::MaterialPtr ownMaterial = geometry->getMaterial();
            visitor.visitGeometry({node, geometry, state.toWorld, keepsOwn ? ownMaterial : state.groupMaterial});
            break;
        }
        case CoreKind::Other:
            break;
        }

        // Last child first, so that the first one is on top.
        for (osg::UInt32 i = node->getNChildren(); i > 0; --i) {
            if (choice == AllChildren || choice == static_cast<osg::Int32>(i - 1)) {
                pending.push_back({node->getChild(i - 1), state});
            }
        }
    }
}

} // namespace quon::viewer
