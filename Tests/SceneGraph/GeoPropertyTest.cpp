// SPDX-License-Identifier: MIT
#include "SceneParts.h"

#include <gtest/gtest.h>

namespace {

using namespace osg;
using quon::testing::hold;

class GeoPropertyTest : public quon::testing::SceneFixture {};

TEST_F(GeoPropertyTest, AFreshPropertyHasNoValues)
{
    const auto positions = hold(GeoPositions3f::create());

    EXPECT_EQ(positions->getSize(), 0U);
    EXPECT_EQ(positions->size(), 0U);
}

TEST_F(GeoPropertyTest, ValuesAreAppendedAndReadByIndex)
{
    const auto positions = hold(GeoPositions3f::create());

    positions->addValue(Pnt3f(1, 2, 3));
    positions->push_back(Pnt3f(4, 5, 6));

    EXPECT_EQ(positions->getSize(), 2U);
    EXPECT_EQ(positions->getValue(0), Pnt3f(1, 2, 3));
    EXPECT_EQ(positions->getValue(1), Pnt3f(4, 5, 6));
}

TEST_F(GeoPropertyTest, ReadingFillsAVariableAsWell)
{
    const auto positions = hold(GeoPositions3f::create());
    positions->addValue(Pnt3f(1, 2, 3));
    Pnt3f value;

    positions->getValue(value, 0);

    EXPECT_EQ(value, Pnt3f(1, 2, 3));
}

TEST_F(GeoPropertyTest, SettingTakesTheValueBeforeTheIndex)
{
    const auto positions = hold(GeoPositions3f::create());
    const auto lengths = hold(GeoPLengthsUI32::create());
    positions->resize(2);
    lengths->resize(3);

    positions->setValue(Pnt3f(4, 5, 6), 1);
    lengths->setValue(7, 2);

    EXPECT_EQ(positions->getValue(0), Pnt3f(0, 0, 0));
    EXPECT_EQ(positions->getValue(1), Pnt3f(4, 5, 6));
    EXPECT_EQ(lengths->getValue(2), 7U);
}

TEST_F(GeoPropertyTest, VectorsAreTakenAsPositions)
{
    const auto positions = hold(GeoPositions3f::create());

    positions->addValue(Vec3f(1, 2, 3));

    EXPECT_EQ(positions->getValue(0), Pnt3f(1, 2, 3));
}

TEST_F(GeoPropertyTest, TheAbstractTypeReadsAndWrites)
{
    const auto positions = hold(GeoPositions3f::create());
    positions->resize(1);
    const GeoPositionsPtr base = positions.get();

    base->setValue(Pnt3f(1, 2, 3), 0);
    base->addValue(Pnt3f(4, 5, 6));

    EXPECT_EQ(base->getSize(), 2U);
    EXPECT_EQ(base->getValue(0), Pnt3f(1, 2, 3));
    EXPECT_EQ(positions->getValue(1), Pnt3f(4, 5, 6));
}

TEST_F(GeoPropertyTest, TheFieldIsTheData)
{
    const auto types = hold(GeoPTypesUI8::create());
    types->addValue(GL_LINES);
    types->addValue(GL_LINE_LOOP);

    ASSERT_EQ(types->getFieldPtr()->size(), 2U);
    EXPECT_EQ((*types->getFieldPtr())[0], GL_LINES);
    EXPECT_EQ((*types->getFieldPtr())[1], GL_LINE_LOOP);
}

TEST_F(GeoPropertyTest, ClearingAndResizingChangeTheSize)
{
    const auto indices = hold(GeoIndicesUI32::create());
    indices->resize(5);
    EXPECT_EQ(indices->size(), 5U);

    indices->clear();

    EXPECT_EQ(indices->size(), 0U);
}

TEST_F(GeoPropertyTest, ThePackedDataIsReachable)
{
    const auto positions = hold(GeoPositions3f::create());
    positions->addValue(Pnt3f(1, 2, 3));
    positions->addValue(Pnt3f(4, 5, 6));

    const auto* numbers = reinterpret_cast<const Real32*>(positions->getData());

    EXPECT_EQ(numbers[0], 1.0F);
    EXPECT_EQ(numbers[5], 6.0F);
    EXPECT_EQ(positions->getDimension(), 3U);
}

TEST_F(GeoPropertyTest, ACloneIsACopyWithoutOwner)
{
    const auto positions = hold(GeoPositions3f::create());
    positions->addValue(Pnt3f(1, 2, 3));

    const auto copy = hold(positions->clone());
    positions->setValue(Pnt3f(), 0);

    EXPECT_EQ(copy.get().getRefCount(), 1);
    EXPECT_EQ(copy->getValue(0), Pnt3f(1, 2, 3));
    EXPECT_TRUE(GeoPositions3fPtr::dcast(copy.get()) != NullFC);
}

TEST_F(GeoPropertyTest, InsertingMovesWhatIsBehind)
{
    const auto lengths = hold(GeoPLengthsUI32::create());
    lengths->addValue(1);
    lengths->addValue(3);

    EXPECT_TRUE(lengths->insertValue(2, 1));
    EXPECT_TRUE(lengths->insertValue(4, 3));

    ASSERT_EQ(lengths->size(), 4U);
    for (UInt32 i = 0; i < 4; ++i) {
        EXPECT_EQ(lengths->getValue(i), i + 1);
    }
}

TEST_F(GeoPropertyTest, SmallerIntegersReadAsTheGenericType)
{
    const auto lengths = hold(GeoPLengthsUI16::create());
    const auto indices = hold(GeoIndicesUI16::create());

    lengths->addValue(65535);
    indices->addValue(4711);

    EXPECT_EQ(lengths->getValue(0), 65535U);
    EXPECT_EQ(indices->getValue(0), 4711U);
    EXPECT_EQ((*lengths->getFieldPtr())[0], 65535U);
}

TEST_F(GeoPropertyTest, DoublePrecisionReadsAsTheGenericType)
{
    const auto positions = hold(GeoPositions3d::create());

    positions->addValue(Pnt3f(1, 2.5F, -3));
    positions->addValue(Pnt3f());
    positions->setValue(Pnt3f(4, 5, 6), 1);

    EXPECT_EQ(positions->getValue(0), Pnt3f(1, 2.5F, -3));
    EXPECT_EQ(positions->getValue(1), Pnt3f(4, 5, 6));
    EXPECT_EQ((*positions->getFieldPtr())[0], Pnt3d(1, 2.5, -3));
    EXPECT_EQ(positions->getDimension(), 3U);
}

TEST_F(GeoPropertyTest, ThePropertyOfAnIntegerHasOneDimension)
{
    EXPECT_EQ(hold(GeoPTypesUI8::create())->getDimension(), 1U);
    EXPECT_EQ(hold(GeoIndicesUI32::create())->getDimension(), 1U);
    EXPECT_EQ(hold(GeoTexCoords2f::create())->getDimension(), 2U);
    EXPECT_EQ(hold(GeoColors4f::create())->getDimension(), 4U);
}

TEST_F(GeoPropertyTest, FormatsAreTheNumbersOfOpenGL)
{
    EXPECT_EQ(hold(GeoPTypesUI8::create())->getFormat(), UInt32(GL_UNSIGNED_BYTE));
    EXPECT_EQ(hold(GeoPLengthsUI16::create())->getFormat(), UInt32(GL_UNSIGNED_SHORT));
    EXPECT_EQ(hold(GeoIndicesUI32::create())->getFormat(), UInt32(GL_UNSIGNED_INT));
    EXPECT_EQ(hold(GeoPositions3f::create())->getFormat(), UInt32(GL_FLOAT));
    EXPECT_EQ(hold(GeoPositions3d::create())->getFormat(), UInt32(GL_DOUBLE));
    EXPECT_EQ(hold(GeoNormals3f::create())->getFormat(), UInt32(GL_FLOAT));
}

TEST_F(GeoPropertyTest, FindsItsParents)
{
    const auto positions = hold(GeoPositions3f::create());
    const auto first = hold(Geometry::create());
    const auto second = hold(Geometry::create());
    const auto stranger = hold(Geometry::create());

    first->setPositions(positions.get());
    second->setPositions(positions.get());

    EXPECT_EQ(positions->findParent(first.get()), 0);
    EXPECT_EQ(positions->findParent(second.get()), 1);
    EXPECT_EQ(positions->findParent(stranger.get()), -1);
}

TEST_F(GeoPropertyTest, AShallowCopyHasTheValuesAndNoParents)
{
    const auto positions = hold(GeoPositions3f::create());
    const auto geometry = hold(Geometry::create());
    positions->addValue(Pnt3f(1, 2, 3));
    geometry->setPositions(positions.get());

    const auto copy = hold(GeoPositions3fPtr::dcast(positions->shallowCopy()));

    ASSERT_TRUE(copy != NullFC);
    EXPECT_EQ(copy->getValue(0), Pnt3f(1, 2, 3));
    EXPECT_EQ(copy->getMFParents()->size(), 0U);
}

} // namespace
