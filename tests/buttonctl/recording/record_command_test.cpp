// SPDX-License-Identifier: Apache-2.0
#include "buttonctl/recording/record_command.h"

#include "buttonctl/commands/command_line.h"
#include "buttonctl/support/parsed_arguments.h"

#include <gtest/gtest.h>

namespace buttondriver::buttonctl {
namespace {

TEST(RecordCommandTest, takes_a_file_and_two_places) {
  struct Row {
    QStringList arguments;
    const char *listen_host;
    int listen_port;
    const char *host;
    int port;
  };
  const Row rows[] = {
      {{"a.rec", "--listen", "3004"}, "127.0.0.1", 3004, "default", 3003},
      {{"a.rec", "--listen", "0"}, "127.0.0.1", 0, "default", 3003},
      {{"a.rec", "--listen", "0.0.0.0:1"}, "0.0.0.0", 1, "default", 3003},
      {{"a.rec", "--listen", "[::1]:1", "--to", "[fe80::1]:65535"}, "::1", 1, "fe80::1", 65535},
      {{"a.rec", "--listen=1", "--to=panel:4000"}, "127.0.0.1", 1, "panel", 4000},
  };
  Endpoint endpoint;
  endpoint.host = QStringLiteral("default");
  const CommandTable nothing;
  for (const Row &row : rows) {
    test::ParsedArguments arguments(record_command(), row.arguments);
    const RecordingPlan plan = read_recording_plan(arguments.reader(), {endpoint, false, nothing});
    ASSERT_TRUE(arguments.reader().outcome());
    EXPECT_EQ(plan.file.toStdString(), "a.rec");
    EXPECT_EQ(plan.listen.host.toStdString(), row.listen_host);
    EXPECT_EQ(plan.listen.port, row.listen_port);
    EXPECT_EQ(plan.endpoint.host.toStdString(), row.host);
    EXPECT_EQ(plan.endpoint.port, row.port);
  }
}

TEST(RecordCommandTest, bad_arguments_are_refused_with_the_reason) {
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
  };
  for (const Row &row : rows) {
    const Outcome<Action> action = parse_command_line({record_command()}, row.arguments);
    ASSERT_FALSE(action) << row.text;
    EXPECT_EQ(action.failure().text.toStdString(), row.text);
  }
}

} // namespace
} // namespace buttondriver::buttonctl
