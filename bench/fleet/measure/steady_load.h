// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "fleet/measure/wanted_panels.h"
#include "fleet/running/publisher.h"

#include <cstddef>

namespace buttondriver::fleet {

/// Publishes commands at an even rate, on the calling thread.
/// Returns the rate that it was: less than `per_second` where the machine could not do it.
double publish_evenly(Publisher &publisher, WantedPanels &panels, double per_second, std::size_t count);

} // namespace buttondriver::fleet
