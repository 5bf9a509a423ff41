// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "buttonctl/session/connection.h"
#include "buttonctl/session/endpoint.h"
#include "buttonctl/session/step.h"
#include "outcome/outcome.h"

#include <vector>

namespace buttondriver::buttonctl {

/// Performs steps over one connection, or prints what would be sent. Round trips and dry runs go to standard output.
class Session {
public:
  Session(const Endpoint &endpoint, bool dry_run) : _endpoint(endpoint), _connection(endpoint), _dry_run(dry_run) {}

  Outcome<Done> start();
  /// The steps of one command, in order, up to the first that fails.
  Outcome<Done> perform(const Steps &steps);
  /// Returns when the daemon has answered a ping, and so has read everything before it. Prints nothing.
  Outcome<Done> settle();
  /// To be called after the last step; without it the last bytes may get lost.
  Outcome<Done> finish();

private:
  /// Adds the round trip of the step's ping, and prints it where it is not for JSON.
  Outcome<Done> ping(const Step &step, std::vector<double> &round_trips);
  /// The pings of `steps`, which are for JSON, as one line, answered or not.
  Outcome<Done> pingForJson(const Steps &steps);

  const Endpoint _endpoint;
  Connection _connection;
  const bool _dry_run;
};

} // namespace buttondriver::buttonctl
