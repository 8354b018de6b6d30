// SPDX-License-Identifier: MIT
#include <InteractionTesting/SceneBuilder.h>

#include "Viewer/Session/SelectionDisplay.h"

#include <Interaction/NodeSelectionModel.h>

#include <OpenSG/OSGGroup.h>
#include <OpenSG/OSGMaterialGroup.h>
#include <OpenSG/OSGSimpleMaterial.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

namespace quon::testing {

namespace {

using viewer::SelectionDisplay;
using viewer::SelectionLook;

class SelectionDisplayTest : public ::testing::Test {
protected:
    SelectionDisplayTest()
        : m_parent(makeNode(osg::Group::create()))
        , m_part(makeNode(makeExtent(osg::Pnt3f(0, 0, 0), osg::Pnt3f(1, 1, 1))))
        , m_empty(makeNode(osg::Group::create()))
        , m_selection("selection")
    {
        m_selection.addNode(m_part.get());
    }

    static osg::SimpleMaterialPtr materialOf(interaction::SelectionVisualisation& visualisation)
    {
        const auto group = osg::MaterialGroupPtr::dcast(visualisation.getVisualisation()->getCore());
        return osg::SimpleMaterialPtr::dcast(group->getMaterial());
    }

    // The core below a transformation.
    static osg::NodeCorePtr findGeometry(const osg::NodePtr& copy)
    {
        osg::NodePtr node = copy;
        while (node->getNChildren() > 0) {
            node = node->getChild(0);
        }
        return node->getCore();
    }

    static osg::UInt32 childCount(interaction::SelectionVisualisation& visualisation)
    {
        return visualisation.getVisualisation()->getNChildren();
    }

    NodeRef m_parent;
    NodeRef m_part;
    NodeRef m_empty;
    interaction::NodeSelectionModel m_selection;
};

TEST_F(SelectionDisplayTest, BeginsAsTheLibrarysVisualisationsDo)
{
    SelectionDisplay display(m_parent.get());
    const SelectionLook look;

    EXPECT_EQ(display.getLook(), look);
    EXPECT_EQ(display.getBoxes().getColor(), look.colour);
    EXPECT_EQ(display.getHighlight().getColor(), look.colour);
    EXPECT_EQ(display.getBoxes().getOverlay(), look.overlay);
    EXPECT_EQ(display.getBoxes().getMarkerSize(), look.markerSize);
    EXPECT_EQ(materialOf(display.getBoxes())->getTransparency(), look.transparency);
    EXPECT_EQ(materialOf(display.getHighlight())->getTransparency(), look.transparency);
    EXPECT_TRUE(display.getBoxes().isVisible());
    EXPECT_FALSE(display.getHighlight().isVisible());
    EXPECT_EQ(m_parent->getNChildren(), 2U);
}

TEST_F(SelectionDisplayTest, ALookReachesBothVisualisations)
{
    SelectionDisplay display(m_parent.get());
    SelectionLook look;
    look.colour = osg::Color3f(0, 0, 1);
    look.overlay = false;
    look.transparency = 0.5F;

    display.setLook(look);

    EXPECT_EQ(display.getBoxes().getColor(), look.colour);
    EXPECT_EQ(display.getHighlight().getColor(), look.colour);
    EXPECT_FALSE(display.getBoxes().getOverlay());
    EXPECT_FALSE(display.getHighlight().getOverlay());
    EXPECT_EQ(materialOf(display.getBoxes())->getTransparency(), 0.5F);
    EXPECT_EQ(materialOf(display.getHighlight())->getTransparency(), 0.5F);
}

TEST_F(SelectionDisplayTest, TheOrderOfDrawingStaysHoweverOftenTheTransparencyChanges)
{
    SelectionDisplay display(m_parent.get(), 59000);
    SelectionLook look;
    for (const float transparency : {0.1F, 0.2F, 0.3F}) {
        look.transparency = transparency;
        display.setLook(look);
    }

    EXPECT_EQ(materialOf(display.getBoxes())->getSortKey(), 59000);
    EXPECT_EQ(materialOf(display.getHighlight())->getSortKey(), 59000);
}

TEST_F(SelectionDisplayTest, OneKindIsDrawnAtATimeAndNoneWhileItIsNotVisible)
{
    SelectionDisplay display(m_parent.get());
    display.setModel(&m_selection);
    EXPECT_EQ(childCount(display.getBoxes()), 1U);
    EXPECT_EQ(childCount(display.getHighlight()), 0U);

    SelectionLook look;
    look.kind = SelectionLook::Kind::Wireframe;
    display.setLook(look);
    EXPECT_FALSE(display.getBoxes().isVisible());
    EXPECT_TRUE(display.getHighlight().isVisible());
    EXPECT_EQ(childCount(display.getHighlight()), 1U);

    look.visible = false;
    display.setLook(look);
    EXPECT_FALSE(display.getBoxes().isVisible());
    EXPECT_FALSE(display.getHighlight().isVisible());

    look = SelectionLook();
    display.setLook(look);
    EXPECT_TRUE(display.getBoxes().isVisible());
    EXPECT_FALSE(display.getHighlight().isVisible());
}

TEST_F(SelectionDisplayTest, AVisualisationHearsOfNodesOnceItWasDrawn)
{
    SelectionDisplay display(m_parent.get());
    SelectionLook look;
    look.visible = false;
    display.setLook(look);
    display.setModel(&m_selection);
    EXPECT_FALSE(display.getBoxes().hasNode(m_part.get()));

    look.visible = true;
    display.setLook(look);
    EXPECT_TRUE(display.getBoxes().hasNode(m_part.get()));
    EXPECT_FALSE(display.getHighlight().hasNode(m_part.get()));

    look.kind = SelectionLook::Kind::Wireframe;
    display.setLook(look);
    EXPECT_TRUE(display.getHighlight().hasNode(m_part.get()));
    m_selection.setSelection(m_empty.get());
    look.kind = SelectionLook::Kind::Boxes;
    display.setLook(look);
    EXPECT_TRUE(display.getBoxes().hasNode(m_empty.get()));
    EXPECT_TRUE(display.getHighlight().hasNode(m_empty.get()));
    EXPECT_FALSE(display.getHighlight().hasNode(m_part.get()));
    EXPECT_EQ(childCount(display.getBoxes()), 1U);
}

TEST_F(SelectionDisplayTest, WhatIsDrawnLaterIsInTheOrderOfIds)
{
    SelectionDisplay display(m_parent.get());
    display.setModel(&m_selection);
    constexpr osg::UInt32 count = 50;
    std::vector<NodeRef> nodes;
    std::vector<osg::NodePtr> selected;
    for (osg::UInt32 i = 0; i < count; ++i) {
        nodes.push_back(makeNode(makeExtent(osg::Pnt3f(0, 0, 0), osg::Pnt3f(1, 1, static_cast<float>(i)))));
    }
    // Memory of older nodes is used again in another order.
    for (const osg::UInt32 i : {40U, 10U, 30U, 20U}) {
        nodes[i] = osg::NullFC;
        nodes[i] = makeNode(makeExtent(osg::Pnt3f(0, 0, 0), osg::Pnt3f(1, 1, static_cast<float>(count + i))));
    }
    for (const NodeRef& node : nodes) {
        selected.push_back(node.get());
    }
    m_selection.setSelection(selected);
    SelectionLook look;
    look.kind = SelectionLook::Kind::Wireframe;

    display.setLook(look);

    std::sort(selected.begin(), selected.end(), [](const osg::NodePtr& a, const osg::NodePtr& b) {
        return osg::getContainerId(a) < osg::getContainerId(b);
    });
    const osg::NodePtr root = display.getHighlight().getVisualisation();
    ASSERT_EQ(root->getNChildren(), count);
    for (osg::UInt32 i = 0; i < count; ++i) {
        EXPECT_EQ(findGeometry(root->getChild(i)), selected[i]->getCore()) << i;
    }
    m_selection.clearSelection();
}

TEST_F(SelectionDisplayTest, ANewMarkerSizeShowsAtOnce)
{
    SelectionDisplay display(m_parent.get());
    display.setModel(&m_selection);
    m_selection.setSelection(m_empty.get());
    SelectionLook look;
    look.markerSize = 3;

    display.setLook(look);

    const auto cube = osg::GeometryPtr::dcast(display.getBoxes().getVisualisation()->getChild(0)->getCore());
    EXPECT_EQ(osg::GeoPositions3fPtr::dcast(cube->getPositions())->getValue(7), osg::Pnt3f(3, 3, 3));
}

TEST_F(SelectionDisplayTest, WithoutAModelNothingOfTheOldOneIsLeft)
{
    SelectionDisplay display(m_parent.get());
    display.setModel(&m_selection);
    const osg::UInt32 box = osg::getContainerId(display.getBoxes().getVisualisation()->getChild(0));

    display.setModel(nullptr);

    EXPECT_FALSE(exists(box));
    m_selection.addNode(m_empty.get());
    EXPECT_EQ(childCount(display.getBoxes()), 0U);
}

TEST_F(SelectionDisplayTest, TheRootsGoWithTheDisplay)
{
    {
        SelectionDisplay display(m_parent.get());
        display.setModel(&m_selection);
    }

    EXPECT_EQ(m_parent->getNChildren(), 0U);
    m_selection.addNode(m_empty.get());
}

} // namespace

} // namespace quon::testing
