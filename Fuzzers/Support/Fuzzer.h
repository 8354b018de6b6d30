// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>

// What libFuzzer, or Replay.cpp in its place, calls by these names. Every fuzzer defines both.
// NOLINTBEGIN(readability-identifier-naming)

/** Called once, before everything else. */
extern "C" int LLVMFuzzerInitialize(int* argc, char*** argv);

/** Carries out one input; ends the process when something is wrong. */
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

// NOLINTEND(readability-identifier-naming)
