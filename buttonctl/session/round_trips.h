// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "buttonctl/session/endpoint.h"

#include <QString>

#include <vector>

namespace buttondriver::buttonctl {

/// "0.093 ms"
QString milliseconds_text(double milliseconds);

/// How many there are, the shortest, the average and the longest, as a sentence. There is at least one.
QString round_trips_text(const std::vector<double> &round_trips_ms);

/// The same and each of them as one line of JSON, in milliseconds with three decimals; null for what there is not.
/// `sent` counts the pings, answered or not.
QString round_trips_json(const Endpoint &endpoint, int sent, const std::vector<double> &round_trips_ms);

} // namespace buttondriver::buttonctl
