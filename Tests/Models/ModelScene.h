// SPDX-License-Identifier: MIT
#pragma once

#include "ModelRun.h"

#include <InteractionTesting/SceneBuilder.h>

#include <SceneUtilities/koNodeUtils.h>

#include <OpenSG/OSGConfig.h>

#include <OpenSG/OSGGroup.h>
#include <OpenSG/OSGMaterialGroup.h>
#include <OpenSG/OSGMaterialPool.h>
#include <OpenSG/OSGNode.h>
#include <OpenSG/OSGTransform.h>
#include <OpenSG/OSGUberCamera.h>
#include <OpenSG/OSGUberLight.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <map>
#include <vector>

namespace quon::testing {

/**
 * A scene that changes at random, and plain books about it for a model.
 *
 * Nodes have numbers, given in order of creation as container ids are; the root, number 1, stays as it is.
 */
class ModelScene {
public:
    enum class Core { Group, Transform, Geometry, Camera, Light, MaterialGroup, MaterialPool, None };

    using Translation = std::array<float, 3>;

    /** What there is to know about a node without asking the scene graph. */
    struct Info {
        int parent = 0;
        std::vector<int> children;
        Core core = Core::Group;
        osg::UInt32 coreId = 0; ///< 0 without core
        unsigned mask = 0xFFFFFFFF;
        bool isLocked = false;
        Translation translation = {0, 0, 0};
        osg::UInt32 id = 0;
        osg::NodePtr node;
    };

    static constexpr int root = 1;

    /** Two of these are less than 1e-6, three are more. */
    static constexpr float nextToNothing = 1.0F / 2097152.0F;

    ModelScene()
        : m_root(makeNode(osg::Group::create()))
    {
        enter(m_root, 0);
    }

    bool exists(int number) const { return m_nodes.count(number) == 1; }
    const Info& info(int number) const { return m_nodes.at(number); }
    osg::NodePtr node(int number) const { return number == 0 ? osg::NodePtr() : m_nodes.at(number).node; }

    /** The numbers of all nodes but the root. */
    std::vector<int> numbers() const
    {
        std::vector<int> numbers;
        for (const auto& each : m_nodes) {
            if (each.first != root) {
                numbers.push_back(each.first);
            }
        }
        return numbers;
    }

    /** One of the nodes but the root; 0 while there is none, and sometimes else. */
    int pick(const ModelStep& step) const
    {
        const std::vector<int> all = numbers();
        return all.empty() || step.isRare(1, 6) ? 0 : all[step.pick(0, all.size())];
    }

    /** The container id that a node has or had. */
    osg::UInt32 idOf(int number) const { return m_ids.at(static_cast<std::size_t>(number) - 1); }

    /** The sum of all transforms from the root down to this node's own. */
    Translation worldTranslation(int number) const
    {
        Translation sum = {0, 0, 0};
        for (int ancestor = number; ancestor != 0; ancestor = m_nodes.at(ancestor).parent) {
            for (std::size_t axis = 0; axis < 3; ++axis) {
                if (m_nodes.at(ancestor).core == Core::Transform) {
                    sum[axis] += m_nodes.at(ancestor).translation[axis];
                }
            }
        }
        return sum;
    }

    bool isEditable(int number) const
    {
        for (int ancestor = number; ancestor != 0; ancestor = m_nodes.at(ancestor).parent) {
            if (m_nodes.at(ancestor).isLocked) {
                return false;
            }
        }
        return true;
    }

    // What may happen to the scene.

    void addNode(const ModelStep& step)
    {
        if (m_nodes.size() > 10) {
            return;
        }
        const std::vector<int> all = numbers();
        // Below the root as often as below any other.
        const std::size_t place = step.pick(0, all.size() + 1);
        const int parent = place == all.size() ? root : all[place];
        const osg::NodePtr created = osg::Node::create();
        m_nodes.at(parent).node->addChild(created);
        const int number = enter(created, parent);
        m_nodes.at(parent).children.push_back(number);
        giveCore(number, coreOf(step), step);
    }

    void removeNode(const ModelStep& step)
    {
        const int number = pick(step);
        if (number != 0) {
            Info& parent = m_nodes.at(m_nodes.at(number).parent);
            parent.children.erase(std::find(parent.children.begin(), parent.children.end(), number));
            const osg::NodePtr removed = m_nodes.at(number).node;
            forget(number);
            parent.node->subChild(removed);
        }
    }

    void setMask(const ModelStep& step)
    {
        static const std::array<unsigned, 5> masks = {0xFFFFFFFF, 0xFFFFFFFF, 0, 0xFFFFFFFE, 1};
        const int number = pick(step);
        if (number != 0) {
            Info& info = m_nodes.at(number);
            info.mask = masks[step.pick(2, masks.size())];
            osg::beginEditCP(info.node, osg::Node::TravMaskFieldMask);
            info.node->setTravMask(info.mask);
            osg::endEditCP(info.node, osg::Node::TravMaskFieldMask);
        }
    }

    void setCore(const ModelStep& step)
    {
        const int number = pick(step);
        if (number != 0) {
            giveCore(number, coreOf(step), step);
        }
    }

    /** Moves a transform, to another place or by next to nothing. */
    void move(const ModelStep& step)
    {
        const int number = pick(step);
        if (number == 0 || m_nodes.at(number).core != Core::Transform) {
            return;
        }
        Info& info = m_nodes.at(number);
        if (step.pick(2, 2) == 0) {
            info.translation[step.pick(3, 3)] += static_cast<float>(1 + step.pick(4, 3)) * nextToNothing;
        } else {
            info.translation = translationOf(step);
        }
        setTranslation(osg::TransformPtr::dcast(info.node->getCore()), info.translation[0], info.translation[1],
                       info.translation[2]);
    }

    void lock(const ModelStep& step)
    {
        const int number = pick(step);
        if (number != 0) {
            Info& info = m_nodes.at(number);
            info.isLocked = step.pick(2, 2) == 1;
            koNodeUtils::setIsEditable(info.node, !info.isLocked);
        }
    }

private:
    static Core coreOf(const ModelStep& step)
    {
        // Transforms and geometries more often than the others.
        static const std::array<Core, 12> cores = {
            Core::Geometry, Core::Transform, Core::Group, Core::Geometry,      Core::Transform,    Core::Geometry,
            Core::Camera,   Core::Transform, Core::Light, Core::MaterialGroup, Core::MaterialPool, Core::None};
        return cores[step.pick(2, cores.size())];
    }

    // So short that no sum of all of them has to be rounded.
    static Translation translationOf(const ModelStep& step)
    {
        static const std::array<float, 4> places = {0, 0.5F, -0.5F, 0.25F};
        return {places[step.pick(3, 4)], places[step.pick(4, 4)], places[step.pick(5, 4)]};
    }

    int enter(const osg::NodePtr& node, int parent)
    {
        m_ids.push_back(osg::getContainerId(node));
        const int number = static_cast<int>(m_ids.size());
        Info& info = m_nodes[number];
        info.parent = parent;
        info.id = osg::getContainerId(node);
        info.node = node;
        return number;
    }

    void forget(int number)
    {
        const std::vector<int> children = m_nodes.at(number).children;
        for (const int child : children) {
            forget(child);
        }
        m_nodes.erase(number);
    }

    void giveCore(int number, Core core, const ModelStep& step)
    {
        Info& info = m_nodes.at(number);
        info.core = core;
        info.translation = core == Core::Transform ? translationOf(step) : Translation{0, 0, 0};
        const osg::NodeCorePtr created = makeCore(core, info.translation, step);
        info.coreId = created == osg::NullFC ? 0 : osg::getContainerId(created);
        osg::beginEditCP(info.node, osg::Node::CoreFieldMask);
        info.node->setCore(created);
        osg::endEditCP(info.node, osg::Node::CoreFieldMask);
    }

    static osg::NodeCorePtr makeCore(Core core, const Translation& translation, const ModelStep& step)
    {
        switch (core) {
        case Core::Group:
            return osg::Group::create();
        case Core::Transform:
            return makeTranslation(translation[0], translation[1], translation[2]);
        case Core::Geometry:
            return makeExtentOf(step);
        case Core::Camera:
            return osg::UberCamera::create();
        case Core::Light:
            return osg::UberLight::create();
        case Core::MaterialGroup:
            return osg::MaterialGroup::create();
        case Core::MaterialPool:
            return osg::MaterialPool::create();
        case Core::None:
            break;
        }
        return osg::NullFC;
    }

    // One of them is a point at the origin, one the box that a marker of the default size would be.
    static osg::GeometryPtr makeExtentOf(const ModelStep& step)
    {
        switch (step.pick(3, 5)) {
        case 0:
            return makeExtent(osg::Pnt3f(0, 0, 0), osg::Pnt3f(1, 2, 1.5F));
        case 1:
            return makeExtent(osg::Pnt3f(-0.5F, 0, 0), osg::Pnt3f(0.5F, 0.25F, 0));
        case 2:
            return makeExtent(osg::Pnt3f(0, 0, 0), osg::Pnt3f(0, 0, 0));
        case 3:
            return makeExtent(osg::Pnt3f(-1, -1, -1), osg::Pnt3f(1, 1, 1));
        default:
            return makeExtent(osg::Pnt3f(-2, -1.5F, -1), osg::Pnt3f(-1, 0, 1));
        }
    }

    NodeRef m_root;
    std::map<int, Info> m_nodes;
    std::vector<osg::UInt32> m_ids;
};

} // namespace quon::testing
