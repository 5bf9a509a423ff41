// SPDX-License-Identifier: Apache-2.0
#include "buttonctl/runner.h"

#include "buttonctl/commands/batch.h"
#include "buttonctl/commands/command_line.h"
#include "buttonctl/doctor/doctor.h"
#include "buttonctl/recording/recorder.h"
#include "buttonctl/replay/replay.h"
#include "buttonctl/scenario/scenario_runner.h"
#include "buttonctl/session/console.h"
#include "buttonctl/session/exit_status.h"
#include "buttonctl/session/session.h"

#include <cstdio>
#include <iostream>

namespace buttondriver::buttonctl {

namespace {

int run_batch_lines(Session &session, const std::vector<BatchLine> &lines) {
  for (const BatchLine &line : lines)
    if (const auto performed = session.perform(line.steps); !performed)
      return report(performed.failure(), exit_unreachable, line.where);
  return exit_done;
}

int run_standard_input(Session &session) {
  static const QString name = QStringLiteral("standard input");
  std::string line;
  for (int number = 1; std::getline(std::cin, line); ++number) {
    const Outcome<Steps> steps = parse_batch_line(QByteArray::fromStdString(line));
    if (!steps) {
      // What came before has been sent and shall arrive; that the line is wrong matters more than whether it did.
      static_cast<void>(session.finish());
      return report(steps.failure(), exit_bad_usage, batch_place(name, number));
    }
    if (const auto performed = session.perform(*steps); !performed)
      return report(performed.failure(), exit_unreachable, batch_place(name, number));
  }
  return exit_done;
}

int run_request(const Request &request) {
  std::vector<BatchLine> lines;
  const bool from_standard_input = request.kind == Request::Kind::batch && request.file.isEmpty();
  if (request.kind == Request::Kind::steps) {
    lines.push_back({QString(), request.steps});
  } else if (!from_standard_input) {
    const auto read = read_batch(request.file);
    if (!read)
      return report(read.failure(), exit_bad_usage);
    lines = *read;
  }

  Session session(request.endpoint, request.dry_run);
  if (const auto started = session.start(); !started)
    return report(started.failure(), exit_unreachable);
  const int status = from_standard_input ? run_standard_input(session) : run_batch_lines(session, lines);
  if (status != exit_done)
    return status;
  if (const auto finished = session.finish(); !finished)
    return report(finished.failure(), exit_unreachable);
  return exit_done;
}

} // namespace

int run(const QStringList &arguments, const char *version) {
  const Outcome<Request> request = parse_command_line(arguments);
  if (!request)
    return report(request.failure(), exit_bad_usage);
  int status = exit_done;
  switch (request->kind) {
  case Request::Kind::print_help:
    print(request->help);
    break;
  case Request::Kind::print_version:
    print(QStringLiteral("buttonctl (buttondriver) %1\n").arg(QLatin1String(version)));
    break;
  case Request::Kind::steps:
  case Request::Kind::batch:
    status = run_request(*request);
    break;
  case Request::Kind::record:
    status = run_recorder(*request);
    break;
  case Request::Kind::replay:
    status = run_replay(*request);
    break;
  case Request::Kind::scenario:
    status = run_scenario(*request);
    break;
  case Request::Kind::doctor:
    status = run_doctor(*request);
    break;
  }
  if ((std::fflush(stdout) != 0 || std::ferror(stdout) != 0) && status == exit_done)
    return report(Failure{QStringLiteral("cannot write to standard output; is its disk full?")}, exit_unreachable);
  return status;
}

} // namespace buttondriver::buttonctl
