// SPDX-License-Identifier: MIT
#include <OpenSG/OSGConfig.h>

#include <OpenSG/OSGFieldMemory.h>
#include <OpenSG/OSGMFSysTypes.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <numeric>
#include <stdexcept>
#include <thread>
#include <vector>

// Where the values of fields lie, which OpenSG leaves to the library.
namespace {

using namespace osg;

constexpr std::size_t largestPooled = 256;

class EmbeddedMemoryTest : public ::testing::Test {
protected:
    static bool arePoolsOff()
    {
        bool isPooled = false;
        void* const memory = FieldMemory::take(16, isPooled);
        FieldMemory::giveBack(memory, 16, isPooled);
        return !isPooled;
    }
};

MFUInt32 makeField(const UInt32 size)
{
    MFUInt32 field;
    for (UInt32 i = 0; i < size; ++i) {
        field.push_back(i);
    }
    return field;
}

void expectCounted(const MFUInt32& field, const UInt32 size)
{
    std::vector<UInt32> expected(size);
    std::iota(expected.begin(), expected.end(), 0U);
    EXPECT_EQ(std::vector<UInt32>(field.begin(), field.end()), expected);
}

TEST_F(EmbeddedMemoryTest, PiecesOfAllSizesAreAlignedAndApart)
{
    struct Taken {
        unsigned char* memory;
        std::size_t size;
        bool isPooled;
    };
    std::vector<Taken> pieces;
    for (std::size_t size = 1; size <= 2 * largestPooled; ++size) {
        bool isPooled = false;
        auto* const memory = static_cast<unsigned char*>(FieldMemory::take(size, isPooled));
        std::memset(memory, static_cast<int>(size % 251), size);
        pieces.push_back({memory, size, isPooled});
    }

    for (const Taken& piece : pieces) {
        EXPECT_EQ(reinterpret_cast<std::uintptr_t>(piece.memory) % alignof(std::max_align_t), 0U) << piece.size;
        EXPECT_THAT(std::vector<unsigned char>(piece.memory, piece.memory + piece.size),
                    ::testing::Each(static_cast<unsigned char>(piece.size % 251)));
        FieldMemory::giveBack(piece.memory, piece.size, piece.isPooled);
    }
}

TEST_F(EmbeddedMemoryTest, FewValuesComeFromAPoolAndManyDoNot)
{
    if (arePoolsOff()) {
        GTEST_SKIP() << "a sanitizer watches the heap";
    }
    bool isPooled = false;
    void* const few = FieldMemory::take(largestPooled, isPooled);
    EXPECT_TRUE(isPooled);
    FieldMemory::giveBack(few, largestPooled, true);

    void* const many = FieldMemory::take(largestPooled + 1, isPooled);
    EXPECT_FALSE(isPooled);
    FieldMemory::giveBack(many, largestPooled + 1, false);
}

TEST_F(EmbeddedMemoryTest, WhatWasGivenBackIsTakenNext)
{
    if (arePoolsOff()) {
        GTEST_SKIP() << "a sanitizer watches the heap";
    }
    bool isPooled = false;
    void* const first = FieldMemory::take(48, isPooled);
    FieldMemory::giveBack(first, 48, isPooled);

    void* const second = FieldMemory::take(40, isPooled);

    EXPECT_EQ(second, first);
    FieldMemory::giveBack(second, 40, isPooled);
}

TEST_F(EmbeddedMemoryTest, OtherThreadsHaveNoPools)
{
    bool isPooled = true;
    std::thread([&isPooled] {
        void* const memory = FieldMemory::take(16, isPooled);
        FieldMemory::giveBack(memory, 16, isPooled);
    }).join();

    EXPECT_FALSE(isPooled);
}

TEST_F(EmbeddedMemoryTest, WhatAnotherThreadGaveBackIsTakenWhenThePoolIsEmpty)
{
    if (arePoolsOff()) {
        GTEST_SKIP() << "a sanitizer watches the heap";
    }
    constexpr std::size_t size = 208;
    std::vector<void*> taken;
    bool isPooled = false;
    void* const returned = FieldMemory::take(size, isPooled);
    std::thread([returned, isPooled] { FieldMemory::giveBack(returned, size, isPooled); }).join();

    // As many as other tests may have given back, and one more.
    while (taken.size() < 1000 && (taken.empty() || taken.back() != returned)) {
        taken.push_back(FieldMemory::take(size, isPooled));
    }

    EXPECT_EQ(taken.back(), returned);
    for (void* const memory : taken) {
        FieldMemory::giveBack(memory, size, true);
    }
}

TEST_F(EmbeddedMemoryTest, AFieldThatWouldBecomeTooLongThrowsAndStaysAsItIs)
{
    MFUInt32 field = makeField(3);

    EXPECT_THROW(field.reserve(std::size_t(1) << 31U), std::length_error);
    EXPECT_THROW(field.resize(std::size_t(1) << 31U), std::length_error);

    expectCounted(field, 3);
}

TEST_F(EmbeddedMemoryTest, FieldsKeepTheirValuesAcrossThreads)
{
    constexpr UInt32 sizes = 100;
    std::vector<MFUInt32> here;
    std::vector<MFUInt32> there;
    for (UInt32 size = 0; size < sizes; ++size) {
        here.push_back(makeField(size));
    }
    std::thread([&here, &there] {
        for (UInt32 size = 0; size < sizes; ++size) {
            there.push_back(makeField(size));
            here[size].push_back(size);
        }
    }).join();

    for (UInt32 size = 0; size < sizes; ++size) {
        expectCounted(here[size], size + 1);
        expectCounted(there[size], size);
        there[size].push_back(size);
        expectCounted(there[size], size + 1);
    }
}

TEST_F(EmbeddedMemoryTest, ThreadsThatGiveBackAtTheSameTimeLoseNothing)
{
    constexpr int threads = 4;
    constexpr int rounds = 200;
    for (int round = 0; round < rounds; ++round) {
        std::vector<std::vector<MFUInt32>> fields(threads);
        for (std::vector<MFUInt32>& some : fields) {
            for (UInt32 size = 1; size < 20; ++size) {
                some.push_back(makeField(size));
            }
        }
        std::vector<std::thread> running;
        for (std::vector<MFUInt32>& some : fields) {
            running.emplace_back([&some] { some.clear(); });
        }
        // The owner takes meanwhile.
        const MFUInt32 mine = makeField(15);
        for (std::thread& thread : running) {
            thread.join();
        }
        expectCounted(mine, 15);
    }
}

} // namespace
