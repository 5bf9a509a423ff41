// SPDX-License-Identifier: Apache-2.0
// `buttonctl run` against a daemon and a virtual panel that say what the test wants.

#include "buttonctl/support/fake_daemon.h"
#include "buttonctl/support/panel_double.h"
#include "buttonctl/support/pictures.h"
#include "buttonctl/support/tool_run.h"
#include "buttonctl/support/working_folder.h"
#include "support/hex.h"
#include "support/test_root.h"

#include <QFile>

#include <gmock/gmock.h>

namespace buttondriver::test {
namespace {

using testing::HasSubstr;
using testing::MatchesRegex;

class ScenarioTest : public testing::Test {
protected:
  ScenarioTest() {
    daemon.answer_pings_with(QByteArray::fromHex("0000000400000001"));
    panel.answer("/state.json", PanelStateText().json());
  }

  ToolResult run(const QByteArray &scenario, const QStringList &options = {}) {
    folder.write("a.scenario", scenario);
    // A busy machine may be slow to answer; what shall time out has a limit of its own.
    return run_tool(QStringList{"-p", QString::number(daemon.port()), "--timeout", "30000", "run", "a.scenario",
                                "--panel", panel.url()} +
                    options);
  }

  const WorkingFolder folder;
  FakeDaemon daemon;
  PanelDouble panel;
};

TEST_F(ScenarioTest, as_expected_is_exit_status_0_and_silence) {
  PanelStateText state;
  state.lit_button = 6;
  state.lit_status = 3;
  state.lit_toggle = 1;
  state.intensity = 40;
  state.blinking = R"([{"button":5,"time":500}])";
  state.screens = R"([{"text":["","","Ready"],"drawn":["","","Ready"]},{"text":[],"drawn":[]},{"text":[],"drawn":[]}])";
  panel.answer("/state.json", state.json());
  const QByteArray picture = encoded(filled(128, 128, qRgb(1, 2, 3)), "PNG");
  panel.answer("/screen/0.png", picture);
  folder.write("ready.png", picture);
  const ToolResult result = run("led 5 blink 500   # a comment\n"
                                "\n"
                                "expect-led 5 blinking 500\n"
                                "expect-led 6 on\n"
                                "expect-status 3 on\n"
                                "expect-toggle 1 on\n"
                                "expect-intensity 40\n"
                                "expect-text 0 2 \"Ready\"\n"
                                "led 6 on\n"
                                "expect-screen 0 ready.png\n");
  EXPECT_EQ(result.exit_status, 0) << result.errors;
  EXPECT_EQ(result.output, "");
  EXPECT_EQ(result.errors, "");
  // A ping before the first expectation after a command, and only there.
  EXPECT_EQ(to_hex(daemon.received().toStdString()), to_hex(from_hex("00000010 00000011 00000005 ffffffff 000001f4"
                                                                     "00000004 0000000c"
                                                                     "00000010 00000011 00000006 00000001 00000000"
                                                                     "00000004 0000000c")));
  EXPECT_EQ(daemon.connections(), 1);
  EXPECT_EQ(panel.asked().size(), 7);
}

TEST_F(ScenarioTest, an_expectation_is_asked_again_until_it_is_true) {
  int times = 0;
  panel.answer("/state.json", [&times] {
    PanelStateText state;
    state.lit_button = ++times < 4 ? -1 : 5;
    return state.json();
  });
  int pictures = 0;
  const QByteArray wanted = encoded(filled(128, 128, qRgb(9, 9, 9)), "PNG");
  panel.answer("/screen/2.png", [&] { return ++pictures < 3 ? encoded(filled(128, 128, 0), "PNG") : wanted; });
  folder.write("grey.png", wanted);
  const ToolResult result = run("expect-led 5 on\nexpect-screen 2 grey.png\n");
  EXPECT_EQ(result.exit_status, 0) << result.errors;
  EXPECT_EQ(times, 4);
  EXPECT_EQ(pictures, 3);
  EXPECT_FALSE(QFile::exists(QStringLiteral("grey.difference.png")));
}

TEST_F(ScenarioTest, another_picture_is_exit_status_3_and_leaves_a_difference_picture) {
  const QImage expected = filled(128, 128, qRgb(0x40, 0x80, 0xFF));
  QImage actual = expected;
  actual.setPixel(0, 0, qRgb(0, 0, 0));
  actual.setPixel(127, 127, qRgb(0x40, 0x80, 0xFE));
  panel.answer("/screen/1.png", encoded(actual, "PNG"));
  folder.write("ready.png", encoded(expected, "PNG"));
  const ToolResult result = run("blackout\nexpect-screen 1 ready.png --timeout 50\nled 5 on\n");
  EXPECT_EQ(result.exit_status, 3);
  EXPECT_EQ(result.output, "");
  EXPECT_EQ(result.errors, "buttonctl: a.scenario:2: expect-screen: after 50 ms, 2 pixels of screen 1 are not those of "
                           "'ready.png'; see 'ready.difference.png'\n");
  // By hand: below 24 rows of writing, each pixel as 3 x 3; expected, 12 columns between, actual, as many again, and a
  // quarter of the expected brightness with red.
  QImage difference = filled(1176, 384, qRgb(0x80, 0x80, 0x80));
  const auto put = [&](int left, int x, int y, QRgb colour) {
    for (int place = 0; place < 9; ++place)
      difference.setPixel(left + 3 * x + place % 3, 3 * y + place / 3, colour);
  };
  for (int y = 0; y < 128; ++y) {
    for (int x = 0; x < 128; ++x) {
      put(0, x, y, qRgb(0x40, 0x80, 0xFF));
      put(396, x, y, qRgb(0x40, 0x80, 0xFF));
      put(792, x, y, qRgb(0x10, 0x20, 0x3F));
    }
  }
  put(396, 0, 0, qRgb(0, 0, 0));
  put(396, 127, 127, qRgb(0x40, 0x80, 0xFE));
  put(792, 0, 0, qRgb(0xFF, 0, 0));
  put(792, 127, 127, qRgb(0xFF, 0, 0));
  const QImage written(QStringLiteral("ready.difference.png"));
  ASSERT_EQ(written.size(), QSize(1176, 408));
  EXPECT_EQ(written.copy(0, 24, 1176, 384).convertToFormat(QImage::Format_RGB32), difference);
  // What stands after it is not sent.
  EXPECT_EQ(to_hex(daemon.received().toStdString()), to_hex(from_hex("00000008 00000010 ffffffff 00000004 0000000c")));
}

TEST_F(ScenarioTest, a_difference_picture_goes_to_a_folder_and_away_when_the_screen_is_right) {
  struct Row {
    QStringList options;
    const char *file;
  };
  const Row rows[] = {
      // Beside the scenario, wherever the expected picture lies.
      {{}, "ready.difference.png"},
      {{"--output", "out/new"}, "out/new/ready.difference.png"},
  };
  ASSERT_TRUE(QDir().mkpath(QStringLiteral("screens")));
  const QByteArray expected = encoded(filled(128, 128, qRgb(1, 2, 3)), "PNG");
  folder.write("screens/ready.png", expected);
  const QByteArray scenario = "expect-screen 0 screens/ready.png --timeout 20\n";
  for (const Row &row : rows) {
    panel.answer("/screen/0.png", encoded(filled(128, 128, qRgb(1, 2, 4)), "PNG"));
    const ToolResult result = run(scenario, row.options);
    EXPECT_EQ(result.exit_status, 3);
    EXPECT_THAT(result.errors, HasSubstr(std::string("16384 pixels of screen 0 are not those of 'screens/ready.png'; "
                                                     "see '") +
                                         row.file + "'\n"));
    EXPECT_TRUE(QFile::exists(QLatin1String(row.file)));
    EXPECT_EQ(QDir(QStringLiteral("screens")).entryList(QDir::Files), QStringList{"ready.png"});

    panel.answer("/screen/0.png", expected);
    EXPECT_EQ(run(scenario, row.options).exit_status, 0);
    EXPECT_FALSE(QFile::exists(QLatin1String(row.file))) << row.file;
  }
  panel.answer("/screen/0.png", encoded(filled(128, 128, 0), "PNG"));
  folder.write("file", "no folder");
  const ToolResult result = run(scenario, {"--output", "file/out"});
  EXPECT_EQ(result.exit_status, 3);
  EXPECT_THAT(result.errors, HasSubstr("; 'file/out/ready.difference.png' cannot be written\n"));
}

TEST_F(ScenarioTest, an_expected_picture_of_another_size_is_told_at_once_and_as_that) {
  folder.write("small.png", encoded(filled(64, 32, 0), "PNG"));
  folder.write("small.difference.png", "an old one");
  panel.answer("/screen/0.png", encoded(filled(128, 128, 0), "PNG"));
  // A picture of the right size would be waited for: for 30 seconds, see run().
  const ToolResult result = run("expect-screen 0 small.png\n");
  EXPECT_EQ(result.exit_status, 3);
  EXPECT_EQ(result.errors, "buttonctl: a.scenario:1: expect-screen: 'small.png' is 64 x 32 pixels, screen 0 is "
                           "128 x 128\n");
  EXPECT_EQ(panel.asked().size(), 1);
  EXPECT_FALSE(QFile::exists(QStringLiteral("small.difference.png")));
}

TEST_F(ScenarioTest, a_missing_expected_picture_is_exit_status_3) {
  panel.answer("/screen/0.png", encoded(filled(128, 128, 0), "PNG"));
  const ToolResult result = run("expect-screen 0 no.png\n");
  EXPECT_EQ(result.exit_status, 3);
  EXPECT_EQ(result.errors, "buttonctl: a.scenario:1: expect-screen: there is no 'no.png'; 'buttonctl run --update' "
                           "writes what the screen shows\n");
  EXPECT_FALSE(QFile::exists(QStringLiteral("no.png")));
}

TEST_F(ScenarioTest, a_state_that_does_not_come_is_exit_status_4) {
  struct Row {
    const char *line;
    const char *text;
  };
  const Row rows[] = {
      {"expect-led 5 on --timeout 50", "expect-led: after 50 ms, LED 5 is off, not on"},
      {"expect-led 5 blinking --timeout 50", "expect-led: after 50 ms, LED 5 is off, not blinking"},
      {"expect-status 0 on --timeout 50", "expect-status: after 50 ms, status LED 0 is off, not on"},
      {"expect-toggle 0 on --timeout 50", "expect-toggle: after 50 ms, toggle indicator 0 is off, not on"},
      {"expect-intensity 0 --timeout 50", "expect-intensity: after 50 ms, the intensity is 63, not 0"},
      {"expect-text 0 2 Ready --timeout 50", "expect-text: after 50 ms, line 2 of screen 0 is '', not 'Ready'"},
  };
  for (const Row &row : rows) {
    const ToolResult result = run(row.line);
    EXPECT_EQ(result.exit_status, 4) << row.line;
    EXPECT_EQ(result.errors, std::string("buttonctl: a.scenario:1: ") + row.text + "\n");
  }
  const ToolResult general = run("expect-led 5 on\n", {"--timeout", "2000"});
  EXPECT_EQ(general.exit_status, 4);
  EXPECT_EQ(general.errors, "buttonctl: a.scenario:1: expect-led: after 2000 ms, LED 5 is off, not on\n");
}

TEST_F(ScenarioTest, a_panel_that_cannot_be_asked_is_exit_status_1) {
  struct Row {
    const char *line;
    const char *pattern;
  };
  panel.answer("/screen/1.png", QByteArray("no picture"));
  const Row rows[] = {
      {"expect-screen 0 grey.png", "buttonctl: a.scenario:1: http://127.0.0.1:[0-9]+/screen/0.png answers with status "
                                   "404; is that the virtual panel\\?\n"},
      {"expect-screen 1 grey.png",
       "buttonctl: a.scenario:1: cannot read http://127.0.0.1:[0-9]+/screen/1.png: not a picture that can be read "
       "\\(neither PNG nor JPEG, BMP or GIF\\)\n"},
  };
  folder.write("grey.png", encoded(filled(128, 128, 0), "PNG"));
  for (const Row &row : rows) {
    const ToolResult result = run(row.line);
    EXPECT_EQ(result.exit_status, 1) << row.line;
    EXPECT_THAT(result.errors, MatchesRegex(row.pattern));
  }

  panel.answer("/state.json", QByteArray("{\"version\":2}"));
  const ToolResult other_version = run("expect-led 5 on\n");
  EXPECT_EQ(other_version.exit_status, 1);
  EXPECT_THAT(other_version.errors, HasSubstr("/state.json: its version is 2; this program reads version 1\n"));

  panel.fall_silent();
  const ToolResult silence = run("expect-led 5 on\n", {"--timeout", "2000"});
  EXPECT_EQ(silence.exit_status, 1);
  EXPECT_THAT(silence.errors, MatchesRegex("buttonctl: a.scenario:1: no answer from http://127.0.0.1:[0-9]+/state.json "
                                           "within 2000 ms; allow more time with --timeout\n"));

  const RefusingPort nobody;
  const ToolResult refused =
      run("expect-led 5 on\n", {"--panel", QStringLiteral("http://127.0.0.1:%1").arg(nobody.port())});
  EXPECT_EQ(refused.exit_status, 1);
  EXPECT_THAT(refused.errors, MatchesRegex("buttonctl: a.scenario:1: http://127.0.0.1:[0-9]+ refuses the connection; "
                                           "start the virtual panel with --http, and check --panel\n"));
}

TEST_F(ScenarioTest, a_daemon_that_cannot_be_reached_or_does_not_answer_is_exit_status_1) {
  daemon.answer_pings_with(QByteArray());
  const ToolResult silence = run("led 5 on\nexpect-led 5 on\n", {"--timeout", "500"});
  EXPECT_EQ(silence.exit_status, 1);
  EXPECT_THAT(silence.errors, HasSubstr("buttonctl: a.scenario:2: no answer from 127.0.0.1 port "));
  EXPECT_EQ(panel.asked().size(), 0);

  const RefusingPort nobody;
  const ToolResult refused = run("led 5 on\n", {"--port", QString::number(nobody.port())});
  EXPECT_EQ(refused.exit_status, 1);
  EXPECT_THAT(refused.errors, HasSubstr("refuses the connection; is the daemon running there?"));
}

TEST_F(ScenarioTest, a_bad_line_is_exit_status_2_and_nothing_is_sent) {
  struct Row {
    const char *scenario;
    const char *errors;
  };
  folder.write("note.png", "hello");
  const Row rows[] = {
      {"led 5 on\nled 5 up\n", "buttonctl: a.scenario:2: led: STATE must be 'on', 'off' or 'blink', not 'up'\n"},
      {"led 5 on\n\nexpect-led 5 up\n",
       "buttonctl: a.scenario:3: expect-led: STATE must be 'on', 'off' or 'blinking', not 'up'\n"},
      {"led 5 on\nexpect-lde 5 on\n",
       "buttonctl: a.scenario:2: unknown expectation 'expect-lde'; see 'buttonctl run --help'\n"},
      {"led 5 on\nexpect-text 0 0 'x\n", "buttonctl: a.scenario:2: the quote ' is not closed\n"},
      {"led 5 on\nrun b.scenario\n", "buttonctl: a.scenario:2: a batch cannot run 'run'\n"},
      {"expect-screen 0 a.difference.png\n",
       "buttonctl: a.scenario:1: expect-screen: 'a.difference.png' has the name of a difference picture\n"},
      {"expect-screen 0 note.png\n", "buttonctl: a.scenario:1: expect-screen: 'note.png': not a picture that can be "
                                     "read (neither PNG nor JPEG, BMP or GIF)\n"},
  };
  for (const Row &row : rows) {
    const ToolResult result = run(row.scenario);
    EXPECT_EQ(result.exit_status, 2) << row.scenario;
    EXPECT_EQ(result.errors, row.errors);
  }
  EXPECT_EQ(daemon.connections(), 0);
  const ToolResult missing = run_tool({"run", "/no/such.scenario"});
  EXPECT_EQ(missing.exit_status, 2);
  EXPECT_EQ(missing.errors, "buttonctl: run: cannot read '/no/such.scenario': No such file or directory\n");
}

TEST_F(ScenarioTest, update_writes_what_the_screens_show) {
  const QByteArray shown = encoded(filled(128, 128, qRgb(1, 2, 3)), "PNG");
  // The same picture in other bytes.
  const QByteArray same = encoded(filled(128, 128, qRgb(1, 2, 3)).convertToFormat(QImage::Format_ARGB32), "PNG");
  ASSERT_NE(shown, same);
  for (const char *path : {"/screen/0.png", "/screen/1.png", "/screen/2.png"})
    panel.answer(path, shown);
  folder.write("garbage.png", "hello");
  folder.write("same.png", same);
  folder.write("garbage.difference.png", "an old one");
  const QByteArray scenario = "expect-screen 0 new.png\nexpect-screen 1 garbage.png\nexpect-screen 2 same.png\n";
  const ToolResult result = run(scenario, {"--update"});
  EXPECT_EQ(result.exit_status, 0) << result.errors;
  EXPECT_EQ(result.output, "wrote new.png\nwrote garbage.png\n");
  EXPECT_EQ(read_file(QStringLiteral("new.png")), shown);
  EXPECT_EQ(read_file(QStringLiteral("garbage.png")), shown);
  EXPECT_EQ(read_file(QStringLiteral("same.png")), same);
  EXPECT_FALSE(QFile::exists(QStringLiteral("garbage.difference.png")));

  const ToolResult again = run(scenario);
  EXPECT_EQ(again.exit_status, 0) << again.errors;
  EXPECT_EQ(again.output, "");
}

TEST_F(ScenarioTest, update_does_not_excuse_other_expectations) {
  const ToolResult result = run("expect-led 5 on --timeout 20\n", {"--update"});
  EXPECT_EQ(result.exit_status, 4);
}

TEST_F(ScenarioTest, files_are_relative_to_the_scenario) {
  ASSERT_TRUE(QDir().mkpath(QStringLiteral("sub")));
  folder.write("sub/dot.png", encoded(filled(1, 1, 0), "PNG"));
  folder.write("sub/screen.png", encoded(filled(128, 128, 0), "PNG"));
  folder.write("sub/b.scenario", "image 0 dot.png\nexpect-screen 0 screen.png\n");
  panel.answer("/screen/0.png", encoded(filled(128, 128, 0), "PNG"));
  const ToolResult result =
      run_tool({"-p", QString::number(daemon.port()), "-t", "30000", "run", "sub/b.scenario", "--panel", panel.url()});
  EXPECT_EQ(result.exit_status, 0) << result.errors;
}

TEST_F(ScenarioTest, several_files_run_one_after_the_other_up_to_the_first_failure) {
  ASSERT_TRUE(QDir().mkpath(QStringLiteral("sub")));
  folder.write("sub/b.scenario", "led 6 on\nexpect-screen 0 b.png --timeout 20\n");
  folder.write("sub/b.png", encoded(filled(128, 128, qRgb(1, 1, 1)), "PNG"));
  folder.write("c.scenario", "led 7 on\n");
  panel.answer("/screen/0.png", encoded(filled(128, 128, 0), "PNG"));
  const ToolResult result = run("led 5 on\n", {"sub/b.scenario", "c.scenario"});
  EXPECT_EQ(result.exit_status, 3);
  EXPECT_THAT(result.errors, HasSubstr("buttonctl: sub/b.scenario:2: expect-screen: after 20 ms, 16384 pixels of "));
  EXPECT_TRUE(QFile::exists(QStringLiteral("sub/b.difference.png")));
  EXPECT_EQ(to_hex(daemon.received().toStdString()), to_hex(from_hex("00000010 00000011 00000005 00000001 00000000"
                                                                     "00000010 00000011 00000006 00000001 00000000"
                                                                     "00000004 0000000c")));

  folder.write("c.scenario", "led 7 up\n");
  const int connections = daemon.connections();
  const ToolResult wrong = run("led 5 on\n", {"c.scenario"});
  EXPECT_EQ(wrong.exit_status, 2);
  EXPECT_THAT(wrong.errors, HasSubstr("buttonctl: c.scenario:1: led: STATE"));
  EXPECT_EQ(daemon.connections(), connections);
}

TEST_F(ScenarioTest, a_scenario_comes_from_standard_input) {
  struct Row {
    const char *input;
    int status;
    const char *errors;
  };
  const Row rows[] = {
      {"expect-led 5 off\nexpect-screen 0 black.png", 0, ""},
      {"\nexpect-led 5 on --timeout 20\n", 4,
       "buttonctl: standard input:2: expect-led: after 20 ms, LED 5 is off, not on\n"},
  };
  const QByteArray black = encoded(filled(128, 128, 0), "PNG");
  folder.write("black.png", black);
  panel.answer("/screen/0.png", black);
  for (const Row &row : rows) {
    const ToolResult result = run_tool(
        {"-p", QString::number(daemon.port()), "--timeout", "30000", "--panel", panel.url(), "run", "-"}, row.input);
    EXPECT_EQ(result.exit_status, row.status);
    EXPECT_EQ(result.errors, row.errors);
  }
}

TEST_F(ScenarioTest, a_dry_run_prints_the_messages_and_asks_nobody) {
  const ToolResult result = run("led 5 on\nexpect-led 5 on\nblackout\n", {"--dry-run"});
  EXPECT_EQ(result.exit_status, 0) << result.errors;
  EXPECT_EQ(result.output, "0000001000000011000000050000000100000000\n0000000800000010ffffffff\n");
  EXPECT_EQ(daemon.connections(), 0);
  EXPECT_EQ(panel.asked().size(), 0);
}

} // namespace
} // namespace buttondriver::test
