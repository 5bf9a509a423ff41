// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>

namespace buttondriver::test {

/// Whether this build can count: a sanitizer has an allocator of its own.
bool counts_memory();

/// How often this test program has taken memory of the heap, on whatever thread, libraries included.
std::size_t taken_blocks();

} // namespace buttondriver::test
