// SPDX-License-Identifier: MIT
#include <Interaction/SpareNodes.h>

#include "Support/AllocationCount.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstddef>
#include <functional>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <utility>

namespace quon::testing {

namespace {

using ::testing::ElementsAre;
using ::testing::Pair;

// Counts what it handed out. A type of its own for each test: one store serves all containers of a type.
template <class T, int Test>
struct CountingAllocator {
    using value_type = T;
    template <class Other>
    struct rebind {
        using other = CountingAllocator<Other, Test>;
    };

    CountingAllocator() = default;
    template <class Other>
    explicit CountingAllocator(const CountingAllocator<Other, Test>&)
    {}

    T* allocate(const std::size_t count)
    {
        ++nodes();
        ++allocations();
        return std::allocator<T>().allocate(count);
    }
    void deallocate(T* memory, const std::size_t count)
    {
        --nodes();
        std::allocator<T>().deallocate(memory, count);
    }
    bool operator==(const CountingAllocator&) const { return true; }

    static int& nodes() { return CountingAllocator<void, Test>::s_nodes; }
    static int& allocations() { return CountingAllocator<void, Test>::s_allocations; }
};

template <int Test>
struct CountingAllocator<void, Test> {
    inline static int s_nodes = 0;
    inline static int s_allocations = 0;
};

template <int Test>
using Set = std::set<int, std::less<int>, CountingAllocator<int, Test>>;

template <int Test>
int getAllocations()
{
    return CountingAllocator<int, Test>::allocations();
}

TEST(SpareNodesTest, WhatWasErasedIsUsedForWhatIsInsertedNext)
{
    using Spares = interaction::SpareNodes<Set<1>, 8>;
    Set<1> set;
    EXPECT_TRUE(Spares::instance().insert(set, 1));
    EXPECT_EQ(getAllocations<1>(), 1);

    Spares::instance().erase(set, set.begin());
    EXPECT_TRUE(set.empty());
    EXPECT_TRUE(Spares::instance().insert(set, 2));

    EXPECT_THAT(set, ElementsAre(2));
    EXPECT_EQ(getAllocations<1>(), 1);
}

TEST(SpareNodesTest, WhatIsThereAlreadyIsNotInsertedAndItsSpareNodeIsKept)
{
    using Spares = interaction::SpareNodes<Set<2>, 8>;
    Set<2> set;
    Spares::instance().insert(set, 1);
    Spares::instance().insert(set, 2);
    Spares::instance().erase(set, set.begin());

    EXPECT_FALSE(Spares::instance().insert(set, 2));
    EXPECT_THAT(set, ElementsAre(2));
    EXPECT_TRUE(Spares::instance().insert(set, 3));

    EXPECT_EQ(getAllocations<2>(), 2);
}

TEST(SpareNodesTest, NoMoreAreKeptThanTheLimit)
{
    using Spares = interaction::SpareNodes<Set<3>, 2>;
    Set<3> set;
    for (int i = 0; i < 5; ++i) {
        Spares::instance().insert(set, i);
    }
    while (!set.empty()) {
        Spares::instance().erase(set, set.begin());
    }

    const int kept = CountingAllocator<int, 3>::nodes();
    EXPECT_EQ(kept, 2);
}

TEST(SpareNodesTest, APreparedElementIsANewOneOrASpareOneAndIsInsertedWithItsValue)
{
    using Spares = interaction::SpareNodes<Set<20>, 8>;
    Set<20> set;
    Spares::instance().insert(set, Spares::instance().prepare(3));
    EXPECT_THAT(set, ElementsAre(3));
    EXPECT_EQ(getAllocations<20>(), 1);
    Spares::instance().erase(set, set.begin());

    auto prepared = Spares::instance().prepare(5);
    ASSERT_FALSE(prepared.empty());
    EXPECT_EQ(prepared.value(), 5);
    Spares::instance().insert(set, std::move(prepared));

    EXPECT_THAT(set, ElementsAre(5));
    EXPECT_EQ(getAllocations<20>(), 1);
}

TEST(SpareNodesTest, APreparedElementWhoseValueIsThereIsKept)
{
    using Spares = interaction::SpareNodes<Set<21>, 8>;
    Set<21> set;
    Spares::instance().insert(set, 1);
    Spares::instance().insert(set, Spares::instance().prepare(1));
    EXPECT_THAT(set, ElementsAre(1));
    EXPECT_EQ(getAllocations<21>(), 2);

    Spares::instance().insert(set, 2);

    EXPECT_THAT(set, ElementsAre(1, 2));
    EXPECT_EQ(getAllocations<21>(), 2);
}

TEST(SpareNodesTest, AnEntryOfAMapLosesItsValueWhenItIsTakenOut)
{
    using Map = std::map<int, std::shared_ptr<int>>;
    using Spares = interaction::SpareNodes<Map, 8>;
    Map map;
    const auto value = std::make_shared<int>(4);
    Spares::instance().insert(map, map.end(), 7)->second = value;
    EXPECT_EQ(value.use_count(), 2);

    Spares::instance().eraseEntry(map, map.begin());

    EXPECT_EQ(value.use_count(), 1);
    const auto again = Spares::instance().insert(map, map.end(), 8);
    EXPECT_THAT(map, ElementsAre(Pair(8, nullptr)));
    EXPECT_EQ(again, map.begin());
}

TEST(SpareNodesTest, WhatWasErasedFromAMapIsUsedForWhatIsInsertedNext)
{
    using Map = std::map<int, int, std::less<int>, CountingAllocator<std::pair<const int, int>, 4>>;
    using Spares = interaction::SpareNodes<Map, 8>;
    Map map;
    Spares::instance().insert(map, map.end(), 1);
    EXPECT_EQ(getAllocations<4>(), 1);

    Spares::instance().eraseEntry(map, map.begin());
    EXPECT_TRUE(map.empty());
    Spares::instance().insert(map, map.end(), 2);
    EXPECT_EQ(getAllocations<4>(), 1);

    // A spare that was not needed is there for the next.
    Spares::instance().insert(map, map.end(), 3);
    Spares::instance().eraseEntry(map, map.find(3));
    Spares::instance().insert(map, map.end(), 2);
    Spares::instance().insert(map, map.end(), 4);
    EXPECT_THAT(map, ElementsAre(Pair(2, 0), Pair(4, 0)));
    EXPECT_EQ(getAllocations<4>(), 2);
}

TEST(SpareNodesTest, AnEntryThatIsThereKeepsItsValueAndIsReturned)
{
    using Map = std::map<int, std::string>;
    using Spares = interaction::SpareNodes<Map, 8>;
    Map map;
    Spares::instance().insert(map, map.end(), 1)->second = "one";
    Spares::instance().insert(map, map.end(), 2);
    Spares::instance().eraseEntry(map, map.find(2));

    const auto place = Spares::instance().insert(map, map.begin(), 1);

    EXPECT_EQ(place->second, "one");
    EXPECT_EQ(map.size(), 1U);
}

TEST(SpareNodesTest, TheElementsOfAClearedSetAreUsedForWhatIsInsertedNext)
{
    using Spares = interaction::SpareNodes<Set<5>, 8>;
    Set<5> set = {1, 2, 3};
    Spares::clear(set);
    EXPECT_TRUE(set.empty());
    EXPECT_EQ(getAllocations<5>(), 3);

    for (const int value : {7, 6, 5}) {
        EXPECT_TRUE(Spares::instance().insert(set, value));
    }
    EXPECT_THAT(set, ElementsAre(5, 6, 7));
    EXPECT_EQ(getAllocations<5>(), 3);

    Spares::instance().insert(set, 8);
    EXPECT_EQ(getAllocations<5>(), 4);
}

TEST(SpareNodesTest, AnEmptySetIsClearedWithoutMemory)
{
    using Spares = interaction::SpareNodes<Set<9>, 8>;
    using MapSpares = interaction::SpareNodes<std::map<int, Set<9>>, 8>;
    Set<9> set;
    std::map<int, Set<9>> map;
    const std::size_t allocationsBefore = getAllocationCount();

    Spares::clear(set);
    MapSpares::clearEntries(map);

    EXPECT_EQ(getAllocationCount(), allocationsBefore) << "not even for what keeps the elements";
}

TEST(SpareNodesTest, AClearedSetThatIsLargerThanTheLimitIsGivenBack)
{
    using Spares = interaction::SpareNodes<Set<6>, 2>;
    Set<6> set = {1, 2, 3};

    Spares::clear(set);

    EXPECT_TRUE(set.empty());
    const int kept = CountingAllocator<int, 6>::nodes();
    EXPECT_EQ(kept, 0);
}

TEST(SpareNodesTest, SeveralClearedSetsAreKept)
{
    using Spares = interaction::SpareNodes<Set<7>, 5>;
    Set<7> first = {1, 2};
    Set<7> second = {3, 4};
    Set<7> third = {5, 6};
    Spares::clear(first);
    Spares::clear(second);
    EXPECT_TRUE(second.empty());

    // Would be one too many.
    Spares::clear(third);
    EXPECT_TRUE(third.empty());
    const int kept = CountingAllocator<int, 7>::nodes();
    EXPECT_EQ(kept, 4);

    for (const int value : {9, 8, 7, 6}) {
        Spares::instance().insert(first, value);
    }
    EXPECT_THAT(first, ElementsAre(6, 7, 8, 9));
    EXPECT_EQ(getAllocations<7>(), 6);
}

TEST(SpareNodesTest, ErasedAndClearedElementsTogetherAreNoMoreThanTheLimit)
{
    using Spares = interaction::SpareNodes<Set<8>, 3>;
    Set<8> set = {1, 2, 3, 4};
    Spares::instance().erase(set, set.begin());
    Spares::instance().erase(set, set.begin());
    Spares::clear(set);
    const int keptAfterErasing = CountingAllocator<int, 8>::nodes();
    EXPECT_EQ(keptAfterErasing, 2);

    // The other way round.
    set = {5, 6, 7};
    Spares::instance().insert(set, 8);
    Spares::instance().insert(set, 9);
    Spares::instance().erase(set, set.begin());
    Set<8> other = {10, 11};
    Spares::clear(other);
    Spares::instance().erase(set, set.begin());
    const int kept = CountingAllocator<int, 8>::nodes() - static_cast<int>(set.size());
    EXPECT_EQ(kept, 3);
}

// Writes its name when it goes.
struct Witness {
    explicit Witness(std::string& text, char name)
        : m_text(text)
        , m_name(name)
    {}
    Witness(const Witness&) = delete;
    Witness& operator=(const Witness&) = delete;
    ~Witness() { m_text += m_name; }

    std::string& m_text;
    char m_name;
};

TEST(SpareNodesTest, TheValuesOfAClearedMapGoFirstFromTheHighestKeyOn)
{
    using Map = std::map<int, std::shared_ptr<Witness>>;
    using Spares = interaction::SpareNodes<Map, 8>;
    std::string gone;
    Map map;
    for (const int key : {3, 1, 2}) {
        map[key] = std::make_shared<Witness>(gone, static_cast<char>('0' + key));
    }

    Spares::clearEntries(map);

    EXPECT_EQ(gone, "321");
    EXPECT_TRUE(map.empty());
    const auto entry = Spares::instance().insert(map, map.end(), 9);
    EXPECT_EQ(entry->second, nullptr);
}

} // namespace

} // namespace quon::testing
