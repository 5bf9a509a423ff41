// SPDX-License-Identifier: Apache-2.0
#include "buttonctl/commands/tool_commands.h"

#include <QHostAddress>
#include <QUrl>

namespace buttondriver::buttonctl {

namespace {

constexpr double slowest = 0.001;
constexpr double fastest = 1000000;

void refuse_dry_run(ArgumentReader &arguments, const Request &request) {
  if (request.dry_run)
    arguments.fail(QStringLiteral("there is nothing to print with --dry-run"));
}

void prepare_batch(ArgumentReader &arguments, Request &request) {
  request.kind = Request::Kind::batch;
  if (!arguments.at_end())
    request.file = arguments.word("FILE");
  if (request.file == QLatin1String("-"))
    request.file.clear();
}

void prepare_record(ArgumentReader &arguments, Request &request) {
  request.kind = Request::Kind::record;
  request.file = arguments.word("FILE");
  refuse_dry_run(arguments, request);
  if (!arguments.has_option("listen")) {
    arguments.fail(QStringLiteral("--listen PORT is missing; clients connect to that port"));
    return;
  }
  const auto listen =
      parse_host_port(QStringLiteral("--listen"), arguments.option("listen"), QStringLiteral("127.0.0.1"), 0);
  if (!listen)
    arguments.fail(listen.failure().text);
  else if (QHostAddress(listen->host).isNull())
    arguments.fail(QStringLiteral("--listen: '%1' is no address, such as 127.0.0.1 or 0.0.0.0").arg(listen->host));
  else
    request.listen = *listen;
  if (!arguments.has_option("to"))
    return;
  const auto daemon = parse_host_port(QStringLiteral("--to"), arguments.option("to"), QString(), 1);
  if (!daemon) {
    arguments.fail(daemon.failure().text);
    return;
  }
  request.endpoint.host = daemon->host;
  request.endpoint.port = daemon->port;
}

void prepare_replay(ArgumentReader &arguments, Request &request) {
  request.kind = Request::Kind::replay;
  request.file = arguments.word("FILE");
  request.speed = arguments.option_factor("speed", slowest, fastest, request.speed);
}

void prepare_scenario(ArgumentReader &arguments, Request &request) {
  request.kind = Request::Kind::scenario;
  request.file = arguments.word("FILE");
  request.update = arguments.has_option("update");
  if (request.update && request.dry_run)
    arguments.fail(QStringLiteral("use only one of --update and --dry-run"));
  if (!arguments.has_option("panel"))
    return;
  QString text = arguments.option("panel");
  if (text.endsWith(QLatin1Char('/')))
    text.chop(1);
  const QUrl url(text, QUrl::StrictMode);
  if (!url.isValid() || url.scheme() != QLatin1String("http") || url.host().isEmpty() || !url.path().isEmpty() ||
      url.hasQuery() || url.hasFragment())
    arguments.fail(QStringLiteral("--panel must be http://HOST:PORT, not '%1'").arg(arguments.option("panel")));
  request.panel_url = text;
}

void prepare_doctor(ArgumentReader &arguments, Request &request) {
  request.kind = Request::Kind::doctor;
  request.root = arguments.option("root");
  request.is_virtual = arguments.has_option("virtual");
  refuse_dry_run(arguments, request);
}

} // namespace

const std::vector<Command> &tool_commands() {
  static const std::vector<Command> table = {
      {"batch",
       "[FILE]",
       "run the commands of a file over one connection",
       "One command for each line, in the words of the command line without 'buttonctl': quoted with\n"
       "'...' or \"...\", or with a backslash before a single character; # starts a comment. A FILE is\n"
       "checked as a whole before anything is sent. Without FILE, or with -, lines come from standard\n"
       "input, and each is sent as soon as it is there.\n",
       "buttonctl batch start.txt\n"
       "{ echo led all on; sleep 1; echo led all off; } | buttonctl batch\n",
       {},
       nullptr,
       prepare_batch},
      {"record",
       "FILE --listen PORT",
       "keep what clients send, on its way to the daemon",
       "Stands between clients and the daemon: passes everything on, both ways, and writes each frame of\n"
       "the clients to FILE, with its time. Ends on SIGINT (ctrl-C) and SIGTERM.\n",
       "buttonctl record morning.rec --listen 3004 --to 127.0.0.1:3003\n"
       "buttonctl record morning.rec --listen 0.0.0.0:3004 --host 192.168.1.20\n",
       {{"listen", "PORT", "where clients connect: PORT on 127.0.0.1, or ADDRESS:PORT; port 0 takes a free one"},
        {"to", "HOST:PORT", "where the daemon is (default: as --host and --port say)"}},
       nullptr,
       prepare_record},
      {"replay",
       "FILE",
       "send a recording again",
       "Sends the frames of a recording at the times that it holds, counted from the first one, over as\n"
       "many connections as there were. Answers are dropped.\n",
       "buttonctl replay morning.rec\n"
       "buttonctl replay morning.rec --speed 10 --host 192.168.1.20\n",
       {{"speed", "X", "so many times as fast, 0.001 to 1000000 (default 1)"}},
       nullptr,
       prepare_replay},
      {"run",
       "FILE",
       "run a scenario and compare what the virtual panel shows",
       "One command or expectation for each line, commands as in a batch. An expectation is asked of the\n"
       "virtual panel until it is true, at most for the time of --timeout:\n"
       "  expect-screen SCREEN FILE.png\n"
       "  expect-led BUTTON on|off|blinking [MS]\n"
       "  expect-status ID on|off\n"
       "  expect-toggle ID on|off\n"
       "  expect-intensity LEVEL\n"
       "  expect-text SCREEN LINE TEXT\n"
       "Exit status: 0 all as expected, 3 a picture differs or is missing, 4 another expectation did not\n"
       "come true in time. The first that fails ends the scenario.\n",
       "buttonctl run scenarios/01-first.scenario\n"
       "buttonctl run first.scenario --panel http://127.0.0.1:8081 --timeout 500\n"
       "buttonctl run first.scenario --update\n",
       {{"panel", "URL", "where the virtual panel answers (default http://127.0.0.1:8080)"},
        {"update", nullptr, "write what the screens show as the expected pictures"}},
       nullptr,
       prepare_scenario},
      {"doctor",
       "",
       "find out why the panel does not work",
       "Checks the configuration, the font, the levels and the device of this machine, and asks the daemon\n"
       "for an answer. Below each fault stands a command line that mends it. Exit status: 0 all is well, 1\n"
       "there is a fault.\n",
       "buttonctl doctor\n"
       "buttonctl doctor --root build/qt6/share/buttondriver/panel-root --virtual\n",
       {{"root", "DIR", "look for /dev, /etc/rv1000e and /opt/rv1000e under DIR"},
        {"virtual", nullptr, "the panel is virtual: do not look for a device"}},
       nullptr,
       prepare_doctor},
  };
  return table;
}

} // namespace buttondriver::buttonctl
