// SPDX-License-Identifier: MIT
#include <OpenSG/OSGConfig.h>

#include <OpenSG/OSGRecordList.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstddef>
#include <utility>
#include <vector>

namespace {

using namespace osg;
using ::testing::ElementsAre;

using Record = std::pair<UInt32, BitVector>;
using Records = RecordList<Record>;

constexpr std::size_t keptRecords = Records::KeptBytes / sizeof(Record);

Record makeRecord(const std::size_t number)
{
    return {static_cast<UInt32>(number), BitVector(number) << 20};
}

void fill(Records& records, const std::size_t count)
{
    while (records.size() < count) {
        records.push_back(makeRecord(records.size()));
    }
}

TEST(EmbeddedRecordListTest, KeepsWhatWasAppendedInItsOrder)
{
    Records records;
    EXPECT_TRUE(records.empty());
    fill(records, 100000);

    ASSERT_EQ(records.size(), 100000U);
    EXPECT_EQ(records.end() - records.begin(), 100000);
    std::size_t number = 0;
    for (const Record& record : records) {
        ASSERT_EQ(record, makeRecord(number));
        ++number;
    }
}

TEST(EmbeddedRecordListTest, ARecordOfTheListItselfCanBeAppendedWhileItGrows)
{
    Records records;
    records.push_back({3, 4});
    while (records.size() < records.capacity()) {
        records.push_back({5, 6});
    }
    records.push_back(*records.begin());

    EXPECT_EQ(*(records.end() - 1), Record(3, 4));
}

TEST(EmbeddedRecordListTest, AListCanBeAppendedToItself)
{
    Records records;
    records.push_back({1, 2});
    records.push_back({3, 4});
    records.append(records);

    EXPECT_THAT(records, ElementsAre(Record(1, 2), Record(3, 4), Record(1, 2), Record(3, 4)));
}

TEST(EmbeddedRecordListTest, AppendingAnEmptyListChangesNothing)
{
    Records records;
    const Records empty;
    records.append(empty);
    EXPECT_TRUE(records.empty());

    records.push_back({1, 2});
    records.append(empty);
    EXPECT_THAT(records, ElementsAre(Record(1, 2)));
}

TEST(EmbeddedRecordListTest, SwappingExchangesRecordsAndMemory)
{
    Records left;
    Records right;
    left.push_back({1, 2});
    const std::size_t capacity = left.capacity();
    left.swap(right);

    EXPECT_TRUE(left.empty());
    EXPECT_EQ(left.capacity(), 0U);
    EXPECT_THAT(right, ElementsAre(Record(1, 2)));
    EXPECT_EQ(right.capacity(), capacity);
}

TEST(EmbeddedRecordListTest, ClearingKeepsTheMemoryOfAnOrdinaryFrame)
{
    Records records;
    fill(records, keptRecords / 4);
    const std::size_t capacity = records.capacity();
    const Record* const place = records.begin();
    records.clear();

    EXPECT_TRUE(records.empty());
    EXPECT_EQ(records.capacity(), capacity);
    records.push_back({1, 2});
    EXPECT_EQ(records.begin(), place);
}

TEST(EmbeddedRecordListTest, ClearingGivesBackTheMemoryOfAnExceptionalFrame)
{
    Records records;
    fill(records, keptRecords + 1);
    records.clear();

    EXPECT_EQ(records.capacity(), 0U);
    records.push_back({1, 2});
    EXPECT_THAT(records, ElementsAre(Record(1, 2)));
}

} // namespace
