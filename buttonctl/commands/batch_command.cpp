// SPDX-License-Identifier: Apache-2.0
#include "buttonctl/commands/batch_command.h"

#include "buttonctl/arguments/line_place.h"
#include "buttonctl/commands/batch_reader.h"
#include "buttonctl/commands/command_line.h"
#include "buttonctl/session/console.h"
#include "buttonctl/session/exit_status.h"
#include "buttonctl/session/session.h"

#include <iostream>
#include <string>

namespace buttondriver::buttonctl {

namespace {

int finish(Session &session) {
  if (const auto finished = session.finish(); !finished)
    return report(finished.failure(), exit_unreachable);
  return exit_done;
}

int run_file(const QString &file, const CommandContext &context) {
  const auto lines = read_batch(context.commands, file);
  if (!lines)
    return report(lines.failure(), exit_bad_usage);
  Session session(context.endpoint, context.dry_run);
  if (const auto started = session.start(); !started)
    return report(started.failure(), exit_unreachable);
  for (const BatchLine &line : *lines)
    if (const auto performed = session.perform(line.steps); !performed)
      return report(performed.failure(), exit_unreachable, line.where);
  return finish(session);
}

int run_standard_input(const CommandContext &context) {
  static const QString name = QStringLiteral("standard input");
  Session session(context.endpoint, context.dry_run);
  if (const auto started = session.start(); !started)
    return report(started.failure(), exit_unreachable);
  std::string line;
  for (int number = 1; std::getline(std::cin, line); ++number) {
    const Outcome<Steps> steps = parse_batch_line(context.commands, QByteArray::fromStdString(line));
    if (!steps) {
      // What came before has been sent and shall arrive; that the line is wrong matters more than whether it did.
      static_cast<void>(session.finish());
      return report(steps.failure(), exit_bad_usage, line_place(name, number));
    }
    if (const auto performed = session.perform(*steps); !performed)
      return report(performed.failure(), exit_unreachable, line_place(name, number));
  }
  return finish(session);
}

Action build_batch(ArgumentReader &arguments, const CommandContext &context) {
  const QString file = arguments.atEnd() ? QString() : arguments.word("FILE");
  if (file.isEmpty() || file == QLatin1String("-"))
    return [context] { return run_standard_input(context); };
  return [file, context] { return run_file(file, context); };
}

} // namespace

Command batch_command() {
  return {"batch",
          "[FILE]",
          "run the commands of a file over one connection",
          QStringLiteral(
              "There is one command on each line, in the words of the command line without 'buttonctl' and\n"
              "without the options of every command. Words are quoted with '...' or \"...\", or with a backslash\n"
              "before a single character; a # at the start of a word begins a comment. Nothing is expanded.\n"
              "Names of files are relative to the current folder. The text is UTF-8.\n"
              "\n"
              "A FILE is checked as a whole, with the pictures that it names, before anything is sent. Without\n"
              "FILE, or with -, lines come from standard input, and each is sent as soon as it is there.\n"),
          "buttonctl batch start.txt\n"
          "{ echo led all on; sleep 1; echo led all off; } | buttonctl batch\n",
          {},
          build_batch};
}

} // namespace buttondriver::buttonctl
