// SPDX-License-Identifier: MIT
#include "SceneParts.h"

#include <OpenSG/OSGBlendChunk.h>
#include <OpenSG/OSGDepthChunk.h>
#include <OpenSG/OSGDepthTestChunk.h>
#include <OpenSG/OSGLineChunk.h>
#include <OpenSG/OSGMaterialChunk.h>
#include <OpenSG/OSGPolygonChunk.h>

#include <gtest/gtest.h>

namespace {

using namespace osg;
using quon::testing::hold;

class StateChunkTest : public quon::testing::SceneFixture {};

TEST_F(StateChunkTest, AFreshLineChunkDrawsPlainLines)
{
    const auto chunk = hold(LineChunk::create());

    EXPECT_EQ(chunk->getWidth(), 1.0F);
    EXPECT_EQ(chunk->getStippleRepeat(), 1);
    EXPECT_EQ(chunk->getStipplePattern(), 0xffff);
    EXPECT_FALSE(chunk->getSmooth());
}

TEST_F(StateChunkTest, ALineChunkKeepsWhatIsSet)
{
    const auto chunk = hold(LineChunk::create());

    chunk->setWidth(3.0F);
    chunk->setStippleRepeat(2);
    chunk->setStipplePattern(0x0f0f);
    chunk->setSmooth(true);

    EXPECT_EQ(chunk->getWidth(), 3.0F);
    EXPECT_EQ(chunk->getStippleRepeat(), 2);
    EXPECT_EQ(chunk->getStipplePattern(), 0x0f0f);
    EXPECT_TRUE(chunk->getSmooth());
}

TEST_F(StateChunkTest, AFreshBlendChunkReplaces)
{
    const auto chunk = hold(BlendChunk::create());

    EXPECT_EQ(chunk->getSrcFactor(), GLenum(GL_ONE));
    EXPECT_EQ(chunk->getDestFactor(), GLenum(GL_ZERO));
    EXPECT_EQ(chunk->getColor(), Color4f());
    EXPECT_EQ(chunk->getAlphaFunc(), GLenum(GL_NONE));
    EXPECT_EQ(chunk->getAlphaValue(), 0.0F);
}

TEST_F(StateChunkTest, ABlendChunkKeepsWhatIsSet)
{
    const auto chunk = hold(BlendChunk::create());

    chunk->setSrcFactor(GL_SRC_ALPHA);
    chunk->setDestFactor(GL_ONE_MINUS_SRC_ALPHA);

    EXPECT_EQ(chunk->getSrcFactor(), GLenum(GL_SRC_ALPHA));
    EXPECT_EQ(chunk->getDestFactor(), GLenum(GL_ONE_MINUS_SRC_ALPHA));
}

TEST_F(StateChunkTest, AFreshPolygonChunkFillsBothSidesWithoutOffset)
{
    const auto chunk = hold(PolygonChunk::create());

    EXPECT_EQ(chunk->getCullFace(), GLenum(GL_NONE));
    EXPECT_EQ(chunk->getFrontFace(), GLenum(GL_CCW));
    EXPECT_EQ(chunk->getFrontMode(), GLenum(GL_FILL));
    EXPECT_EQ(chunk->getBackMode(), GLenum(GL_FILL));
    EXPECT_FALSE(chunk->getSmooth());
    EXPECT_EQ(chunk->getOffsetFactor(), 0.0F);
    EXPECT_EQ(chunk->getOffsetBias(), 0.0F);
    EXPECT_FALSE(chunk->getOffsetPoint());
    EXPECT_FALSE(chunk->getOffsetLine());
    EXPECT_FALSE(chunk->getOffsetFill());
}

TEST_F(StateChunkTest, APolygonChunkKeepsWhatIsSet)
{
    const auto chunk = hold(PolygonChunk::create());

    chunk->setFrontMode(GL_LINE);
    chunk->setBackMode(GL_POINT);
    chunk->setOffsetFactor(-1.0F);
    chunk->setOffsetBias(-2.0F);
    chunk->setOffsetLine(true);

    EXPECT_EQ(chunk->getFrontMode(), GLenum(GL_LINE));
    EXPECT_EQ(chunk->getBackMode(), GLenum(GL_POINT));
    EXPECT_EQ(chunk->getOffsetFactor(), -1.0F);
    EXPECT_EQ(chunk->getOffsetBias(), -2.0F);
    EXPECT_TRUE(chunk->getOffsetLine());
    EXPECT_FALSE(chunk->getOffsetFill());
}

TEST_F(StateChunkTest, AFreshDepthChunkTestsLessOrEqualAndWrites)
{
    const auto chunk = hold(DepthChunk::create());

    EXPECT_TRUE(chunk->getEnable());
    EXPECT_EQ(chunk->getFunc(), GLenum(GL_LEQUAL));
    EXPECT_EQ(chunk->getNear(), -1.0F);
    EXPECT_EQ(chunk->getFar(), -1.0F);
    EXPECT_FALSE(chunk->getReadOnly());
}

TEST_F(StateChunkTest, ADepthTestChunkHasADepthFunction)
{
    const auto chunk = hold(DepthTestChunk::create());

    chunk->setFunc(GL_ALWAYS);

    EXPECT_EQ(chunk->getFunc(), GLenum(GL_ALWAYS));
}

TEST_F(StateChunkTest, ADepthTestChunkIsATypeOfItsOwn)
{
    const auto chunk = hold(DepthTestChunk::create());
    const StateChunkPtr base = chunk.get();

    EXPECT_STREQ(chunk->getTypeName(), "DepthTestChunk");
    EXPECT_NE(DepthTestChunk::getClassTypeId(), DepthChunk::getClassTypeId());
    EXPECT_TRUE(DepthTestChunkPtr::dcast(base) == chunk.get());
    EXPECT_TRUE(LineChunkPtr::dcast(base) == NullFC);
}

TEST_F(StateChunkTest, AMaterialChunkIsAStateChunk)
{
    const auto chunk = hold(MaterialChunk::create());
    const StateChunkPtr base = chunk.get();

    EXPECT_TRUE(MaterialChunkPtr::dcast(base) != NullFC);
    EXPECT_TRUE(chunk->getLit());
}

} // namespace
