// SPDX-License-Identifier: MIT
#pragma once

#include <SceneUtilities/NodeUtils.h>

#include <OpenSG/OSGConfig.h>

#include <OpenSG/OSGGroup.h>
#include <OpenSG/OSGNode.h>
#include <OpenSG/OSGRefPtr.h>
#include <OpenSG/OSGSimpleGeometry.h>
#include <OpenSG/OSGSimpleMaterial.h>
#include <OpenSG/OSGTransform.h>

#include <string>

/** A workshop: its machines, and beside them a place for what shows selections. */
class Scene {
public:
    Scene()
        : m_root(makeGroup())
        , m_machines(makeGroup())
        , m_overlays(makeGroup())
    {
        addChild(m_root.get(), m_machines);
        addChild(m_root.get(), m_overlays);
        addMachine("mill", -3, 1.2F, 3, 2.4F, 3, osg::Color3f(0.40F, 0.55F, 0.70F));
        addMachine("lathe", 2.4F, 1.6F, 4, 1.4F, 2, osg::Color3f(0.45F, 0.65F, 0.55F));
        addMachine("robot", 0.4F, -1.4F, 1.4F, 1.4F, 2.5F, osg::Color3f(0.75F, 0.50F, 0.45F));
        addMachine("shelf", 3.7F, -1.8F, 1.5F, 2.4F, 2, osg::Color3f(0.60F, 0.58F, 0.72F));
    }

    osg::NodePtr getMachines() const { return m_machines; }
    osg::NodePtr getOverlays() const { return m_overlays; }

    /** Makes @p child part of the scene; the scene holds it from now on. */
    static void addChild(const osg::NodePtr& parent, const osg::NodePtr& child)
    {
        const osg::CPEditor edit(parent, osg::Node::ChildrenFieldMask);
        parent->addChild(child);
    }

    /** Takes @p child out of the scene, which lets go of it. */
    static void removeChild(const osg::NodePtr& parent, const osg::NodePtr& child)
    {
        const osg::CPEditor edit(parent, osg::Node::ChildrenFieldMask);
        parent->subChild(child);
    }

private:
    static osg::NodePtr makeGroup()
    {
        const osg::NodePtr group = osg::Node::create();
        const osg::CPEditor edit(group, osg::Node::CoreFieldMask);
        group->setCore(osg::Group::create());
        return group;
    }

    void addMachine(const std::string& name, float x, float y, float width, float depth, float height,
                    const osg::Color3f& color)
    {
        const osg::SimpleMaterialPtr material = osg::SimpleMaterial::create();
        {
            const osg::CPEditor edit(material);
            material->setDiffuse(color);
        }
        const osg::NodePtr box = osg::makeBox(width, depth, height, 1, 1, 1);
        const osg::GeometryPtr geometry = osg::GeometryPtr::dcast(box->getCore());
        {
            const osg::CPEditor edit(geometry);
            geometry->setMaterial(material);
        }
        osg::Matrix matrix;
        matrix.setTranslate(x, y, height / 2);
        const osg::TransformPtr place = osg::Transform::create();
        {
            const osg::CPEditor edit(place);
            place->setMatrix(matrix);
        }
        const osg::NodePtr machine = osg::Node::create();
        {
            const osg::CPEditor edit(machine);
            machine->setCore(place);
            machine->addChild(box);
        }
        NodeUtils::setName(machine, name, false);
        addChild(m_machines, machine);
    }

    osg::RefPtr<osg::NodePtr> m_root; // holds the two below it
    osg::NodePtr m_machines;
    osg::NodePtr m_overlays;
};
