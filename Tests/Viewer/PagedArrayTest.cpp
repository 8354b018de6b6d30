// SPDX-License-Identifier: MIT
#include "Viewer/Model/PagedArray.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <memory>

namespace quon::testing {

namespace {

using viewer::PagedArray;

TEST(PagedArrayTest, ElementsStayWhereTheyAreWhileItGrows)
{
    PagedArray<std::size_t> array;
    array.growTo(1);
    const std::size_t* first = &array[0];
    array[0] = 7;

    for (std::size_t i = 1; i < 5000; ++i) {
        array.growTo(i + 1);
        EXPECT_EQ(array[i], 0U);
        array[i] = i;
    }

    EXPECT_EQ(array.size(), 5000U);
    EXPECT_EQ(&array[0], first);
    EXPECT_EQ(array[0], 7U);
    for (std::size_t i = 1; i < 5000; ++i) {
        ASSERT_EQ(array[i], i);
    }
}

TEST(PagedArrayTest, ItDoesNotShrinkButIsCleared)
{
    PagedArray<std::shared_ptr<int>> array;
    const auto value = std::make_shared<int>(1);
    array.growTo(1000);
    array[999] = value;

    array.growTo(3);
    EXPECT_EQ(array.size(), 1000U);
    EXPECT_EQ(value.use_count(), 2);

    array.clear();
    EXPECT_EQ(array.size(), 0U);
    EXPECT_EQ(value.use_count(), 1);
    array.growTo(1000);
    EXPECT_EQ(array[999], nullptr);
}

} // namespace

} // namespace quon::testing
