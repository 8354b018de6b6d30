// SPDX-License-Identifier: MIT
#include <Interaction/InteractionManager.h>

#include <Interaction/InteractionEvent.h>

#include <InteractionTesting/CallLog.h>
#include <InteractionTesting/RecordingContext.h>
#include <InteractionTesting/SceneFixture.h>

#include "Support/AllocationCount.h"

#include <OpenSG/OSGConfig.h>

#include <OpenSG/OSGNode.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstddef>
#include <cstdlib>
#include <list>
#include <memory>
#include <string>
#include <utility>
#include <vector>

using quon::interaction::InteractionContext;
using quon::interaction::InteractionEvent;
using quon::interaction::InteractionManager;
using quon::testing::CallLog;
using quon::testing::getAllocationCount;
using quon::testing::RecordingContext;
using ::testing::Each;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::SizeIs;

namespace {

class InteractionManagerTest : public quon::testing::SceneFixture {
protected:
    /** Adds contexts in the order given and forgets the calls. */
    template <typename... Contexts>
    void add(Contexts&... contexts)
    {
        (m_manager.addContext(&contexts), ...);
        m_log.clear();
    }

    /** The names of the contexts from the front down. The stack has no query, but pointer movements reach everybody. */
    std::vector<std::string> takeStack()
    {
        m_log.clear();
        m_manager.pointerMoved(osg::Pnt2f(0.f, 0.f));
        std::vector<std::string> names;
        for (const std::string& call : m_log.take()) {
            names.push_back(call.substr(0, call.find('.')));
        }
        return names;
    }

    /** Lets @p context show the stack from inside its calls of @p operation. */
    void showStackInside(RecordingContext& context, const std::string& operation)
    {
        context.setHook([this, operation](const std::string& called) {
            if (called == operation) {
                m_manager.pointerMoved(osg::Pnt2f(1.f, 2.f));
            }
        });
    }

    const InteractionEvent m_event{"tool:select", "start"};
    CallLog m_log;
    InteractionManager m_manager;
    RecordingContext m_two{m_log, "two", 2};
    RecordingContext m_five{m_log, "five", 5};
    RecordingContext m_eight{m_log, "eight", 8};
};

// The single instance

TEST_F(InteractionManagerTest, GetInstanceAlwaysReturnsTheSameManager)
{
    InteractionManager* first = InteractionManager::getInstance();

    EXPECT_NE(first, nullptr);
    EXPECT_EQ(InteractionManager::getInstance(), first);
    EXPECT_NE(first, &m_manager);
}

TEST_F(InteractionManagerTest, TheInstanceOutlivesTheProcessExitWithItsVisualisationRoot)
{
    // In a process of its own, where nobody has asked for the instance before.
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    const auto exitWithRoot = [] {
        static const osg::NodePtr root = osg::Node::create();
        // Registered first, called last.
        std::atexit([] { std::_Exit(root.getRefCount() == 1 ? 0 : 1); });
        InteractionManager::getInstance()->setVisualisationRoot(root);
        std::exit(2);
    };

    EXPECT_EXIT(exitWithRoot(), ::testing::ExitedWithCode(0), "");
}

TEST_F(InteractionManagerTest, StartsEnabledWithoutContextsRootAndPresenterMode)
{
    EXPECT_FALSE(m_manager.triggerEvent(m_event));
    EXPECT_TRUE(m_manager.getVisualisationRoot() == osg::NullFC);
    EXPECT_FALSE(m_manager.getPresenterMode());

    m_manager.addContext(&m_two);
    EXPECT_THAT(m_log.calls(), ElementsAre("two.contextAdded()", "two.contextRaised()", "two.enabled()"));
}

// Adding

TEST_F(InteractionManagerTest, TheFirstContextIsAddedRaisedAndEnabled)
{
    m_manager.addContext(&m_five);

    EXPECT_THAT(m_log.calls(), ElementsAre("five.contextAdded()", "five.contextRaised()", "five.enabled()"));
}

TEST_F(InteractionManagerTest, TheFirstContextOfADisabledManagerIsAddedRaisedAndDisabled)
{
    m_manager.disable();

    m_manager.addContext(&m_five);

    EXPECT_THAT(m_log.calls(), ElementsAre("five.contextAdded()", "five.contextRaised()", "five.disabled()"));
}

TEST_F(InteractionManagerTest, AddingToAManagerEnabledTwiceEnablesTheContext)
{
    m_manager.enable();
    m_manager.enable();

    m_manager.addContext(&m_five);

    EXPECT_THAT(m_log.calls(), ElementsAre("five.contextAdded()", "five.contextRaised()", "five.enabled()"));
}

TEST_F(InteractionManagerTest, SmallerPositionsAreNearerTheFront)
{
    m_manager.addContext(&m_five);
    m_log.clear();

    m_manager.addContext(&m_two);
    EXPECT_THAT(m_log.take(),
                ElementsAre("five.contextLowered()", "two.contextAdded()", "two.contextRaised()", "two.enabled()"));

    m_manager.addContext(&m_eight);
    EXPECT_THAT(m_log.take(), ElementsAre("eight.contextAdded()", "eight.enabled()"));

    EXPECT_THAT(takeStack(), ElementsAre("two", "five", "eight"));
}

TEST_F(InteractionManagerTest, AContextAddedBelowTheFrontOfADisabledManagerIsOnlyAddedAndDisabled)
{
    add(m_two);
    m_manager.disable();
    m_log.clear();

    m_manager.addContext(&m_five);

    EXPECT_THAT(m_log.calls(), ElementsAre("five.contextAdded()", "five.disabled()"));
}

TEST_F(InteractionManagerTest, AnEqualPositionGoesInFrontAndLowersTheOldFront)
{
    RecordingContext other(m_log, "other", 2);
    add(m_two, m_five);

    m_manager.addContext(&other);

    EXPECT_THAT(m_log.calls(), ElementsAre("two.contextLowered()", "other.contextAdded()", "other.contextRaised()",
                                           "other.enabled()"));
    EXPECT_THAT(takeStack(), ElementsAre("other", "two", "five"));
}

TEST_F(InteractionManagerTest, AnEqualPositionBelowTheFrontGoesInFrontOfItsEqual)
{
    RecordingContext other(m_log, "other", 5);
    add(m_two, m_five, m_eight);

    m_manager.addContext(&other);

    EXPECT_THAT(m_log.calls(), ElementsAre("other.contextAdded()", "other.enabled()"));
    EXPECT_THAT(takeStack(), ElementsAre("two", "other", "five", "eight"));
}

TEST_F(InteractionManagerTest, PositionsAreComparedAsSignedIntegers)
{
    RecordingContext negative(m_log, "negative", -1);
    RecordingContext zero(m_log, "zero", 0);
    RecordingContext lowest(m_log, "lowest", -2147483647 - 1);
    RecordingContext highest(m_log, "highest", 2147483647);

    add(zero, highest, negative, lowest);

    EXPECT_THAT(takeStack(), ElementsAre("lowest", "negative", "zero", "highest"));
}

TEST_F(InteractionManagerTest, TheNamedPositionsStackFromOverlayDownToBackground)
{
    RecordingContext background(m_log, "background", InteractionContext::Background);
    RecordingContext navigation(m_log, "navigation", InteractionContext::Navigation);
    RecordingContext tool(m_log, "tool", InteractionContext::Tool);
    RecordingContext modal(m_log, "modal", InteractionContext::Modal);
    RecordingContext overlay(m_log, "overlay", InteractionContext::Overlay);

    add(tool, overlay, background, modal, navigation);

    EXPECT_THAT(takeStack(), ElementsAre("overlay", "modal", "tool", "navigation", "background"));
}

TEST_F(InteractionManagerTest, AddingBehindARaisedContextFollowsTheLastSmallerPosition)
{
    RecordingContext six(m_log, "six", 6);
    add(m_five, m_two, m_eight);
    m_manager.raiseContext(&m_eight);
    m_log.clear();

    m_manager.addContext(&six);

    EXPECT_THAT(m_log.calls(), ElementsAre("six.contextAdded()", "six.enabled()"));
    EXPECT_THAT(takeStack(), ElementsAre("eight", "two", "five", "six"));
}

TEST_F(InteractionManagerTest, AddingAnEqualOfARaisedContextPutsItLast)
{
    RecordingContext other(m_log, "other", 8);
    add(m_five, m_two, m_eight);
    m_manager.raiseContext(&m_eight);
    m_log.clear();

    m_manager.addContext(&other);

    EXPECT_THAT(m_log.calls(), ElementsAre("other.contextAdded()", "other.enabled()"));
    EXPECT_THAT(takeStack(), ElementsAre("eight", "two", "five", "other"));
}

TEST_F(InteractionManagerTest, AddingTheSmallestPositionDisplacesARaisedContext)
{
    RecordingContext one(m_log, "one", 1);
    add(m_five, m_two, m_eight);
    m_manager.raiseContext(&m_eight);
    m_log.clear();

    m_manager.addContext(&one);

    EXPECT_THAT(m_log.calls(),
                ElementsAre("eight.contextLowered()", "one.contextAdded()", "one.contextRaised()", "one.enabled()"));
    EXPECT_THAT(takeStack(), ElementsAre("one", "eight", "two", "five"));
}

TEST_F(InteractionManagerTest, AddingAContextTwiceRaisesItInstead)
{
    add(m_two, m_five, m_eight);

    m_manager.addContext(&m_eight);

    EXPECT_THAT(m_log.calls(), ElementsAre("two.contextLowered()", "eight.contextRaised()"));
    EXPECT_THAT(takeStack(), ElementsAre("eight", "two", "five"));
}

TEST_F(InteractionManagerTest, AContextThatTheLoweredFrontAddsIsInTheStackOnce)
{
    m_manager.addContext(&m_five);
    bool isFirst = true;
    m_five.setHook([&](const std::string& operation) {
        if (operation == "contextLowered" && std::exchange(isFirst, false)) {
            m_manager.addContext(&m_two);
        }
    });

    m_manager.addContext(&m_two);

    m_five.setHook({});
    m_log.clear();
    m_manager.pointerMoved(osg::Pnt2f(1, 2));
    EXPECT_THAT(m_log.calls(), ElementsAre("two.pointerMoved(1, 2)", "five.pointerMoved(1, 2)"));
}

TEST_F(InteractionManagerTest, AddingTheFrontContextTwiceDoesNothing)
{
    add(m_two, m_five);

    m_manager.addContext(&m_two);

    EXPECT_THAT(m_log.calls(), IsEmpty());
    EXPECT_THAT(takeStack(), ElementsAre("two", "five"));
}

TEST_F(InteractionManagerTest, AChangedPositionCountsForLaterAdditionsOnly)
{
    RecordingContext six(m_log, "six", 6);
    add(m_two, m_five);

    m_two.moveTo(7);
    EXPECT_THAT(takeStack(), ElementsAre("two", "five"));

    m_manager.addContext(&six);
    EXPECT_THAT(takeStack(), ElementsAre("two", "five", "six"));

    m_manager.removeContext(&m_two);
    m_manager.addContext(&m_two);
    EXPECT_THAT(takeStack(), ElementsAre("five", "six", "two"));
}

TEST_F(InteractionManagerTest, TheFrontIsLoweredBeforeTheNewContextIsInTheStack)
{
    add(m_five);
    showStackInside(m_five, "contextLowered");

    m_manager.addContext(&m_two);

    EXPECT_THAT(m_log.calls(), ElementsAre("five.contextLowered()", "five.pointerMoved(1, 2)", "two.contextAdded()",
                                           "two.contextRaised()", "two.enabled()"));
}

TEST_F(InteractionManagerTest, TheNewContextIsInTheStackWhenItHearsThatItWasAdded)
{
    add(m_five);
    showStackInside(m_two, "contextAdded");

    m_manager.addContext(&m_two);

    EXPECT_THAT(m_log.calls(), ElementsAre("five.contextLowered()", "two.contextAdded()", "two.pointerMoved(1, 2)",
                                           "five.pointerMoved(1, 2)", "two.contextRaised()", "two.enabled()"));
}

TEST_F(InteractionManagerTest, AContextDisplacedFromTheFrontMayChangeTheStack)
{
    add(m_five, m_eight);
    // Only once: removing the front lowers it again.
    m_five.setHook([this](const std::string& operation) {
        if (operation == "contextLowered") {
            m_five.setHook(nullptr);
            m_manager.removeContext(&m_five);
        }
    });

    m_manager.addContext(&m_two);

    EXPECT_THAT(takeStack(), ElementsAre("two", "eight"));
}

// Raising

TEST_F(InteractionManagerTest, RaisingIgnoresPositions)
{
    add(m_five, m_two, m_eight);

    m_manager.raiseContext(&m_eight);

    EXPECT_THAT(m_log.calls(), ElementsAre("two.contextLowered()", "eight.contextRaised()"));
    EXPECT_THAT(takeStack(), ElementsAre("eight", "two", "five"));
}

TEST_F(InteractionManagerTest, RaisingTheFrontContextDoesNothing)
{
    add(m_two, m_five);

    m_manager.raiseContext(&m_two);

    EXPECT_THAT(m_log.calls(), IsEmpty());
}

TEST_F(InteractionManagerTest, RaisingAnUnknownContextDoesNothing)
{
    add(m_five);

    m_manager.raiseContext(&m_two);

    EXPECT_THAT(m_log.calls(), IsEmpty());
    EXPECT_THAT(takeStack(), ElementsAre("five"));
}

TEST_F(InteractionManagerTest, RaisingInAnEmptyStackDoesNothing)
{
    m_manager.raiseContext(&m_two);
    m_manager.raiseContext(nullptr);

    EXPECT_THAT(m_log.calls(), IsEmpty());
}

TEST_F(InteractionManagerTest, TheStackChangesBetweenLoweringAndRaising)
{
    add(m_two, m_five);
    showStackInside(m_two, "contextLowered");
    showStackInside(m_five, "contextRaised");

    m_manager.raiseContext(&m_five);

    EXPECT_THAT(m_log.calls(),
                ElementsAre("two.contextLowered()", "two.pointerMoved(1, 2)", "five.pointerMoved(1, 2)",
                            "five.contextRaised()", "five.pointerMoved(1, 2)", "two.pointerMoved(1, 2)"));
}

TEST_F(InteractionManagerTest, AContextRemovedWhileTheFrontIsLoweredIsNotRaised)
{
    add(m_two, m_five, m_eight);
    m_two.setHook([this](const std::string& operation) {
        if (operation == "contextLowered") {
            m_manager.removeContext(&m_eight);
        }
    });

    m_manager.raiseContext(&m_eight);

    EXPECT_THAT(m_log.calls(), ElementsAre("two.contextLowered()", "eight.contextRemoved()"));
    EXPECT_THAT(takeStack(), ElementsAre("two", "five"));
}

// Removing

TEST_F(InteractionManagerTest, RemovingTheFrontContextRaisesTheNextOne)
{
    add(m_two, m_five, m_eight);

    m_manager.removeContext(&m_two);

    EXPECT_THAT(m_log.calls(), ElementsAre("two.contextLowered()", "two.contextRemoved()", "five.contextRaised()"));
    EXPECT_THAT(takeStack(), ElementsAre("five", "eight"));
}

TEST_F(InteractionManagerTest, RemovingALowerContextRaisesAndLowersNobody)
{
    add(m_two, m_five, m_eight);

    m_manager.removeContext(&m_five);

    EXPECT_THAT(m_log.calls(), ElementsAre("five.contextRemoved()"));
    EXPECT_THAT(takeStack(), ElementsAre("two", "eight"));
}

TEST_F(InteractionManagerTest, RemovingTheOnlyContextLowersAndRemovesIt)
{
    add(m_two);

    m_manager.removeContext(&m_two);

    EXPECT_THAT(m_log.calls(), ElementsAre("two.contextLowered()", "two.contextRemoved()"));
    EXPECT_THAT(takeStack(), IsEmpty());
}

TEST_F(InteractionManagerTest, RemovingFromADisabledManagerDoesNotCallDisabled)
{
    add(m_two, m_five);
    m_manager.disable();
    m_log.clear();

    m_manager.removeContext(&m_two);

    EXPECT_THAT(m_log.calls(), ElementsAre("two.contextLowered()", "two.contextRemoved()", "five.contextRaised()"));
}

TEST_F(InteractionManagerTest, RemovingAnUnknownContextDoesNothing)
{
    add(m_five);

    m_manager.removeContext(&m_two);
    m_manager.removeContext(nullptr);

    EXPECT_THAT(m_log.calls(), IsEmpty());
    EXPECT_THAT(takeStack(), ElementsAre("five"));
}

TEST_F(InteractionManagerTest, RemovingFromAnEmptyStackDoesNothing)
{
    m_manager.removeContext(&m_two);
    m_manager.removeContext(nullptr);

    EXPECT_THAT(m_log.calls(), IsEmpty());
}

TEST_F(InteractionManagerTest, TheContextIsGoneWhenItHearsThatItWasRemoved)
{
    add(m_two, m_five);
    m_two.setHook([this](const std::string& operation) {
        if (operation != "pointerMoved") {
            m_manager.pointerMoved(osg::Pnt2f(1.f, 2.f));
        }
    });

    m_manager.removeContext(&m_two);

    EXPECT_THAT(m_log.calls(), ElementsAre("two.contextLowered()", "two.pointerMoved(1, 2)", "five.pointerMoved(1, 2)",
                                           "two.contextRemoved()", "five.pointerMoved(1, 2)", "five.contextRaised()"));
}

TEST_F(InteractionManagerTest, ARemovedContextCanBeAddedAgain)
{
    add(m_two, m_five);
    m_manager.removeContext(&m_two);
    m_log.clear();

    m_manager.addContext(&m_two);

    EXPECT_THAT(m_log.calls(),
                ElementsAre("five.contextLowered()", "two.contextAdded()", "two.contextRaised()", "two.enabled()"));
}

// Enabling and disabling

TEST_F(InteractionManagerTest, DisablingAndEnablingTellEveryContextFrontToBack)
{
    add(m_five, m_two, m_eight);

    m_manager.disable();
    EXPECT_THAT(m_log.take(), ElementsAre("two.disabled()", "five.disabled()", "eight.disabled()"));

    m_manager.enable();
    EXPECT_THAT(m_log.take(), ElementsAre("two.enabled()", "five.enabled()", "eight.enabled()"));
}

TEST_F(InteractionManagerTest, TwoDisableNeedTwoEnable)
{
    add(m_two);

    m_manager.disable();
    EXPECT_THAT(m_log.take(), ElementsAre("two.disabled()"));
    m_manager.disable();
    EXPECT_THAT(m_log.take(), IsEmpty());

    m_manager.enable();
    EXPECT_THAT(m_log.take(), IsEmpty());
    EXPECT_FALSE(m_manager.triggerEvent(m_event));
    EXPECT_THAT(m_log.take(), IsEmpty());
    m_manager.pointerMoved(osg::Pnt2f(3.f, 4.f));
    EXPECT_THAT(m_log.take(), ElementsAre("two.pointerMoved(3, 4)"));

    m_manager.enable();
    EXPECT_THAT(m_log.take(), ElementsAre("two.enabled()"));
}

TEST_F(InteractionManagerTest, DisabledTwiceIsDisabled)
{
    m_two.setConsuming(true);
    add(m_two);
    m_manager.disable();
    m_manager.disable();
    m_log.clear();

    EXPECT_FALSE(m_manager.triggerEvent(m_event));
    m_manager.addContext(&m_five);

    EXPECT_THAT(m_log.calls(), ElementsAre("five.contextAdded()", "five.disabled()"));
}

TEST_F(InteractionManagerTest, ASurplusEnableIsTakenBackByTheNextDisable)
{
    m_two.setConsuming(true);
    add(m_two);

    m_manager.enable();
    m_manager.disable();

    EXPECT_THAT(m_log.take(), IsEmpty());
    EXPECT_TRUE(m_manager.triggerEvent(m_event));
    m_log.clear();

    m_manager.disable();
    EXPECT_THAT(m_log.take(), ElementsAre("two.disabled()"));
}

TEST_F(InteractionManagerTest, SurplusEnablesAddUp)
{
    add(m_two);

    m_manager.enable();
    m_manager.enable();
    m_manager.disable();
    m_manager.disable();
    EXPECT_THAT(m_log.take(), IsEmpty());

    m_manager.disable();
    EXPECT_THAT(m_log.take(), ElementsAre("two.disabled()"));
    m_manager.enable();
    EXPECT_THAT(m_log.take(), ElementsAre("two.enabled()"));
}

TEST_F(InteractionManagerTest, TheManagerIsAlreadyDisabledWhenContextsHearOfIt)
{
    m_two.setConsuming(true);
    add(m_two);
    std::vector<std::pair<std::string, bool>> answers;
    m_two.setHook([&](const std::string& operation) {
        if (operation != "triggerEvent") {
            answers.emplace_back(operation, m_manager.triggerEvent(m_event));
        }
    });

    m_manager.disable();
    m_manager.enable();

    EXPECT_THAT(answers, ElementsAre(std::pair<std::string, bool>("disabled", false),
                                     std::pair<std::string, bool>("enabled", true)));
}

// Movements

TEST_F(InteractionManagerTest, MovementsReachEveryContextFrontToBack)
{
    m_two.setConsuming(true);
    add(m_five, m_two, m_eight);
    osg::Matrix camera;
    camera.setTranslate(7.f, 8.f, 9.f);

    m_manager.pointerMoved(osg::Pnt2f(10.f, 20.f));
    m_manager.cameraMoved(camera);

    EXPECT_THAT(m_log.calls(),
                ElementsAre("two.pointerMoved(10, 20)", "five.pointerMoved(10, 20)", "eight.pointerMoved(10, 20)",
                            "two.cameraMoved(7, 8, 9)", "five.cameraMoved(7, 8, 9)", "eight.cameraMoved(7, 8, 9)"));
}

TEST_F(InteractionManagerTest, MovementsReachEveryContextWhileDisabled)
{
    add(m_two, m_five);
    m_manager.disable();
    m_log.clear();

    m_manager.pointerMoved(osg::Pnt2f(10.f, 20.f));
    m_manager.cameraMoved(osg::Matrix::identity());

    EXPECT_THAT(m_log.calls(), ElementsAre("two.pointerMoved(10, 20)", "five.pointerMoved(10, 20)",
                                           "two.cameraMoved(0, 0, 0)", "five.cameraMoved(0, 0, 0)"));
}

// Events

TEST_F(InteractionManagerTest, AnEventGoesDownUntilAContextConsumesIt)
{
    m_five.setConsuming(true);
    add(m_two, m_five, m_eight);

    EXPECT_TRUE(m_manager.triggerEvent(m_event));

    EXPECT_THAT(m_log.calls(),
                ElementsAre("two.triggerEvent(tool:select, start)", "five.triggerEvent(tool:select, start)"));
}

TEST_F(InteractionManagerTest, AnEventThatNobodyConsumesReachesEveryContext)
{
    add(m_two, m_five, m_eight);

    EXPECT_FALSE(m_manager.triggerEvent(m_event));

    EXPECT_THAT(m_log.calls(),
                ElementsAre("two.triggerEvent(tool:select, start)", "five.triggerEvent(tool:select, start)",
                            "eight.triggerEvent(tool:select, start)"));
}

TEST_F(InteractionManagerTest, AnEventForAnEmptyStackIsNotHandled)
{
    EXPECT_FALSE(m_manager.triggerEvent(m_event));
}

TEST_F(InteractionManagerTest, EventsAreDroppedWhileDisabled)
{
    m_two.setConsuming(true);
    add(m_two);
    m_manager.disable();
    m_log.clear();

    EXPECT_FALSE(m_manager.triggerEvent(m_event));

    EXPECT_THAT(m_log.calls(), IsEmpty());
}

TEST_F(InteractionManagerTest, EventsDoNotConsultTheFlagsOfAContext)
{
    m_five.setConsuming(true);
    add(m_two, m_five);
    m_five.disabled(nullptr);
    m_five.contextRemoved(nullptr);
    m_log.clear();
    ASSERT_FALSE(m_five.isRaised() || m_five.isActive() || m_five.isEnabled());

    EXPECT_TRUE(m_manager.triggerEvent(m_event));

    EXPECT_THAT(m_log.calls(),
                ElementsAre("two.triggerEvent(tool:select, start)", "five.triggerEvent(tool:select, start)"));
}

TEST_F(InteractionManagerTest, TheVeryEventIsPassedOn)
{
    const InteractionEvent* received = nullptr;
    class Context final : public quon::interaction::InteractionContext {
    public:
        explicit Context(const InteractionEvent*& event)
            : m_event(event)
        {}
        InteractionManager* getInteractionManager() const override { return nullptr; }
        void enabled(InteractionManager*) override {}
        void disabled(InteractionManager*) override {}
        void contextAdded(InteractionManager*) override {}
        void contextRemoved(InteractionManager*) override {}
        void contextRaised(InteractionManager*) override {}
        void contextLowered(InteractionManager*) override {}
        void pointerMoved(const osg::Pnt2f&) override {}
        void cameraMoved(const osg::Matrix&) override {}
        bool triggerEvent(InteractionManager*, const InteractionEvent& event) override
        {
            m_event = &event;
            return true;
        }
        bool isRaised() const override { return false; }
        bool isActive() const override { return false; }
        bool isEnabled() const override { return false; }
        PreferredPosition getPreferredPosition() const override { return Tool; }

    private:
        const InteractionEvent*& m_event;
    } context(received);
    m_manager.addContext(&context);

    m_manager.triggerEvent(m_event);

    EXPECT_EQ(received, &m_event);
}

TEST_F(InteractionManagerTest, EveryCallCarriesTheManager)
{
    add(m_five);
    m_manager.addContext(&m_two);
    m_manager.raiseContext(&m_five);
    m_manager.disable();
    m_manager.enable();
    m_manager.triggerEvent(m_event);
    m_manager.removeContext(&m_five);

    EXPECT_THAT(m_five.getManagers(), SizeIs(10));
    EXPECT_THAT(m_five.getManagers(), Each(&m_manager));
    EXPECT_THAT(m_two.getManagers(), SizeIs(8));
    EXPECT_THAT(m_two.getManagers(), Each(&m_manager));
}

TEST_F(InteractionManagerTest, DispatchingAnEventAllocatesNothing)
{
    // A bare context: the recording one would allocate for its log.
    class Context final : public quon::interaction::InteractionContext {
    public:
        InteractionManager* getInteractionManager() const override { return nullptr; }
        void enabled(InteractionManager*) override {}
        void disabled(InteractionManager*) override {}
        void contextAdded(InteractionManager*) override {}
        void contextRemoved(InteractionManager*) override {}
        void contextRaised(InteractionManager*) override {}
        void contextLowered(InteractionManager*) override {}
        void pointerMoved(const osg::Pnt2f&) override {}
        void cameraMoved(const osg::Matrix&) override {}
        bool triggerEvent(InteractionManager*, const InteractionEvent&) override
        {
            ++calls;
            return false;
        }
        bool isRaised() const override { return false; }
        bool isActive() const override { return false; }
        bool isEnabled() const override { return false; }
        PreferredPosition getPreferredPosition() const override { return Tool; }

        int calls = 0;
    };
    std::list<Context> contexts(10);
    const std::size_t beforeAdding = getAllocationCount();
    for (Context& context : contexts) {
        m_manager.addContext(&context);
    }
    const std::string category = "tool:select";
    const std::string name = "start";

    const std::size_t before = getAllocationCount();
    m_manager.triggerEvent(InteractionEvent(category, name));
    m_manager.pointerMoved(osg::Pnt2f(1.f, 2.f));
    m_manager.raiseContext(&contexts.front());
    const std::size_t after = getAllocationCount();

    EXPECT_EQ(after - before, 0u);
    // One list node each: proof that the count counts.
    EXPECT_EQ(before - beforeAdding, 10u);
    EXPECT_EQ(contexts.back().calls, 1);
}

// Changes of the stack during a walk

TEST_F(InteractionManagerTest, AContextAddedBelowDuringAWalkIsReached)
{
    add(m_two);
    m_two.setHook([this](const std::string& operation) {
        if (operation == "triggerEvent") {
            m_manager.addContext(&m_five);
        }
    });

    m_manager.triggerEvent(m_event);

    EXPECT_THAT(m_log.calls(), ElementsAre("two.triggerEvent(tool:select, start)", "five.contextAdded()",
                                           "five.enabled()", "five.triggerEvent(tool:select, start)"));
}

TEST_F(InteractionManagerTest, AContextRemovedFromBelowDuringAWalkIsNotReached)
{
    add(m_two, m_five, m_eight);
    m_two.setHook([this](const std::string& operation) {
        if (operation == "pointerMoved") {
            m_manager.removeContext(&m_five);
        }
    });

    m_manager.pointerMoved(osg::Pnt2f(1.f, 2.f));

    EXPECT_THAT(m_log.calls(),
                ElementsAre("two.pointerMoved(1, 2)", "five.contextRemoved()", "eight.pointerMoved(1, 2)"));
}

TEST_F(InteractionManagerTest, AContextMayRemoveTheOneAboveDuringAWalk)
{
    add(m_two, m_five, m_eight);
    m_five.setHook([this](const std::string& operation) {
        if (operation == "triggerEvent") {
            m_manager.removeContext(&m_two);
        }
    });

    m_manager.triggerEvent(m_event);

    EXPECT_THAT(m_log.calls(),
                ElementsAre("two.triggerEvent(tool:select, start)", "five.triggerEvent(tool:select, start)",
                            "two.contextLowered()", "two.contextRemoved()", "five.contextRaised()",
                            "eight.triggerEvent(tool:select, start)"));
}

TEST_F(InteractionManagerTest, AContextMayRaiseItselfWhileItConsumesAnEvent)
{
    m_eight.setConsuming(true);
    add(m_two, m_five, m_eight);
    m_eight.setHook([this](const std::string& operation) {
        if (operation == "triggerEvent") {
            m_manager.raiseContext(&m_eight);
        }
    });

    EXPECT_TRUE(m_manager.triggerEvent(m_event));

    EXPECT_THAT(m_log.calls(),
                ElementsAre("two.triggerEvent(tool:select, start)", "five.triggerEvent(tool:select, start)",
                            "eight.triggerEvent(tool:select, start)", "two.contextLowered()", "eight.contextRaised()"));
    EXPECT_THAT(takeStack(), ElementsAre("eight", "two", "five"));
}

TEST_F(InteractionManagerTest, AContextThatRaisesItselfDuringAWalkIsFollowedByWhatStandsBehindItThen)
{
    add(m_two, m_five);
    m_five.setHook([this](const std::string& operation) {
        if (operation == "pointerMoved") {
            m_manager.raiseContext(&m_five);
        }
    });

    m_manager.pointerMoved(osg::Pnt2f(1.f, 2.f));

    EXPECT_THAT(m_log.calls(), ElementsAre("two.pointerMoved(1, 2)", "five.pointerMoved(1, 2)", "two.contextLowered()",
                                           "five.contextRaised()", "two.pointerMoved(1, 2)"));
}

// The stored settings

TEST_F(InteractionManagerTest, TheVisualisationRootHoldsOneReference)
{
    osg::NodePtr first = osg::Node::create();
    osg::NodePtr second = osg::Node::create();
    osg::addRefCP(first);
    osg::addRefCP(second);

    m_manager.setVisualisationRoot(first);
    EXPECT_EQ(first.getRefCount(), 2);
    EXPECT_TRUE(m_manager.getVisualisationRoot() == first);
    EXPECT_EQ(first.getRefCount(), 2);

    m_manager.setVisualisationRoot(first);
    EXPECT_EQ(first.getRefCount(), 2);

    m_manager.setVisualisationRoot(second);
    EXPECT_EQ(first.getRefCount(), 1);
    EXPECT_EQ(second.getRefCount(), 2);
    EXPECT_TRUE(m_manager.getVisualisationRoot() == second);

    m_manager.setVisualisationRoot(osg::NullFC);
    EXPECT_EQ(second.getRefCount(), 1);
    EXPECT_TRUE(m_manager.getVisualisationRoot() == osg::NullFC);

    osg::subRefCP(first);
    osg::subRefCP(second);
}

TEST_F(InteractionManagerTest, TheNewVisualisationRootMayLiveByTheOldOneAlone)
{
    osg::NodePtr parent = osg::Node::create();
    osg::NodePtr child = osg::Node::create();
    osg::beginEditCP(parent, osg::Node::ChildrenFieldMask);
    parent->addChild(child);
    osg::endEditCP(parent, osg::Node::ChildrenFieldMask);
    m_manager.setVisualisationRoot(parent);

    m_manager.setVisualisationRoot(child);

    EXPECT_TRUE(m_manager.getVisualisationRoot() == child);
    EXPECT_EQ(child.getRefCount(), 1);
    EXPECT_TRUE(child->getParent() == osg::NullFC);
}

TEST_F(InteractionManagerTest, TheVisualisationRootIsReleasedWithTheManager)
{
    osg::NodePtr root = osg::Node::create();
    osg::addRefCP(root);
    auto manager = std::make_unique<InteractionManager>();
    manager->setVisualisationRoot(root);
    ASSERT_EQ(root.getRefCount(), 2);

    manager.reset();

    EXPECT_EQ(root.getRefCount(), 1);
    osg::subRefCP(root);
}

TEST_F(InteractionManagerTest, TheSettingsTellNobody)
{
    add(m_two);

    m_manager.setPresenterMode(true);
    EXPECT_TRUE(m_manager.getPresenterMode());
    m_manager.setPresenterMode(false);
    EXPECT_FALSE(m_manager.getPresenterMode());
    m_manager.setVisualisationRoot(osg::NullFC);

    EXPECT_THAT(m_log.calls(), IsEmpty());
}

} // namespace
