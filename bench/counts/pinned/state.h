// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "counts/pinned/pinned_state.h"

namespace buttondriver::counts {

/// The state that is shared with the program; before main(), one that nobody looks at. Any thread may call.
PinnedState &state();

/// Counts a call. Any thread may call.
inline void count(Call call) { state().calls[static_cast<std::size_t>(call)].fetch_add(1, std::memory_order_relaxed); }

} // namespace buttondriver::counts
