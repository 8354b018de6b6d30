// SPDX-License-Identifier: MIT
#include <InteractionTesting/SceneFixture.h>

#include "Support/DrawnScene.h"

#include "Viewer/Drawing/OffscreenSurface.h"
#include "Viewer/Drawing/SceneRenderer.h"

#include <Extensions/SceneExtensions.h>

#include <OpenSG/OSGBlendChunk.h>
#include <OpenSG/OSGDepthChunk.h>
#include <OpenSG/OSGDepthTestChunk.h>
#include <OpenSG/OSGLineChunk.h>
#include <OpenSG/OSGMaterialGroup.h>
#include <OpenSG/OSGPolygonChunk.h>
#include <OpenSG/OSGRefPtr.h>
#include <OpenSG/OSGSwitch.h>

#include <QColor>
#include <QImage>

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <ostream>

namespace quon::testing {

namespace {

using viewer::Matrix4;
using viewer::OffscreenSurface;
using viewer::SceneChanges;
using viewer::SceneRenderer;

const osg::Color3f Red(1, 0, 0);
const osg::Color3f Green(0, 1, 0);
const osg::Color3f Blue(0, 0, 1);

constexpr QRgb RedPixel = 0xFFFF0000;
constexpr QRgb GreenPixel = 0xFF00FF00;
constexpr QRgb BluePixel = 0xFF0000FF;
constexpr QRgb BlackPixel = 0xFF000000;

constexpr int Size = 64;

// Pictures are compared by their colours in hexadecimal.
std::string hex(const QRgb colour)
{
    return QColor(colour).name().toStdString();
}

class SceneRendererTest : public SceneFixture {
protected:
    SceneRendererTest()
        : m_root(makeGroup())
    {
        m_surface.setMultisampling(false);
    }

    ~SceneRendererTest() override
    {
        m_root = osg::NullFC;
        m_surface.withContext([this] {
            m_renderer.releaseResources();
            EXPECT_EQ(glGetError(), GLenum(GL_NO_ERROR));
        });
    }

    osg::NodePtr add(const osg::NodeCorePtr& core)
    {
        const osg::NodePtr node = makeNode(core);
        add(node);
        return node;
    }

    void add(const osg::NodePtr& node)
    {
        beginEditCP(m_root, osg::Node::ChildrenFieldMask);
        m_root->addChild(node);
        endEditCP(m_root, osg::Node::ChildrenFieldMask);
    }

    // Draws -1 to 1 in x and y; a larger z is nearer to the viewer.
    QImage draw()
    {
        Matrix4 projection;
        projection(2, 2) = -1;
        m_renderer.sceneChanged(SceneChanges::take());
        return m_surface.draw(Size, Size, [&] {
            m_renderer.draw(m_root.get(), Matrix4(), projection, Size, Size);
            EXPECT_EQ(glGetError(), GLenum(GL_NO_ERROR));
        });
    }

    std::string drawCentre() { return hex(draw().pixel(Size / 2, Size / 2)); }

    static int count(const QImage& picture, const QRgb colour)
    {
        int found = 0;
        for (int y = 0; y < picture.height(); ++y) {
            for (int x = 0; x < picture.width(); ++x) {
                found += picture.pixel(x, y) == colour ? 1 : 0;
            }
        }
        return found;
    }

    static osg::GeometryPtr rectangle(const osg::MaterialPtr& material, const float z = 0)
    {
        return makeRectangle(-0.5F, -0.5F, 0.5F, 0.5F, z, material);
    }

    static osg::MaterialGroupPtr materialGroup(const osg::MaterialPtr& material)
    {
        const osg::MaterialGroupPtr group = osg::MaterialGroup::create();
        beginEditCP(group);
        group->setMaterial(material);
        endEditCP(group);
        return group;
    }

    template <class Material, class Chunk>
    static void addChunk(const Material& material, const Chunk& chunk)
    {
        endEditCP(chunk);
        beginEditCP(material);
        material->addChunk(chunk, -2);
        endEditCP(material);
    }

    osg::RefPtr<osg::NodePtr> m_root;
    OffscreenSurface m_surface;
    SceneRenderer m_renderer;
};

TEST_F(SceneRendererTest, AnEmptySceneShowsTheBackgroundFromTopToBottom)
{
    m_renderer.setBackground(Red, Blue);

    const QImage picture = draw();

    EXPECT_GT(qRed(picture.pixel(5, 0)), 250);
    EXPECT_GT(qBlue(picture.pixel(5, Size - 1)), 250);
    EXPECT_NEAR(qRed(picture.pixel(5, Size / 2)), 127, 4);
}

TEST_F(SceneRendererTest, ANullRootShowsTheBackgroundAlone)
{
    m_root = osg::NullFC;

    EXPECT_EQ(drawCentre(), hex(BlackPixel));
}

TEST_F(SceneRendererTest, UnlitGeometryHasItsDiffuseColour)
{
    add(rectangle(makePlainMaterial(Red)));

    const QImage picture = draw();

    EXPECT_EQ(count(picture, RedPixel), Size * Size / 4);
    EXPECT_EQ(hex(picture.pixel(2, 2)), hex(BlackPixel));
}

TEST_F(SceneRendererTest, NearerGeometryHidesFartherInWhateverOrder)
{
    add(rectangle(makePlainMaterial(Red), 0.5F));
    add(rectangle(makePlainMaterial(Green), 0));
    EXPECT_EQ(drawCentre(), hex(RedPixel));

    add(rectangle(makePlainMaterial(Blue), 0.8F));
    EXPECT_EQ(drawCentre(), hex(BluePixel));
}

TEST_F(SceneRendererTest, TransformsAddUpOnTheWayDown)
{
    add(makeTransform(translation(0.5F, 0, 0),
                      {makeTransform(translation(0, 0.5F, 0), {makeNode(rectangle(makePlainMaterial(Red)))})}));

    const QImage picture = draw();

    EXPECT_EQ(hex(picture.pixel(Size * 3 / 4, Size / 4)), hex(RedPixel));
    EXPECT_EQ(hex(picture.pixel(Size / 4, Size * 3 / 4)), hex(BlackPixel));
}

TEST_F(SceneRendererTest, ASwitchShowsItsChoiceAlone)
{
    const osg::SwitchPtr choosing = osg::Switch::create();
    choosing->setChoice(1);
    add(makeNode(choosing,
                 {makeNode(rectangle(makePlainMaterial(Red), 0.5F)), makeNode(rectangle(makePlainMaterial(Green)))}));

    EXPECT_EQ(drawCentre(), hex(GreenPixel));
}

TEST_F(SceneRendererTest, AMaskOfZeroHidesANodeAndAllBelowIt)
{
    const osg::NodePtr node = makeGroup({makeNode(rectangle(makePlainMaterial(Red)))});
    add(node);

    setTravMask(node, 0);

    EXPECT_EQ(drawCentre(), hex(BlackPixel));
}

TEST_F(SceneRendererTest, ANodeIsDrawnWhenItsMaskSharesABitWithTheRenderers)
{
    const osg::NodePtr node = add(rectangle(makePlainMaterial(Red)));
    setTravMask(node, 6);
    setTravMask(m_root.get(), 7);

    m_renderer.setTravMask(1);
    EXPECT_EQ(drawCentre(), hex(BlackPixel));

    m_renderer.setTravMask(3);
    EXPECT_EQ(drawCentre(), hex(RedPixel));
}

TEST_F(SceneRendererTest, AMaterialGroupOverridesTheMaterialsBelowIt)
{
    add(makeNode(materialGroup(makePlainMaterial(Green)), {makeNode(rectangle(makePlainMaterial(Red)))}));

    EXPECT_EQ(drawCentre(), hex(GreenPixel));
}

TEST_F(SceneRendererTest, TheOutermostMaterialGroupWins)
{
    add(makeNode(materialGroup(makePlainMaterial(Green)),
                 {makeNode(materialGroup(makePlainMaterial(Blue)), {makeNode(rectangle(makePlainMaterial(Red)))})}));

    EXPECT_EQ(drawCentre(), hex(GreenPixel));
}

TEST_F(SceneRendererTest, AMaterialGroupWithoutMaterialLeavesTheChoiceToThoseBelow)
{
    add(makeNode(osg::MaterialGroup::create(),
                 {makeNode(materialGroup(makePlainMaterial(Blue)), {makeNode(rectangle(makePlainMaterial(Red)))})}));

    EXPECT_EQ(drawCentre(), hex(BluePixel));
}

TEST_F(SceneRendererTest, TheOverwriteFlagKeepsAGeometrysOwnMaterial)
{
    const osg::GeometryPtr geometry = rectangle(makePlainMaterial(Red));
    add(makeNode(materialGroup(makePlainMaterial(Green)), {makeNode(geometry)}));

    extensions::setOverwriteMaterial(geometry, true);
    EXPECT_EQ(drawCentre(), hex(RedPixel));

    extensions::setOverwriteMaterial(geometry, false);
    EXPECT_EQ(drawCentre(), hex(GreenPixel));
}

TEST_F(SceneRendererTest, AMaterialGroupDoesNotReachItsSiblings)
{
    add(makeNode(materialGroup(makePlainMaterial(Green))));
    add(rectangle(makePlainMaterial(Red)));

    EXPECT_EQ(drawCentre(), hex(RedPixel));
}

TEST_F(SceneRendererTest, OpaqueGeometryIsDrawnByAscendingSortKey)
{
    add(rectangle(makePlainMaterial(Red, 0, 7)));
    add(rectangle(makePlainMaterial(Green, 0, -3)));

    // Equal depths pass the test: what is drawn last stays.
    EXPECT_EQ(drawCentre(), hex(RedPixel));
}

TEST_F(SceneRendererTest, OpaqueGeometryOfOneSortKeyIsDrawnInTheOrderOfTheScene)
{
    add(rectangle(makePlainMaterial(Red)));
    add(rectangle(makePlainMaterial(Green)));

    EXPECT_EQ(drawCentre(), hex(GreenPixel));
}

TEST_F(SceneRendererTest, TransparentGeometryIsDrawnAfterAllOpaqueWhateverItsSortKey)
{
    add(rectangle(makePlainMaterial(Red, 0.5F, -1000), 0.5F));
    add(rectangle(makePlainMaterial(Blue, 0, 1000), 0));

    const QColor colour(draw().pixel(Size / 2, Size / 2));

    EXPECT_NEAR(colour.red(), 128, 1);
    EXPECT_NEAR(colour.blue(), 127, 1);
    EXPECT_EQ(m_renderer.getStatistics().opaque, 1U);
    EXPECT_EQ(m_renderer.getStatistics().transparent, 1U);
}

TEST_F(SceneRendererTest, TransparentGeometryOfOneSortKeyIsDrawnFromBackToFront)
{
    add(rectangle(makePlainMaterial(Red, 0.5F), 0.5F));
    add(rectangle(makePlainMaterial(Green, 0.5F), -0.5F));
    const QColor nearFirst(draw().pixel(Size / 2, Size / 2));
    const osg::NodePtr first = m_root->getChild(0);
    add(first); // moves it to the end
    const QColor farFirst(draw().pixel(Size / 2, Size / 2));

    EXPECT_NEAR(nearFirst.red(), 128, 1);
    EXPECT_NEAR(nearFirst.green(), 64, 1);
    EXPECT_EQ(nearFirst, farFirst);
}

TEST_F(SceneRendererTest, TheSortKeyOfTransparentGeometryCountsMoreThanItsDepth)
{
    add(rectangle(makePlainMaterial(Green, 0.5F, 5), -0.5F));
    add(rectangle(makePlainMaterial(Red, 0.5F, 4), 0.5F));

    const QColor colour(draw().pixel(Size / 2, Size / 2));

    EXPECT_NEAR(colour.green(), 128, 1);
    EXPECT_NEAR(colour.red(), 64, 1);
}

TEST_F(SceneRendererTest, TransparentGeometryWritesNoDepth)
{
    add(rectangle(makePlainMaterial(Red, 0.5F, 1), 0.5F));
    add(rectangle(makePlainMaterial(Green, 0.5F, 2), 0));

    EXPECT_GT(QColor(draw().pixel(Size / 2, Size / 2)).green(), 120);
}

TEST_F(SceneRendererTest, AForcedModePutsAnOpaqueMaterialIntoTheTransparentPass)
{
    const osg::SimpleMaterialPtr material = makePlainMaterial(Red);
    material->setTransparencyMode(osg::Material::TransparencyForceTransparent);
    add(rectangle(material));

    EXPECT_EQ(drawCentre(), hex(RedPixel));
    EXPECT_EQ(m_renderer.getStatistics().opaque, 0U);
    EXPECT_EQ(m_renderer.getStatistics().transparent, 1U);
}

TEST_F(SceneRendererTest, AForcedModePutsATransparentMaterialIntoTheOpaquePass)
{
    const osg::SimpleMaterialPtr material = makePlainMaterial(Red, 0.5F);
    material->setTransparencyMode(osg::Material::TransparencyForceOpaque);
    add(rectangle(material));

    EXPECT_EQ(drawCentre(), hex(RedPixel));
    EXPECT_EQ(m_renderer.getStatistics().opaque, 1U);
}

TEST_F(SceneRendererTest, ADepthTestChunkThatAlwaysPassesDrawsOverNearerGeometry)
{
    const osg::SimpleMaterialPtr material = makePlainMaterial(Green, 0, 1);
    const osg::DepthTestChunkPtr chunk = osg::DepthTestChunk::create();
    chunk->setFunc(GL_ALWAYS);
    addChunk(material, chunk);
    add(rectangle(makePlainMaterial(Red), 0.5F));
    add(rectangle(material, 0));
    EXPECT_EQ(drawCentre(), hex(GreenPixel));

    chunk->setFunc(GL_LEQUAL);
    EXPECT_EQ(drawCentre(), hex(RedPixel));
}

TEST_F(SceneRendererTest, ADepthChunkCanSwitchTheTestOff)
{
    const osg::SimpleMaterialPtr material = makePlainMaterial(Green, 0, 1);
    const osg::DepthChunkPtr chunk = osg::DepthChunk::create();
    chunk->setEnable(false);
    addChunk(material, chunk);
    add(rectangle(makePlainMaterial(Red), 0.5F));
    add(rectangle(material, 0));

    EXPECT_EQ(drawCentre(), hex(GreenPixel));
}

TEST_F(SceneRendererTest, ADepthChunkCanKeepGeometryFromWritingDepth)
{
    const osg::SimpleMaterialPtr material = makePlainMaterial(Red, 0, 1);
    const osg::DepthChunkPtr chunk = osg::DepthChunk::create();
    chunk->setReadOnly(true);
    addChunk(material, chunk);
    add(rectangle(material, 0.5F));
    add(rectangle(makePlainMaterial(Green, 0, 2), 0));

    EXPECT_EQ(drawCentre(), hex(GreenPixel));
}

TEST_F(SceneRendererTest, ADepthChunkCanSqueezeTheDepthRange)
{
    const osg::SimpleMaterialPtr material = makePlainMaterial(Green);
    const osg::DepthChunkPtr chunk = osg::DepthChunk::create();
    chunk->setNear(0);
    chunk->setFar(0.1F);
    addChunk(material, chunk);
    add(rectangle(material, -0.5F));
    add(rectangle(makePlainMaterial(Red, 0, 1), 0.5F));

    EXPECT_EQ(drawCentre(), hex(GreenPixel));
}

TEST_F(SceneRendererTest, OfTwoChunksOfOneKindTheLaterCounts)
{
    const osg::SimpleMaterialPtr material = makePlainMaterial(Green, 0, 1);
    const osg::DepthTestChunkPtr first = osg::DepthTestChunk::create();
    first->setFunc(GL_ALWAYS);
    const osg::DepthTestChunkPtr second = osg::DepthTestChunk::create();
    second->setFunc(GL_NEVER);
    addChunk(material, first);
    addChunk(material, second);
    add(rectangle(material));

    EXPECT_EQ(drawCentre(), hex(BlackPixel));
}

TEST_F(SceneRendererTest, AnIgnoredChunkHasNoEffect)
{
    const osg::SimpleMaterialPtr material = makePlainMaterial(Green);
    const osg::DepthTestChunkPtr chunk = osg::DepthTestChunk::create();
    chunk->setFunc(GL_NEVER);
    chunk->setIgnore(true);
    addChunk(material, chunk);
    add(rectangle(material));

    EXPECT_EQ(drawCentre(), hex(GreenPixel));
}

TEST_F(SceneRendererTest, TheStateOfOneMaterialDoesNotReachTheNext)
{
    const osg::SimpleMaterialPtr wild = makePlainMaterial(Red, 0, 1);
    const osg::DepthTestChunkPtr depth = osg::DepthTestChunk::create();
    depth->setFunc(GL_NEVER);
    addChunk(wild, depth);
    const osg::PolygonChunkPtr polygon = osg::PolygonChunk::create();
    polygon->setFrontMode(GL_POINT);
    polygon->setBackMode(GL_POINT);
    polygon->setCullFace(GL_FRONT_AND_BACK);
    addChunk(wild, polygon);
    const osg::BlendChunkPtr blend = osg::BlendChunk::create();
    blend->setSrcFactor(GL_ZERO);
    blend->setDestFactor(GL_ZERO);
    addChunk(wild, blend);
    add(rectangle(wild));
    add(rectangle(makePlainMaterial(Green, 0, 2)));

    const QImage picture = draw();

    EXPECT_EQ(count(picture, GreenPixel), Size * Size / 4);
}

TEST_F(SceneRendererTest, ALineChunkSetsTheWidth)
{
    const osg::SimpleMaterialPtr material = makePlainMaterial(Red);
    add(makeGeometry(GL_LINES, {osg::Pnt3f(-0.5F, 0.015F, 0), osg::Pnt3f(0.5F, 0.015F, 0)}, {}, material));
    const int thin = count(draw(), RedPixel);

    const osg::LineChunkPtr chunk = osg::LineChunk::create();
    chunk->setWidth(5);
    addChunk(material, chunk);
    const int thick = count(draw(), RedPixel);

    EXPECT_NEAR(thin, Size / 2, 1);
    EXPECT_EQ(thick, 5 * thin);
}

TEST_F(SceneRendererTest, LinesAreWiderByThePixelRatio)
{
    add(makeGeometry(GL_LINES, {osg::Pnt3f(-0.5F, 0.015F, 0), osg::Pnt3f(0.5F, 0.015F, 0)}, {},
                     makePlainMaterial(Red)));
    const int plain = count(draw(), RedPixel);

    m_renderer.setPixelRatio(3);

    EXPECT_EQ(count(draw(), RedPixel), 3 * plain);
}

TEST_F(SceneRendererTest, ALineChunkStipples)
{
    const osg::SimpleMaterialPtr material = makePlainMaterial(Red);
    const osg::LineChunkPtr chunk = osg::LineChunk::create();
    chunk->setStipplePattern(0x00FF);
    addChunk(material, chunk);
    add(makeGeometry(GL_LINES, {osg::Pnt3f(-1, 0.015F, 0), osg::Pnt3f(1, 0.015F, 0)}, {}, material));

    EXPECT_EQ(count(draw(), RedPixel), Size / 2);
}

TEST_F(SceneRendererTest, ASmoothLineHasShadesAtItsEdges)
{
    const osg::SimpleMaterialPtr material = makePlainMaterial(Red);
    const osg::LineChunkPtr line = osg::LineChunk::create();
    line->setWidth(2);
    addChunk(material, line);
    const osg::BlendChunkPtr blend = osg::BlendChunk::create();
    blend->setSrcFactor(GL_SRC_ALPHA);
    blend->setDestFactor(GL_ONE_MINUS_SRC_ALPHA);
    addChunk(material, blend);
    add(makeGeometry(GL_LINES, {osg::Pnt3f(-0.9F, -0.4F, 0), osg::Pnt3f(0.9F, 0.5F, 0)}, {}, material));
    const auto countShades = [](const QImage& picture) {
        return Size * Size - count(picture, RedPixel) - count(picture, BlackPixel);
    };
    EXPECT_EQ(countShades(draw()), 0);

    line->setSmooth(true);

    EXPECT_GT(countShades(draw()), 20);
}

TEST_F(SceneRendererTest, ABlendChunkSetsTheFactors)
{
    const osg::SimpleMaterialPtr material = makePlainMaterial(Green, 0, 1);
    const osg::BlendChunkPtr chunk = osg::BlendChunk::create();
    chunk->setSrcFactor(GL_ONE);
    chunk->setDestFactor(GL_ONE);
    addChunk(material, chunk);
    add(rectangle(makePlainMaterial(Red), 0));
    add(rectangle(material, 0.5F));

    EXPECT_EQ(drawCentre(), "#ffff00");
}

TEST_F(SceneRendererTest, ABlendChunkSetsTheEquation)
{
    const osg::SimpleMaterialPtr material = makePlainMaterial(osg::Color3f(0.4F, 1, 0), 0, 1);
    const osg::BlendChunkPtr chunk = osg::BlendChunk::create();
    chunk->setSrcFactor(GL_ONE);
    chunk->setDestFactor(GL_ONE);
    chunk->setEquation(GL_FUNC_REVERSE_SUBTRACT);
    addChunk(material, chunk);
    add(rectangle(makePlainMaterial(Red), 0));
    add(rectangle(material, 0.5F));

    EXPECT_EQ(drawCentre(), "#990000");
}

TEST_F(SceneRendererTest, ABlendChunkTestsAlpha)
{
    const osg::SimpleMaterialPtr material = makePlainMaterial(Green, 0.8F);
    const osg::BlendChunkPtr chunk = osg::BlendChunk::create();
    chunk->setAlphaFunc(GL_GREATER);
    chunk->setAlphaValue(0.5F);
    addChunk(material, chunk);
    add(rectangle(material));

    EXPECT_EQ(drawCentre(), hex(BlackPixel));
}

TEST_F(SceneRendererTest, APolygonChunkDrawsFacesAsWireframe)
{
    const osg::SimpleMaterialPtr material = makePlainMaterial(Red);
    const osg::PolygonChunkPtr chunk = osg::PolygonChunk::create();
    chunk->setFrontMode(GL_LINE);
    chunk->setBackMode(GL_LINE);
    addChunk(material, chunk);
    add(makeGeometry(GL_TRIANGLES, {osg::Pnt3f(-0.5F, -0.5F, 0), osg::Pnt3f(0.5F, -0.5F, 0), osg::Pnt3f(0, 0.5F, 0)},
                     {}, material));

    const QImage picture = draw();

    EXPECT_EQ(hex(picture.pixel(Size / 2, Size / 2)), hex(BlackPixel));
    EXPECT_GT(count(picture, RedPixel), 80);
    EXPECT_LT(count(picture, RedPixel), 120);
}

TEST_F(SceneRendererTest, APolygonChunkTellsFrontFromBack)
{
    const osg::SimpleMaterialPtr material = makePlainMaterial(Red);
    const osg::PolygonChunkPtr chunk = osg::PolygonChunk::create();
    chunk->setBackMode(GL_LINE);
    addChunk(material, chunk);
    add(rectangle(material));
    EXPECT_EQ(drawCentre(), hex(RedPixel));

    chunk->setFrontFace(GL_CW);
    EXPECT_LT(count(draw(), RedPixel), Size * Size / 8);
}

TEST_F(SceneRendererTest, APolygonChunkCullsFaces)
{
    const osg::SimpleMaterialPtr material = makePlainMaterial(Red);
    const osg::PolygonChunkPtr chunk = osg::PolygonChunk::create();
    chunk->setCullFace(GL_FRONT);
    addChunk(material, chunk);
    add(rectangle(material));
    EXPECT_EQ(drawCentre(), hex(BlackPixel));

    chunk->setCullFace(GL_BACK);
    EXPECT_EQ(drawCentre(), hex(RedPixel));
}

TEST_F(SceneRendererTest, APolygonOffsetPullsFillTowardsTheViewer)
{
    const osg::SimpleMaterialPtr material = makePlainMaterial(Green, 0, -1);
    const osg::PolygonChunkPtr chunk = osg::PolygonChunk::create();
    chunk->setOffsetBias(-100);
    addChunk(material, chunk);
    add(rectangle(material));
    add(rectangle(makePlainMaterial(Red)));
    EXPECT_EQ(drawCentre(), hex(RedPixel));

    chunk->setOffsetFill(true);
    EXPECT_EQ(drawCentre(), hex(GreenPixel));
}

TEST_F(SceneRendererTest, APolygonOffsetOfLinesPullsWireframesTowardsTheViewer)
{
    const osg::SimpleMaterialPtr material = makePlainMaterial(Green, 0, 1);
    const osg::DepthTestChunkPtr depth = osg::DepthTestChunk::create();
    depth->setFunc(GL_LESS);
    addChunk(material, depth);
    const osg::PolygonChunkPtr chunk = osg::PolygonChunk::create();
    chunk->setFrontMode(GL_LINE);
    chunk->setBackMode(GL_LINE);
    chunk->setOffsetFactor(-1);
    chunk->setOffsetBias(-100);
    addChunk(material, chunk);
    add(makeRectangle(-1, -1, 1, 1, 0, makePlainMaterial(Red)));
    add(rectangle(material));
    EXPECT_EQ(count(draw(), GreenPixel), 0);

    chunk->setOffsetLine(true);

    EXPECT_GT(count(draw(), GreenPixel), Size);
}

TEST_F(SceneRendererTest, TheColoursOfAGeometryTakeThePlaceOfTheDiffuseColour)
{
    const osg::SimpleMaterialPtr material = makePlainMaterial(Red);
    const osg::GeometryPtr geometry = rectangle(material);
    const osg::GeoColors3fPtr colours = osg::GeoColors3f::create();
    for (int i = 0; i < 4; ++i) {
        colours->push_back(Blue);
    }
    geometry->setColors(colours);
    endEditCP(geometry);
    add(geometry);
    EXPECT_EQ(drawCentre(), hex(BluePixel));

    material->setColorMaterial(GL_NONE);
    EXPECT_EQ(drawCentre(), hex(RedPixel));
}

TEST_F(SceneRendererTest, ALitSurfaceIsBrighterTheMoreItFacesTheLight)
{
    const osg::SimpleMaterialPtr material = makePlainMaterial(osg::Color3f(0.8F, 0.8F, 0.8F));
    material->setLit(true);
    const osg::TransformPtr transform = osg::Transform::create();
    add(makeNode(transform, {makeNode(rectangle(material))}));
    const int facing = qGreen(draw().pixel(Size / 2, Size / 2));

    osg::Matrix tilt;
    // Downwards, away from the light over the viewer's shoulder.
    tilt.setRotate(osg::Quaternion(osg::Vec3f(1, 0, 0), 1.0F));
    transform->setMatrix(tilt);
    const int turned = qGreen(draw().pixel(Size / 2, Size / 2));

    EXPECT_GT(facing, turned + 30);
    EXPECT_GT(turned, 20);
}

TEST_F(SceneRendererTest, AGeometryWithoutMaterialIsDrawnGrey)
{
    add(rectangle(osg::NullFC));

    const QColor colour(draw().pixel(Size / 2, Size / 2));

    EXPECT_GT(colour.red(), 100);
    EXPECT_EQ(colour.red(), colour.green());
    EXPECT_EQ(colour.red(), colour.blue());
}

TEST_F(SceneRendererTest, WhatIsNotANumberIsLeftOutAndTheRestIsDrawn)
{
    const float nan = std::numeric_limits<float>::quiet_NaN();
    const osg::SimpleMaterialPtr broken = makePlainMaterial(osg::Color3f(nan, nan, nan), nan);
    const osg::LineChunkPtr line = osg::LineChunk::create();
    line->setWidth(nan);
    addChunk(broken, line);
    const osg::PolygonChunkPtr polygon = osg::PolygonChunk::create();
    polygon->setOffsetBias(nan);
    polygon->setOffsetFill(true);
    addChunk(broken, polygon);
    osg::Matrix nowhere;
    nowhere.setTranslate(nan, 0, 0);
    add(makeTransform(nowhere, {makeNode(rectangle(makePlainMaterial(Blue)))}));
    add(makeGeometry(GL_TRIANGLES,
                     {osg::Pnt3f(nan, 0, 0), osg::Pnt3f(1, 0, 0), osg::Pnt3f(0, 1, 0), osg::Pnt3f(-1, -1, 0.5F),
                      osg::Pnt3f(1, -1, 0.5F), osg::Pnt3f(0, 1, 0.5F)},
                     {}, makePlainMaterial(Green)));
    add(rectangle(broken));

    EXPECT_EQ(drawCentre(), hex(GreenPixel));
}

TEST_F(SceneRendererTest, ACameraThatIsNotANumberDrawsWithoutHarm)
{
    add(rectangle(makePlainMaterial(Red, 0.5F)));
    add(rectangle(makePlainMaterial(Green, 0.5F)));
    Matrix4 nowhere;
    nowhere(2, 3) = std::numeric_limits<double>::quiet_NaN();

    const QImage picture =
        m_surface.draw(Size, Size, [&] { m_renderer.draw(m_root.get(), nowhere, Matrix4(), Size, Size); });

    EXPECT_EQ(m_renderer.getStatistics().transparent, 2U);
    EXPECT_EQ(picture.width(), Size);
}

TEST_F(SceneRendererTest, IndicesOutOfRangeAreLeftOut)
{
    add(makeGeometry(GL_TRIANGLES, {osg::Pnt3f(-1, -1, 0), osg::Pnt3f(1, -1, 0), osg::Pnt3f(0, 1, 0)},
                     {0, 1, 2, 0, 1, 3, 7, 8, 9}, makePlainMaterial(Red)));

    EXPECT_EQ(drawCentre(), hex(RedPixel));
}

TEST_F(SceneRendererTest, AnUnchangedGeometryIsCopiedToTheContextOnce)
{
    add(rectangle(makePlainMaterial(Red)));

    draw();
    EXPECT_EQ(m_renderer.getStatistics().uploaded, 1U);

    draw();
    EXPECT_EQ(m_renderer.getStatistics().uploaded, 0U);
}

TEST_F(SceneRendererTest, NodesThatShareAGeometryShareItsCopy)
{
    const osg::GeometryPtr geometry = rectangle(makePlainMaterial(Red));
    add(geometry);
    draw();

    add(geometry);
    draw();

    EXPECT_EQ(m_renderer.getStatistics().opaque, 2U);
    EXPECT_EQ(m_renderer.getStatistics().uploaded, 0U);
    EXPECT_EQ(m_renderer.getStatistics().cached, 1U);
}

TEST_F(SceneRendererTest, AChangedPropertyIsCopiedAgain)
{
    const osg::GeometryPtr geometry = rectangle(makePlainMaterial(Red));
    add(geometry);
    EXPECT_EQ(drawCentre(), hex(RedPixel));

    const osg::GeoPositionsPtr positions = geometry->getPositions();
    beginEditCP(positions);
    for (osg::UInt32 i = 0; i < 4; ++i) {
        positions->setValue(positions->getValue(i) + osg::Vec3f(3, 0, 0), i);
    }
    endEditCP(positions);

    EXPECT_EQ(drawCentre(), hex(BlackPixel));
    EXPECT_EQ(m_renderer.getStatistics().uploaded, 1U);
}

TEST_F(SceneRendererTest, AReplacedPropertyIsCopiedEvenWhenNobodyReportedIt)
{
    const osg::GeometryPtr geometry = rectangle(makePlainMaterial(Red));
    add(geometry);
    draw();
    const osg::GeometryPtr other = makeRectangle(5, 5, 6, 6, 0, osg::NullFC);
    const osg::NodePtr owner = makeNode(other);
    addRefCP(owner);

    geometry->setPositions(other->getPositions());
    SceneChanges::take();

    EXPECT_EQ(drawCentre(), hex(BlackPixel));
    subRefCP(owner);
}

TEST_F(SceneRendererTest, TheCopyOfADestroyedGeometryGoes)
{
    add(rectangle(makePlainMaterial(Red)));
    add(rectangle(makePlainMaterial(Green)));
    draw();
    EXPECT_EQ(m_renderer.getStatistics().cached, 2U);

    m_root->subChild(m_root->getChild(0));
    draw();

    EXPECT_EQ(m_renderer.getStatistics().cached, 1U);
}

TEST_F(SceneRendererTest, DrawingGoesOnAfterTheResourcesWereReleased)
{
    add(rectangle(makePlainMaterial(Red)));
    draw();

    m_surface.withContext([this] { m_renderer.releaseResources(); });

    EXPECT_EQ(drawCentre(), hex(RedPixel));
    EXPECT_EQ(m_renderer.getStatistics().uploaded, 1U);
}

TEST_F(SceneRendererTest, AChainOfAHundredThousandNodesIsDrawn)
{
    osg::NodePtr node = makeNode(rectangle(makePlainMaterial(Red)));
    for (int i = 0; i < 100000; ++i) {
        node = makeGroup({node});
    }
    add(node);

    EXPECT_EQ(drawCentre(), hex(RedPixel));
}

TEST_F(SceneRendererTest, ARootBelowATransformStandsInItsPlace)
{
    const osg::NodePtr inner = makeGroup({makeNode(rectangle(makePlainMaterial(Red)))});
    const osg::RefPtr<osg::NodePtr> outer(makeTransform(translation(0.9F, 0, 0), {inner}));
    m_root = inner;

    const QImage picture = draw();

    EXPECT_EQ(hex(picture.pixel(Size - 2, Size / 2)), hex(RedPixel));
    EXPECT_EQ(hex(picture.pixel(Size / 2, Size / 2)), hex(BlackPixel));
    m_root = osg::NullFC;
}

/** Many geometries at once: what is drawn together, what an edit costs, and that nobody sees a difference. */
class SceneRendererSizeTest : public SceneRendererTest {
protected:
    using Statistics = SceneRenderer::Statistics;

    // A column of pixels for each rectangle, as far as there are columns; the others lie behind one another.
    void addRectangles(const int count, const osg::MaterialPtr& material)
    {
        beginEditCP(m_root, osg::Node::ChildrenFieldMask);
        for (int i = 0; i < count; ++i) {
            const float left = -1 + static_cast<float>(i % Size) * 2 / Size;
            m_root->addChild(makeNode(makeRectangle(left, -1, left + 2.0F / Size, 1, 0, material)));
        }
        endEditCP(m_root, osg::Node::ChildrenFieldMask);
    }

    const Statistics& drawAndCount()
    {
        draw();
        return m_renderer.getStatistics();
    }

    // A strip of triangles with so many corners that it is drawn by itself.
    static osg::GeometryPtr makeLargeGeometry(const osg::MaterialPtr& material)
    {
        std::vector<osg::Pnt3f> corners;
        for (int i = 0; i < 9000; ++i) {
            corners.emplace_back(-0.5F + static_cast<float>(i) / 9000, i % 2 == 0 ? -0.5F : 0.5F, 0.0F);
        }
        return makeGeometry(GL_TRIANGLE_STRIP, corners, {}, material);
    }

    QImage drawMoving()
    {
        Matrix4 projection;
        projection(2, 2) = -1;
        m_renderer.sceneChanged(SceneChanges::take());
        return m_surface.draw(Size, Size, [&] {
            m_renderer.draw(m_root.get(), Matrix4(), projection, Size, Size, SceneRenderer::Detail::Moving);
        });
    }
};

TEST_F(SceneRendererSizeTest, GeometriesOfOneMaterialAreDrawnByFewCalls)
{
    addRectangles(10000, makePlainMaterial(Red));

    EXPECT_EQ(count(draw(), RedPixel), Size * Size);

    EXPECT_EQ(m_renderer.getStatistics().opaque, 10000U);
    EXPECT_EQ(m_renderer.getStatistics().drawCalls, 3U);
    EXPECT_EQ(m_renderer.getStatistics().batches, 3U);
    EXPECT_EQ(m_renderer.getStatistics().primitives, 20000U);
}

TEST_F(SceneRendererSizeTest, AnUnchangedSceneIsNotBuiltAgain)
{
    addRectangles(10000, makePlainMaterial(Red));
    EXPECT_EQ(drawAndCount().built, 3U);

    EXPECT_EQ(drawAndCount().built, 0U);
    EXPECT_EQ(m_renderer.getStatistics().uploaded, 0U);
}

TEST_F(SceneRendererSizeTest, OneMoreAmongManyBuildsOneBatch)
{
    const osg::SimpleMaterialPtr material = makePlainMaterial(Red);
    addRectangles(10000, material);
    draw();

    add(rectangle(material));

    EXPECT_EQ(drawAndCount().built, 1U);
    EXPECT_EQ(m_renderer.getStatistics().uploaded, 1U);
    EXPECT_EQ(m_renderer.getStatistics().opaque, 10001U);
}

TEST_F(SceneRendererSizeTest, OneHiddenAmongManyBuildsOneBatch)
{
    addRectangles(10000, makePlainMaterial(Red));
    draw();

    setTravMask(m_root->getChild(5000), 0);

    EXPECT_EQ(drawAndCount().built, 1U);
    EXPECT_EQ(m_renderer.getStatistics().uploaded, 0U);
    EXPECT_EQ(m_renderer.getStatistics().opaque, 9999U);
}

TEST_F(SceneRendererSizeTest, OneMovedAmongManyBuildsOneBatch)
{
    const osg::SimpleMaterialPtr material = makePlainMaterial(Red);
    const osg::TransformPtr transform = osg::Transform::create();
    add(makeNode(transform, {makeNode(makeRectangle(-1, -1, -1 + 2.0F / Size, 1, 0, material))}));
    addRectangles(Size * 100 - 1, material);
    setTravMask(m_root->getChild(Size * 100 - 1), 0);
    draw();

    beginEditCP(transform, osg::Transform::MatrixFieldMask);
    transform->setMatrix(translation(0.5F, 0, 0));
    endEditCP(transform, osg::Transform::MatrixFieldMask);

    EXPECT_EQ(drawAndCount().built, 1U);
}

TEST_F(SceneRendererSizeTest, AnotherColourBuildsNothing)
{
    const osg::SimpleMaterialPtr material = makePlainMaterial(Red);
    addRectangles(10000, material);
    draw();

    beginEditCP(material);
    material->setDiffuse(Blue);
    endEditCP(material);

    EXPECT_EQ(count(draw(), BluePixel), Size * Size);
    EXPECT_EQ(m_renderer.getStatistics().built, 0U);
}

TEST_F(SceneRendererSizeTest, AnotherMaterialMovesAGeometryIntoAnotherBatch)
{
    addRectangles(Size, makePlainMaterial(Red));
    EXPECT_EQ(count(draw(), RedPixel), Size * Size);

    const osg::GeometryPtr geometry = osg::GeometryPtr::dcast(m_root->getChild(7)->getCore());
    beginEditCP(geometry, osg::Geometry::MaterialFieldMask);
    geometry->setMaterial(makePlainMaterial(Blue));
    endEditCP(geometry, osg::Geometry::MaterialFieldMask);
    const QImage picture = draw();

    EXPECT_EQ(count(picture, BluePixel), Size);
    EXPECT_EQ(count(picture, RedPixel), Size * (Size - 1));
    EXPECT_EQ(m_renderer.getStatistics().batches, 2U);
}

TEST_F(SceneRendererSizeTest, BatchesThatWereEmptiedGo)
{
    addRectangles(10000, makePlainMaterial(Red));
    draw();

    beginEditCP(m_root, osg::Node::ChildrenFieldMask);
    extensions::clearChildren(m_root.get());
    endEditCP(m_root, osg::Node::ChildrenFieldMask);

    EXPECT_EQ(drawAndCount().batches, 0U);
    EXPECT_EQ(m_renderer.getStatistics().cached, 0U);
}

TEST_F(SceneRendererSizeTest, RemovingAndAddingAgainDoesNotMultiplyTheBatches)
{
    const osg::SimpleMaterialPtr material = makePlainMaterial(Red);
    addRectangles(10000, material);
    for (int round = 0; round < 20; ++round) {
        beginEditCP(m_root, osg::Node::ChildrenFieldMask);
        for (int i = 0; i < 3000; ++i) {
            m_root->subChild(m_root->getChild(0));
        }
        endEditCP(m_root, osg::Node::ChildrenFieldMask);
        addRectangles(3000, material);
        draw();
    }

    EXPECT_EQ(m_renderer.getStatistics().opaque, 10000U);
    EXPECT_LE(m_renderer.getStatistics().batches, 7U);
}

TEST_F(SceneRendererSizeTest, LargeGeometriesAreDrawnByThemselvesFromOneCopy)
{
    const osg::TransformPtr transform = osg::Transform::create();
    const osg::GeometryPtr geometry = makeLargeGeometry(makePlainMaterial(Red));
    add(geometry);
    add(makeNode(transform, {makeNode(geometry)}));
    EXPECT_EQ(drawAndCount().built, 1U);
    EXPECT_EQ(m_renderer.getStatistics().drawCalls, 2U);
    EXPECT_EQ(m_renderer.getStatistics().batches, 0U);

    beginEditCP(transform, osg::Transform::MatrixFieldMask);
    transform->setMatrix(translation(1, 0, 0));
    endEditCP(transform, osg::Transform::MatrixFieldMask);
    const QImage picture = draw();

    EXPECT_EQ(m_renderer.getStatistics().built, 0U);
    EXPECT_EQ(m_renderer.getStatistics().uploaded, 0U);
    EXPECT_EQ(hex(picture.pixel(Size / 2, Size / 2)), hex(RedPixel));
    EXPECT_EQ(hex(picture.pixel(Size - 5, Size / 2)), hex(RedPixel));
}

TEST_F(SceneRendererSizeTest, AChangedLargeGeometryIsCopiedAgain)
{
    const osg::GeometryPtr geometry = makeLargeGeometry(makePlainMaterial(Red));
    add(geometry);
    EXPECT_EQ(drawCentre(), hex(RedPixel));

    const osg::GeoPositionsPtr positions = geometry->getPositions();
    beginEditCP(positions);
    for (osg::UInt32 i = 0; i < positions->getSize(); ++i) {
        positions->setValue(positions->getValue(i) + osg::Vec3f(3, 0, 0), i);
    }
    endEditCP(positions);

    EXPECT_EQ(drawCentre(), hex(BlackPixel));
}

TEST_F(SceneRendererSizeTest, FarFromTheOriginNothingLosesItsShape)
{
    // Here single precision has steps of one.
    constexpr float Far = 1e7F;
    const osg::SimpleMaterialPtr material = makePlainMaterial(Red);
    add(makeTransform(translation(Far, 0, 0), {makeNode(rectangle(material))}));
    Matrix4 view;
    view(0, 3) = -static_cast<double>(Far);

    m_renderer.sceneChanged(SceneChanges::take());
    const QImage picture =
        m_surface.draw(Size, Size, [&] { m_renderer.draw(m_root.get(), view, Matrix4(), Size, Size); });

    EXPECT_EQ(count(picture, RedPixel), Size * Size / 4);
}

TEST_F(SceneRendererSizeTest, OneThingFarAwayDoesNotSpoilTheOthers)
{
    const osg::SimpleMaterialPtr material = makePlainMaterial(Red);
    add(rectangle(material));
    add(makeTransform(translation(3e8F, 0, 0), {makeNode(rectangle(material))}));

    EXPECT_EQ(count(draw(), RedPixel), Size * Size / 4);
}

TEST_F(SceneRendererSizeTest, MirroredAndFlattenedGeometryIsLitLikeAllOther)
{
    const osg::SimpleMaterialPtr material = makePlainMaterial(osg::Color3f(0.8F, 0.8F, 0.8F));
    material->setLit(true);
    const osg::GeometryPtr geometry = rectangle(material);
    const osg::GeoNormals3fPtr normals = osg::GeoNormals3f::create();
    for (int i = 0; i < 4; ++i) {
        normals->push_back(osg::Vec3f(0, 0, 1));
    }
    geometry->setNormals(normals);
    endEditCP(geometry);
    const osg::TransformPtr transform = osg::Transform::create();
    add(makeTransform(translation(0, 0, -0.5F), {makeNode(transform, {makeNode(geometry)})}));
    const std::string plain = drawCentre();

    for (const osg::Vec3f& scale : {osg::Vec3f(-1, 1, 1), osg::Vec3f(1, 1, -3), osg::Vec3f(1, 1, 0)}) {
        osg::Matrix matrix;
        matrix.setScale(scale);
        beginEditCP(transform, osg::Transform::MatrixFieldMask);
        transform->setMatrix(matrix);
        endEditCP(transform, osg::Transform::MatrixFieldMask);
        EXPECT_EQ(drawCentre(), plain);
    }
}

TEST_F(SceneRendererSizeTest, AProjectionInTheSceneIsDrawnAsItIs)
{
    osg::Matrix matrix;
    matrix[3][3] = 2; // half as large
    add(makeTransform(matrix, {makeNode(rectangle(makePlainMaterial(Red)))}));

    EXPECT_EQ(count(draw(), RedPixel), Size * Size / 16);
}

TEST_F(SceneRendererSizeTest, WhatIsOutOfViewIsNotDrawn)
{
    const osg::TransformPtr transform = osg::Transform::create();
    add(makeNode(transform, {makeNode(rectangle(makePlainMaterial(Red)))}));
    add(makeTransform(translation(0, -9, 0), {makeNode(makeLargeGeometry(makePlainMaterial(Green)))}));
    EXPECT_EQ(drawAndCount().drawCalls, 1U);

    beginEditCP(transform, osg::Transform::MatrixFieldMask);
    transform->setMatrix(translation(9, 0, 0));
    endEditCP(transform, osg::Transform::MatrixFieldMask);

    EXPECT_EQ(drawAndCount().drawCalls, 0U);
    EXPECT_EQ(m_renderer.getStatistics().opaque, 0U);
}

TEST_F(SceneRendererSizeTest, UnlitTransparentGeometryOfOneColourNeedsNoOrder)
{
    // Lit, they need one: then neighbours in the order are not neighbours in the batch.
    const osg::SimpleMaterialPtr material = makePlainMaterial(Red, 0.5F);
    for (int i = 0; i < Size; ++i) {
        add(rectangle(material, static_cast<float>(i * 7 % Size) / Size));
    }
    EXPECT_EQ(drawAndCount().drawCalls, 1U);
    EXPECT_EQ(m_renderer.getStatistics().transparent, static_cast<std::size_t>(Size));

    material->setLit(true);

    EXPECT_GT(drawAndCount().drawCalls, 10U);
}

TEST_F(SceneRendererSizeTest, TransparentGeometryOfTwoColoursIsOrderedAcrossItsBatches)
{
    const osg::SimpleMaterialPtr red = makePlainMaterial(Red, 0.5F);
    const osg::SimpleMaterialPtr green = makePlainMaterial(Green, 0.5F);
    add(rectangle(red, 0.5F));
    add(rectangle(green, 0.25F));
    add(rectangle(red, 0));
    add(rectangle(green, -0.25F));

    const QColor colour(draw().pixel(Size / 2, Size / 2));

    EXPECT_NEAR(colour.red(), 128 + 32, 2);
    EXPECT_NEAR(colour.green(), 64 + 16, 2);
    EXPECT_EQ(m_renderer.getStatistics().drawCalls, 4U);
}

TEST_F(SceneRendererSizeTest, VeryManyTransparentGeometriesAreOrderedByTheirBatches)
{
    addRectangles(5000, makePlainMaterial(Red, 0.5F));
    addRectangles(5000, makePlainMaterial(Green, 0.5F));

    EXPECT_EQ(drawAndCount().transparent, 10000U);

    EXPECT_EQ(m_renderer.getStatistics().drawCalls, 4U);
}

TEST_F(SceneRendererSizeTest, MovingDrawsWhatThereIsTimeForAndTheLargeOnesFirst)
{
    // Small ones in the left half, and the last of all, in the same batch or not, a large one in the right half.
    const osg::SimpleMaterialPtr material = makePlainMaterial(Red);
    beginEditCP(m_root, osg::Node::ChildrenFieldMask);
    for (int i = 0; i < 30000; ++i) {
        const float bottom = -1 + static_cast<float>(i % 500) * 0.0035F;
        m_root->addChild(makeNode(makeRectangle(-1, bottom, -0.5F, bottom + 0.25F, 0, material)));
    }
    endEditCP(m_root, osg::Node::ChildrenFieldMask);
    add(makeRectangle(0, -1, 1, 1, 0, material));
    const QImage full = draw();

    m_renderer.setMovingTime(0);
    for (int i = 0; i < 8; ++i) {
        drawMoving();
    }

    EXPECT_GT(m_renderer.getStatistics().leftOut, 10000U);
    EXPECT_GT(m_renderer.getStatistics().primitives, 10000U);
    EXPECT_LE(m_renderer.getStatistics().primitives, 20000U);
    EXPECT_EQ(hex(drawMoving().pixel(Size * 3 / 4, Size / 2)), hex(RedPixel));
    EXPECT_EQ(draw(), full);
    EXPECT_EQ(m_renderer.getStatistics().leftOut, 0U);
}

TEST_F(SceneRendererSizeTest, MovingDrawsPointsForWhatThereIsNoTimeFor)
{
    // Too many triangles in the left half, and smaller than those in the right half one of a colour of its own and one
    // whose colour its vertices have.
    std::vector<osg::Pnt3f> corners;
    for (int i = 0; i < 102; ++i) {
        corners.emplace_back(-1 + static_cast<float>(i) / 102, i % 2 == 0 ? -1.0F : 1.0F, 0.0F);
    }
    const osg::SimpleMaterialPtr material = makePlainMaterial(Red);
    for (int i = 0; i < 500; ++i) {
        add(makeGeometry(GL_TRIANGLE_STRIP, corners, {}, material));
    }
    add(makeRectangle(0.4F, -0.1F, 0.6F, 0.1F, 0, makePlainMaterial(Green)));
    const osg::SimpleMaterialPtr coloured = makePlainMaterial(Red);
    coloured->setColorMaterial(GL_DIFFUSE);
    const osg::GeometryPtr blue = makeRectangle(0.4F, 0.4F, 0.6F, 0.6F, 0, coloured);
    const osg::GeoColors3fPtr colours = osg::GeoColors3f::create();
    for (int i = 0; i < 4; ++i) {
        colours->addValue(Blue);
    }
    blue->setColors(colours);
    add(blue);

    m_renderer.setMovingTime(0);
    for (int i = 0; i < 8; ++i) {
        drawMoving();
    }
    const QImage picture = drawMoving();

    const SceneRenderer::Statistics& statistics = m_renderer.getStatistics();
    EXPECT_TRUE(statistics.simplified);
    EXPECT_EQ(statistics.opaque + statistics.leftOut, 502U);
    EXPECT_EQ(statistics.marked, statistics.leftOut);
    EXPECT_LE(statistics.primitives, 20000U);
    EXPECT_EQ(hex(picture.pixel(Size * 3 / 4, Size / 2)), hex(GreenPixel));
    EXPECT_EQ(hex(picture.pixel(Size * 3 / 4, Size / 4)), hex(BluePixel));
    EXPECT_EQ(hex(picture.pixel(Size * 3 / 4, Size * 3 / 4)), hex(BlackPixel));
    draw();
    EXPECT_FALSE(m_renderer.getStatistics().simplified);
}

TEST_F(SceneRendererSizeTest, MovingDrawsEverythingWithOneSampleWhereThatSuffices)
{
    add(makeGeometry(GL_TRIANGLES, {{-1, -1, 0}, {1, -1, 0}, {1, 1, 0}}, {}, makePlainMaterial(Red)));
    m_surface.setMultisampling(true);
    const QImage full = draw();

    m_renderer.setMovingTime(0);
    drawMoving();
    const QImage moving = drawMoving();

    EXPECT_TRUE(m_renderer.getStatistics().simplified);
    EXPECT_EQ(m_renderer.getStatistics().leftOut, 0U);
    EXPECT_NE(moving, full);
    EXPECT_EQ(count(moving, RedPixel) + count(moving, BlackPixel), Size * Size);

    // As soon as there is time again.
    m_renderer.setMovingTime(1000);
    drawMoving();
    EXPECT_EQ(drawMoving(), full);
    EXPECT_FALSE(m_renderer.getStatistics().simplified);
}

TEST_F(SceneRendererSizeTest, MovingDrawsEverythingWhereThereIsTime)
{
    addRectangles(1000, makePlainMaterial(Red));
    const QImage full = draw();

    EXPECT_EQ(drawMoving(), full);
    EXPECT_EQ(m_renderer.getStatistics().leftOut, 0U);
}

TEST_F(SceneRendererSizeTest, WhatWasNeverDrawnComesIntoMovingPicturesLittleByLittle)
{
    const osg::SimpleMaterialPtr green = makePlainMaterial(Green);
    add(makeRectangle(-1, -1, 0, 1, 0, makePlainMaterial(Red)));
    add(makeRectangle(0, -1, 1, 0, 0, green));
    add(makeRectangle(0, 0, 1, 1, 0, makePlainMaterial(Blue)));
    m_renderer.setBuildingTime(0);

    std::vector<std::size_t> waiting;
    for (int i = 0; i < 3; ++i) {
        drawMoving();
        waiting.push_back(m_renderer.getStatistics().waiting);
        EXPECT_EQ(m_renderer.getStatistics().built, 1U);
    }

    EXPECT_EQ(waiting, std::vector<std::size_t>({2, 1, 0}));
    EXPECT_EQ(drawMoving(), draw());
    EXPECT_EQ(m_renderer.getStatistics().built, 0U);
}

TEST_F(SceneRendererSizeTest, WhatWasDrawnBeforeDoesNotWaitAfterAnEdit)
{
    const osg::SimpleMaterialPtr materials[] = {makePlainMaterial(Red), makePlainMaterial(Green)};
    for (const osg::SimpleMaterialPtr& material : materials) {
        add(makeRectangle(-1, -1, 1, 1, 0, material));
    }
    m_renderer.setBuildingTime(0);
    draw();

    for (const osg::SimpleMaterialPtr& material : materials) {
        add(makeRectangle(-1, -1, 1, 1, 0, material));
    }
    drawMoving();

    EXPECT_EQ(m_renderer.getStatistics().waiting, 0U);
    EXPECT_EQ(m_renderer.getStatistics().built, 2U);
}

TEST_F(SceneRendererSizeTest, AStillPictureWaitsForNothing)
{
    add(makeRectangle(-1, -1, 0, 1, 0, makePlainMaterial(Red)));
    add(makeRectangle(0, -1, 1, 0, 0, makePlainMaterial(Green)));
    m_renderer.setBuildingTime(0);

    draw();

    EXPECT_EQ(m_renderer.getStatistics().waiting, 0U);
    EXPECT_EQ(m_renderer.getStatistics().opaque, 2U);
}

/** Pictures with so much in them that hidden geometry is looked for: nobody sees a difference. */
class SceneRendererHiddenTest : public SceneRendererSizeTest {
protected:
    static constexpr int Rows = 40;

    // Boxes of one colour in the left, another in the right half, three layers deep.
    void addLayers(const float nearest)
    {
        for (int layer = 0; layer < 3; ++layer) {
            for (int i = 0; i < Rows * Rows; ++i) {
                const float left = -1 + 2 * static_cast<float>(i % Rows) / Rows;
                const float bottom = -1 + 2 * static_cast<float>(i / Rows) / Rows;
                const float z = nearest - 0.25F * static_cast<float>(layer);
                const osg::MaterialPtr material = i % Rows < Rows / 2 ? m_left : m_right;
                add(makeBox(osg::Pnt3f(left, bottom, z - 0.1F), osg::Pnt3f(left + 0.03F, bottom + 0.03F, z), material));
            }
        }
    }

    // Lines with shades at their sides.
    static osg::SimpleMaterialPtr makeLineMaterial(const osg::Color3f& colour, const osg::Int32 sortKey)
    {
        const osg::SimpleMaterialPtr material = makePlainMaterial(colour, 0.001F, sortKey);
        const osg::LineChunkPtr chunk = osg::LineChunk::create();
        beginEditCP(chunk);
        chunk->setSmooth(true);
        addChunk(material, chunk);
        return material;
    }

    // Frames of boxes, as a visualisation has them.
    void addFrames(const int count, const osg::MaterialPtr& material, const float size = 0.1F)
    {
        for (int i = 0; i < count; ++i) {
            const float left = -0.9F + 1.6F * static_cast<float>((i * 7919) % 997) / 997;
            const float bottom = -0.9F + 1.6F * static_cast<float>((i * 104729) % 991) / 991;
            const float right = left + size;
            const float top = bottom + size;
            std::vector<osg::Pnt3f> corners;
            for (unsigned corner = 0; corner < 8; ++corner) {
                corners.emplace_back((corner & 1U) != 0 ? right : left, (corner & 2U) != 0 ? top : bottom,
                                     (corner & 4U) != 0 ? 0.6F : 0.5F);
            }
            add(makeGeometry(GL_LINES, corners,
                             {0, 1, 2, 3, 4, 5, 6, 7, 0, 2, 1, 3, 4, 6, 5, 7, 0, 4, 1, 5, 2, 6, 3, 7}, material));
        }
    }

    QImage drawWith(const double expectedPrimitives)
    {
        m_renderer.setExpectedPrimitives(expectedPrimitives);
        return draw();
    }

    QImage drawEverything() { return drawWith(1e9); }

    QImage drawWithoutHidden() { return drawWith(1000); }

    std::size_t getHidden() const { return m_renderer.getStatistics().hidden; }

    osg::RefPtr<osg::MaterialPtr> m_left{osg::MaterialPtr(makePlainMaterial(Red))};
    osg::RefPtr<osg::MaterialPtr> m_right{osg::MaterialPtr(makePlainMaterial(Green))};
};

TEST_F(SceneRendererHiddenTest, WhatIsBehindOthersIsLeftOut)
{
    addLayers(0);
    add(makeRectangle(-1, -1, 1, 1, 0.5F, makePlainMaterial(Blue)));
    const QImage everything = drawEverything();
    EXPECT_EQ(getHidden(), 0U);

    const QImage picture = drawWithoutHidden();

    EXPECT_EQ(picture, everything);
    EXPECT_EQ(getHidden(), 3U * Rows * Rows);
    EXPECT_EQ(m_renderer.getStatistics().opaque, 1U);
    EXPECT_EQ(m_renderer.getStatistics().leftOut, 0U);
}

TEST_F(SceneRendererHiddenTest, WhatIsSeenThroughGapsIsDrawn)
{
    addLayers(0.5F);
    add(makeRectangle(-1, -1, 1, 1, -0.9F, makePlainMaterial(Blue)));
    const QImage everything = drawEverything();
    ASSERT_GT(count(everything, BluePixel), 0);

    EXPECT_EQ(drawWithoutHidden(), everything);
    EXPECT_EQ(m_renderer.getStatistics().opaque + getHidden(), 3U * Rows * Rows + 1);
}

TEST_F(SceneRendererHiddenTest, SeveralSamplesForEachPixelAreLookedAtOneByOne)
{
    m_surface.setMultisampling(true);
    addLayers(0.5F);
    // Hides all but a sixth of one column of pixels, in which only the last of their four samples lies.
    add(makeRectangle(-1, -1, 0.017F, 1, 0.9F, makePlainMaterial(Blue)));
    add(makeRectangle(0.022F, -1, 1, 1, 0.9F, makePlainMaterial(Blue)));
    const QImage everything = drawEverything();

    EXPECT_EQ(drawWithoutHidden(), everything);
    EXPECT_GT(getHidden(), 2U * Rows * Rows);
}

TEST_F(SceneRendererHiddenTest, WhatWasHiddenIsDrawnWhenNothingHidesItAnyMore)
{
    addLayers(0);
    const osg::NodePtr wall = add(makeRectangle(-1, -1, 1, 1, 0.5F, makePlainMaterial(Blue)));
    const QImage hidden = drawWithoutHidden();
    EXPECT_EQ(count(hidden, BluePixel), Size * Size);

    setTravMask(wall, 0);

    EXPECT_GT(count(drawWithoutHidden(), RedPixel), Size * Size / 8);
    EXPECT_EQ(draw(), drawEverything());
}

TEST_F(SceneRendererHiddenTest, SurfacesThatDoNotHideLeaveNothingOut)
{
    addLayers(0);
    const osg::SimpleMaterialPtr material = makePlainMaterial(Blue);
    const osg::DepthChunkPtr chunk = osg::DepthChunk::create();
    beginEditCP(chunk);
    chunk->setReadOnly(true);
    addChunk(material, chunk);
    add(makeRectangle(-1, -1, 1, 1, 0.5F, material));
    add(makeRectangle(-1, -1, 1, 1, 0.4F, makePlainMaterial(Green)));
    const QImage everything = drawEverything();

    EXPECT_EQ(drawWithoutHidden(), everything);
    EXPECT_EQ(getHidden(), 0U);
}

TEST_F(SceneRendererHiddenTest, SurfacesPulledTowardsTheViewerLetOthersHideOthers)
{
    addLayers(0);
    add(makeRectangle(-1, -1, 1, 1, 0.4F, makePlainMaterial(Green)));
    const osg::SimpleMaterialPtr material = makePlainMaterial(Blue);
    const osg::PolygonChunkPtr chunk = osg::PolygonChunk::create();
    beginEditCP(chunk);
    chunk->setOffsetFill(true);
    chunk->setOffsetFactor(-1);
    chunk->setOffsetBias(-1);
    addChunk(material, chunk);
    add(makeRectangle(-0.5F, -0.5F, 0.5F, 0.5F, 0.4F, material));
    const QImage everything = drawEverything();
    ASSERT_GT(count(everything, BluePixel), 0);

    EXPECT_EQ(drawWithoutHidden(), everything);
    EXPECT_EQ(getHidden(), 3U * Rows * Rows);
}

TEST_F(SceneRendererHiddenTest, WhatIsTransparentHidesNothing)
{
    addLayers(0);
    add(makeRectangle(-1, -1, 1, 1, 0.5F, makePlainMaterial(Blue, 0.5F)));
    const QImage everything = drawEverything();

    EXPECT_EQ(drawWithoutHidden(), everything);
    EXPECT_LT(getHidden(), 2U * Rows * Rows + 1);
}

TEST_F(SceneRendererHiddenTest, WhatIsTransparentIsHiddenByOthers)
{
    addLayers(0.5F);
    add(makeRectangle(-1, -1, 1, 1, 0.8F, makePlainMaterial(Red)));
    add(makeRectangle(-0.5F, -0.5F, 0.5F, 0.5F, 0, makePlainMaterial(Blue, 0.5F)));
    add(makeRectangle(-0.5F, -0.5F, 0, 0, 0.9F, makePlainMaterial(Green, 0.5F)));
    const QImage everything = drawEverything();

    EXPECT_EQ(drawWithoutHidden(), everything);
    EXPECT_EQ(m_renderer.getStatistics().transparent, 1U);
}

TEST_F(SceneRendererHiddenTest, MovingPicturesHaveTimeForWhatIsSeen)
{
    addLayers(0);
    add(makeRectangle(-1, -1, 1, 1, 0.5F, makePlainMaterial(Blue)));
    m_renderer.setBuildingTime(100);
    m_renderer.setExpectedPrimitives(1000);

    const QImage picture = drawMoving();

    EXPECT_EQ(count(picture, BluePixel), Size * Size);
    EXPECT_EQ(m_renderer.getStatistics().leftOut, 0U);
    EXPECT_EQ(getHidden(), 3U * Rows * Rows);
}

TEST_F(SceneRendererHiddenTest, LinesThatTouchNoPixelOfAnotherColourAreLeftOut)
{
    constexpr int Frames = 5000;
    addFrames(Frames, makeLineMaterial(Red, 0));
    const QImage everything = drawEverything();
    EXPECT_EQ(m_renderer.getStatistics().primitives, 12U * Frames);

    const QImage picture = drawWithoutHidden();

    EXPECT_LT(m_renderer.getStatistics().primitives, 12U * Frames / 2);
    EXPECT_EQ(m_renderer.getStatistics().transparent, std::size_t(Frames));
    for (int y = 0; y < Size; ++y) {
        for (int x = 0; x < Size; ++x) {
            ASSERT_NEAR(qRed(picture.pixel(x, y)), qRed(everything.pixel(x, y)), 8) << x << ", " << y;
        }
    }
}

TEST_F(SceneRendererHiddenTest, LinesOfTwoColoursCoverEachOtherAsBefore)
{
    addFrames(5000, makeLineMaterial(Red, 1));
    addFrames(200, makeLineMaterial(Green, 2));
    const QImage everything = drawEverything();

    const QImage picture = drawWithoutHidden();

    EXPECT_GT(count(picture, GreenPixel), 0);
    EXPECT_EQ(count(picture, GreenPixel), count(everything, GreenPixel));
}

/** The same of lines that are drawn last and over everything, as those of selection boxes are. */
class SceneRendererOverlayTest : public SceneRendererHiddenTest {
protected:
    static constexpr int Frames = 5000;
    static constexpr std::size_t Lines = std::size_t(12) * Frames;

    static osg::SimpleMaterialPtr makeOverlayMaterial(const osg::Color3f& colour, const osg::Int32 sortKey)
    {
        const osg::SimpleMaterialPtr material = makeLineMaterial(colour, sortKey);
        const osg::DepthChunkPtr chunk = osg::DepthChunk::create();
        beginEditCP(chunk);
        chunk->setFunc(GL_ALWAYS);
        addChunk(material, chunk);
        return material;
    }

    // In steps of a colour component that no eye sees, the samples of a pixel not at all.
    static void expectSame(const QImage& picture, const QImage& expected)
    {
        for (int y = 0; y < Size; ++y) {
            for (int x = 0; x < Size; ++x) {
                const QRgb a = picture.pixel(x, y);
                const QRgb b = expected.pixel(x, y);
                ASSERT_NEAR(qRed(a), qRed(b), 8) << x << ", " << y;
                ASSERT_NEAR(qGreen(a), qGreen(b), 8) << x << ", " << y;
                ASSERT_NEAR(qBlue(a), qBlue(b), 8) << x << ", " << y;
            }
        }
    }

    const Statistics& getStatistics() const { return m_renderer.getStatistics(); }
};

TEST_F(SceneRendererOverlayTest, LinesThatAddNothingAreLeftOut)
{
    addFrames(Frames, makeOverlayMaterial(Blue, 0));
    add(makeRectangle(-1, -1, 1, 1, 0.9F, makePlainMaterial(Green)));
    const QImage everything = drawEverything();
    EXPECT_EQ(getStatistics().primitives, Lines + 2);

    const QImage picture = drawWithoutHidden();

    EXPECT_LT(getStatistics().primitives, Lines / 4);
    EXPECT_GT(getHidden(), Frames / 2U);
    EXPECT_EQ(getStatistics().transparent + getHidden(), std::size_t(Frames));
    expectSame(picture, everything);
}

TEST_F(SceneRendererOverlayTest, WithSeveralSamplesNobodySeesADifference)
{
    m_surface.setMultisampling(true);
    addFrames(Frames, makeOverlayMaterial(Blue, 0));
    add(makeRectangle(-1, -1, 1, 1, 0.9F, makePlainMaterial(Green)));
    const QImage everything = drawEverything();

    const QImage picture = drawWithoutHidden();

    EXPECT_LT(getStatistics().primitives, Lines / 4);
    expectSame(picture, everything);
}

TEST_F(SceneRendererOverlayTest, WideLinesCoverMore)
{
    m_renderer.setPixelRatio(3);
    addFrames(Frames, makeOverlayMaterial(Blue, 0));
    const QImage everything = drawEverything();

    const QImage picture = drawWithoutHidden();

    EXPECT_LT(getStatistics().primitives, Lines / 10);
    expectSame(picture, everything);
}

TEST_F(SceneRendererOverlayTest, WhatLinesCoverIsNotDrawn)
{
    addLayers(0);
    addFrames(Frames, makeOverlayMaterial(Blue, 0));
    const QImage everything = drawEverything();

    const QImage picture = drawWithoutHidden();

    EXPECT_LT(getStatistics().opaque, 3U * Rows * Rows / 3);
    EXPECT_GT(getStatistics().opaque, 0U);
    expectSame(picture, everything);
}

TEST_F(SceneRendererOverlayTest, WhatLinesCoverIsNotDrawnWhereNoSurfaceHidesAnother)
{
    addLayers(0);
    const osg::SimpleMaterialPtr material = makePlainMaterial(Red);
    const osg::DepthChunkPtr chunk = osg::DepthChunk::create();
    beginEditCP(chunk);
    chunk->setReadOnly(true);
    addChunk(material, chunk);
    add(makeRectangle(-1, -1, 1, 1, -0.9F, material));
    addFrames(Frames, makeOverlayMaterial(Blue, 0));
    const QImage everything = drawEverything();

    const QImage picture = drawWithoutHidden();

    EXPECT_LT(getStatistics().opaque, 3U * Rows * Rows * 2 / 3);
    expectSame(picture, everything);
}

TEST_F(SceneRendererOverlayTest, ItDoesNotMatterWhichLinesCameFirst)
{
    const osg::RefPtr<osg::MaterialPtr> kept(osg::MaterialPtr(makeOverlayMaterial(Blue, 0)));
    const osg::MaterialPtr material = kept.get();
    addFrames(Frames, material, 0.04F);
    addFrames(Frames, material, 0.3F);
    drawWithoutHidden();
    const std::size_t smallFirst = getStatistics().primitives;
    m_root = makeGroup();

    addFrames(Frames, material, 0.3F);
    addFrames(Frames, material, 0.04F);
    drawWithoutHidden();

    EXPECT_LT(smallFirst, Lines / 6);
    EXPECT_LT(smallFirst, getStatistics().primitives * 11 / 10);
    EXPECT_LT(getStatistics().primitives, smallFirst * 11 / 10);
}

TEST_F(SceneRendererOverlayTest, UnderLinesThatAreNotTheLastEverythingIsDrawn)
{
    addLayers(0);
    addFrames(Frames, makeOverlayMaterial(Blue, 1));
    // Behind the layers, and in front of none of what is under the lines.
    add(makeRectangle(-1, -1, 1, 1, -0.9F, makePlainMaterial(Green, 0.5F, 2)));
    const QImage everything = drawEverything();

    const QImage picture = drawWithoutHidden();

    expectSame(picture, everything);
}

TEST_F(SceneRendererOverlayTest, LinesOfTwoColoursAreAllDrawn)
{
    addFrames(Frames, makeOverlayMaterial(Blue, 0));
    addFrames(10, makeOverlayMaterial(Red, 0));
    const QImage everything = drawEverything();

    EXPECT_EQ(drawWithoutHidden(), everything);
    EXPECT_EQ(getStatistics().primitives, Lines + 12 * 10);
}

TEST_F(SceneRendererOverlayTest, MovingPicturesHaveTimeForAllLines)
{
    addLayers(0);
    addFrames(Frames, makeOverlayMaterial(Blue, 0));
    m_renderer.setBuildingTime(100);
    m_renderer.setMovingTime(1000);
    m_renderer.setExpectedPrimitives(2.0 * Lines / 3);

    drawMoving();

    EXPECT_EQ(getStatistics().leftOut, 0U);
    EXPECT_GT(getHidden(), Frames / 2U);
}

/** Bodies whose far side is left out. */
class SceneRendererBodyTest : public SceneRendererTest {
protected:
    static osg::GeometryPtr box(const osg::MaterialPtr& material, const float nearest)
    {
        return makeBox(osg::Pnt3f(-0.5F, -0.5F, -0.5F), osg::Pnt3f(0.5F, 0.5F, nearest), material);
    }
};

TEST_F(SceneRendererBodyTest, AMirroredBodyIsSeenFromOutside)
{
    // Lit: the near side is as bright as that of the body that is not mirrored.
    const osg::SimpleMaterialPtr material = makePlainMaterial(Red);
    material->setLit(true);
    const osg::NodePtr plain = add(box(material, 0.5F));
    const std::string expected = drawCentre();
    setTravMask(plain, 0);
    osg::Matrix mirror;
    mirror[0][0] = -1;
    add(makeTransform(mirror, {makeNode(box(material, 0.5F))}));

    EXPECT_EQ(drawCentre(), expected);
    EXPECT_NE(expected, hex(BlackPixel));
}

TEST_F(SceneRendererBodyTest, ABodyThatTheNearPlaneCutsIsSeenFromInside)
{
    add(box(makePlainMaterial(Red), 3));

    EXPECT_EQ(drawCentre(), hex(RedPixel));
}

/** How the vertices of one kind of primitive become pixels. */
struct Primitive {
    const char* name;
    GLenum type;
    std::vector<osg::Pnt3f> corners;
    int fewest; ///< pixels
    int most;
};

std::ostream& operator<<(std::ostream& stream, const Primitive& primitive)
{
    return stream << primitive.name;
}

class SceneRendererPrimitiveTest : public SceneRendererTest, public ::testing::WithParamInterface<Primitive> {};

TEST_P(SceneRendererPrimitiveTest, CoversItsPixels)
{
    add(makeGeometry(GetParam().type, GetParam().corners, {}, makePlainMaterial(Red)));

    const int pixels = count(draw(), RedPixel);

    EXPECT_GE(pixels, GetParam().fewest);
    EXPECT_LE(pixels, GetParam().most);
}

const osg::Pnt3f A(-0.5F, -0.5F, 0);
const osg::Pnt3f B(0.5F, -0.5F, 0);
const osg::Pnt3f C(0.5F, 0.5F, 0);
const osg::Pnt3f D(-0.5F, 0.5F, 0);

INSTANTIATE_TEST_SUITE_P(Kinds, SceneRendererPrimitiveTest,
                         ::testing::Values(Primitive{"Points", GL_POINTS, {A, B, C, D}, 30, 40},
                                           Primitive{"Lines", GL_LINES, {A, B, C, D}, 62, 66},
                                           Primitive{"LineStrip", GL_LINE_STRIP, {A, B, C}, 62, 66},
                                           Primitive{"LineLoop", GL_LINE_LOOP, {A, B, C, D}, 124, 130},
                                           Primitive{"Triangles", GL_TRIANGLES, {A, B, C, A, C, D}, 1024, 1024},
                                           Primitive{"TriangleStrip", GL_TRIANGLE_STRIP, {A, B, D, C}, 1024, 1024},
                                           Primitive{"TriangleFan", GL_TRIANGLE_FAN, {A, B, C, D}, 1024, 1024},
                                           Primitive{"Quads", GL_QUADS, {A, B, C, D}, 1024, 1024},
                                           Primitive{"QuadStrip", GL_QUAD_STRIP, {A, B, D, C}, 1024, 1024},
                                           Primitive{"Polygon", GL_POLYGON, {A, B, C, D}, 1024, 1024}),
                         [](const auto& row) { return std::string(row.param.name); });

} // namespace

} // namespace quon::testing
