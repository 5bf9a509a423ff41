// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "simulator/device/panel_state.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace buttondriver::simulator {

/// Some neighbouring rows of one screen.
struct ScreenRows {
  std::size_t first_row;
  std::vector<std::uint16_t> pixels; ///< whole rows of dimensions::screen_width pixels, 5-6-5
};

/// How far somebody has seen the panel change. A new one has seen a panel that is dark all over.
struct PanelRevision {
  std::uint64_t lamps = 0;
  std::array<std::uint64_t, dimensions::screen_count> screens{};
};

/// What has changed between two revisions.
struct PanelChanges {
  PanelRevision revision; ///< the later one
  std::array<std::vector<ScreenRows>, dimensions::screen_count> rows;
};

} // namespace buttondriver::simulator
