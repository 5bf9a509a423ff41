// SPDX-License-Identifier: Apache-2.0
#include "buttonctl/recording/record_command.h"

#include "buttonctl/session/console.h"
#include "buttonctl/session/exit_status.h"
#include "unixsignalhandler/unix_signal_handler.h"

#include <QCoreApplication>
#include <QHostAddress>

#include <csignal>

namespace buttondriver::buttonctl {

namespace {

int record(const RecordingPlan &plan) {
  // Made first, so that a signal that comes while the file is being made ends the program as it should.
  const unixsignalhandler::UnixSignalHandler signal_bridge;
  for (const int signal : {SIGINT, SIGTERM})
    unixsignalhandler::UnixSignalHandler::installSignalHandler(signal, [] { QCoreApplication::quit(); });
  Recorder recorder(plan);
  if (const auto started = recorder.start(); !started)
    return report(started.failure(), exit_unreachable);
  QCoreApplication::exec();
  if (const auto finished = recorder.finish(); !finished)
    return report(finished.failure(), exit_unreachable);
  return exit_done;
}

Action build_record(ArgumentReader &arguments, const CommandContext &context) {
  return [plan = read_recording_plan(arguments, context)] { return record(plan); };
}

} // namespace

RecordingPlan read_recording_plan(ArgumentReader &arguments, const CommandContext &context) {
  RecordingPlan plan{arguments.word("FILE"), HostPort(), context.endpoint};
  refuse_dry_run(arguments, context);
  if (!arguments.hasOption("listen")) {
    arguments.fail(QStringLiteral("--listen PORT is missing; clients connect to that port"));
    return plan;
  }
  const auto listen =
      parse_host_port(QStringLiteral("--listen"), arguments.option("listen"), QStringLiteral("127.0.0.1"), 0);
  if (!listen)
    arguments.fail(listen.failure().text);
  else if (QHostAddress(listen->host).isNull())
    arguments.fail(QStringLiteral("--listen: '%1' is no address, such as 127.0.0.1 or 0.0.0.0").arg(listen->host));
  else
    plan.listen = *listen;
  if (!arguments.hasOption("to"))
    return plan;
  const auto daemon = parse_host_port(QStringLiteral("--to"), arguments.option("to"), QString(), 1);
  if (!daemon) {
    arguments.fail(daemon.failure().text);
    return plan;
  }
  plan.endpoint.host = daemon->host;
  plan.endpoint.port = daemon->port;
  return plan;
}

Command record_command() {
  return {"record",
          "FILE --listen PORT",
          "record what clients send, on its way to the daemon",
          QStringLiteral(
              "Stands between clients and the daemon. Each client that connects to PORT gets a connection of its\n"
              "own to the daemon; bytes are passed on unchanged both ways, and each frame of a client is written\n"
              "to FILE with its time. FILE is replaced when it is there. Ends on SIGINT (ctrl-C) and SIGTERM.\n"),
          "buttonctl record morning.rec --listen 3004 --to 127.0.0.1:3003\n"
          "buttonctl record morning.rec --listen 0.0.0.0:3004 --host 192.168.1.20\n",
          {{"listen", "PORT", "where clients connect: PORT on 127.0.0.1, or ADDRESS:PORT; port 0 takes a free one"},
           {"to", "HOST:PORT", "where the daemon is (default: what --host and --port name)"}},
          build_record};
}

} // namespace buttondriver::buttonctl
