// SPDX-License-Identifier: Apache-2.0
#include "bridge/app/options.h"

#include <gtest/gtest.h>

namespace buttondriver::bridge {
namespace {

Options options_of(const QStringList &arguments) {
  const auto read = read_options(QStringList{QStringLiteral("buttondriver-mqtt")} + arguments);
  const Options *options = std::get_if<Options>(&read);
  EXPECT_TRUE(options);
  return options ? *options : Options();
}

TEST(BridgeOptions, have_their_defaults) {
  const Options options = options_of({});
  EXPECT_EQ(QStringLiteral("/etc/buttondriver/mqtt.ini"), options.configuration_file);
  EXPECT_FALSE(options.only_checks);
  EXPECT_EQ(LogLevel::events, options.log_level);
}

TEST(BridgeOptions, are_taken_over) {
  const Options checking = options_of({QStringLiteral("--check"), QStringLiteral("-c"), QStringLiteral("a.ini")});
  EXPECT_EQ(QStringLiteral("a.ini"), checking.configuration_file);
  EXPECT_TRUE(checking.only_checks);
  EXPECT_EQ(LogLevel::faults, options_of({QStringLiteral("--quiet")}).log_level);
  EXPECT_EQ(LogLevel::all, options_of({QStringLiteral("--verbose")}).log_level);
}

struct AnswerRow {
  QStringList arguments;
  int exit_status;
  QString beginning;
};

TEST(BridgeOptions, are_answered_when_nothing_is_to_run) {
  const AnswerRow rows[] = {
      {{QStringLiteral("--help")}, 0, QStringLiteral("Usage: ")},
      {{QStringLiteral("--version")}, 0, QStringLiteral("buttondriver-mqtt " BUTTONDRIVER_VERSION "\n")},
      {{QStringLiteral("--nothing")}, 2, QStringLiteral("Unknown option 'nothing'.")},
      {{QStringLiteral("a.ini")}, 2, QStringLiteral("what is 'a.ini'? There are options only")},
      {{QStringLiteral("--config=")}, 2, QStringLiteral("--config takes the name of a file")},
      {{QStringLiteral("--quiet"), QStringLiteral("--verbose")},
       2,
       QStringLiteral("use only one of --quiet and --verbose")},
  };
  for (const AnswerRow &row : rows) {
    SCOPED_TRACE(row.arguments.join(QLatin1Char(' ')).toStdString());
    const auto read = read_options(QStringList{QStringLiteral("buttondriver-mqtt")} + row.arguments);
    const Answer *answer = std::get_if<Answer>(&read);
    ASSERT_TRUE(answer);
    EXPECT_EQ(row.exit_status, answer->exit_status);
    EXPECT_EQ(row.beginning, answer->text.left(row.beginning.size()));
  }
}

} // namespace
} // namespace buttondriver::bridge
