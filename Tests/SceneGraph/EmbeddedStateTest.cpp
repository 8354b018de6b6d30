// SPDX-License-Identifier: MIT
#include "SceneParts.h"

#include <OpenSG/OSGBlendChunk.h>
#include <OpenSG/OSGChunkMaterial.h>
#include <OpenSG/OSGDepthChunk.h>
#include <OpenSG/OSGDepthTestChunk.h>
#include <OpenSG/OSGLineChunk.h>
#include <OpenSG/OSGMaterialChunk.h>
#include <OpenSG/OSGPolygonChunk.h>
#include <OpenSG/OSGSimpleMaterial.h>
#include <OpenSG/OSGState.h>

#include <gtest/gtest.h>

#include <set>

// What materials come down to; an installed OpenSG answers with other values from the same operations.
namespace {

using namespace osg;
using quon::testing::hold;
using quon::testing::isAlive;

class UnitChunk;
typedef FCPtr<StateChunkPtr, UnitChunk> UnitChunkPtr;

/// A chunk of which a state holds two.
class UnitChunk : public StateChunk {
public:
    typedef StateChunk Inherited;
    typedef UnitChunkPtr Ptr;

    OSG_FIELD_CONTAINER_DECL(UnitChunkPtr)

    static UInt32 firstSlot() { return unitClass().getId(); }
    const StateChunkClass* getClass() const override { return &unitClass(); }

protected:
    UnitChunk() = default;
    UnitChunk(const UnitChunk& source)
        : Inherited(source)
    {}
    ~UnitChunk() override = default;

    static FieldContainerType _type;

private:
    static const StateChunkClass& unitClass()
    {
        static const StateChunkClass chunkClass("Unit", 2);
        return chunkClass;
    }
};

FieldContainerType UnitChunk::_type(
    "UnitChunk", "StateChunk", nullptr, []() -> FieldContainerPtr { return createEmpty(); }, nullptr);

OSG_FIELD_CONTAINER_INL_DEF(UnitChunk, UnitChunkPtr)
OSG_FIELD_CONTAINER_DEF(UnitChunk, UnitChunkPtr)

class NamelessChunk;
typedef FCPtr<StateChunkPtr, NamelessChunk> NamelessChunkPtr;

/// A chunk that says nothing about its class.
class NamelessChunk : public StateChunk {
public:
    typedef StateChunk Inherited;
    typedef NamelessChunkPtr Ptr;

    OSG_FIELD_CONTAINER_DECL(NamelessChunkPtr)

protected:
    NamelessChunk() = default;
    NamelessChunk(const NamelessChunk& source)
        : Inherited(source)
    {}
    ~NamelessChunk() override = default;

    static FieldContainerType _type;
};

FieldContainerType NamelessChunk::_type(
    "NamelessChunk", "StateChunk", nullptr, []() -> FieldContainerPtr { return createEmpty(); }, nullptr);

OSG_FIELD_CONTAINER_INL_DEF(NamelessChunk, NamelessChunkPtr)
OSG_FIELD_CONTAINER_DEF(NamelessChunk, NamelessChunkPtr)

class EmbeddedStateTest : public quon::testing::SceneFixture {};

TEST_F(EmbeddedStateTest, ChunksOfAHostAreTypesOfTheirOwn)
{
    EXPECT_TRUE(UnitChunk::getClassType().isDerivedFrom(StateChunk::getClassType()));
    EXPECT_TRUE(NamelessChunk::getClassType().isDerivedFrom(StateChunk::getClassType()));
    EXPECT_NE(UnitChunk::getClassTypeId(), NamelessChunk::getClassTypeId());
}

TEST_F(EmbeddedStateTest, AChunkTakesTheSlotOfItsClass)
{
    const auto state = hold(State::create());
    const auto line = hold(LineChunk::create());
    const auto blend = hold(BlendChunk::create());

    EXPECT_TRUE(state->addChunk(line.get()));
    EXPECT_TRUE(state->addChunk(blend.get()));

    EXPECT_TRUE(state->getChunk(line->getClassId()) == line.get());
    EXPECT_TRUE(state->getChunk(blend->getClassId()) == blend.get());
    EXPECT_EQ(line.get().getRefCount(), 2);
}

TEST_F(EmbeddedStateTest, EveryClassHasASlotOfItsOwn)
{
    const std::set<UInt32> slots{hold(LineChunk::create())->getClassId(),
                                 hold(BlendChunk::create())->getClassId(),
                                 hold(PolygonChunk::create())->getClassId(),
                                 hold(DepthChunk::create())->getClassId(),
                                 hold(MaterialChunk::create())->getClassId(),
                                 hold(NamelessChunk::create())->getClassId(),
                                 UnitChunk::firstSlot(),
                                 UnitChunk::firstSlot() + 1};

    EXPECT_EQ(slots.size(), 8U);
    EXPECT_EQ(hold(DepthTestChunk::create())->getClassId(), hold(DepthChunk::create())->getClassId());
    EXPECT_STREQ(hold(PolygonChunk::create())->getClass()->getName(), "Polygon");
    EXPECT_STREQ(hold(UnitChunk::create())->getClass()->getName(), "Unit");
}

TEST_F(EmbeddedStateTest, AnotherChunkOfTheClassReplacesTheFirst)
{
    const auto state = hold(State::create());
    const auto oldOne = hold(LineChunk::create());
    const auto newOne = hold(LineChunk::create());
    state->addChunk(oldOne.get());

    EXPECT_TRUE(state->addChunk(newOne.get()));

    EXPECT_TRUE(state->getChunk(newOne->getClassId()) == newOne.get());
    EXPECT_EQ(oldOne.get().getRefCount(), 1);
    EXPECT_EQ(newOne.get().getRefCount(), 2);
}

TEST_F(EmbeddedStateTest, AddingTheSameChunkAgainKeepsIt)
{
    const auto state = hold(State::create());
    LineChunkPtr line = LineChunk::create();
    state->addChunk(line);

    EXPECT_TRUE(state->addChunk(line));

    EXPECT_TRUE(state->getChunk(line->getClassId()) == line);
    EXPECT_EQ(line.getRefCount(), 1);
}

TEST_F(EmbeddedStateTest, AChunkTakesTheNextFreeSlotOfItsClass)
{
    const auto state = hold(State::create());
    const auto first = hold(UnitChunk::create());
    const auto second = hold(UnitChunk::create());
    const auto third = hold(UnitChunk::create());

    EXPECT_TRUE(state->addChunk(first.get(), State::AutoSlot));
    EXPECT_TRUE(state->addChunk(second.get(), State::AutoSlot));
    EXPECT_FALSE(state->addChunk(third.get(), State::AutoSlot));

    EXPECT_TRUE(state->getChunk(UnitChunk::firstSlot()) == first.get());
    EXPECT_TRUE(state->getChunk(UnitChunk::firstSlot() + 1) == second.get());
    EXPECT_EQ(third.get().getRefCount(), 1);
}

TEST_F(EmbeddedStateTest, AChunkTakesTheSlotThatIsAskedFor)
{
    const auto state = hold(State::create());
    const auto chunk = hold(UnitChunk::create());

    EXPECT_TRUE(state->addChunk(chunk.get(), 1));

    EXPECT_TRUE(state->getChunk(UnitChunk::firstSlot()) == NullFC);
    EXPECT_TRUE(state->getChunk(UnitChunk::firstSlot() + 1) == chunk.get());
}

TEST_F(EmbeddedStateTest, ASlotThatTheClassLacksIsRefused)
{
    const auto state = hold(State::create());
    const auto chunk = hold(UnitChunk::create());

    EXPECT_FALSE(state->addChunk(chunk.get(), 2));
    EXPECT_FALSE(state->addChunk(chunk.get(), -3));

    EXPECT_EQ(chunk.get().getRefCount(), 1);
    EXPECT_TRUE(state->getMFChunks()->empty());
}

TEST_F(EmbeddedStateTest, NullIsRefused)
{
    const auto state = hold(State::create());

    EXPECT_FALSE(state->addChunk(NullFC));
    EXPECT_FALSE(state->subChunk(NullFC));

    EXPECT_TRUE(state->getMFChunks()->empty());
}

TEST_F(EmbeddedStateTest, SubtractingFreesTheSlot)
{
    const auto state = hold(State::create());
    const auto line = hold(LineChunk::create());
    state->addChunk(line.get());

    EXPECT_TRUE(state->subChunk(line.get()));
    EXPECT_FALSE(state->subChunk(line.get()));

    EXPECT_TRUE(state->getChunk(line->getClassId()) == NullFC);
    EXPECT_EQ(line.get().getRefCount(), 1);
}

TEST_F(EmbeddedStateTest, SlotsBehindTheLastAreFree)
{
    const auto state = hold(State::create());

    EXPECT_TRUE(state->getChunk(0) == NullFC);
    EXPECT_TRUE(state->getChunk(1000000) == NullFC);
}

TEST_F(EmbeddedStateTest, ACopyHoldsTheSameChunks)
{
    const auto line = hold(LineChunk::create());
    const auto state = hold(State::create());
    state->addChunk(line.get());
    {
        const auto copy = hold(StatePtr::dcast(state->shallowCopy()));
        EXPECT_TRUE(copy->getChunk(line->getClassId()) == line.get());
        EXPECT_EQ(line.get().getRefCount(), 3);
    }

    EXPECT_EQ(line.get().getRefCount(), 2);
}

TEST_F(EmbeddedStateTest, ClearingReleasesAllChunks)
{
    const auto state = hold(State::create());
    state->addChunk(LineChunk::create());
    const UInt32 id = getContainerId(state->getChunk(hold(LineChunk::create())->getClassId()));
    ASSERT_TRUE(isAlive(id));

    state->clearChunks();

    EXPECT_FALSE(isAlive(id));
    EXPECT_TRUE(state->getMFChunks()->empty());
}

TEST_F(EmbeddedStateTest, AMaterialMakesItsStateWhenItIsFirstAskedFor)
{
    const auto material = hold(ChunkMaterial::create());
    const auto line = hold(LineChunk::create());
    material->addChunk(line.get());

    const StatePtr state = material->getState();

    ASSERT_TRUE(state != NullFC);
    EXPECT_TRUE(state->getChunk(line->getClassId()) == line.get());
    EXPECT_TRUE(material->getState() == state);
}

TEST_F(EmbeddedStateTest, TheStateOfAMaterialFollowsWithTheEndOfAnEdit)
{
    const auto material = hold(ChunkMaterial::create());
    const auto line = hold(LineChunk::create());
    const StatePtr state = material->getState();

    material->addChunk(line.get());
    EXPECT_TRUE(state->getChunk(line->getClassId()) == NullFC);
    endEditCP(material, ChunkMaterial::ChunksFieldMask);

    EXPECT_TRUE(material->getState() == state);
    EXPECT_TRUE(state->getChunk(line->getClassId()) == line.get());
}

TEST_F(EmbeddedStateTest, AMadeStateBelongsToItsCaller)
{
    const auto material = hold(ChunkMaterial::create());
    const auto first = hold(UnitChunk::create());
    const auto second = hold(UnitChunk::create());
    material->addChunk(first.get(), 1);
    material->addChunk(second.get(), 0);

    const auto state = hold(material->makeState());

    EXPECT_EQ(state.get().getRefCount(), 1);
    EXPECT_TRUE(state.get() != material->getState());
    EXPECT_TRUE(state->getChunk(UnitChunk::firstSlot()) == second.get());
    EXPECT_TRUE(state->getChunk(UnitChunk::firstSlot() + 1) == first.get());
}

TEST_F(EmbeddedStateTest, ASimpleMaterialMakesAChunkOfItsColors)
{
    const auto material = hold(SimpleMaterial::create());
    material->setDiffuse(Color3f(1, 0.5F, 0.25F));
    material->setShininess(20);
    material->setLit(false);

    const auto state = hold(material->makeState());

    const UInt32 slot = hold(MaterialChunk::create())->getClassId();
    const MaterialChunkPtr chunk = MaterialChunkPtr::dcast(state->getChunk(slot));
    ASSERT_TRUE(chunk != NullFC);
    EXPECT_EQ(chunk->getDiffuse(), Color4f(1, 0.5F, 0.25F, 1));
    EXPECT_EQ(chunk->getShininess(), 20.0F);
    EXPECT_FALSE(chunk->getLit());
    EXPECT_FALSE(chunk->isTransparent());
    EXPECT_TRUE(state->getChunk(hold(BlendChunk::create())->getClassId()) == NullFC);
}

TEST_F(EmbeddedStateTest, ATransparentSimpleMaterialBlends)
{
    const auto material = hold(SimpleMaterial::create());
    material->setTransparency(0.75F);

    const auto state = hold(material->makeState());

    const MaterialChunkPtr colors =
        MaterialChunkPtr::dcast(state->getChunk(hold(MaterialChunk::create())->getClassId()));
    const BlendChunkPtr blend = BlendChunkPtr::dcast(state->getChunk(hold(BlendChunk::create())->getClassId()));
    ASSERT_TRUE(colors != NullFC);
    ASSERT_TRUE(blend != NullFC);
    EXPECT_EQ(colors->getDiffuse().alpha(), 0.25F);
    EXPECT_TRUE(colors->isTransparent());
    EXPECT_EQ(blend->getSrcFactor(), GLenum(GL_SRC_ALPHA));
    EXPECT_EQ(blend->getDestFactor(), GLenum(GL_ONE_MINUS_SRC_ALPHA));
}

TEST_F(EmbeddedStateTest, TheOwnChunksOfASimpleMaterialReplaceThoseOfItsColors)
{
    const auto material = hold(SimpleMaterial::create());
    const auto chunk = hold(MaterialChunk::create());
    material->addChunk(chunk.get());

    const auto state = hold(material->makeState());

    EXPECT_TRUE(state->getChunk(chunk->getClassId()) == chunk.get());
}

TEST_F(EmbeddedStateTest, ACopyOfASimpleMaterialHasAStateOfItsOwn)
{
    const auto material = hold(SimpleMaterial::create());
    const auto line = hold(LineChunk::create());
    material->addChunk(line.get());
    endEditCP(material);

    {
        const auto copy = hold(SimpleMaterialPtr::dcast(material->shallowCopy()));
        copy->setDiffuse(Color3f(1, 0, 0));
        endEditCP(copy);
        EXPECT_TRUE(copy->getState() != material->getState());
        EXPECT_EQ(copy->find(line.get()), 0);
    }

    const UInt32 slot = hold(MaterialChunk::create())->getClassId();
    const MaterialChunkPtr chunk = MaterialChunkPtr::dcast(material->getState()->getChunk(slot));
    ASSERT_TRUE(chunk != NullFC);
    EXPECT_EQ(chunk->getDiffuse(), Color4f(0, 0, 0, 1));
    EXPECT_EQ(line.get().getRefCount(), 3);
}

} // namespace
