// SPDX-License-Identifier: MIT
#include "Support/StandardError.h"

#include <OpenSG/OSGConfig.h>

#include <OpenSG/OSGBaseFunctions.h>
#include <OpenSG/OSGChangeList.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

// Lets a test fail that writes to standard error what it did not announce.
class SilenceListener : public ::testing::EmptyTestEventListener {
    void OnTestStart(const ::testing::TestInfo&) override { quon::testing::StandardError::startCapture(); }

    void OnTestEnd(const ::testing::TestInfo&) override
    {
        const std::string unannounced = quon::testing::StandardError::endCapture();
        EXPECT_EQ(unannounced, "") << "output on standard error that the test did not announce";
    }
};

} // namespace

int main(int argc, char** argv)
{
    ::testing::InitGoogleMock(&argc, argv);
    // The end of a test reaches the last listener first: it judges before the printer prints.
    ::testing::UnitTest::GetInstance()->listeners().Append(new SilenceListener);

    osg::ChangeList::setReadWriteDefault();
    osg::osgInit(argc, argv);
    const int result = RUN_ALL_TESTS();
    osg::osgExit();
    return result;
}
