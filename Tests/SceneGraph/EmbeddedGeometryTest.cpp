// SPDX-License-Identifier: MIT
#include "SceneParts.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <ostream>
#include <string>
#include <vector>

// The properties that hardly any geometry has. They are fields as the others are, but have no memory until they are
// asked for.
namespace {

using namespace osg;
using quon::testing::hold;
using quon::testing::isAlive;
using quon::testing::makeCube;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

class WatchedGeometry;
typedef FCPtr<GeometryPtr, WatchedGeometry> WatchedGeometryPtr;

/// Notes which fields it is told of.
class WatchedGeometry : public Geometry {
public:
    typedef Geometry Inherited;
    typedef WatchedGeometryPtr Ptr;

    OSG_FIELD_CONTAINER_DECL(WatchedGeometryPtr)

    void changed(const BitVector whichField, const UInt32 origin) override
    {
        told.push_back(whichField);
        Inherited::changed(whichField, origin);
    }

    std::vector<BitVector> told;

protected:
    WatchedGeometry() = default;
    WatchedGeometry(const WatchedGeometry& source)
        : Inherited(source)
    {}
    ~WatchedGeometry() override = default;

    static FieldContainerType _type;
};

FieldContainerType WatchedGeometry::_type(
    "WatchedGeometry", "Geometry", nullptr, []() -> FieldContainerPtr { return createEmpty(); }, nullptr);

OSG_FIELD_CONTAINER_INL_DEF(WatchedGeometry, WatchedGeometryPtr)
OSG_FIELD_CONTAINER_DEF(WatchedGeometry, WatchedGeometryPtr)

struct TextureUnit {
    const char* field;
    UInt32 fieldId;
    BitVector fieldMask;
    const GeoTexCoordsPtr& (Geometry::*get)() const;
    void (Geometry::*set)(const GeoTexCoordsPtr&);

    friend std::ostream& operator<<(std::ostream& stream, const TextureUnit& unit) { return stream << unit.field; }
};

class EmbeddedTextureUnitTest : public quon::testing::SceneFixture, public ::testing::WithParamInterface<TextureUnit> {
protected:
    static const GeoTexCoordsPtr& get(const GeometryPtr& geometry) { return ((*geometry).*GetParam().get)(); }
    static void set(const GeometryPtr& geometry, const GeoTexCoordsPtr& coordinates)
    {
        ((*geometry).*GetParam().set)(coordinates);
    }
};

INSTANTIATE_TEST_SUITE_P(
    AllUnits, EmbeddedTextureUnitTest,
    ::testing::Values(TextureUnit{"texCoords", Geometry::TexCoordsFieldId, Geometry::TexCoordsFieldMask,
                                  &Geometry::getTexCoords, &Geometry::setTexCoords},
                      TextureUnit{"texCoords1", Geometry::TexCoords1FieldId, Geometry::TexCoords1FieldMask,
                                  &Geometry::getTexCoords1, &Geometry::setTexCoords1},
                      TextureUnit{"texCoords2", Geometry::TexCoords2FieldId, Geometry::TexCoords2FieldMask,
                                  &Geometry::getTexCoords2, &Geometry::setTexCoords2},
                      TextureUnit{"texCoords3", Geometry::TexCoords3FieldId, Geometry::TexCoords3FieldMask,
                                  &Geometry::getTexCoords3, &Geometry::setTexCoords3},
                      TextureUnit{"texCoords4", Geometry::TexCoords4FieldId, Geometry::TexCoords4FieldMask,
                                  &Geometry::getTexCoords4, &Geometry::setTexCoords4},
                      TextureUnit{"texCoords5", Geometry::TexCoords5FieldId, Geometry::TexCoords5FieldMask,
                                  &Geometry::getTexCoords5, &Geometry::setTexCoords5},
                      TextureUnit{"texCoords6", Geometry::TexCoords6FieldId, Geometry::TexCoords6FieldMask,
                                  &Geometry::getTexCoords6, &Geometry::setTexCoords6},
                      TextureUnit{"texCoords7", Geometry::TexCoords7FieldId, Geometry::TexCoords7FieldMask,
                                  &Geometry::getTexCoords7, &Geometry::setTexCoords7}),
    [](const auto& unit) { return std::string(unit.param.field); });

TEST_P(EmbeddedTextureUnitTest, IsNullUntilItIsSet)
{
    const auto geometry = hold(Geometry::create());

    EXPECT_TRUE(get(geometry) == NullFC);
}

TEST_P(EmbeddedTextureUnitTest, IsHeldByTheGeometryAndReleasedAgain)
{
    const auto geometry = hold(Geometry::create());
    const auto coordinates = hold(GeoTexCoords2f::create());

    set(geometry, coordinates.get());

    EXPECT_TRUE(get(geometry) == coordinates.get());
    EXPECT_EQ(coordinates.get().getRefCount(), 2);
    EXPECT_EQ(coordinates->findParent(geometry.get()), 0);

    set(geometry, NullFC);

    EXPECT_TRUE(get(geometry) == NullFC);
    EXPECT_EQ(coordinates.get().getRefCount(), 1);
    EXPECT_EQ(coordinates->findParent(geometry.get()), -1);
}

TEST_P(EmbeddedTextureUnitTest, IsTheFieldOfItsNameAndItsNumber)
{
    const auto geometry = hold(Geometry::create());
    const auto coordinates = hold(GeoTexCoords2f::create());
    set(geometry, coordinates.get());

    Field* const byName = geometry->getField(GetParam().field);

    ASSERT_TRUE(byName != nullptr);
    EXPECT_EQ(byName, geometry->getField(GetParam().fieldId));
    EXPECT_TRUE(static_cast<SFGeoTexCoordsPtr*>(byName)->getValue() == coordinates.get());
    EXPECT_EQ(GetParam().fieldMask, BitVector(1) << GetParam().fieldId);
}

TEST_P(EmbeddedTextureUnitTest, NewValuesAreAChangeOfItsFieldAlone)
{
    const auto geometry = hold(WatchedGeometry::create());
    const auto coordinates = hold(GeoTexCoords2f::create());
    set(geometry.get(), coordinates.get());
    geometry->told.clear();

    coordinates->addValue(Vec2f(1, 2));
    endEditCP(coordinates, GeoTexCoords2f::GeoPropDataFieldMask);

    EXPECT_THAT(geometry->told, ElementsAre(GetParam().fieldMask));
}

TEST_P(EmbeddedTextureUnitTest, IsCopiedWithAClone)
{
    const auto geometry = hold(Geometry::create());
    const auto coordinates = hold(GeoTexCoords2f::create());
    coordinates->addValue(Vec2f(1, 2));
    set(geometry, coordinates.get());

    const auto copy = hold(geometry->clone());

    ASSERT_TRUE(get(copy) != NullFC);
    EXPECT_TRUE(get(copy) != coordinates.get());
    EXPECT_EQ(get(copy)->getValue(0), Vec2f(1, 2));
    EXPECT_EQ(get(copy).getRefCount(), 1);
    EXPECT_EQ(coordinates.get().getRefCount(), 2);
}

TEST_P(EmbeddedTextureUnitTest, IsSharedWithAShallowCopyUntilThatGoes)
{
    const auto geometry = hold(Geometry::create());
    const auto coordinates = hold(GeoTexCoords2f::create());
    set(geometry, coordinates.get());
    {
        const auto copy = hold(GeometryPtr::dcast(geometry->shallowCopy()));
        EXPECT_TRUE(get(copy) == coordinates.get());
        EXPECT_EQ(coordinates.get().getRefCount(), 3);
        EXPECT_EQ(coordinates->getParents().size(), 2U);
    }

    EXPECT_EQ(coordinates.get().getRefCount(), 2);
    EXPECT_EQ(coordinates->getParents().size(), 1U);
    EXPECT_TRUE(get(geometry) == coordinates.get());
}

class EmbeddedGeometryTest : public quon::testing::SceneFixture {};

TEST_F(EmbeddedGeometryTest, AGeometryOfAHostIsATypeOfItsOwn)
{
    EXPECT_TRUE(WatchedGeometry::getClassType().isDerivedFrom(Geometry::getClassType()));
    EXPECT_NE(WatchedGeometry::getClassTypeId(), Geometry::getClassTypeId());
}

TEST_F(EmbeddedGeometryTest, OnePropertyMayServeSeveralUnits)
{
    const auto geometry = hold(WatchedGeometry::create());
    const auto coordinates = hold(GeoTexCoords2f::create());
    geometry->setTexCoords(coordinates.get());
    geometry->setTexCoords3(coordinates.get());
    EXPECT_EQ(coordinates->getParents().size(), 2U);
    geometry->told.clear();

    endEditCP(coordinates, GeoTexCoords2f::GeoPropDataFieldMask);

    // Told once for each place among the parents, of both fields each time.
    const BitVector both = Geometry::TexCoordsFieldMask | Geometry::TexCoords3FieldMask;
    EXPECT_THAT(geometry->told, ElementsAre(both, both));

    geometry->setTexCoords(NullFC);
    EXPECT_EQ(coordinates->getParents().size(), 1U);
    EXPECT_TRUE(geometry->getTexCoords3() == coordinates.get());
}

TEST_F(EmbeddedGeometryTest, APlaceAmongTheParentsIsFollowedWhenEarlierOnesGo)
{
    const auto coordinates = hold(GeoTexCoords2f::create());
    auto first = hold(Geometry::create());
    const auto second = hold(Geometry::create());
    const auto third = hold(Geometry::create());
    first->setTexCoords2(coordinates.get());
    second->setTexCoords2(coordinates.get());
    third->setTexCoords2(coordinates.get());
    first = NullFC;
    // Reading closes the gap that the first one left, which moves the others.
    ASSERT_EQ(coordinates->getParents().size(), 2U);

    second->setTexCoords2(NullFC);

    ASSERT_EQ(coordinates->getParents().size(), 1U);
    EXPECT_TRUE(coordinates->getParents()[0] == third.get());
}

TEST_F(EmbeddedGeometryTest, EditsOfAPropertyThatAreNotOfItsValuesTellNobody)
{
    const auto geometry = hold(WatchedGeometry::create());
    const auto colors = hold(GeoColors3f::create());
    geometry->setSecondaryColors(colors.get());
    geometry->told.clear();

    endEditCP(colors, Attachment::ParentsFieldMask);

    EXPECT_THAT(geometry->told, IsEmpty());
}

TEST_F(EmbeddedGeometryTest, SecondaryColorsAreAField)
{
    const auto geometry = hold(Geometry::create());
    const auto colors = hold(GeoColors3f::create());
    EXPECT_TRUE(geometry->getSecondaryColors() == NullFC);

    geometry->setSecondaryColors(colors.get());

    Field* const field = geometry->getField("secondaryColors");
    ASSERT_TRUE(field != nullptr);
    EXPECT_EQ(field, geometry->getField(Geometry::SecondaryColorsFieldId));
    EXPECT_TRUE(static_cast<SFGeoColorsPtr*>(field)->getValue() == colors.get());
}

TEST_F(EmbeddedGeometryTest, FieldsForTheRendererHaveTheirDefaults)
{
    const auto geometry = hold(Geometry::create());

    EXPECT_EQ(static_cast<SFInt32*>(geometry->getField("GLId"))->getValue(), 0);
    EXPECT_EQ(static_cast<SFInt32*>(geometry->getField("IgnoreGLForAspect"))->getValue(), -1);
    for (const char* name : {"minindex", "maxindex", "lowindices", "highindices"}) {
        EXPECT_EQ(static_cast<SFUInt32*>(geometry->getField(name))->getValue(), 0U) << name;
    }
    EXPECT_TRUE(static_cast<SFBool*>(geometry->getField("dlistCache"))->getValue());
    EXPECT_FALSE(static_cast<SFBool*>(geometry->getField("vbo"))->getValue());
    EXPECT_FALSE(geometry->getVbo());
}

TEST_F(EmbeddedGeometryTest, FieldsForTheRendererKeepWhatIsSetAndGoIntoCopies)
{
    const auto geometry = hold(Geometry::create());
    UInt32 value = 10;
    for (const char* name : {"minindex", "maxindex", "lowindices", "highindices"}) {
        static_cast<SFUInt32*>(geometry->getField(name))->setValue(++value);
    }
    geometry->setVbo(true);

    const auto copy = hold(GeometryPtr::dcast(geometry->shallowCopy()));

    value = 10;
    for (const char* name : {"minindex", "maxindex", "lowindices", "highindices"}) {
        EXPECT_EQ(static_cast<SFUInt32*>(copy->getField(name))->getValue(), ++value) << name;
    }
    EXPECT_TRUE(copy->getVbo());
}

TEST_F(EmbeddedGeometryTest, TheIndexMappingIsEmptyUntilItIsEdited)
{
    const auto geometry = hold(Geometry::create());
    EXPECT_TRUE(geometry->getMFIndexMapping()->empty());

    geometry->editMFIndexMapping()->push_back(3);

    ASSERT_EQ(geometry->getMFIndexMapping()->size(), 1U);
    EXPECT_EQ((*geometry->getMFIndexMapping())[0], 3U);
    EXPECT_EQ(geometry->getField("indexMapping"), geometry->editMFIndexMapping());
}

TEST_F(EmbeddedGeometryTest, OnlyTheMappedIndicesArePositions)
{
    const auto geometry = hold(makeCube());
    const GeoPositionsPtr positions = geometry->getPositions();
    positions->addValue(Pnt3f(9, 9, 9));
    endEditCP(positions);
    const GeoIndicesUI32Ptr indices = GeoIndicesUI32::create();
    // For each of two vertices the index of a normal, which is that of the far position, before that of a position.
    for (const UInt32 index : {2U, 0U, 2U, 1U}) {
        indices->addValue(index);
    }
    endEditCP(indices);
    constexpr UInt16 mapPosition = 1;
    constexpr UInt16 mapNormal = 2;
    geometry->editMFIndexMapping()->push_back(mapNormal);
    geometry->editMFIndexMapping()->push_back(mapPosition);
    geometry->setIndices(indices);
    endEditCP(geometry);
    const auto node = hold(quon::testing::makeNode(geometry.get()));

    EXPECT_EQ(quon::testing::worldBounds(node), quon::testing::filled(Pnt3f(-1, -1, -1), Pnt3f(1, 1, 1)));
}

TEST_F(EmbeddedGeometryTest, RarePropertiesGoWithTheirGeometry)
{
    UInt32 id = 0;
    {
        const auto geometry = hold(Geometry::create());
        geometry->setTexCoords7(GeoTexCoords2f::create());
        id = getContainerId(geometry->getTexCoords7());
        EXPECT_TRUE(isAlive(id));
    }

    EXPECT_FALSE(isAlive(id));
}

} // namespace
