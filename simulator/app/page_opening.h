// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "simulator/app/options.h"
#include "simulator/http/web_page.h"

namespace buttondriver::simulator {

/// Serves the page where the options want it, and says where, or on standard error why not. False when the program must
/// not run without it.
bool open_page(WebPage &page, const Options &options);

} // namespace buttondriver::simulator
