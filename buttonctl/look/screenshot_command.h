// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "buttonctl/commands/command.h"

#include <optional>

namespace buttondriver::buttonctl {

/// `buttonctl screenshot`
Command screenshot_command();

/// Which picture, and where it goes.
struct ScreenshotPlan {
  QString file;                       ///< "-" for standard output
  std::optional<std::int32_t> screen; ///< the whole panel when there is none
  QString panel_url;
  int timeout_ms;
};

/// What its arguments ask for; of no meaning when they fail.
ScreenshotPlan read_screenshot_plan(ArgumentReader &arguments, const CommandContext &context);

} // namespace buttondriver::buttonctl
