// SPDX-License-Identifier: MIT
#include "Viewer/Script/ProcessReport.h"

#include <InteractionTesting/SceneBuilder.h>

#include <OpenSG/OSGConfig.h>

#include <OpenSG/OSGGroup.h>

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdio>
#include <cstring>
#include <memory>

namespace quon::testing {

namespace {

using viewer::ProcessReport;

TEST(ProcessReportTest, CountsContainersThatAreAlive)
{
    const std::size_t before = ProcessReport::take().containers;

    {
        const NodeRef node = makeNode(osg::Group::create());
        EXPECT_EQ(ProcessReport::take().containers, before + 2) << "a node and its core";
    }
    EXPECT_EQ(ProcessReport::take().containers, before);
}

TEST(ProcessReportTest, CountsBytesThatAreInUseHoweverTheyAreDividedUp)
{
    constexpr std::size_t largeSize = std::size_t(64) << 20U;
    constexpr std::size_t smallSize = 1000;
    constexpr std::size_t smallCount = 1000;
    const ProcessReport before = ProcessReport::take();

    auto large = std::make_unique<char[]>(largeSize);
    std::memset(large.get(), 1, largeSize);
    const ProcessReport withLarge = ProcessReport::take();
    EXPECT_GE(withLarge.allocated, before.allocated + largeSize);
    EXPECT_GE(withLarge.resident, before.resident + largeSize / 2);
    large.reset();

    std::unique_ptr<char[]> small[smallCount];
    for (std::unique_ptr<char[]>& block : small) {
        block = std::make_unique<char[]>(smallSize);
    }
    const std::size_t withSmall = ProcessReport::take().allocated;
    EXPECT_GE(withSmall, before.allocated + smallCount * smallSize);
    EXPECT_LT(withSmall, before.allocated + largeSize);
}

TEST(ProcessReportTest, CountsOpenFiles)
{
    const std::size_t before = ProcessReport::take().files;

    std::FILE* const file = std::tmpfile();
    ASSERT_NE(file, nullptr);
    EXPECT_EQ(ProcessReport::take().files, before + 1);
    std::fclose(file);
    EXPECT_EQ(ProcessReport::take().files, before);
}

TEST(ProcessReportTest, IsWrittenInOneLine)
{
    ProcessReport report;
    report.containers = 1;
    report.resident = 20;
    report.allocated = 300;
    report.files = 4;

    EXPECT_EQ(report.write(), "containers 1 resident 20 allocated 300 files 4");
}

} // namespace

} // namespace quon::testing
