// SPDX-License-Identifier: Apache-2.0
// `buttonctl test` with the virtual panel, and with programs in place of it.

#include "buttonctl/support/tool_run.h"
#include "buttonctl/support/working_folder.h"
#include "support/event_loop.h"
#include "support/program.h"
#include "support/test_root.h"
#include "threads/thread_sanitizer.h"

#include <QFile>
#include <QImage>
#include <QXmlStreamReader>

#include <gmock/gmock.h>

#include <csignal>

namespace buttondriver::test {
namespace {

using testing::HasSubstr;
using testing::MatchesRegex;

class TestCommandTest : public testing::Test {
protected:
  ToolResult test(const QStringList &arguments) {
    return run_tool(QStringList{"test", "--simulator", BUTTONDRIVER_SIM_PROGRAM, "--timeout", "30000"} + arguments);
  }

  /// A program of the shell in place of the virtual panel.
  void write_program(const char *name, const QByteArray &lines) {
    folder.write(name, "#!/bin/sh\n" + lines);
    QFile::setPermissions(QLatin1String(name), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
  }

  const WorkingFolder folder;
};

/// Empty when there is no such file.
QByteArray content_of(const QString &name) {
  QFile file(name);
  return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

/// Whether the process is there, and has not only not been waited for by its parent.
bool is_running(const QByteArray &id) {
  const QByteArray status = content_of("/proc/" + QString::fromLatin1(id) + "/stat");
  return !status.isEmpty() && !status.mid(status.lastIndexOf(')') + 2).startsWith('Z');
}

bool come_to_end(const QList<QByteArray> &ids) {
  return process_events_until(
      [&] {
        for (const QByteArray &id : ids)
          if (is_running(id))
            return false;
        return true;
      },
      std::chrono::seconds(20));
}

/// The process ids in a file, a line for each, once there are `count`.
QList<QByteArray> ids_in(const QString &file, int count) {
  process_events_until([&] { return content_of(file).count('\n') == count; }, std::chrono::seconds(20));
  return content_of(file).trimmed().split('\n');
}

TEST_F(TestCommandTest, tells_of_each_scenario_in_the_order_of_the_files_and_of_all) {
  ASSERT_TRUE(QDir().mkpath(QStringLiteral("all/more")));
  folder.write("all/b.scenario", "led 5 on\n\nexpect-led 5 on\nexpect-led 6 on --timeout 300\nexpect-led 7 off\n");
  // In this one the LED that the other has switched on is dark: each has a panel of its own.
  folder.write("all/c.scenario", "led 6 on\nexpect-led 6 on\nexpect-led 5 off\n");
  folder.write("all/more/d.scenario", "led 5 up\n");
  folder.write("all/note.txt", "no scenario");
  folder.write("a.scenario", "expect-intensity 63\n");
  for (const char *jobs : {"1", "3"}) {
    const ToolResult result = test({"all", "a.scenario", "--jobs", jobs});
    EXPECT_EQ(result.exit_status, 3);
    EXPECT_EQ(result.errors, "");
    EXPECT_EQ(result.output, "all/b.scenario: FAILED line 4: expect-led: after 300 ms, LED 6 is off, not on\n"
                             "  in buttonctl-test/all-b: daemon.log, panel.png\n"
                             "all/c.scenario: ok 2 expectations\n"
                             "all/more/d.scenario: FAILED line 1: led: STATE must be 'on', 'off' or 'blink', not 'up'\n"
                             "a.scenario: ok 1 expectation\n"
                             "4 scenarios, 6 expectations, 2 failed\n");
    EXPECT_EQ(QDir(QStringLiteral("buttonctl-test")).entryList(QDir::AllEntries | QDir::NoDotAndDotDot),
              QStringList{"all-b"});
    EXPECT_TRUE(QFile::exists(QStringLiteral("buttonctl-test/all-b/daemon.log")));
    EXPECT_TRUE(read_file(QStringLiteral("buttonctl-test/all-b/panel.png")).startsWith("\x89PNG"));
  }
}

TEST_F(TestCommandTest, leaves_nothing_when_all_is_as_expected) {
  folder.write("a.scenario", "led 5 on\nexpect-led 5 on\n");
  ASSERT_TRUE(QDir().mkpath(QStringLiteral("out/a")));
  folder.write("out/a/daemon.log", "of an earlier run");
  folder.write("out/a/ready.difference.png", "of an earlier run");
  const ToolResult result = test({"a.scenario", "--output", "out"});
  EXPECT_EQ(result.exit_status, 0);
  EXPECT_EQ(result.output, "a.scenario: ok 1 expectation\n1 scenario, 1 expectation, 0 failed\n");
  EXPECT_FALSE(QFile::exists(QStringLiteral("out")));
}

TEST_F(TestCommandTest, keeps_the_difference_picture_of_a_failure) {
  folder.write("a.scenario", "expect-screen 0 no.png\n");
  const ToolResult updated = run_tool({"run", "a.scenario", "--dry-run"});
  EXPECT_EQ(updated.exit_status, 0);
  folder.write("b.scenario", "text 0 0 Hello\nexpect-text 0 0 Hello\nexpect-screen 0 black.png --timeout 20\n");
  QImage black(128, 128, QImage::Format_RGB32);
  black.fill(0);
  ASSERT_TRUE(black.save(QStringLiteral("black.png")));
  const ToolResult result = test({"a.scenario", "b.scenario", "--output", "out/new"});
  EXPECT_EQ(result.exit_status, 3);
  EXPECT_THAT(result.output, HasSubstr("a.scenario: FAILED line 1: expect-screen: there is no 'no.png'"));
  EXPECT_THAT(result.output, HasSubstr("see 'out/new/b/black.difference.png'\n"
                                       "  in out/new/b: black.difference.png, daemon.log, panel.png\n"));
}

TEST_F(TestCommandTest, gives_its_client_the_panel_and_keeps_what_it_prints) {
  folder.write("a.scenario", "expect-led 7 on\n");
  folder.write("b.scenario", "expect-led 7 off\nexpect-led 8 on --timeout 20\n");
  const ToolResult result = test({"a.scenario", "b.scenario", "--client",
                                  "case $BUTTONDRIVER_SCENARIO in a*) " BUTTONCTL " led 7 on;; *) echo hello;; esac"});
  EXPECT_EQ(result.exit_status, 3);
  EXPECT_THAT(result.output, HasSubstr("a.scenario: ok 1 expectation\nb.scenario: FAILED line 2: "));
  EXPECT_THAT(result.output, HasSubstr("in buttonctl-test/b: client.log, daemon.log, panel.png\n"));
  EXPECT_EQ(read_file(QStringLiteral("buttonctl-test/b/client.log")), "hello\n");
}

TEST_F(TestCommandTest, a_wrong_command_line_is_exit_status_2) {
  ASSERT_TRUE(QDir().mkpath(QStringLiteral("empty")));
  folder.write("a.scenario", "expect-led 5 off\n");
  struct Row {
    QStringList arguments;
    const char *text;
  };
  const Row rows[] = {
      {{}, "test: FILE is missing"},
      {{"no"}, "test: there is no 'no'\n"},
      {{"empty"}, "test: there is no *.scenario in 'empty'\n"},
      {{"a.scenario", "--jobs", "0"}, "--jobs must be"},
      {{"a.scenario", "--output="}, "--output must not be empty"},
      {{"a.scenario", "--simulator", "./no"}, "test: --simulator: './no' is no program\n"},
      {{"a.scenario", "--simulator", "no-such-program"}, "test: --simulator: there is no 'no-such-program' in PATH\n"},
      {{"a.scenario", "--dry-run"}, "there is nothing to print with --dry-run"},
      {{"a.scenario", "--junit", "no/results.xml"}, "test: cannot write 'no/results.xml'"},
  };
  for (const Row &row : rows) {
    const ToolResult result = test(row.arguments);
    EXPECT_EQ(result.exit_status, 2) << row.text;
    EXPECT_THAT(result.errors, HasSubstr(row.text));
  }
}

TEST_F(TestCommandTest, a_simulator_that_does_not_start_is_a_failure_that_says_so) {
  folder.write("a.scenario", "expect-led 5 off\n");
  struct Row {
    const char *program;
    const char *pattern;
  };
  const Row rows[] = {
      {"echo one >&2; echo no panel today >&2; exit 1\n", "the simulator '[^']*' does not start: no panel today"},
      {"exit 0\n", "the simulator '[^']*' does not start: it says nothing"},
      {"while [ $1 != --ports-file ]; do shift; done\necho daemon=1 >$2.new; mv $2.new $2; exec sleep 1000\n",
       "the simulator '[^']*' does not tell its ports"},
  };
  for (const Row &row : rows) {
    write_program("panel", row.program);
    const ToolResult result = run_tool({"test", "a.scenario", "--simulator", "./panel"});
    EXPECT_EQ(result.exit_status, 3);
    EXPECT_THAT(result.output, MatchesRegex(std::string("a.scenario: FAILED ") + row.pattern +
                                            "\n1 scenario, 1 expectation, 1 failed\n"));
  }
}

TEST_F(TestCommandTest, ends_what_hangs_with_all_that_it_has_started) {
  folder.write("a.scenario", "expect-led 5 off\n");
  // It does not end on SIGTERM, and has a child.
  write_program("panel", "trap '' TERM\nsleep 1000 &\necho $! >>ids\necho $$ >>ids\nwait\n");
  const ToolResult result = run_tool({"test", "a.scenario", "--simulator", "./panel", "--limit", "1"});
  EXPECT_EQ(result.exit_status, 3);
  EXPECT_THAT(result.output, HasSubstr("a.scenario: FAILED not done after 1 s, ended; allow more time with --limit\n"));
  EXPECT_TRUE(come_to_end(ids_in(QStringLiteral("ids"), 2)));
}

TEST_F(TestCommandTest, a_signal_ends_it_with_all_that_it_has_started) {
#if defined(BUTTONDRIVER_THREAD_SANITIZER)
  GTEST_SKIP() << "ThreadSanitizer keeps a signal back while Qt waits, until code of this tree runs again";
#endif
  folder.write("a.scenario", "expect-led 5 off\n");
  struct Row {
    int signal;
    int status;
    int processes;
    const char *program;
  };
  const char *with_child = "sleep 1000 &\necho $! >>ids\necho $$ >>ids\nwait\n";
  const Row rows[] = {
      {SIGINT, 130, 2, with_child},
      {SIGTERM, 143, 2, with_child},
      {SIGKILL, -1, 1, "echo $$ >>ids\nexec sleep 1000\n"},
  };
  for (const Row &row : rows) {
    QFile::remove(QStringLiteral("ids"));
    write_program("panel", row.program);
    Program tool(QStringLiteral(BUTTONCTL), {"test", "a.scenario", "--simulator", "./panel"});
    const QList<QByteArray> ids = ids_in(QStringLiteral("ids"), row.processes);
    ASSERT_EQ(ids.size(), row.processes);
    tool.sendSignal(row.signal);
    EXPECT_EQ(tool.waitForEnd(), row.status);
    EXPECT_TRUE(come_to_end(ids)) << row.signal;
  }
}

TEST_F(TestCommandTest, writes_results_that_a_reader_of_junit_understands) {
  folder.write("a<&\".scenario", "expect-led 5 off\n");
  folder.write("b.scenario", "expect-led 5 on --timeout 20\n");
  EXPECT_EQ(test({"a<&\".scenario", "b.scenario", "--junit", "results.xml"}).exit_status, 3);
  QXmlStreamReader xml(read_file(QStringLiteral("results.xml")));
  QStringList seen;
  while (!xml.atEnd())
    if (xml.readNext() == QXmlStreamReader::StartElement)
      seen += xml.name().toString() + QLatin1Char(' ') + xml.attributes().value(QLatin1String("name")).toString() +
              xml.attributes().value(QLatin1String("message")).toString() + QLatin1Char(' ') +
              xml.attributes().value(QLatin1String("failures")).toString();
  EXPECT_FALSE(xml.hasError()) << xml.errorString().toStdString();
  EXPECT_EQ(seen.join(QLatin1Char('\n')).toStdString(),
            "testsuites buttonctl test 1\ntestsuite buttonctl test 1\ntestcase a<&\".scenario \n"
            "testcase b.scenario \nfailure line 1: expect-led: after 20 ms, LED 5 is off, not on ");
}

} // namespace
} // namespace buttondriver::test
