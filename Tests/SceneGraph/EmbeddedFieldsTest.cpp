// SPDX-License-Identifier: MIT
#include "SceneParts.h"

#include <OpenSG/OSGFieldDescription.h>
#include <OpenSG/OSGGroup.h>
#include <OpenSG/OSGMaterialPool.h>
#include <OpenSG/OSGSimpleAttachments.h>
#include <OpenSG/OSGSimpleMaterial.h>

#include <gtest/gtest.h>

#include <set>
#include <string>
#include <vector>

// Promises that hold for every type of container that the scene graph knows.
namespace {

using namespace osg;
using quon::testing::hold;

class EmbeddedFieldsTest : public quon::testing::SceneFixture {
protected:
    static std::vector<FieldContainerType*> allTypes()
    {
        constexpr UInt32 moreThanThereAre = 1000;
        std::vector<FieldContainerType*> types;
        for (UInt32 id = 0; id < moreThanThereAre; ++id) {
            if (FieldContainerType* const type = FieldContainerFactory::the()->findType(id)) {
                types.push_back(type);
            }
        }
        return types;
    }

    static std::vector<FieldContainerType*> concreteTypes()
    {
        std::vector<FieldContainerType*> types;
        for (FieldContainerType* const type : allTypes()) {
            if (!type->isAbstract()) {
                types.push_back(type);
            }
        }
        return types;
    }
};

TEST_F(EmbeddedFieldsTest, TypesAreFoundByNumberAsByName)
{
    const std::vector<FieldContainerType*> types = allTypes();

    EXPECT_GT(types.size(), 40U);
    for (FieldContainerType* const type : types) {
        EXPECT_EQ(FieldContainerFactory::the()->findType(type->getCName()), type) << type->getCName();
    }
    EXPECT_EQ(FieldContainerFactory::the()->findType(Node::getClassTypeId()), &Node::getClassType());
    EXPECT_EQ(FieldContainerFactory::the()->findType(0xFFFFFFFFU), nullptr);
}

TEST_F(EmbeddedFieldsTest, ClassesAndContainersAgreeOnTheirType)
{
    for (FieldContainerType* const type : concreteTypes()) {
        const auto container = hold(type->createFieldContainer());
        const FieldContainer& constant = *container.get();

        EXPECT_EQ(&container->getType(), type) << type->getCName();
        EXPECT_EQ(&constant.getType(), type) << type->getCName();
        EXPECT_EQ(container->getTypeId(), type->getId()) << type->getCName();
        EXPECT_EQ(container->getGroupId(), type->getGroupId()) << type->getCName();
        EXPECT_STREQ(container->getTypeName(), type->getCName());
    }
}

TEST_F(EmbeddedFieldsTest, AbstractBasesHaveNumbersOfTheirOwn)
{
    const std::set<UInt32> numbers{Attachment::getClassTypeId(),     AttachmentContainer::getClassTypeId(),
                                   Drawable::getClassTypeId(),       MaterialDrawable::getClassTypeId(),
                                   Material::getClassTypeId(),       NodeCore::getClassTypeId(),
                                   StateChunk::getClassTypeId(),     GeoPositions::getClassTypeId(),
                                   FieldContainer::getClassTypeId(), Name::getClassTypeId(),
                                   GeoPositions3f::getClassTypeId()};

    EXPECT_EQ(numbers.size(), 11U);
    EXPECT_EQ(Name::getClassGroupId(), Name::getClassType().getGroupId());
    EXPECT_EQ(GeoPositions::getClassGroupId(), GeoPositions::getClassType().getGroupId());
    EXPECT_EQ(GeoPositions3f::getClassGroupId(), GeoPositions3f::getClassType().getGroupId());
}

TEST_F(EmbeddedFieldsTest, EveryFieldIsReachedByNumberAndByName)
{
    for (FieldContainerType* const type : concreteTypes()) {
        const auto container = hold(type->createFieldContainer());
        std::set<Field*> fields;
        for (UInt32 id = 1; id <= type->getNumFieldDescs(); ++id) {
            const FieldDescription* const description = type->getFieldDescription(id);
            ASSERT_TRUE(description != nullptr) << type->getCName() << ' ' << id;
            Field* const field = container->getField(id);
            EXPECT_TRUE(field != nullptr) << type->getCName() << ' ' << description->getCName();
            EXPECT_EQ(field, container->getField(description->getCName())) << description->getCName();
            EXPECT_EQ(description->getFieldId(), id) << type->getCName() << ' ' << description->getCName();
            EXPECT_EQ(description->getFieldMask(), BitVector(1) << id) << description->getCName();
            fields.insert(field);
        }
        EXPECT_EQ(fields.size(), type->getNumFieldDescs()) << type->getCName() << ": two fields in one place";
    }
}

TEST_F(EmbeddedFieldsTest, NumbersAndNamesBehindTheLastFieldAreNull)
{
    for (FieldContainerType* const type : concreteTypes()) {
        const auto container = hold(type->createFieldContainer());

        EXPECT_TRUE(container->getField(UInt32(0)) == nullptr) << type->getCName();
        EXPECT_TRUE(container->getField(type->getNumFieldDescs() + 1) == nullptr) << type->getCName();
        EXPECT_TRUE(container->getField("noSuchField") == nullptr) << type->getCName();
    }
}

TEST_F(EmbeddedFieldsTest, AFieldThatIsReadOnlyByItsNameIsTheRealOne)
{
    const auto parent = hold(quon::testing::makeNode(Group::create()));
    const NodePtr child = quon::testing::addNode(parent);
    const auto* children = static_cast<MFNodePtr*>(parent->getField("children"));
    const auto* parents = static_cast<MFNodePtr*>(parent->getCore()->getField("parents"));

    ASSERT_EQ(children->size(), 1U);
    EXPECT_TRUE((*children)[0] == child);
    ASSERT_EQ(parents->size(), 1U);
    EXPECT_TRUE((*parents)[0] == parent.get());
    EXPECT_TRUE(static_cast<SFNodePtr*>(child->getField("parent"))->getValue() == parent.get());
}

TEST_F(EmbeddedFieldsTest, ACopyIsAnotherContainerOfTheSameTypeThatNobodyHolds)
{
    for (FieldContainerType* const type : concreteTypes()) {
        const auto container = hold(type->createFieldContainer());

        FieldContainerPtr made = container->shallowCopy();
        ASSERT_TRUE(made != NullFC) << type->getCName();
        EXPECT_EQ(made.getRefCount(), 0) << type->getCName();
        const auto copy = hold(made);

        EXPECT_TRUE(copy.get() != container.get()) << type->getCName();
        EXPECT_EQ(&copy->getType(), type);
        EXPECT_NE(getContainerId(copy.get()), getContainerId(container.get()));
    }
}

TEST_F(EmbeddedFieldsTest, AContainerIsAtLeastAsLargeAsItsBase)
{
    for (FieldContainerType* const type : concreteTypes()) {
        const auto container = hold(type->createFieldContainer());

        EXPECT_GE(container->getContainerSize(), sizeof(FieldContainer)) << type->getCName();
        EXPECT_EQ(container.get().getContainerSize(), container->getContainerSize()) << type->getCName();
    }
    EXPECT_EQ(hold(Node::create())->getContainerSize(), sizeof(Node));
    EXPECT_EQ(hold(Name::create())->getContainerSize(), sizeof(Name));
    EXPECT_EQ(hold(GeoPositions3f::create())->getContainerSize(), sizeof(GeoPositions3f));
}

TEST_F(EmbeddedFieldsTest, ACopyOfANameHasItsText)
{
    const auto name = hold(Name::create());
    name->editFieldPtr()->setValue("text");

    const auto copy = hold(NamePtr::dcast(name->shallowCopy()));
    name->editField().setValue("other");

    ASSERT_TRUE(copy != NullFC);
    const Name& constant = *copy.get();
    EXPECT_EQ(constant.getField().getValue(), "text");
    EXPECT_EQ(constant.getFieldPtr()->getValue(), "text");
    EXPECT_EQ(static_cast<SFString*>(copy->FieldContainer::getField("name"))->getValue(), "text");
}

TEST_F(EmbeddedFieldsTest, ACopyOfAPoolHoldsTheSameMaterials)
{
    const auto pool = hold(MaterialPool::create());
    const auto material = hold(SimpleMaterial::create());
    pool->add(material.get());
    {
        const auto copy = hold(MaterialPoolPtr::dcast(pool->shallowCopy()));
        EXPECT_EQ(copy->find(material.get()), 0);
        EXPECT_EQ(material.get().getRefCount(), 3);
    }

    EXPECT_EQ(material.get().getRefCount(), 2);
}

} // namespace
