#include "tools/runner.h"

#include "tools/batch.h"
#include "tools/session.h"

#include <cstdio>
#include <iostream>

namespace buttondriver::buttonctl {

namespace {

/// A control character that came from an argument must not break the line or drive the terminal.
QString as_one_line(const QString &text) {
  QString line;
  for (const QChar character : text) {
    if (character.category() == QChar::Other_Control)
      line += QStringLiteral("\\x%1").arg(int{character.unicode()}, 2, 16, QLatin1Char('0'));
    else
      line += character;
  }
  return line;
}

int report(const Failure &failure, int exit_status, const QString &where = QString()) {
  std::fprintf(stderr, "buttonctl: %s\n", as_one_line(where + failure.text).toUtf8().constData());
  return exit_status;
}

int print(const QString &text) {
  std::fputs(text.toUtf8().constData(), stdout);
  return exit_done;
}

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
      // What came before has been sent and shall arrive.
      session.finish();
      return report(steps.failure(), exit_bad_usage, batch_place(name, number));
    }
    if (const auto performed = session.perform(*steps); !performed)
      return report(performed.failure(), exit_unreachable, batch_place(name, number));
  }
  return exit_done;
}

int run_request(const Request &request) {
  std::vector<BatchLine> lines;
  const bool from_standard_input = request.kind == Request::Kind::batch && request.batch_file.isEmpty();
  if (request.kind == Request::Kind::steps) {
    lines.push_back({QString(), request.steps});
  } else if (!from_standard_input) {
    const auto read = read_batch(request.batch_file);
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
    status = print(request->help);
    break;
  case Request::Kind::print_version:
    status = print(QStringLiteral("buttonctl (buttondriver) %1\n").arg(QLatin1String(version)));
    break;
  case Request::Kind::steps:
  case Request::Kind::batch:
    status = run_request(*request);
    break;
  }
  if ((std::fflush(stdout) != 0 || std::ferror(stdout) != 0) && status == exit_done)
    return report(Failure{QStringLiteral("cannot write to standard output; is its disk full?")}, exit_unreachable);
  return status;
}

} // namespace buttondriver::buttonctl
