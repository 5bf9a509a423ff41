// SPDX-License-Identifier: Apache-2.0
// The command lines of record, replay, run and doctor.

#include "buttonctl/commands/command_line.h"

#include <gtest/gtest.h>

namespace buttondriver::buttonctl {
namespace {

TEST(ToolCommands, record_takes_a_file_and_two_places) {
  struct Row {
    QStringList arguments;
    const char *listen_host;
    int listen_port;
    const char *host;
    int port;
  };
  const Row rows[] = {
      {{"record", "a.rec", "--listen", "3004"}, "127.0.0.1", 3004, "127.0.0.1", 3003},
      {{"record", "a.rec", "--listen", "0"}, "127.0.0.1", 0, "127.0.0.1", 3003},
      {{"--host", "panel", "record", "a.rec", "--listen", "0.0.0.0:1"}, "0.0.0.0", 1, "panel", 3003},
      {{"record", "a.rec", "--listen", "[::1]:1", "--to", "[fe80::1]:65535"}, "::1", 1, "fe80::1", 65535},
      {{"-H", "x", "-p", "5", "record", "a.rec", "--listen=1", "--to=panel:4000"}, "127.0.0.1", 1, "panel", 4000},
  };
  for (const Row &row : rows) {
    const Outcome<Request> request = parse_command_line(row.arguments);
    ASSERT_TRUE(request) << request.failure().text.toStdString();
    EXPECT_EQ(request->kind, Request::Kind::record);
    EXPECT_EQ(request->file.toStdString(), "a.rec");
    EXPECT_EQ(request->listen.host.toStdString(), row.listen_host);
    EXPECT_EQ(request->listen.port, row.listen_port);
    EXPECT_EQ(request->endpoint.host.toStdString(), row.host);
    EXPECT_EQ(request->endpoint.port, row.port);
  }
}

TEST(ToolCommands, replay_run_and_doctor_have_options_of_their_own) {
  const Outcome<Request> replay = parse_command_line({"replay", "a.rec", "--speed", "0.5"});
  ASSERT_TRUE(replay);
  EXPECT_EQ(replay->kind, Request::Kind::replay);
  EXPECT_EQ(replay->file.toStdString(), "a.rec");
  EXPECT_EQ(replay->speed, 0.5);
  EXPECT_EQ(parse_command_line({"replay", "a.rec"})->speed, 1);

  const Outcome<Request> run = parse_command_line({"run", "a.scenario", "--panel", "http://panel:81/", "--update"});
  ASSERT_TRUE(run);
  EXPECT_EQ(run->kind, Request::Kind::scenario);
  EXPECT_EQ(run->file.toStdString(), "a.scenario");
  EXPECT_EQ(run->panel_url.toStdString(), "http://panel:81");
  EXPECT_TRUE(run->update);
  const Outcome<Request> plain = parse_command_line({"run", "a.scenario"});
  ASSERT_TRUE(plain);
  EXPECT_EQ(plain->panel_url.toStdString(), "http://127.0.0.1:8080");
  EXPECT_FALSE(plain->update);

  const Outcome<Request> doctor = parse_command_line({"doctor", "--root", "x", "--virtual"});
  ASSERT_TRUE(doctor);
  EXPECT_EQ(doctor->kind, Request::Kind::doctor);
  EXPECT_EQ(doctor->root.toStdString(), "x");
  EXPECT_TRUE(doctor->is_virtual);
  EXPECT_FALSE(parse_command_line({"doctor"})->is_virtual);
}

TEST(ToolCommands, bad_lines_are_refused_with_the_reason) {
  struct Row {
    QStringList arguments;
    const char *text;
  };
  const Row rows[] = {
      {{"record"}, "record: FILE is missing; see 'buttonctl record --help'"},
      {{"record", "a.rec"}, "record: --listen PORT is missing; clients connect to that port"},
      {{"record", "a.rec", "--listen", "x"}, "record: --listen: the port must be a number from 0 to 65535, not 'x'"},
      {{"record", "a.rec", "--listen", ":1"},
       "record: --listen must be PORT or ADDRESS:PORT, such as 3004 or 0.0.0.0:3004, not ':1'"},
      {{"record", "a.rec", "--listen", "::1:1"},
       "record: --listen must be PORT or ADDRESS:PORT, such as 3004 or 0.0.0.0:3004, not '::1:1'"},
      {{"record", "a.rec", "--listen", "panel:1"},
       "record: --listen: 'panel' is no address, such as 127.0.0.1 or 0.0.0.0"},
      {{"record", "a.rec", "--listen", "1", "--to", "3003"},
       "record: --to must be HOST:PORT, such as 127.0.0.1:3003, not '3003'"},
      {{"record", "a.rec", "--listen", "1", "--to", "panel:0"},
       "record: --to: the port must be a number from 1 to 65535, not '0'"},
      {{"record", "a.rec", "--listen", "1", "-n"}, "record: there is nothing to print with --dry-run"},
      {{"replay"}, "replay: FILE is missing; see 'buttonctl replay --help'"},
      {{"replay", "a.rec", "--speed", "0"}, "replay: --speed must be a number from 0.001 to 1000000, not '0'"},
      {{"replay", "a.rec", "--speed", "nan"}, "replay: --speed must be a number from 0.001 to 1000000, not 'nan'"},
      {{"replay", "a.rec", "--speed", "fast"}, "replay: --speed must be a number from 0.001 to 1000000, not 'fast'"},
      {{"run"}, "run: FILE is missing; see 'buttonctl run --help'"},
      {{"run", "a", "--panel", "ftp://x"}, "run: --panel must be http://HOST:PORT, not 'ftp://x'"},
      {{"run", "a", "--panel", "127.0.0.1:8080"}, "run: --panel must be http://HOST:PORT, not '127.0.0.1:8080'"},
      {{"run", "a", "--panel", "http://x/y"}, "run: --panel must be http://HOST:PORT, not 'http://x/y'"},
      {{"run", "a", "--update", "-n"}, "run: use only one of --update and --dry-run"},
      {{"doctor", "x"}, "doctor: 'x' is one argument too many; see 'buttonctl doctor --help'"},
      {{"doctor", "-n"}, "doctor: there is nothing to print with --dry-run"},
  };
  for (const Row &row : rows) {
    const Outcome<Request> request = parse_command_line(row.arguments);
    ASSERT_FALSE(request) << row.text;
    EXPECT_EQ(request.failure().text.toStdString(), row.text);
  }
}

} // namespace
} // namespace buttondriver::buttonctl
