// SPDX-License-Identifier: MIT
#pragma once

#include <QImage>

#include <gtest/gtest.h>

#include <string>

namespace quon::testing {

/**
 * Compares a picture with the small one that is stored for it in Tests/Viewer/References.
 *
 * Both have the stored one's size then, a tenth or so of the original: what a person would notice at a glance counts,
 * single edges do not. Passes while no more than @p share of the pixels differ by more than 24 of 255 in some channel.
 * On failure the picture is left beside the test program as NAME.actual.png.
 *
 * With KO_UPDATE_REFERENCES set in the environment it stores the picture instead and fails, so that nobody forgets to
 * look at it.
 */
::testing::AssertionResult matchesReference(const QImage& picture, const std::string& name, double share = 0.01);

} // namespace quon::testing
