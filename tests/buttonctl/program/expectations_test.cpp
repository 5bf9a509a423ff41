// SPDX-License-Identifier: Apache-2.0
// What scenarios can ask of the virtual panel's pixels, messages and log. Each scenario is run by `buttonctl test`.

#include "buttonctl/support/fake_daemon.h"
#include "buttonctl/support/pictures.h"
#include "buttonctl/support/tool_run.h"
#include "buttonctl/support/working_folder.h"
#include "support/event_loop.h"
#include "support/program.h"

#include <QFile>

#include <gmock/gmock.h>

namespace buttondriver::test {
namespace {

using testing::HasSubstr;

struct Row {
  const char *lines;
  const char *outcome; ///< the beginning of what is told about it
};

/// The scenarios of all rows, one after the other.
void expect_outcomes(const WorkingFolder &folder, const std::vector<Row> &rows) {
  QStringList files;
  for (std::size_t i = 0; i < rows.size(); ++i) {
    files += QStringLiteral("%1.scenario").arg(i, 2, 10, QLatin1Char('0'));
    folder.write(files.last().toLatin1(), rows[i].lines);
  }
  const ToolResult result = run_tool(
      QStringList{"test", "--simulator", BUTTONDRIVER_SIM_PROGRAM, "--timeout", "30000", "--jobs", "2"} + files);
  for (std::size_t i = 0; i < rows.size(); ++i)
    EXPECT_THAT(result.output, HasSubstr(files[static_cast<int>(i)].toStdString() + ": " + rows[i].outcome))
        << rows[i].lines;
}

/// The bytes of a BMP of 4 x 4 red pixels.
QByteArray red_square() { return encoded(filled(4, 4, qRgb(0xFF, 0, 0)), "BMP"); }

TEST(ExpectationsTest, of_pixels_are_about_the_place_and_the_colour) {
  const WorkingFolder folder;
  folder.write("red.bmp", red_square());
  expect_outcomes(
      folder, {
                  {"image 1 red.bmp --at 10,20\nexpect-pixel 1 10 20 FF0000\nexpect-pixel 1 13 23 '#ff0000'\n"
                   "expect-pixel 1 14 23 000000\nexpect-pixel 1 9 20 000000\nexpect-pixel 0 10 20 000000\n",
                   "ok 5 expectations\n"},
                  // The screen has 5, 6 and 5 bits.
                  {"image 1 red.bmp\nexpect-pixel 1 0 0 F80000\n", "ok 1 expectation\n"},
                  {"image 1 red.bmp\nexpect-pixel 1 0 0 F70000 --timeout 20\n",
                   "FAILED line 2: expect-pixel: after 20 ms, pixel 0, 0 of screen 1 is FF0000, not F70000\n"},
                  {"expect-pixel 1 128 0 FF0000\n", "FAILED line 1: expect-pixel: X must be a number from 0 to 127"},
                  {"expect-pixel 1 0 0 red\n",
                   "FAILED line 1: expect-pixel: RRGGBB must be six hexadecimal digits RRGGBB, not 'red'\n"},
              });
}

TEST(ExpectationsTest, of_a_region_compare_a_part_of_the_screen_with_a_tolerance) {
  const WorkingFolder folder;
  folder.write("red.bmp", red_square());
  folder.write("red.png", encoded(filled(4, 4, qRgb(0xFF, 0, 0)), "PNG"));
  folder.write("other.png", encoded(filled(4, 4, qRgb(0xF8, 4, 7)), "PNG"));
  expect_outcomes(
      folder,
      {
          {"image 1 red.bmp --at 10,20\nexpect-region 1 10 20 4 4 red.png\nexpect-region 1 10 20 4 4 other.png 7\n",
           "ok 2 expectations\n"},
          {"image 1 red.bmp --at 10,20\nexpect-region 1 10 20 4 4 other.png 6 --timeout 20\n",
           "FAILED line 2: expect-region: after 20 ms, 16 pixels of the region of screen 1 are not those of "
           "'other.png'; "
           "see 'buttonctl-test/01/other.difference.png'\n"},
          {"image 1 red.bmp --at 10,20\nexpect-region 1 11 20 4 4 red.png --timeout 20\n",
           "FAILED line 2: expect-region: after 20 ms, 4 pixels of the region of screen 1"},
          {"expect-region 1 11 20 4 5 red.png\n",
           "FAILED line 1: expect-region: 'red.png' is 4 x 4 pixels, the region of screen 1 is 4 x 5\n"},
          {"expect-region 1 125 0 4 4 red.png\n", "FAILED line 1: expect-region: W must be a number from 1 to 3"},
          {"expect-region 1 0 0 4 4 no.png\n", "FAILED line 1: expect-region: there is no 'no.png'"},
      });
}

TEST(ExpectationsTest, of_the_log_find_a_text_and_faults) {
  const WorkingFolder folder;
  expect_outcomes(
      folder,
      {
          {"raw 00000010 00000009\nexpect-log 'Invalid screen ID 9'\n", "ok 1 expectation\n"},
          {"expect-log 'Invalid screen' --timeout 20\n",
           "FAILED line 1: expect-log: after 20 ms, no line of the daemon's log has 'Invalid screen'\n"},
          {"text all 0 'Error generating line bitmap'\nled 5 on\nexpect-no-error\n", "ok 1 expectation\n"},
          // Told at once, since no time makes it true.
          {"raw 00000010 00000009\nexpect-no-error\n",
           "FAILED line 2: expect-no-error: the daemon's log has 'Invalid screen ID 9.'\n"},
          {"raw 000000ff\nexpect-no-error\n", "FAILED line 2: expect-no-error: the daemon's log has '"},
          {"raw 00000010 00000009\nexpect-log Invalid\nreset\nexpect-no-error\nexpect-log Invalid --timeout 20\n",
           "FAILED line 5: expect-log: after 20 ms, no line"},
      });
}

TEST(ExpectationsTest, of_messages_compare_names_and_fields) {
  const WorkingFolder folder;
  expect_outcomes(
      folder,
      {
          {"led 5 on\nled 6 blink 500\ntext 1 2 'Channel 7'\nsubtext 0 1 2 Hi --colour FF8000\n"
           "expect-message BMS_SetLEDState button_id=5\nexpect-message BMS_SetLEDState state=-1 time=500 button_id=6\n"
           "expect-message BMS_TFTTextLine text='Channel 7' screen_id=1\nexpect-message BMS_Ping\n"
           "expect-message BMS_TFTSubTextLine _text_colour=0xFF8000 text=Hi\n",
           "ok 5 expectations\n"},
          {"led 5 on\nled 6 off\nexpect-message BMS_SetLEDState button_id=5 state=0 --timeout 20\n",
           "FAILED line 3: expect-message: after 20 ms, no BMS_SetLEDState like this has come; the last one had "
           "button_id=6 state=0 time=0\n"},
          {"expect-message BMS_Reconfig --timeout 20\n",
           "FAILED line 1: expect-message: after 20 ms, no BMS_Reconfig has come\n"},
          {"led 5 on\nexpect-message BMS_SetLEDState\nreset\nexpect-message BMS_SetLEDState --timeout 20\n",
           "FAILED line 4: expect-message: after 20 ms, no BMS_SetLEDState has come\n"},
          {"expect-message BMS_Led\n", "FAILED line 1: expect-message: there is no message 'BMS_Led'; see "},
          {"expect-message BMS_SetLEDState led=5\n",
           "FAILED line 1: expect-message: BMS_SetLEDState has no field 'led'\n"},
          {"expect-message BMS_SetLEDState button_id\n",
           "FAILED line 1: expect-message: 'button_id' is not FIELD=VALUE\n"},
          {"expect-message BMS_DrawTFTImage image=x.bmp\n",
           "FAILED line 1: expect-message: 'image' cannot be compared: the panel tells only how many bytes it has\n"},
      });
}

TEST(ExpectationsTest, reset_puts_the_panel_back_after_what_was_sent_before) {
  const WorkingFolder folder;
  expect_outcomes(folder, {{"led 5 on\ntext 0 0 Hello\nexpect-led 5 on\nstatus 3 on\nreset\nexpect-led 5 off\n"
                            "expect-status 3 off\nexpect-text 0 0 ''\nled 6 on\nexpect-led 6 on\n",
                            "ok 5 expectations\n"},
                           {"reset now\n", "FAILED line 1: reset: 'now' is too much\n"}});
}

TEST(ExpectationsTest, wait_until_several_are_true_at_once) {
  const WorkingFolder folder;
  expect_outcomes(
      folder, {
                  {"led 5 on\ntext 0 0 'you and me'\nwait-until expect-led 5 on and expect-text 0 0 'you and me' and "
                   "expect-message BMS_SetLEDState within 20000\n",
                   "ok 1 expectation\n"},
                  {"led 5 on\nwait-until expect-led 5 on and expect-led 6 on within 20\n",
                   "FAILED line 2: wait-until: after 20 ms, LED 6 is off, not on\n"},
                  {"wait-until\n", "FAILED line 1: wait-until: an expectation is missing"},
                  {"wait-until led 5 on\n", "FAILED line 1: wait-until: 'led' is no expectation\n"},
                  {"wait-until expect-led 5 on within soon\n", "FAILED line 1: wait-until: MS must be a number"},
                  {"wait-until expect-led 5 up\n", "FAILED line 1: expect-led: STATE must be"},
                  {"wait-until expect-screen 0 a.png\n",
                   "FAILED line 1: wait-until: 'expect-screen 0 a.png' cannot be waited for like this\n"},
                  {"wait-until expect-no-error\n",
                   "FAILED line 1: wait-until: 'expect-no-error' cannot be waited for like this\n"},
              });
}

TEST(ExpectationsTest, sleep_lets_time_pass) {
  const WorkingFolder folder;
  expect_outcomes(folder, {{"led 5 on\nsleep 20\nled 5 off\nexpect-led 5 off\n", "ok 1 expectation\n"},
                           {"sleep long\n", "FAILED line 1: sleep: MS must be a number from 0 to 600000"}});
}

TEST(ExpectationsTest, a_panel_that_another_program_drives_says_what_it_does_not_know) {
  const WorkingFolder folder;
  Program simulator(QStringLiteral(BUTTONDRIVER_SIM_PROGRAM),
                    {"--device", "panel.socket", "--http", "0", "--ports-file", QDir::current().filePath("ports")});
  ASSERT_TRUE(process_events_until([] { return QFile::exists(QStringLiteral("ports")); }, std::chrono::seconds(20)));
  QFile ports(QStringLiteral("ports"));
  ASSERT_TRUE(ports.open(QIODevice::ReadOnly));
  const QString panel = "http://127.0.0.1:" + QString::fromLatin1(ports.readAll().trimmed().mid(5));
  FakeDaemon daemon;
  daemon.answer_pings_with(QByteArray::fromHex("0000000400000001"));
  const Row rows[] = {
      {"expect-message BMS_Ping --timeout 20\n",
       "standard input:1: expect-message: after 20 ms, messages are not known, "
       "because another program drives the panel\n"},
      {"reset\n", "standard input:1: reset: the panel cannot be reset, because another program drives it\n"},
      {"expect-no-error\nexpect-pixel 0 0 0 000000\n", ""},
  };
  for (const Row &row : rows) {
    const ToolResult result = run_tool({"-p", QString::number(daemon.port()), "--panel", panel, "run", "-"}, row.lines);
    EXPECT_THAT(result.errors, HasSubstr(row.outcome));
    EXPECT_EQ(result.exit_status == 0, *row.outcome == '\0') << result.errors;
  }
}

} // namespace
} // namespace buttondriver::test
