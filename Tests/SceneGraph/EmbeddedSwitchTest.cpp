// SPDX-License-Identifier: MIT
#include "SceneParts.h"

#include <OpenSG/OSGGroup.h>
#include <OpenSG/OSGSwitch.h>

#include <gtest/gtest.h>

namespace {

using namespace osg;
using quon::testing::hold;

class EmbeddedSwitchTest : public quon::testing::SceneFixture {};

TEST_F(EmbeddedSwitchTest, AFreshSwitchChoosesNoChild)
{
    const auto core = hold(Switch::create());

    EXPECT_EQ(core->getChoice(), Int32(Switch::SwitchNone));
    EXPECT_TRUE(GroupPtr::dcast(core.get()) != NullFC);
}

TEST_F(EmbeddedSwitchTest, AllAndNoneAreNoIndices)
{
    EXPECT_LT(Int32(Switch::SwitchNone), 0);
    EXPECT_LT(Int32(Switch::SwitchAll), 0);
    EXPECT_NE(Int32(Switch::SwitchAll), Int32(Switch::SwitchNone));
}

TEST_F(EmbeddedSwitchTest, KeepsItsChoice)
{
    const auto core = hold(Switch::create());

    core->setChoice(2);

    EXPECT_EQ(core->getChoice(), 2);
    EXPECT_EQ(static_cast<SFInt32*>(core->getField("choice"))->getValue(), 2);
}

TEST_F(EmbeddedSwitchTest, ACopyHasTheSameChoice)
{
    const auto core = hold(Switch::create());
    core->setChoice(Switch::SwitchAll);

    const auto copy = hold(SwitchPtr::dcast(core->shallowCopy()));
    core->setChoice(0);

    EXPECT_EQ(copy->getChoice(), Int32(Switch::SwitchAll));
}

} // namespace
