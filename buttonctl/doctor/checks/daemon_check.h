// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "buttonctl/doctor/checks/finding.h"
#include "buttonctl/doctor/facts/service_facts.h"
#include "buttonctl/session/endpoint.h"

namespace buttondriver::buttonctl {

/// Whether a daemon listens at `endpoint` on this machine and answers a ping within the endpoint's time-out. `service`
/// is what is known of it as a service.
Finding check_daemon(const Endpoint &endpoint, const ServiceFacts &service);

/// The same for the daemon of a virtual panel, whose files are under the folder `root`, empty for the system's own
/// root.
Finding check_virtual_daemon(const Endpoint &endpoint, const QString &root);

/// The same for a daemon on another machine, whose service cannot be looked at.
Finding check_daemon_elsewhere(const Endpoint &endpoint);

} // namespace buttondriver::buttonctl
