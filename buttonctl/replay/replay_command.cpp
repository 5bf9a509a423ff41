// SPDX-License-Identifier: Apache-2.0
#include "buttonctl/replay/replay_command.h"

#include "buttonctl/recording/recording_reader.h"
#include "buttonctl/replay/monotonic_clock.h"
#include "buttonctl/replay/player.h"
#include "buttonctl/replay/replay_connections.h"
#include "buttonctl/session/console.h"
#include "buttonctl/session/exit_status.h"

namespace buttondriver::buttonctl {

namespace {

constexpr double slowest = 0.001;
constexpr double fastest = 1000000;

int replay(const ReplayPlan &plan) {
  const Outcome<Recording> recording = read_recording(plan.file);
  if (!recording)
    return report(recording.failure(), exit_bad_usage);
  if (!recording->remark.isEmpty())
    warn(recording->remark);
  if (plan.dry_run) {
    for (const RecordedFrame &frame : recording->frames)
      print_line(QString::fromLatin1(frame.bytes.toHex()));
    return exit_done;
  }
  MonotonicClock clock;
  ReplayConnections connections(plan.endpoint);
  if (const auto played = play(plan.file, *recording, plan.speed, clock, connections); !played)
    return report(played.failure(), exit_unreachable);
  if (const auto finished = connections.finish(); !finished)
    return report(finished.failure(), exit_unreachable);
  return exit_done;
}

Action build_replay(ArgumentReader &arguments, const CommandContext &context) {
  return [plan = read_replay_plan(arguments, context)] { return replay(plan); };
}

} // namespace

ReplayPlan read_replay_plan(ArgumentReader &arguments, const CommandContext &context) {
  const QString file = arguments.word("FILE");
  return {file, arguments.optionFactor("speed", slowest, fastest, 1), context.endpoint, context.dry_run};
}

Command replay_command() {
  return {
      "replay",
      "FILE",
      "send a recording again",
      QStringLiteral("Sends the frames of a recording at the times that it holds, counted from the first one, over as\n"
                     "many connections as there were. Answers are dropped. FILE is checked as a whole before anything\n"
                     "is sent.\n"),
      "buttonctl replay morning.rec\n"
      "buttonctl replay morning.rec --speed 10 --host 192.168.1.20\n"
      "buttonctl --dry-run replay morning.rec\n",
      {{"speed", "X", "so many times as fast, 0.001 to 1000000 (default 1)"}},
      build_replay};
}

} // namespace buttondriver::buttonctl
