// SPDX-License-Identifier: Apache-2.0
#include "buttonctl/commands/command_line.h"

#include "buttonctl/commands/batch_command.h"

#include <gtest/gtest.h>

namespace buttondriver::buttonctl {
namespace {

/// What the last command that looks for the daemon was given.
struct Seen {
  Endpoint endpoint;
  bool dry_run = false;
  QString word;
  QString panel;
} seen;

Action look(ArgumentReader &arguments, const CommandContext &context) {
  const QString word = arguments.atEnd() ? QString() : arguments.word("WORD");
  return [word, context] {
    seen = {context.endpoint, context.dry_run, word, QString()};
    return 7;
  };
}

Action peek(ArgumentReader &arguments, const CommandContext &context) {
  return [panel = panel_of(arguments, context)] {
    seen.panel = panel;
    return 8;
  };
}

Steps send_word(ArgumentReader &arguments) {
  const QString word = arguments.word("WORD");
  return {{Step::Kind::send, word.toLatin1() + (arguments.hasOption("loud") ? "!" : "")}};
}

const CommandTable &commands() {
  static const CommandTable table = {
      {"look", "[WORD]", "look for the daemon", QStringLiteral("More about it.\n"), "buttonctl look\n", {}, look},
      {"peek", "", "look at the virtual panel", QString(), "buttonctl peek\n", {}, peek},
      {"say", "WORD", "send a word", QString(), "buttonctl say x\n", {{"loud", nullptr, "louder"}}, send_word},
      batch_command(),
  };
  return table;
}

/// What the command line prints, and its exit status in front.
std::string printed_by(const QStringList &arguments) {
  const Outcome<Action> action = parse_command_line(commands(), arguments);
  if (!action)
    return "failure: " + action.failure().text.toStdString();
  testing::internal::CaptureStdout();
  const int status = (*action)();
  return std::to_string(status) + ": " + testing::internal::GetCapturedStdout();
}

TEST(CommandLineTest, runs_the_function_of_the_row) {
  EXPECT_EQ(printed_by({"look", "here"}), "7: ");
  EXPECT_EQ(seen.word.toStdString(), "here");
}

TEST(CommandLineTest, nothing_is_run_before_all_arguments_are_good) {
  seen = {};
  EXPECT_EQ(printed_by({"look", "here", "there"}),
            "failure: look: 'there' is one argument too many; see 'buttonctl look --help'");
  EXPECT_TRUE(seen.word.isEmpty());
}

TEST(CommandLineTest, steps_are_printed_in_a_dry_run) {
  EXPECT_EQ(printed_by({"-n", "say", "hi", "--loud"}), "0: 686921\n");
}

TEST(CommandLineTest, bad_lines_are_refused_with_the_reason) {
  struct Row {
    QStringList arguments;
    const char *text;
  };
  const Row rows[] = {
      {{"--dry-run"}, "no command given; see 'buttonctl --help'"},
      {{"txet"}, "unknown command 'txet'; see 'buttonctl --help'"},
      {{"loko"}, "unknown command 'loko'; did you mean 'look'?"},
      {{"bathc"}, "unknown command 'bathc'; did you mean 'batch'?"},
      {{"sya"}, "unknown command 'sya'; did you mean 'say'?"},
      {{"says"}, "unknown command 'says'; did you mean 'say'?"},
      {{"sa"}, "unknown command 'sa'; see 'buttonctl --help'"},
      {{"bch"}, "unknown command 'bch'; see 'buttonctl --help'"},
      {{""}, "unknown command ''; see 'buttonctl --help'"},
      {{"--host", "panel:0", "look"}, "--host: the port must be a number from 1 to 65535, not '0'"},
      {{"--host", ":3003", "look"}, "--host must be HOST, HOST:PORT or [ADDRESS]:PORT, not ':3003'"},
      {{"--host", "[::1", "look"}, "--host must be HOST, HOST:PORT or [ADDRESS]:PORT, not '[::1'"},
      {{"--host", "[]:1", "look"}, "--host must be HOST, HOST:PORT or [ADDRESS]:PORT, not '[]:1'"},
      {{"--host", "[::1]3", "look"}, "--host must be HOST, HOST:PORT or [ADDRESS]:PORT, not '[::1]3'"},
      {{"--hots", "x", "look"},
       "unknown option '--hots'; see 'buttonctl --help', and put -- before arguments that start with a dash"},
      {{"--port"}, "missing value after '--port'"},
      {{"--port", "0", "look"}, "--port must be a number from 1 to 65535, not '0'"},
      {{"--port", "65536", "look"}, "--port must be a number from 1 to 65535, not '65536'"},
      {{"look", "--port", "x"}, "look: --port must be a number from 1 to 65535, not 'x'"},
      {{"--host=", "look"}, "--host must not be empty"},
      {{"--timeout", "0", "look"}, "--timeout must be a number from 1 to 600000, not '0'"},
      {{"say", "--lout", "x"},
       "say: unknown option '--lout'; see 'buttonctl say --help', and put -- before arguments that start with a dash"},
      {{"say"}, "say: WORD is missing; see 'buttonctl say --help'"},
      {{"batch", "a", "b"}, "batch: 'b' is one argument too many; see 'buttonctl batch --help'"},
  };
  for (const Row &row : rows)
    EXPECT_EQ(printed_by(row.arguments), std::string("failure: ") + row.text);
}

TEST(CommandLineTest, the_daemon_is_looked_for_where_the_options_say) {
  struct Row {
    QStringList arguments;
    const char *host;
    int port;
    int timeout_ms;
    bool dry_run;
  };
  const Row rows[] = {
      {{"look"}, "127.0.0.1", 3003, 3000, false},
      {{"--host", "panel", "--port", "4000", "--timeout", "50", "--dry-run", "look"}, "panel", 4000, 50, true},
      {{"-H", "::1", "-p4000", "-t", "50", "-n", "look"}, "::1", 4000, 50, true},
      {{"look", "--host=panel", "--port=65535"}, "panel", 65535, 3000, false},
      {{"-n", "-p", "1", "look", "-p", "2"}, "127.0.0.1", 2, 3000, true},
      {{"--host", "panel", "look"}, "panel", 3003, 3000, false},
      {{"-H", "panel:4000", "look"}, "panel", 4000, 3000, false},
      {{"-H", "[::1]:4000", "look"}, "::1", 4000, 3000, false},
      {{"-H", "[::1]", "look"}, "::1", 3003, 3000, false},
      {{"-H", "panel:4000", "look", "-p", "5000"}, "panel", 5000, 3000, false},
      {{"-p", "5000", "look", "-H", "panel:4000"}, "panel", 5000, 3000, false},
  };
  for (const Row &row : rows) {
    EXPECT_EQ(printed_by(row.arguments), "7: ");
    EXPECT_EQ(seen.endpoint.host.toStdString(), row.host);
    EXPECT_EQ(seen.endpoint.port, row.port);
    EXPECT_EQ(seen.endpoint.timeout_ms, row.timeout_ms);
    EXPECT_EQ(seen.dry_run, row.dry_run);
  }
}

/// A variable of the environment, as long as this lives.
class Variable {
public:
  Variable(const char *name, const char *value) : _name(name) { qputenv(name, value); }
  ~Variable() { qunsetenv(_name); }
  Variable(const Variable &) = delete;
  Variable &operator=(const Variable &) = delete;

private:
  const char *_name;
};

TEST(CommandLineTest, the_environment_says_what_no_option_says) {
  struct Row {
    const char *host_variable;
    const char *port_variable;
    QStringList arguments;
    const char *host;
    int port;
  };
  const Row rows[] = {
      {"", "", {"look"}, "127.0.0.1", 3003},
      {"panel", "", {"look"}, "panel", 3003},
      {"panel:4000", "", {"look"}, "panel", 4000},
      {"[::1]:4000", "5000", {"look"}, "::1", 5000},
      {"", "5000", {"look"}, "127.0.0.1", 5000},
      {"panel:4000", "", {"look", "-H", "desk"}, "desk", 3003},
      {"panel", "5000", {"look", "-H", "desk"}, "desk", 5000},
      {"panel", "5000", {"look", "-H", "desk:6000"}, "desk", 6000},
      {"panel:4000", "5000", {"-p", "6000", "look"}, "panel", 6000},
      // What is not needed is not looked at.
      {"[", "x", {"-H", "desk", "-p", "6000", "look"}, "desk", 6000},
  };
  for (const Row &row : rows) {
    const Variable host("BUTTONDRIVER_HOST", row.host_variable);
    const Variable port("BUTTONDRIVER_PORT", row.port_variable);
    EXPECT_EQ(printed_by(row.arguments), "7: ");
    EXPECT_EQ(seen.endpoint.host.toStdString(), row.host);
    EXPECT_EQ(seen.endpoint.port, row.port);
  }
  const Variable host("BUTTONDRIVER_HOST", "panel:x");
  EXPECT_EQ(printed_by({"look"}), "failure: BUTTONDRIVER_HOST: the port must be a number from 1 to 65535, not 'x'");
  EXPECT_EQ(printed_by({"--help"}).substr(0, 3), "0: ");
  const Variable port("BUTTONDRIVER_PORT", "70000");
  EXPECT_EQ(printed_by({"-H", "desk", "look"}),
            "failure: BUTTONDRIVER_PORT must be a number from 1 to 65535, not '70000'");
}

TEST(CommandLineTest, the_panel_is_looked_for_where_the_options_or_the_environment_say) {
  struct Row {
    const char *variable;
    QStringList arguments;
    const char *printed;
    const char *panel;
  };
  const Row rows[] = {
      {"", {"peek"}, "8: ", "http://127.0.0.1:8080"},
      {"", {"--panel", "http://panel:81/", "peek"}, "8: ", "http://panel:81"},
      {"", {"peek", "--panel=http://[::1]:82"}, "8: ", "http://[::1]:82"},
      {"", {"--panel", "http://a:1", "peek", "--panel", "http://b:2"}, "8: ", "http://b:2"},
      {"http://panel:81/", {"peek"}, "8: ", "http://panel:81"},
      {"http://panel:81", {"peek", "--panel", "http://desk:82"}, "8: ", "http://desk:82"},
      {"nonsense", {"peek", "--panel", "http://desk:82"}, "8: ", "http://desk:82"},
      {"nonsense", {"peek"}, "failure: peek: BUTTONDRIVER_PANEL must be http://HOST:PORT, not 'nonsense'", ""},
      // Who does not look does not care.
      {"nonsense", {"look"}, "7: ", ""},
      {"", {"peek", "--panel", "ftp://x"}, "failure: peek: --panel must be http://HOST:PORT, not 'ftp://x'", ""},
      {"", {"--panel", "x:1", "peek"}, "failure: --panel must be http://HOST:PORT, not 'x:1'", ""},
      {"", {"--panel", "http://x/y", "peek"}, "failure: --panel must be http://HOST:PORT, not 'http://x/y'", ""},
  };
  for (const Row &row : rows) {
    const Variable panel("BUTTONDRIVER_PANEL", row.variable);
    seen = {};
    EXPECT_EQ(printed_by(row.arguments), row.printed);
    EXPECT_EQ(seen.panel.toStdString(), row.panel);
  }
}

TEST(CommandLineTest, without_arguments_help_is_an_error) {
  const Outcome<Action> action = parse_command_line(commands(), {});
  ASSERT_TRUE(action);
  testing::internal::CaptureStdout();
  testing::internal::CaptureStderr();
  EXPECT_EQ((*action)(), 2);
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
  EXPECT_EQ("0: " + testing::internal::GetCapturedStderr(), printed_by({"--help"}));
}

TEST(CommandLineTest, help_wins_over_what_is_missing) {
  const std::string help = printed_by({"say", "--help"});
  EXPECT_EQ(help.rfind("0: Usage: buttonctl [OPTION]... say WORD\nSend a word.\n", 0), 0U) << help;
  EXPECT_NE(help.find("\n  --loud  louder\n"), std::string::npos) << help;
  EXPECT_NE(help.find("\nExamples:\n  buttonctl say x\n"), std::string::npos) << help;
  EXPECT_NE(printed_by({"look", "-h"}).find(".\n\nMore about it.\n"), std::string::npos);
}

TEST(CommandLineTest, general_help_names_every_command) {
  const std::string help = printed_by({"--help"});
  EXPECT_NE(help.find("\n  look [WORD]   look for the daemon\n"), std::string::npos) << help;
  EXPECT_NE(help.find("\n  say WORD      send a word\n"), std::string::npos) << help;
}

TEST(BatchLineTest, is_a_command) {
  struct Row {
    const char *line;
    const char *bytes;
  };
  const Row rows[] = {
      {"say 'a b' --loud # note", "a b!"},
      {"say \xc3\xa9", "\xe9"},
      {"say x\r", "x"},
  };
  for (const Row &row : rows) {
    const Outcome<Steps> steps = parse_batch_line(commands(), row.line);
    ASSERT_TRUE(steps) << steps.failure().text.toStdString();
    ASSERT_EQ(steps->size(), 1U);
    EXPECT_EQ(steps->front().bytes.toStdString(), row.bytes);
  }
  for (const char *line : {"", "  ", "# say x"}) {
    const Outcome<Steps> steps = parse_batch_line(commands(), line);
    ASSERT_TRUE(steps);
    EXPECT_TRUE(steps->empty());
  }
}

TEST(BatchLineTest, that_is_bad_is_refused_with_the_reason) {
  struct Row {
    const char *line;
    const char *text;
  };
  const Row rows[] = {
      {"txet", "unknown command 'txet'; see 'buttonctl --help'"},
      {"say", "say: WORD is missing; see 'buttonctl say --help'"},
      {"say 'x", "the quote ' is not closed"},
      {"batch other.txt", "a batch cannot run 'batch'; give its lines here"},
      {"look", "a batch cannot run 'look'"},
      {"say --host x", "say: unknown option '--host'; see 'buttonctl say --help', and put -- before arguments that "
                       "start with a dash"},
  };
  for (const Row &row : rows) {
    const Outcome<Steps> steps = parse_batch_line(commands(), row.line);
    ASSERT_FALSE(steps) << row.line;
    EXPECT_EQ(steps.failure().text.toStdString(), row.text);
  }
}

TEST(ShellTest, names_no_panel_to_the_tests) {
  for (const char *variable : {"BUTTONDRIVER_HOST", "BUTTONDRIVER_PORT", "BUTTONDRIVER_PANEL"})
    EXPECT_FALSE(qEnvironmentVariableIsSet(variable)) << variable;
}

} // namespace
} // namespace buttondriver::buttonctl
