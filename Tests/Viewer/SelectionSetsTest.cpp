// SPDX-License-Identifier: MIT
#include <InteractionTesting/LiveContainers.h>

#include "Support/DrawnScene.h"
#include "Support/StandardError.h"
#include "Support/UserInput.h"

#include "Viewer/Session/SelectionSets.h"
#include "Viewer/Session/ViewerSession.h"
#include "Viewer/Window/Viewport.h"

#include <Interaction/NodeSelectionModel.h>
#include <Interaction/SelectionManager.h>
#include <SceneUtilities/NodeUtils.h>

#include <QColor>
#include <QImage>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <functional>
#include <random>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace quon::testing {

namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::UnorderedElementsAre;

using viewer::SelectionLook;
using viewer::SelectionSets;
using Combination = SelectionSets::Combination;
using Id = SelectionSets::Id;

/** Four grey boxes in a row from left to right, seen from the front in a session of its own. */
class SelectionSetsTest : public ::testing::Test {
protected:
    SelectionSetsTest()
        : m_viewport(m_session, viewer::Viewport::Target::Pictures)
        , m_sets(m_session.getSets())
    {
        m_viewport.resize(400, 100);
        m_viewport.show();
        const osg::NodePtr model = makeGroup();
        for (int i = 0; i < 4; ++i) {
            const float x = static_cast<float>(i) * 4;
            const osg::NodePtr part = makeNode(makeBox(osg::Pnt3f(x, -1, -1), osg::Pnt3f(x + 2, 1, 1),
                                                       makePlainMaterial(osg::Color3f(0.5F, 0.5F, 0.5F))));
            NodeUtils::setName(part, "part " + std::to_string(i), false);
            model->addChild(part);
            m_parts.push_back(part);
        }
        m_session.setModel(model);
        m_session.getCamera().setStandardView("front");
        m_session.processSceneChanges();
    }

    Id createOf(const std::vector<osg::NodePtr>& nodes)
    {
        m_session.getEditor().select(nodes);
        return m_sets.create();
    }

    const std::set<osg::NodePtr>& nodesOf(const Id id) const { return m_sets.getModel(id)->getSelection(); }
    const std::set<osg::NodePtr>& selection() { return m_session.getSelection().getSelection(); }

    std::vector<std::string> names() const
    {
        std::vector<std::string> names;
        for (const SelectionSets::Info& set : m_sets.getAll()) {
            names.push_back(set.name.toStdString());
        }
        return names;
    }

    void undo() { m_session.getEditor().undo(); }
    void redo() { m_session.getEditor().redo(); }

    static interaction::NodeSelectionModel* modelOfManager(const Id id)
    {
        return interaction::SelectionManager::getInstance()->getSelectionModel("set:" + std::to_string(id));
    }

    // The pixels of about this colour in the strip of the picture that shows a part.
    int count(const QImage& picture, const int part, const QColor& colour) const
    {
        // In the middle of the gaps between the parts.
        constexpr int ends[] = {0, 118, 200, 282, 400};
        int found = 0;
        for (int y = 0; y < picture.height(); ++y) {
            for (int x = ends[part]; x < ends[part + 1]; ++x) {
                const QColor pixel(picture.pixel(x, y));
                const int distance = std::abs(pixel.red() - colour.red()) + std::abs(pixel.green() - colour.green()) +
                                     std::abs(pixel.blue() - colour.blue());
                found += distance < 100 ? 1 : 0;
            }
        }
        return found;
    }

    viewer::ViewerSession m_session;
    viewer::Viewport m_viewport;
    SelectionSets& m_sets;
    std::vector<osg::NodePtr> m_parts;
};

TEST_F(SelectionSetsTest, ASetHoldsTheSelectionAsItWas)
{
    const Id id = createOf({m_parts[0], m_parts[2]});
    m_session.getEditor().select({m_parts[1]});

    EXPECT_THAT(nodesOf(id), UnorderedElementsAre(m_parts[0], m_parts[2]));
    EXPECT_EQ(m_sets.find(id)->size, 2U);
    EXPECT_EQ(modelOfManager(id), m_sets.getModel(id));
}

TEST_F(SelectionSetsTest, NothingSelectedMakesNoSet)
{
    EXPECT_EQ(m_sets.create(), SelectionSets::None);

    EXPECT_THAT(m_sets.getAll(), IsEmpty());
    EXPECT_FALSE(m_session.getEditor().canUndo());
}

TEST_F(SelectionSetsTest, SetsAreNumberedAndHaveColoursOfTheirOwn)
{
    const Id first = createOf({m_parts[0]});
    const Id second = m_sets.create();
    m_sets.remove(first);
    const Id third = m_sets.create();

    EXPECT_THAT(names(), ElementsAre("Set 2", "Set 1"));
    EXPECT_NE(m_sets.find(second)->look.colour, m_sets.find(third)->look.colour);
    EXPECT_NE(m_sets.find(second)->look.colour, m_session.getSelectionLook().colour);
}

TEST_F(SelectionSetsTest, NamesAreTrimmedUniqueAndNotEmpty)
{
    const Id first = createOf({m_parts[0]});
    const Id second = m_sets.create();

    EXPECT_TRUE(m_sets.rename(first, "  Wheels "));
    EXPECT_FALSE(m_sets.rename(second, "wheels"));
    EXPECT_FALSE(m_sets.rename(second, "   "));
    EXPECT_TRUE(m_sets.rename(first, "WHEELS"));
    EXPECT_FALSE(m_sets.rename(SelectionSets::None, "Seats"));

    EXPECT_THAT(names(), ElementsAre("WHEELS", "Set 2"));
    EXPECT_EQ(m_sets.getNameProblem(second, "Wheels").toStdString(), "There is a set called WHEELS already.");
    EXPECT_EQ(m_sets.getNameProblem(second, " ").toStdString(), "A set needs a name.");
    EXPECT_EQ(m_sets.getNameProblem(second, "Seats"), QString());
}

TEST_F(SelectionSetsTest, TheSameNameAgainIsNoStep)
{
    const Id id = createOf({m_parts[0]});

    EXPECT_TRUE(m_sets.rename(id, " Set 1 "));

    EXPECT_EQ(m_session.getEditor().getUndoText(), QStringLiteral("Make Set 1"));
}

TEST_F(SelectionSetsTest, RecallingASetSelectsItAndCanBeUndone)
{
    const Id id = createOf({m_parts[0], m_parts[1]});
    m_session.getEditor().select({m_parts[3]});

    m_sets.addToSelection(id);
    EXPECT_THAT(selection(), UnorderedElementsAre(m_parts[0], m_parts[1], m_parts[3]));
    m_sets.recall(id);
    EXPECT_THAT(selection(), UnorderedElementsAre(m_parts[0], m_parts[1]));

    undo();
    undo();
    EXPECT_THAT(selection(), ElementsAre(m_parts[3]));
}

TEST_F(SelectionSetsTest, SetsAreCombinedWithTheSelectionAndWithEachOther)
{
    const Id first = createOf({m_parts[0], m_parts[1]});
    const Id second = createOf({m_parts[1], m_parts[2]});
    m_session.getEditor().select({m_parts[3]});

    m_sets.combine(first, Combination::Union);
    EXPECT_THAT(nodesOf(first), UnorderedElementsAre(m_parts[0], m_parts[1], m_parts[3]));
    m_sets.combine(first, Combination::Intersection, second);
    EXPECT_THAT(nodesOf(first), ElementsAre(m_parts[1]));
    m_sets.combine(second, Combination::Difference, first);
    EXPECT_THAT(nodesOf(second), ElementsAre(m_parts[2]));
    m_sets.combine(second, Combination::Intersection);
    EXPECT_THAT(nodesOf(second), IsEmpty());

    EXPECT_EQ(m_session.getEditor().getUndoText(), QStringLiteral("Change Set 2"));
    for (int i = 0; i < 4; ++i) {
        undo();
    }
    EXPECT_THAT(nodesOf(first), UnorderedElementsAre(m_parts[0], m_parts[1]));
    EXPECT_THAT(nodesOf(second), UnorderedElementsAre(m_parts[1], m_parts[2]));
}

TEST_F(SelectionSetsTest, ACombinationThatChangesNothingIsNoStep)
{
    const Id id = createOf({m_parts[0]});

    m_sets.combine(id, Combination::Union);
    m_sets.combine(id, Combination::Intersection, id);
    m_sets.replaceBySelection(id);
    m_sets.combine(id, Combination::Difference, 99);
    m_sets.combine(99, Combination::Union);

    EXPECT_EQ(m_session.getEditor().getUndoText(), QStringLiteral("Make Set 1"));
}

TEST_F(SelectionSetsTest, ASetTakesTheSelectionOver)
{
    const Id id = createOf({m_parts[0]});
    m_session.getEditor().select({m_parts[2], m_parts[3]});

    m_sets.replaceBySelection(id);

    EXPECT_THAT(nodesOf(id), UnorderedElementsAre(m_parts[2], m_parts[3]));
}

TEST_F(SelectionSetsTest, MakingRenamingAndDeletingCanBeUndone)
{
    const Id first = createOf({m_parts[0]});
    const Id second = createOf({m_parts[1], m_parts[2]});
    m_sets.rename(second, "Wheels");
    SelectionLook look = m_sets.find(first)->look;
    look.kind = SelectionLook::Kind::Wireframe;
    m_sets.setLook(first, look);
    m_sets.remove(first);
    EXPECT_EQ(m_session.getEditor().getUndoText(), QStringLiteral("Delete Set 1"));
    EXPECT_EQ(modelOfManager(first), nullptr);

    undo();
    // At its place and with the look that it had.
    EXPECT_THAT(names(), ElementsAre("Set 1", "Wheels"));
    EXPECT_EQ(m_sets.find(first)->look, look);
    EXPECT_THAT(nodesOf(first), ElementsAre(m_parts[0]));
    EXPECT_EQ(m_session.getEditor().getUndoText(), QStringLiteral("Rename Set 2"));

    undo();
    EXPECT_THAT(names(), ElementsAre("Set 1", "Set 2"));
    undo();
    EXPECT_THAT(names(), ElementsAre("Set 1"));
    redo();
    redo();
    EXPECT_THAT(names(), ElementsAre("Set 1", "Wheels"));
    EXPECT_THAT(nodesOf(second), UnorderedElementsAre(m_parts[1], m_parts[2]));
}

TEST_F(SelectionSetsTest, ASetThatComesBackHasTheLookThatItHadLast)
{
    const Id id = createOf({m_parts[0]});
    SelectionLook look = m_sets.find(id)->look;
    look.overlay = false;
    m_sets.setLook(id, look);

    undo();
    redo();

    EXPECT_EQ(m_sets.find(id)->look, look);
}

TEST_F(SelectionSetsTest, AnotherModelTakesTheSetsAlong)
{
    const Id id = createOf({m_parts[0]});

    m_session.setModel(makeGroup());

    EXPECT_THAT(m_sets.getAll(), IsEmpty());
    EXPECT_EQ(modelOfManager(id), nullptr);
    EXPECT_FALSE(m_session.getEditor().canUndo());
}

TEST_F(SelectionSetsTest, DestroyedNodesLeaveTheirSetsAndTheSelection)
{
    const Id first = createOf({m_parts[0]});
    const Id second = createOf({m_parts[0], m_parts[1]});
    const osg::NodePtr model = m_session.getModel();

    model->subChild(m_parts[0]);
    m_session.processSceneChanges();

    EXPECT_THAT(StandardError::take(), HasSubstr("invalid node pointer"));
    EXPECT_FALSE(m_sets.find(first));
    EXPECT_THAT(nodesOf(second), ElementsAre(m_parts[1]));
    EXPECT_THAT(selection(), ElementsAre(m_parts[1]));
    // The step that made the first set has nothing left to do.
    for (int i = 0; i < 4; ++i) {
        undo();
    }
    for (int i = 0; i < 4; ++i) {
        redo();
    }
    EXPECT_THAT(names(), ElementsAre("Set 2"));
    EXPECT_THAT(nodesOf(second), ElementsAre(m_parts[1]));
}

TEST_F(SelectionSetsTest, ListenersHearOfEveryChange)
{
    int changes = 0;
    QObject::connect(&m_sets, &SelectionSets::changed, [&] { ++changes; });
    const auto expectChange = [&](const std::function<void()>& operation) {
        const int before = changes;
        operation();
        EXPECT_GT(changes, before);
    };

    Id id = SelectionSets::None;
    expectChange([&] { id = createOf({m_parts[0]}); });
    expectChange([&] { m_sets.rename(id, "Wheels"); });
    expectChange([&] {
        SelectionLook look;
        look.visible = false;
        m_sets.setLook(id, look);
    });
    expectChange([&] { undo(); });
    expectChange([&] { m_sets.remove(id); });
    expectChange([&] { undo(); });
    expectChange([&] { m_session.setModel(osg::NullFC); });
}

// What is drawn.

TEST_F(SelectionSetsTest, SeveralSetsAreDrawnAtOnceEachInItsWay)
{
    const Id boxes = createOf({m_parts[0]});
    const Id wireframe = createOf({m_parts[3]});
    m_session.getEditor().select({m_parts[1]});
    SelectionLook look = m_sets.find(boxes)->look;
    look.colour = osg::Color3f(0, 0, 1);
    m_sets.setLook(boxes, look);
    look.colour = osg::Color3f(0, 1, 0);
    look.kind = SelectionLook::Kind::Wireframe;
    m_sets.setLook(wireframe, look);

    QImage picture = m_viewport.grabScene();
    const QColor blue(0, 0, 255);
    const QColor green(0, 255, 0);
    const QColor orange(244, 133, 22);
    const int blueOfBox = count(picture, 0, blue);
    EXPECT_GT(blueOfBox, 40);
    EXPECT_GT(count(picture, 3, green), 60);
    EXPECT_GT(count(picture, 1, orange), 40);
    for (const int other : {1, 2, 3}) {
        EXPECT_EQ(count(picture, other, blue), 0);
    }
    for (const int other : {0, 1, 2}) {
        EXPECT_EQ(count(picture, other, green), 0);
    }

    look.kind = SelectionLook::Kind::Boxes;
    look.visible = false;
    m_sets.setLook(wireframe, look);
    picture = m_viewport.grabScene();
    EXPECT_EQ(count(picture, 3, green), 0);
    EXPECT_EQ(count(picture, 0, blue), blueOfBox);
}

TEST_F(SelectionSetsTest, ATransparentSetIsPaler)
{
    const Id id = createOf({m_parts[0]});
    m_session.getEditor().select({});
    SelectionLook look;
    look.colour = osg::Color3f(0, 0, 1);
    for (const auto kind : {SelectionLook::Kind::Boxes, SelectionLook::Kind::Wireframe}) {
        look.kind = kind;
        look.transparency = 0;
        m_sets.setLook(id, look);
        const int opaque = count(m_viewport.grabScene(), 0, QColor(0, 0, 255));
        look.transparency = 0.8F;
        m_sets.setLook(id, look);

        EXPECT_GT(opaque, 40);
        EXPECT_LT(count(m_viewport.grabScene(), 0, QColor(0, 0, 255)), opaque / 4);
    }
}

TEST_F(SelectionSetsTest, TheSelectionIsDrawnOverTheSets)
{
    const Id id = createOf({m_parts[0]});
    SelectionLook look;
    look.colour = osg::Color3f(0, 0, 1);
    m_sets.setLook(id, look);

    const QImage picture = m_viewport.grabScene();

    EXPECT_GT(count(picture, 0, QColor(244, 133, 22)), 40);
    EXPECT_LT(count(picture, 0, QColor(0, 0, 255)), 10);
}

TEST_F(SelectionSetsTest, AHiddenPartHasNoBoxOfItsSetEither)
{
    createOf({m_parts[0]});
    m_session.getEditor().hide({m_parts[0]});
    const QImage hidden = m_viewport.grabScene();

    m_session.getEditor().select({});
    m_session.getSets().clear();

    EXPECT_EQ(m_viewport.grabScene(), hidden);
}

TEST_F(SelectionSetsTest, AKeyMakesASet)
{
    UserInput user(m_viewport);
    m_session.getEditor().select({m_parts[0]});

    user.type(Qt::Key_K);
    user.type(Qt::Key_K);

    EXPECT_THAT(names(), ElementsAre("Set 1", "Set 2"));
}

// Whatever is done in whatever order, undoing leads back to what was there and redoing to what came.
TEST_F(SelectionSetsTest, AnySequenceCanBeWalkedBackAndForth)
{
    using State = std::pair<std::set<osg::NodePtr>, std::vector<std::pair<std::string, std::set<osg::NodePtr>>>>;
    const auto state = [&] {
        State result;
        result.first = selection();
        for (const SelectionSets::Info& set : m_sets.getAll()) {
            result.second.emplace_back(set.name.toStdString(), nodesOf(set.id));
        }
        return result;
    };
    for (unsigned int seed = 1; seed <= 50; ++seed) {
        SCOPED_TRACE(seed);
        std::mt19937 random(seed);
        const auto draw = [&](const std::size_t end) { return random() % end; };
        m_sets.clear();
        m_session.getSelection().clearSelection();
        m_session.getEditor().clearHistory();

        std::vector<State> states{state()};
        for (int operation = 0; operation < 40; ++operation) {
            const std::vector<SelectionSets::Info> all = m_sets.getAll();
            const auto any = [&] { return all.empty() ? SelectionSets::None : all[draw(all.size())].id; };
            const std::size_t kind = draw(7);
            if (kind < 2 || all.empty()) {
                m_session.getEditor().toggle(m_parts[draw(m_parts.size())]);
            } else if (kind == 2) {
                m_sets.rename(any(), QString::number(draw(9)));
            } else if (kind == 3) {
                m_sets.combine(any(), static_cast<Combination>(draw(3)), draw(2) == 0 ? any() : SelectionSets::None);
            } else if (kind == 4) {
                m_sets.recall(any());
            } else if (kind == 5 && draw(2) == 0) {
                m_sets.remove(any());
            } else {
                m_sets.replaceBySelection(any());
            }
            if (draw(4) == 0) {
                if (state() != states.back()) {
                    states.push_back(state());
                }
                m_sets.create();
            }
            if (state() != states.back()) {
                states.push_back(state());
            }
            ASSERT_EQ(static_cast<std::size_t>(m_session.getEditor().getHistory().count()) + 1, states.size());
        }
        for (std::size_t i = states.size() - 1; i > 0; --i) {
            undo();
            ASSERT_EQ(state(), states[i - 1]);
        }
        for (std::size_t i = 1; i < states.size(); ++i) {
            redo();
            ASSERT_EQ(state(), states[i]);
        }
    }
}

TEST(SelectionSetsLeakTest, SetsThatComeAndGoUseTheSameVisualisations)
{
    viewer::ViewerSession session;
    const osg::NodePtr part = makeNode(makeBox(osg::Pnt3f(-1, -1, -1), osg::Pnt3f(1, 1, 1), osg::NullFC));
    session.setModel(makeGroup({part}));
    session.getEditor().select({part});
    const auto comeAndGo = [&] { session.getSets().remove(session.getSets().create()); };
    comeAndGo();
    const std::size_t before = countLiveContainers();

    for (int i = 0; i < 10; ++i) {
        comeAndGo();
    }

    EXPECT_EQ(countLiveContainers(), before);
}

} // namespace

} // namespace quon::testing
