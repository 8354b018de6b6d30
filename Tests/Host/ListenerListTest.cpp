// SPDX-License-Identifier: MIT
#include <Utilities/ListenerList.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

using quon::ListenerList;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

namespace {

struct Listener {
    std::string name;
};

std::vector<std::string> namesCalled(
    const ListenerList<Listener>& list, const std::function<bool(Listener&)>& during = [](Listener&) { return true; })
{
    std::vector<std::string> names;
    list.callWhile([&](Listener& listener) {
        names.push_back(listener.name);
        return during(listener);
    });
    return names;
}

class ListenerListTest : public ::testing::Test {
protected:
    Listener m_first{"first"};
    Listener m_second{"second"};
    Listener m_third{"third"};
    ListenerList<Listener> m_list;
};

TEST_F(ListenerListTest, CallsListenersInOrderOfAddition)
{
    m_list.add(&m_second);
    m_list.add(&m_first);

    EXPECT_THAT(namesCalled(m_list), ElementsAre("second", "first"));
}

TEST_F(ListenerListTest, KeepsAListenerThatIsAddedTwiceOnce)
{
    m_list.add(&m_first);
    m_list.add(&m_second);
    m_list.add(&m_first);

    EXPECT_THAT(namesCalled(m_list), ElementsAre("first", "second"));
}

TEST_F(ListenerListTest, IgnoresNullAndUnknownListeners)
{
    m_list.add(&m_first);

    m_list.add(nullptr);
    m_list.remove(nullptr);
    m_list.remove(&m_second);

    EXPECT_THAT(namesCalled(m_list), ElementsAre("first"));
}

TEST_F(ListenerListTest, DoesNotCallARemovedListener)
{
    m_list.add(&m_first);

    m_list.remove(&m_first);

    EXPECT_THAT(namesCalled(m_list), IsEmpty());
}

TEST_F(ListenerListTest, DoesNotCallAListenerRemovedMeanwhile)
{
    m_list.add(&m_first);
    m_list.add(&m_second);
    m_list.add(&m_third);

    const std::vector<std::string> names = namesCalled(m_list, [this](Listener&) {
        m_list.remove(&m_first);
        m_list.remove(&m_second);
        return true;
    });

    EXPECT_THAT(names, ElementsAre("first", "third"));
}

TEST_F(ListenerListTest, CallsAListenerAddedMeanwhileFromTheNextTimeOn)
{
    m_list.add(&m_first);

    const std::vector<std::string> names = namesCalled(m_list, [this](Listener&) {
        m_list.add(&m_second);
        return true;
    });

    EXPECT_THAT(names, ElementsAre("first"));
    EXPECT_THAT(namesCalled(m_list), ElementsAre("first", "second"));
}

TEST_F(ListenerListTest, StopsWhenTheCallSaysSo)
{
    m_list.add(&m_first);
    m_list.add(&m_second);

    const std::vector<std::string> names = namesCalled(m_list, [](Listener&) { return false; });

    EXPECT_THAT(names, ElementsAre("first"));
}

} // namespace
