// SPDX-License-Identifier: MIT
#pragma once

#include <gtest/gtest.h>
#include <rapidcheck.h>

namespace quon::testing {

/**
 * Lets RapidCheck announce its seed before the first test starts: inside of one the line would fail it.
 *
 * To be included by every source with properties.
 */
class RapidCheckConfiguration : public ::testing::Environment {
public:
    void SetUp() override { rc::detail::configuration(); }
};

inline ::testing::Environment* const rapidCheckConfiguration =
    ::testing::AddGlobalTestEnvironment(new RapidCheckConfiguration);

} // namespace quon::testing
