// SPDX-License-Identifier: Apache-2.0
// What the virtual panel tells, where, and what it begins with.

#include "simulator/http/web_page.h"
#include "support/event_loop.h"
#include "support/program.h"
#include "support/test_root.h"
#include "threads/thread_sanitizer.h"

#include <QFile>
#include <QRegularExpression>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <csignal>

namespace buttondriver {
namespace {

using test::Program;

const QString program = QStringLiteral(BUTTONDRIVER_SIM_PROGRAM);

class SimulatorOptionsTest : public testing::Test {
protected:
  QString file(const char *name) const { return folder.filePath(QLatin1String(name)); }

  const QTemporaryDir folder;
};

TEST_F(SimulatorOptionsTest, two_lines_tell_the_port_and_the_page) {
#if defined(BUTTONDRIVER_THREAD_SANITIZER)
  GTEST_SKIP() << "ThreadSanitizer keeps a signal back while Qt waits, until code of this tree runs again";
#endif
  Program simulator(program,
                    {"--port", "0", "--http", simulator::WebPage::isAvailable() ? "0" : "off", "--log", file("log")});
  ASSERT_TRUE(simulator.waitForOutput(simulator::WebPage::isAvailable() ? "page on " : "listening on "));
  simulator.sendSignal(SIGTERM);
  EXPECT_EQ(simulator.waitForEnd(), 0);
  const QString output = QString::fromLatin1(simulator.standardOutput());
  static const QRegularExpression lines(QStringLiteral("\\Abuttondriver-sim: listening on port [0-9]+\n"
                                                       "(buttondriver-sim: page on http://127.0.0.1:[0-9]+/\n)?\\z"));
  EXPECT_TRUE(lines.match(output).hasMatch()) << output.toStdString();
  EXPECT_EQ(simulator.standardError(), "");
}

TEST_F(SimulatorOptionsTest, verbose_tells_the_root_the_font_and_the_files) {
  const test::TestRoot root;
  Program simulator(program, {"--verbose", "--root", root.path(), "--font", "10x20", "--record", file("r"),
                              "--snapshot", file("s.png"), "--port", "0", "--http", "off"});
  ASSERT_TRUE(simulator.waitForOutput("listening on port "));
  const QByteArray output = simulator.standardOutput();
  for (const QString &line : {"recording " + file("r"), "snapshot " + file("s.png"), "root " + root.path(),
                              "font " + root.path() + "/opt/rv1000e/fonts/10x20.pcf.gz"})
    EXPECT_TRUE(output.contains(QFile::encodeName("buttondriver-sim: " + line + "\n"))) << line.toStdString();
  EXPECT_TRUE(simulator.waitForError("buttondriver: Successfully changed to font "));
  EXPECT_TRUE(simulator.waitForError("/10x20.pcf.gz\" \n"));
}

TEST_F(SimulatorOptionsTest, quiet_and_with_a_log_it_tells_nothing_and_the_log_has_all_of_the_daemons) {
  Program simulator(program,
                    {"--quiet", "--log", file("log"), "--ports-file", file("ports"), "--port", "0", "--http", "off"});
  ASSERT_TRUE(test::process_events_until([&] { return QFile::exists(file("ports")); }, std::chrono::seconds(20)));
  simulator.sendSignal(SIGTERM);
  EXPECT_EQ(simulator.waitForEnd(), 0);
  EXPECT_EQ(simulator.standardOutput(), "");
  EXPECT_EQ(simulator.standardError(), "");
  const QByteArray log = test::read_file(file("log"));
  EXPECT_TRUE(log.contains("buttondriver:reconfig")) << log.toStdString();
  EXPECT_TRUE(log.contains("buttondriver: Successfully changed to font ")) << log.toStdString();
  EXPECT_FALSE(log.contains("buttondriver-sim: ")) << log.toStdString();
}

TEST_F(SimulatorOptionsTest, the_ports_are_in_their_file_once_they_can_be_used) {
  if (!simulator::WebPage::isAvailable())
    GTEST_SKIP() << "this build has no page";
  Program simulator(program, {"--ports-file", file("ports"), "--port", "0", "--http", "0"});
  ASSERT_TRUE(test::process_events_until([&] { return QFile::exists(file("ports")); }, std::chrono::seconds(20)));
  static const QRegularExpression lines(QStringLiteral("\\Adaemon=([0-9]+)\nhttp=([0-9]+)\n\\z"));
  const auto ports = lines.match(QString::fromLatin1(test::read_file(file("ports"))));
  ASSERT_TRUE(ports.hasMatch());
  ASSERT_TRUE(simulator.waitForOutput("page on "));
  const QByteArray output = simulator.standardOutput();
  EXPECT_TRUE(output.contains("listening on port " + ports.captured(1).toLatin1() + "\n"));
  EXPECT_TRUE(output.contains("page on http://127.0.0.1:" + ports.captured(2).toLatin1() + "/\n"));
}

TEST_F(SimulatorOptionsTest, the_ports_of_an_earlier_run_are_gone_also_when_it_cannot_start) {
  test::write_file(file("ports"), "daemon=1\nhttp=2\n");
  Program simulator(program, {"--ports-file", file("ports"), "--font", "99x98", "--port", "0", "--http", "off"});
  EXPECT_EQ(simulator.waitForEnd(), 1);
  EXPECT_FALSE(QFile::exists(file("ports")));
}

TEST_F(SimulatorOptionsTest, the_end_of_its_input_ends_it_on_request_with_the_picture_that_was_asked_for) {
  Program simulator(program, {"--until-input-ends", "--snapshot", file("s.png"), "--port", "0", "--http", "off"});
  ASSERT_TRUE(simulator.waitForOutput("listening on port "));
  const auto client = simulator.connectTo();
  simulator.write("nobody reads this\n");
  ASSERT_TRUE(test::answered_ping(*client));
  simulator.closeInput();
  EXPECT_EQ(simulator.waitForEnd(), 0);
  EXPECT_TRUE(simulator.standardOutput().contains("buttondriver-sim: wrote "))
      << simulator.standardOutput().toStdString();
}

TEST_F(SimulatorOptionsTest, the_end_of_its_input_and_a_signal_are_no_second_request) {
  Program simulator(program, {"--until-input-ends", "--snapshot", file("s.png"), "--port", "0", "--http", "off"});
  ASSERT_TRUE(simulator.waitForOutput("listening on port "));
  simulator.sendSignal(SIGSTOP); // so that it finds both at once
  simulator.sendSignal(SIGTERM);
  simulator.closeInput();
  simulator.sendSignal(SIGCONT);
  EXPECT_EQ(simulator.waitForEnd(), 0);
  EXPECT_TRUE(QFile::exists(file("s.png")));
}

TEST_F(SimulatorOptionsTest, the_end_of_its_input_is_nothing_to_it_without_the_option) {
  Program simulator(program, {"--port", "0", "--http", "off"});
  ASSERT_TRUE(simulator.waitForOutput("listening on port "));
  simulator.closeInput();
  const auto client = simulator.connectTo();
  ASSERT_TRUE(test::answered_ping(*client));
  EXPECT_TRUE(simulator.isRunning());
}

TEST_F(SimulatorOptionsTest, files_and_fonts_that_cannot_be_had_are_one_line_and_exit_status_1) {
  struct Row {
    QStringList options;
    const char *line;
  };
  const Row rows[] = {
      {{"--log", "/nowhere/log"}, "buttondriver-sim: cannot write the log /nowhere/log: No such file or directory\n"},
      {{"--ports-file", "/nowhere/ports"}, "buttondriver-sim: cannot write /nowhere/ports: "},
      {{"--font", "99x98"}, "buttondriver-sim: there is no font 99x98 in "},
      {{"--quiet", "--log", file("log"), "--font", "99x98"}, "buttondriver-sim: there is no font 99x98 in "},
  };
  for (const Row &row : rows) {
    Program simulator(program, row.options + QStringList{"--port", "0", "--http", "off"});
    EXPECT_EQ(simulator.waitForEnd(), 1) << row.line;
    EXPECT_EQ(simulator.standardError().count(row.line), 1) << simulator.standardError().toStdString();
  }
}

} // namespace
} // namespace buttondriver
