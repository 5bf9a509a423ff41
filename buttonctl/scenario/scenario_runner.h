// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "buttonctl/commands/request.h"
#include "buttonctl/scenario/panel_state_reader.h"
#include "buttonctl/scenario/scenario_reader.h"
#include "buttonctl/session/session.h"

namespace buttondriver::buttonctl {

/// Performs the lines of a scenario up to the first that fails.
class ScenarioRunner {
public:
  explicit ScenarioRunner(const Request &request);

  /// Returns the exit status, after what went wrong was said on standard error.
  int run(const std::vector<ScenarioLine> &lines);

private:
  int perform(const ScenarioLine &line);
  /// Waits until the daemon has read all that was sent, so that an expectation is not met by what was before.
  Outcome<Done> settle();
  int expect_state(const QString &where, const Expectation &expectation, const StateTest &test);
  int expect_picture(const QString &where, const Expectation &expectation, const PictureTest &test);
  int update_picture(const QString &where, const PictureTest &test);
  int timeout_of(const Expectation &expectation) const;

  const Request _request;
  Session _session;
  PanelStateReader _panel;
  bool _is_settled = false;
};

/// `buttonctl run`. Returns the exit status.
int run_scenario(const Request &request);

} // namespace buttondriver::buttonctl
