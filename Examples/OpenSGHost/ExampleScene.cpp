// SPDX-License-Identifier: MIT
#include "OpenSGHost/ExampleScene.h"

#include <SceneUtilities/koNodeUtils.h>

#include <OpenSG/OSGGroup.h>
#include <OpenSG/OSGQuaternion.h>
#include <OpenSG/OSGSimpleGeometry.h>
#include <OpenSG/OSGSimpleMaterial.h>
#include <OpenSG/OSGTransform.h>

namespace quon::opensghost {

namespace {

// Unlit, so that no light has to be the same in two renderers.
osg::SimpleMaterialPtr makeGrey()
{
    const osg::SimpleMaterialPtr material = osg::SimpleMaterial::create();
    beginEditCP(material);
    material->setDiffuse(osg::Color3f(0.5F, 0.5F, 0.5F));
    material->setLit(false);
    endEditCP(material);
    return material;
}

osg::NodePtr makeBlock(float x, const osg::MaterialPtr& material)
{
    const osg::NodePtr block = osg::makeBox(1, 1, 1, 1, 1, 1);
    const osg::GeometryPtr geometry = osg::GeometryPtr::dcast(block->getCore());
    beginEditCP(geometry, osg::Geometry::MaterialFieldMask | osg::Geometry::DlistCacheFieldMask);
    geometry->setMaterial(material);
    // Mesa joins the strips of a display list by triangles without area, of which a wireframe shows the edges.
    geometry->setDlistCache(false);
    endEditCP(geometry, osg::Geometry::MaterialFieldMask | osg::Geometry::DlistCacheFieldMask);

    osg::Matrix matrix;
    matrix.setTranslate(x, 0, 0);
    const osg::TransformPtr transform = osg::Transform::create();
    beginEditCP(transform, osg::Transform::MatrixFieldMask);
    transform->setMatrix(matrix);
    endEditCP(transform, osg::Transform::MatrixFieldMask);
    const osg::NodePtr node = osg::Node::create();
    beginEditCP(node);
    node->setCore(transform);
    node->addChild(block);
    endEditCP(node);
    return node;
}

} // namespace

ExampleScene::ExampleScene()
    : m_root(osg::Node::create())
{
    const osg::SimpleMaterialPtr grey = makeGrey();
    const osg::NodePtr selected = makeBlock(-2, grey);
    const osg::NodePtr locked = makeBlock(0, grey);
    const osg::NodePtr highlighted = makeBlock(2, grey);

    beginEditCP(m_root);
    m_root->setCore(osg::Group::create());
    m_root->addChild(selected);
    m_root->addChild(locked);
    m_root->addChild(highlighted);
    m_root->addChild(m_boxes.getVisualisation());
    m_root->addChild(m_highlight.getVisualisation());
    endEditCP(m_root);

    koNodeUtils::setIsEditable(locked, false);
    m_boxes.addNode(selected);
    m_boxes.addNode(locked);
    m_highlight.addNode(highlighted);
}

ExampleScene::~ExampleScene()
{
    deselect();
}

void ExampleScene::deselect()
{
    m_boxes.removeAllNodes();
    m_highlight.removeAllNodes();
}

osg::Matrix ExampleScene::getView()
{
    osg::Matrix camera;
    camera.setRotate(osg::Quaternion(osg::Vec3f(1, -1, 0), -0.4F));
    const osg::Vec4f back = camera[2];
    camera.setTranslate(8 * back[0], 8 * back[1], 8 * back[2]);
    camera.invert();
    return camera;
}

osg::Matrix ExampleScene::getProjection()
{
    constexpr float nearPlane = 1;
    constexpr float farPlane = 20;
    constexpr float scale = 2;
    return osg::Matrix(scale, 0, 0, 0,                                        //
                       0, scale, 0, 0,                                        //
                       0, 0, (farPlane + nearPlane) / (nearPlane - farPlane), //
                       2 * farPlane * nearPlane / (nearPlane - farPlane),     //
                       0, 0, -1, 0);
}

} // namespace quon::opensghost
