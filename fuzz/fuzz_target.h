// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <cstdint>

/// What every target defines: feeds one input to the code under test and returns 0. It returns for every input; a fault
/// ends the process. libFuzzer calls it, and so does the program that replays the kept inputs as tests.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size);
