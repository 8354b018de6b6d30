// SPDX-License-Identifier: MIT
#include "SceneParts.h"

#include <OpenSG/OSGDirectionalLight.h>
#include <OpenSG/OSGGroup.h>
#include <OpenSG/OSGLight.h>
#include <OpenSG/OSGPointLight.h>

#include <gtest/gtest.h>

namespace {

using namespace osg;
using quon::testing::hold;
using quon::testing::makeNode;

class LightTest : public quon::testing::SceneFixture {};

TEST_F(LightTest, LightsAreGroupsAndTheirBaseIsAbstract)
{
    const auto node = hold(makeNode(PointLight::create()));

    EXPECT_TRUE(LightPtr::dcast(node->getCore()) != NullFC);
    EXPECT_TRUE(GroupPtr::dcast(node->getCore()) != NullFC);
    EXPECT_TRUE(DirectionalLightPtr::dcast(node->getCore()) == NullFC);
    EXPECT_TRUE(Light::getClassType().isAbstract());
    EXPECT_TRUE(DirectionalLight::getClassType().isDerivedFrom(Light::getClassType()));
}

TEST_F(LightTest, AFreshLightShinesWhiteWithoutFading)
{
    const auto light = hold(PointLight::create());

    EXPECT_TRUE(light->getOn());
    EXPECT_EQ(light->getAmbient(), Color4f(0, 0, 0, 1));
    EXPECT_EQ(light->getDiffuse(), Color4f(1, 1, 1, 1));
    EXPECT_EQ(light->getSpecular(), Color4f(1, 1, 1, 1));
    EXPECT_TRUE(light->getBeacon() == NullFC);
    EXPECT_EQ(light->getConstantAttenuation(), 1.0F);
    EXPECT_EQ(light->getLinearAttenuation(), 0.0F);
    EXPECT_EQ(light->getQuadraticAttenuation(), 0.0F);
}

TEST_F(LightTest, KeepsWhatIsSet)
{
    const auto light = hold(PointLight::create());
    const auto beacon = hold(Node::create());

    light->setOn(false);
    light->setAmbient(Color4f(0.1F, 0.2F, 0.3F, 1));
    light->setDiffuse(Color4f(0.4F, 0.5F, 0.6F, 1));
    light->setSpecular(Color4f(0.7F, 0.8F, 0.9F, 1));
    light->setBeacon(beacon.get());
    light->setConstantAttenuation(2);
    light->setLinearAttenuation(3);
    light->setQuadraticAttenuation(4);

    EXPECT_FALSE(light->getOn());
    EXPECT_EQ(light->getAmbient(), Color4f(0.1F, 0.2F, 0.3F, 1));
    EXPECT_EQ(light->getDiffuse(), Color4f(0.4F, 0.5F, 0.6F, 1));
    EXPECT_EQ(light->getSpecular(), Color4f(0.7F, 0.8F, 0.9F, 1));
    EXPECT_TRUE(light->getBeacon() == beacon.get());
    EXPECT_EQ(light->getConstantAttenuation(), 2.0F);
    EXPECT_EQ(light->getLinearAttenuation(), 3.0F);
    EXPECT_EQ(light->getQuadraticAttenuation(), 4.0F);
}

TEST_F(LightTest, ACopyShinesAsItsSourceAndChangesAlone)
{
    const auto light = hold(PointLight::create());
    const auto beacon = hold(Node::create());
    light->setOn(false);
    light->setDiffuse(Color4f(1, 0, 0, 1));
    light->setAmbient(Color4f(0, 1, 0, 1));
    light->setSpecular(Color4f(0, 0, 1, 1));
    light->setBeacon(beacon.get());
    light->setConstantAttenuation(2);
    light->setLinearAttenuation(3);
    light->setQuadraticAttenuation(4);
    light->setPosition(Pnt3f(1, 2, 3));

    const auto copy = hold(PointLightPtr::dcast(light->shallowCopy()));
    light->setDiffuse(Color4f(1, 1, 1, 1));

    ASSERT_TRUE(copy != NullFC);
    EXPECT_FALSE(copy->getOn());
    EXPECT_EQ(copy->getDiffuse(), Color4f(1, 0, 0, 1));
    EXPECT_EQ(copy->getAmbient(), Color4f(0, 1, 0, 1));
    EXPECT_EQ(copy->getSpecular(), Color4f(0, 0, 1, 1));
    EXPECT_TRUE(copy->getBeacon() == beacon.get());
    EXPECT_EQ(copy->getConstantAttenuation(), 2.0F);
    EXPECT_EQ(copy->getLinearAttenuation(), 3.0F);
    EXPECT_EQ(copy->getQuadraticAttenuation(), 4.0F);
    EXPECT_EQ(copy->getPosition(), Pnt3f(1, 2, 3));
}

TEST_F(LightTest, APointLightHasAPosition)
{
    const auto light = hold(PointLight::create());
    EXPECT_EQ(light->getPosition(), Pnt3f(0, 0, 0));

    light->setPosition(Pnt3f(1, 2, 3));

    EXPECT_EQ(light->getPosition(), Pnt3f(1, 2, 3));
}

TEST_F(LightTest, ADirectionalLightComesFromItsDirection)
{
    const auto light = hold(DirectionalLight::create());
    EXPECT_EQ(light->getDirection(), Vec3f(0, 0, 1));

    light->setDirection(Vec3f(1, 0, 0));

    const auto copy = hold(DirectionalLightPtr::dcast(light->shallowCopy()));
    EXPECT_EQ(light->getDirection(), Vec3f(1, 0, 0));
    EXPECT_EQ(copy->getDirection(), Vec3f(1, 0, 0));
}

TEST_F(LightTest, FieldsHaveTheirNames)
{
    const auto point = hold(PointLight::create());
    const auto directional = hold(DirectionalLight::create());

    for (const char* name : {"ambient", "diffuse", "specular", "beacon", "on", "constantAttenuation",
                             "linearAttenuation", "quadraticAttenuation"}) {
        EXPECT_TRUE(point->getField(name) != nullptr) << name;
        EXPECT_TRUE(directional->getField(name) != nullptr) << name;
    }
    EXPECT_TRUE(point->getField("position") != nullptr);
    EXPECT_TRUE(directional->getField("direction") != nullptr);
    EXPECT_TRUE(directional->getField("position") == nullptr);
}

} // namespace
