// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "buttonctl/panel/panel_state_reader.h"
#include "buttonctl/scenario/scenario_reader.h"
#include "buttonctl/session/session.h"

#include <map>

namespace buttondriver::buttonctl {

/// Which scenarios, against what.
struct ScenarioPlan {
  QStringList files; ///< "-" is standard input
  QString output;    ///< the folder for difference pictures; empty: that of the scenario
  QString panel_url; ///< "http://HOST:PORT"
  bool update;       ///< what the screens show becomes the expected pictures
  Endpoint endpoint; ///< the daemon
  bool dry_run;
};

/// Performs the lines of a scenario up to the first that fails.
class ScenarioRunner {
public:
  explicit ScenarioRunner(const ScenarioPlan &plan);

  /// Returns the exit status, after what went wrong was printed on standard error.
  int run(const std::vector<ScenarioLine> &lines);

private:
  int perform(const ScenarioLine &line);
  /// Waits until the daemon has read all that was sent, so that an expectation is not met by what was before.
  Outcome<Done> settle();
  int reset(const QString &where);
  int expectAnswers(const QString &where, const Expectation &expectation, const std::vector<Question> &questions);
  /// What is not as expected, if the panel can be asked.
  Outcome<Outcome<Done>> ask(const Question &question);
  int expectPicture(const QString &where, const Expectation &expectation, const PictureTest &test);
  int updatePicture(const QString &where, const PictureTest &test);
  int timeoutOf(const Expectation &expectation) const;

  const ScenarioPlan _plan;
  Session _session;
  PanelStateReader _panel;
  bool _is_settled = false;
  /// What was before a reset does not count: the number of the last one, by kind of feed.
  std::map<PanelFeed::Kind, qint64> _since;
};

} // namespace buttondriver::buttonctl
