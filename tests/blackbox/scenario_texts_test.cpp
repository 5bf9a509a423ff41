// SPDX-License-Identifier: Apache-2.0
// What a scenario expects of texts is asked of the screens' pixels, not of the messages.

#include "support/program.h"
#include "support/test_root.h"

#include <QRegularExpression>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <algorithm>
#include <optional>
#include <utility>

namespace buttondriver {
namespace {

using test::Program;

using Result = std::pair<int, std::string>;

class ScenarioTextsTest : public testing::Test {
protected:
  /// Starts the simulator; false when this build has no page to ask.
  bool startSimulator(const QStringList &options) {
    _simulator.emplace(
        QStringLiteral(BUTTONDRIVER_SIM_PROGRAM),
        options + QStringList{QStringLiteral("--http=0"), QStringLiteral("map"), QString(), QStringLiteral("0")});
    return _simulator->waitForOutput("buttondriver-sim: page on ");
  }

  /// Exit status of a scenario, and what it finds wrong.
  Result run(const char *scenario) {
    static const QRegularExpression where(QStringLiteral("listening on port (\\d+)\n.*page on (\\S+)/"));
    const auto printed = where.match(QString::fromLatin1(_simulator->standardOutput()));
    test::write_file(_folder.filePath(QStringLiteral("a.scenario")), scenario);
    Program tool(QStringLiteral(BUTTONCTL_PROGRAM),
                 {QStringLiteral("-p"), printed.captured(1), QStringLiteral("run"),
                  _folder.filePath(QStringLiteral("a.scenario")), QStringLiteral("--panel"), printed.captured(2)});
    const int status = tool.waitForEnd();
    std::string error = tool.standardError().toStdString();
    return {status, error.substr(std::min(error.size(), error.find("expect-")))};
  }

private:
  const QTemporaryDir _folder;
  std::optional<Program> _simulator;
};

TEST_F(ScenarioTextsTest, a_text_that_stands_on_the_screen_is_as_expected) {
  if (!startSimulator({}))
    GTEST_SKIP() << "this build has no page";
  EXPECT_EQ(run("text 0 1 'Grüße, Panel'\nexpect-text 0 1 'Grüße, Panel'\nexpect-text 0 0 ''\n"), Result(0, ""));
}

TEST_F(ScenarioTextsTest, a_text_that_was_sent_and_does_not_stand_there_is_not) {
  struct Row {
    const char *scenario;
    const char *error;
  };
  const Row rows[] = {
      {"text 0 0 Ready\ntext 0 16 Failed\nexpect-text 0 0 Ready --timeout 1\n",
       "line 0 of screen 0 is 'Failed', not 'Ready'; 'Ready' was sent\n"},
      {"text 1 8 Ready\nexpect-text 1 8 Ready --timeout 1\n",
       "line 8 of screen 1 is '', not 'Ready'; 'Ready' was sent\n"},
      {"text 2 0 'A text that is too long'\nexpect-text 2 0 'A text that is too long' --timeout 1\n",
       "line 0 of screen 2 is 'A text that is t', not 'A text that is too long'; 'A text that is too long' was sent\n"},
  };
  if (!startSimulator({}))
    GTEST_SKIP() << "this build has no page";
  for (const Row &row : rows)
    EXPECT_EQ(run(row.scenario), Result(4, std::string("expect-text: after 1 ms, ") + row.error));
}

TEST_F(ScenarioTextsTest, without_a_font_no_text_is_as_expected) {
  const QTemporaryDir root;
  if (!startSimulator({QStringLiteral("--root"), root.path()}))
    GTEST_SKIP() << "this build has no page";
  EXPECT_EQ(run("text 0 0 Ready\nexpect-text 0 0 Ready --timeout 1\n"),
            Result(4, "expect-text: after 1 ms, line 0 of screen 0 cannot be read: no font is loaded; 'Ready' was "
                      "sent\n"));
}

} // namespace
} // namespace buttondriver
