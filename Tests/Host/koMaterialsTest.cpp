// SPDX-License-Identifier: MIT
#include <InteractionTesting/SceneFixture.h>

#include <SceneUtilities/koMaterials.h>

#include <OpenSG/OSGConfig.h>

#include <OpenSG/OSGAttachmentContainer.h>
#include <OpenSG/OSGRefPtr.h>
#include <OpenSG/OSGSimpleAttachments.h>
#include <OpenSG/OSGSimpleMaterial.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstddef>
#include <string>

using ::testing::Contains;
using ::testing::IsEmpty;

namespace {

class koMaterialsTest : public quon::testing::SceneFixture {
protected:
    osg::RefPtr<osg::MaterialPtr> m_material{osg::SimpleMaterial::create()};
};

TEST_F(koMaterialsTest, ANewMaterialHasNoName)
{
    EXPECT_EQ(koMaterials::getName(m_material), "");
    EXPECT_FALSE(koMaterials::isNameGivenByProgram(m_material));
}

TEST_F(koMaterialsTest, NamesAMaterialAndNotesThatTheProgramDid)
{
    koMaterials::setName(m_material, "highlight", true);

    EXPECT_EQ(koMaterials::getName(m_material), "highlight");
    EXPECT_TRUE(koMaterials::isNameGivenByProgram(m_material));
}

TEST_F(koMaterialsTest, ANameOfTheUserReplacesThatOfTheProgram)
{
    koMaterials::setName(m_material, "highlight", true);

    koMaterials::setName(m_material, "steel", false);

    EXPECT_EQ(koMaterials::getName(m_material), "steel");
    EXPECT_FALSE(koMaterials::isNameGivenByProgram(m_material));
}

TEST_F(koMaterialsTest, SharesTheNameWithTheSceneGraph)
{
    koMaterials::setName(m_material, "steel", false);
    EXPECT_STREQ(osg::getName(m_material.get()), "steel");

    osg::setName(m_material.get(), "brass");
    EXPECT_EQ(koMaterials::getName(m_material), "brass");
}

TEST_F(koMaterialsTest, TakesItsOwnNameAsArgument)
{
    koMaterials::setName(m_material, "steel", false);

    koMaterials::setName(m_material, osg::getName(m_material.get()), true);

    EXPECT_EQ(koMaterials::getName(m_material), "steel");
}

TEST_F(koMaterialsTest, KeepsBytesBeyondAscii)
{
    const std::string name = "Stahl \xC3\xA4 \xFF";

    koMaterials::setName(m_material, name, false);

    EXPECT_EQ(koMaterials::getName(m_material), name);
}

TEST_F(koMaterialsTest, RecordsTheChangeOfTheAttachments)
{
    takeChanges();

    koMaterials::setName(m_material, "steel", false);

    EXPECT_THAT(takeChanges(), Contains(Change(osg::getContainerId(m_material.get()),
                                               osg::AttachmentContainer::AttachmentsFieldMask)));
}

TEST_F(koMaterialsTest, ANameOfTheUserNeedsNoMark)
{
    // The end of the first edit makes the chunks that a material keeps to itself.
    osg::endEditCP(m_material);
    const std::size_t before = quon::testing::countLiveContainers();

    koMaterials::setName(m_material, "steel", false);

    EXPECT_EQ(quon::testing::countLiveContainers(), before + 1);
}

TEST_F(koMaterialsTest, IgnoresNullAndAnswersEmptyForIt)
{
    const osg::MaterialPtr null;

    koMaterials::setName(null, "steel", true);

    EXPECT_EQ(koMaterials::getName(null), "");
    EXPECT_FALSE(koMaterials::isNameGivenByProgram(null));
    EXPECT_THAT(takeChanges(), IsEmpty());
}

} // namespace
