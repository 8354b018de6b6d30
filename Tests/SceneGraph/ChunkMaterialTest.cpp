// SPDX-License-Identifier: MIT
#include "SceneParts.h"
#include "Support/StandardError.h"

#include <OpenSG/OSGBlendChunk.h>
#include <OpenSG/OSGChunkMaterial.h>
#include <OpenSG/OSGDepthChunk.h>
#include <OpenSG/OSGDepthTestChunk.h>
#include <OpenSG/OSGLineChunk.h>
#include <OpenSG/OSGPolygonChunk.h>
#include <OpenSG/OSGSimpleMaterial.h>
#include <OpenSG/OSGState.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using namespace osg;
using quon::testing::hold;
using quon::testing::StandardError;

class ChunkMaterialTest : public quon::testing::SceneFixture {};

TEST_F(ChunkMaterialTest, SlotsHaveTheirNumbers)
{
    EXPECT_EQ(Int32(State::AutoSlot), -1);
    EXPECT_EQ(Int32(State::AutoSlotReplace), -2);
}

TEST_F(ChunkMaterialTest, AddingAppendsAndAnswersTrue)
{
    const auto material = hold(ChunkMaterial::create());
    const LineChunkPtr line = LineChunk::create();
    const DepthChunkPtr depth = DepthChunk::create();

    EXPECT_TRUE(material->addChunk(line));
    EXPECT_TRUE(material->addChunk(depth));

    ASSERT_EQ(material->getMFChunks()->size(), 2U);
    EXPECT_TRUE((*material->getMFChunks())[0] == line);
    EXPECT_TRUE((*material->getMFChunks())[1] == depth);
}

TEST_F(ChunkMaterialTest, AutomaticSlotsAreNotStored)
{
    const auto material = hold(ChunkMaterial::create());

    material->addChunk(LineChunk::create(), -2);
    material->addChunk(DepthChunk::create());

    EXPECT_EQ(material->getMFSlots()->size(), 0U);
}

TEST_F(ChunkMaterialTest, FindsTheIndexOfAChunk)
{
    const auto material = hold(ChunkMaterial::create());
    const auto stranger = hold(LineChunk::create());
    const LineChunkPtr line = LineChunk::create();
    const DepthChunkPtr depth = DepthChunk::create();
    material->addChunk(line);
    material->addChunk(depth);

    EXPECT_EQ(material->find(line), 0);
    EXPECT_EQ(material->find(depth), 1);
    EXPECT_EQ(material->find(stranger.get()), -1);
}

TEST_F(ChunkMaterialTest, FindsChunksByTheirExactType)
{
    const auto material = hold(ChunkMaterial::create());
    const DepthTestChunkPtr depthTest = DepthTestChunk::create();
    material->addChunk(depthTest);

    EXPECT_TRUE(material->find(DepthTestChunk::getClassType()) == depthTest);
    EXPECT_TRUE(material->find(DepthChunk::getClassType()) == NullFC);
    EXPECT_TRUE(material->find(LineChunk::getClassType()) == NullFC);
}

TEST_F(ChunkMaterialTest, TwoChunksOfATypeStayBoth)
{
    const auto material = hold(ChunkMaterial::create());
    const LineChunkPtr first = LineChunk::create();
    const LineChunkPtr second = LineChunk::create();

    EXPECT_TRUE(material->addChunk(first));
    EXPECT_TRUE(material->addChunk(second));
    endEditCP(material);

    EXPECT_EQ(material->getMFChunks()->size(), 2U);
    EXPECT_TRUE(material->find(LineChunk::getClassType()) == first);
}

TEST_F(ChunkMaterialTest, SubtractingAnswersFalseOnSuccess)
{
    const auto material = hold(ChunkMaterial::create());
    const auto line = hold(LineChunk::create());
    material->addChunk(line.get());

    EXPECT_FALSE(material->subChunk(line.get()));

    EXPECT_EQ(material->getMFChunks()->size(), 0U);
}

TEST_F(ChunkMaterialTest, SubtractingAStrangerWarnsAndAnswersTrue)
{
    const auto material = hold(ChunkMaterial::create());
    const auto stranger = hold(LineChunk::create());

    EXPECT_TRUE(material->subChunk(stranger.get()));

    EXPECT_THAT(StandardError::take(), ::testing::Not(::testing::IsEmpty()));
    EXPECT_EQ(stranger.get().getRefCount(), 1);
}

TEST_F(ChunkMaterialTest, ClearingReleasesAllChunks)
{
    const auto material = hold(ChunkMaterial::create());
    const auto line = hold(LineChunk::create());
    material->addChunk(line.get());
    material->addChunk(DepthChunk::create());

    material->clearChunks();

    EXPECT_EQ(material->getMFChunks()->size(), 0U);
    EXPECT_EQ(line.get().getRefCount(), 1);
}

TEST_F(ChunkMaterialTest, ASimpleMaterialListsOnlyTheChunksThatItWasGiven)
{
    const auto material = hold(SimpleMaterial::create());
    material->addChunk(LineChunk::create(), -2);

    endEditCP(material);
    endEditCP(material);

    EXPECT_EQ(material->getMFChunks()->size(), 1U);
}

TEST_F(ChunkMaterialTest, ATransparentChunkMakesItsMaterialTransparent)
{
    const auto material = hold(ChunkMaterial::create());
    const BlendChunkPtr blend = BlendChunk::create();
    blend->setSrcFactor(GL_SRC_ALPHA);
    blend->setDestFactor(GL_ONE_MINUS_SRC_ALPHA);
    material->addChunk(blend);

    EXPECT_TRUE(material->isTransparent());
}

TEST_F(ChunkMaterialTest, SlotsAreStoredOnceOneIsAskedFor)
{
    const auto material = hold(ChunkMaterial::create());
    const auto line = hold(LineChunk::create());
    const auto blend = hold(BlendChunk::create());
    const auto polygon = hold(PolygonChunk::create());
    material->addChunk(line.get());

    material->addChunk(blend.get(), 0);
    material->addChunk(polygon.get());

    ASSERT_EQ(material->getMFSlots()->size(), 3U);
    EXPECT_EQ((*material->getMFSlots())[0], Int32(State::AutoSlotReplace));
    EXPECT_EQ((*material->getMFSlots())[1], 0);
    EXPECT_EQ((*material->getMFSlots())[2], Int32(State::AutoSlotReplace));
    EXPECT_TRUE(material->find(BlendChunk::getClassType(), 0) == blend.get());
}

TEST_F(ChunkMaterialTest, SubtractingAChunkTakesItsSlotOutAsWell)
{
    const auto material = hold(ChunkMaterial::create());
    const auto line = hold(LineChunk::create());
    const auto blend = hold(BlendChunk::create());
    material->addChunk(line.get());
    material->addChunk(blend.get(), 0);

    EXPECT_FALSE(material->subChunk(line.get()));

    ASSERT_EQ(material->getMFSlots()->size(), 1U);
    EXPECT_EQ((*material->getMFSlots())[0], 0);
    EXPECT_EQ(material->getMFChunks()->size(), 1U);
}

} // namespace
