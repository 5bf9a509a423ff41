// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "buttonctl/doctor/checks/finding.h"
#include "buttonctl/session/endpoint.h"

namespace buttondriver::buttonctl {

/// Whether a daemon listens at `endpoint` and answers a ping within the endpoint's time-out.
Finding check_daemon(const Endpoint &endpoint);

} // namespace buttondriver::buttonctl
