// SPDX-License-Identifier: MIT
#include <InteractionTesting/SceneFixture.h>

#include <SceneUtilities/koUberCameraUtils.h>

#include <OpenSG/OSGConfig.h>

#include <OpenSG/OSGGroup.h>
#include <OpenSG/OSGRefPtr.h>
#include <OpenSG/OSGUberCamera.h>
#include <OpenSG/OSGUberLight.h>

#include <gtest/gtest.h>

// A camera that a host derived.
class DerivedCamera;
using DerivedCameraPtr = osg::FCPtr<osg::UberCameraPtr, DerivedCamera>;

class DerivedCamera : public osg::UberCamera {
public:
    OSG_FIELD_CONTAINER_DECL(DerivedCameraPtr)

private:
    static osg::FieldContainerType _type;
};

osg::FieldContainerType DerivedCamera::_type(
    "DerivedCamera", "UberCamera", nullptr, []() -> osg::FieldContainerPtr { return createEmpty(); }, nullptr);

OSG_FIELD_CONTAINER_INL_DEF(DerivedCamera, DerivedCameraPtr)
OSG_FIELD_CONTAINER_DEF(DerivedCamera, DerivedCameraPtr)

namespace {

class koUberCameraUtilsTest : public quon::testing::SceneFixture {
protected:
    osg::RefPtr<osg::NodePtr> m_node{osg::Node::create()};
};

TEST_F(koUberCameraUtilsTest, KnowsANodeWithACameraAsCore)
{
    m_node->setCore(osg::UberCamera::create());

    EXPECT_TRUE(koUberCameraUtils::isUberCamera(m_node));
}

TEST_F(koUberCameraUtilsTest, KnowsACameraOfADerivedType)
{
    m_node->setCore(DerivedCamera::create());

    EXPECT_TRUE(koUberCameraUtils::isUberCamera(m_node));
}

TEST_F(koUberCameraUtilsTest, TakesNoOtherCoreForACamera)
{
    m_node->setCore(osg::Group::create());
    EXPECT_FALSE(koUberCameraUtils::isUberCamera(m_node));

    m_node->setCore(osg::UberLight::create());
    EXPECT_FALSE(koUberCameraUtils::isUberCamera(m_node));
}

TEST_F(koUberCameraUtilsTest, LooksAtTheNodeOnlyAndNotAtItsParent)
{
    const osg::NodePtr child = osg::Node::create();
    child->setCore(osg::Group::create());
    m_node->setCore(osg::UberCamera::create());
    m_node->addChild(child);

    EXPECT_FALSE(koUberCameraUtils::isUberCamera(child));
}

TEST_F(koUberCameraUtilsTest, AnswersFalseForANodeWithoutCore)
{
    EXPECT_FALSE(koUberCameraUtils::isUberCamera(m_node));
}

TEST_F(koUberCameraUtilsTest, AnswersFalseForNull)
{
    EXPECT_FALSE(koUberCameraUtils::isUberCamera(osg::NodePtr()));
}

} // namespace
