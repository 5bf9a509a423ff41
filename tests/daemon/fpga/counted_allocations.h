// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>

namespace buttondriver::test {

/// How often this test program has taken memory with `new`, on whatever thread, libraries included.
std::size_t allocations();

} // namespace buttondriver::test
