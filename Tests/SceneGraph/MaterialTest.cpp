// SPDX-License-Identifier: MIT
#include "SceneParts.h"

#include <OpenSG/OSGChunkMaterial.h>
#include <OpenSG/OSGSimpleMaterial.h>

#include <gtest/gtest.h>

namespace {

using namespace osg;
using quon::testing::hold;

class MaterialTest : public quon::testing::SceneFixture {};

TEST_F(MaterialTest, ConstantsHaveTheirNumbers)
{
    EXPECT_EQ(Int32(Material::TransparencyAutoDetection), 0);
    EXPECT_EQ(Int32(Material::TransparencyForceTransparent), 1);
    EXPECT_EQ(Int32(Material::TransparencyForceOpaque), 2);
    EXPECT_EQ(Int32(Material::NoStateSorting), 0x7fffffff);
}

TEST_F(MaterialTest, AFreshMaterialHasSortKeyZeroAndDetectsTransparency)
{
    const auto material = hold(SimpleMaterial::create());

    EXPECT_EQ(material->getSortKey(), 0);
    EXPECT_EQ(material->getTransparencyMode(), Int32(Material::TransparencyAutoDetection));
}

TEST_F(MaterialTest, KeepsSortKeyAndTransparencyMode)
{
    const auto material = hold(SimpleMaterial::create());

    material->setSortKey(-17);
    material->setTransparencyMode(Material::TransparencyForceTransparent);

    EXPECT_EQ(material->getSortKey(), -17);
    EXPECT_EQ(material->getTransparencyMode(), 1);
}

TEST_F(MaterialTest, AFreshSimpleMaterialIsBlackOpaqueAndLit)
{
    const auto material = hold(SimpleMaterial::create());

    EXPECT_EQ(material->getAmbient(), Color3f(0, 0, 0));
    EXPECT_EQ(material->getDiffuse(), Color3f(0, 0, 0));
    EXPECT_EQ(material->getSpecular(), Color3f(0, 0, 0));
    EXPECT_EQ(material->getEmission(), Color3f(0, 0, 0));
    EXPECT_EQ(material->getShininess(), 1.0F);
    EXPECT_EQ(material->getTransparency(), 0.0F);
    EXPECT_TRUE(material->getLit());
    EXPECT_EQ(material->getColorMaterial(), GLenum(GL_DIFFUSE));
}

TEST_F(MaterialTest, ASimpleMaterialKeepsWhatIsSet)
{
    const auto material = hold(SimpleMaterial::create());

    material->setAmbient(Color3f(0.1F, 0, 0));
    material->setDiffuse(Color3f(0.2F, 0, 0));
    material->setSpecular(Color3f(0.3F, 0, 0));
    material->setEmission(Color3f(0.4F, 0, 0));
    material->setShininess(20.0F);
    material->setTransparency(0.5F);
    material->setLit(false);
    material->setColorMaterial(GL_NONE);

    EXPECT_EQ(material->getAmbient(), Color3f(0.1F, 0, 0));
    EXPECT_EQ(material->getDiffuse(), Color3f(0.2F, 0, 0));
    EXPECT_EQ(material->getSpecular(), Color3f(0.3F, 0, 0));
    EXPECT_EQ(material->getEmission(), Color3f(0.4F, 0, 0));
    EXPECT_EQ(material->getShininess(), 20.0F);
    EXPECT_EQ(material->getTransparency(), 0.5F);
    EXPECT_FALSE(material->getLit());
    EXPECT_EQ(material->getColorMaterial(), GLenum(GL_NONE));
}

TEST_F(MaterialTest, IsTransparentAboveOneMillionth)
{
    const auto material = hold(SimpleMaterial::create());
    endEditCP(material);
    EXPECT_FALSE(material->isTransparent());

    material->setTransparency(0.25F);
    endEditCP(material);
    EXPECT_TRUE(material->isTransparent());

    material->setTransparency(1e-7F);
    endEditCP(material);
    EXPECT_FALSE(material->isTransparent());
}

TEST_F(MaterialTest, TransparencyIsForced)
{
    const auto opaque = hold(SimpleMaterial::create());
    opaque->setTransparencyMode(Material::TransparencyForceTransparent);
    endEditCP(opaque);

    EXPECT_TRUE(opaque->isTransparent());
}

TEST_F(MaterialTest, ATransparencyAboveOneMillionthBeatsAForcedOpacity)
{
    const auto material = hold(SimpleMaterial::create());
    material->setTransparency(0.5F);
    material->setTransparencyMode(Material::TransparencyForceOpaque);
    endEditCP(material);
    EXPECT_TRUE(material->isTransparent());

    material->setTransparency(0.F);
    endEditCP(material);
    EXPECT_FALSE(material->isTransparent());
}

} // namespace
