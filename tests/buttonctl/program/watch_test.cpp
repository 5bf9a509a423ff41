// SPDX-License-Identifier: Apache-2.0
// `buttonctl watch`, with a virtual panel that says what the test wants.

#include "buttonctl/support/panel_double.h"
#include "buttonctl/support/pictures.h"
#include "buttonctl/support/tool_run.h"
#include "support/event_loop.h"

#include <QProcess>

#include <gmock/gmock.h>

#include <csignal>

namespace buttondriver::test {
namespace {

using testing::HasSubstr;

/// A busy machine may be slow to answer.
ToolResult watch(const QString &panel, const QStringList &words) {
  return run_tool(QStringList{"--timeout", "30000", "--panel", panel, "watch"} + words);
}

/// What `screen` shows as blocks is known: red, red over blue, green.
class WatchTest : public testing::Test {
protected:
  WatchTest() {
    QImage image = filled(2, 2, qRgb(255, 0, 0));
    image.setPixel(0, 1, qRgb(0, 0, 255));
    image.setPixel(1, 1, qRgb(0, 255, 0));
    panel.answer("/screen/1.png", encoded(image, "PNG"));
    panel.answer("/state.json", [this] {
      PanelStateText state;
      state.lit_toggle = lit_toggle;
      if (is_blinking) {
        state.blinking = R"([{"button":5,"time":500}])";
        is_lit = !is_lit;
        state.lit_button = is_lit ? 5 : -1;
      }
      return state.json();
    });
  }

  PanelDouble panel;
  int lit_toggle = -1;
  bool is_blinking = false; ///< LED 5, which is in another phase each time that it is asked for
  bool is_lit = false;
};

const std::string text_frame = "screen 0\nscreen 1\nscreen 2\nLEDs: none on\nstatus LEDs: none on\n";
const std::string blinking_frame =
    "screen 0\nscreen 1\nscreen 2\nLEDs: none on, 5 blinking (500 ms)\nstatus LEDs: none on\n";
const std::string dark_toggles = "toggle indicators: none on\nbrightness: 63 of 63\n";
const std::string lit_toggles = "toggle indicators: 1 on\nbrightness: 63 of 63\n";
const QByteArray second_screen = "\x1b[?1049h\x1b[?25l\x1b[2J";
const QByteArray as_before = "\x1b[0m\x1b[?25h\x1b[?1049l";

TEST_F(WatchTest, prints_one_frame) {
  const std::string eight = "\u00b7\u00b7\u00b7\u00b7\u00b7\u00b7\u00b7\u00b7";
  const std::string all = eight + ' ' + eight + ' ' + eight + ' ' + eight + '\n';
  const std::string below = "LEDs    " + all + "status  " + all + "toggles \u00b7\u00b7\n" +
                            "LEDs: none on\nstatus LEDs: none on\n" + dark_toggles;
  struct Row {
    QStringList words;
    std::string output;
  };
  const Row rows[] = {
      {{"--once"}, text_frame + dark_toggles},
      {{"--once", "--colours", "none"}, text_frame + dark_toggles},
      {{"--once", "--colours", "24bit", "--screen", "1"},
       "\x1b[38;2;255;0;0m\x1b[48;2;0;0;255m\u2580\x1b[48;2;0;255;0m\u2580\x1b[0m\n" + below},
      {{"--once", "--colors", "256", "--screen", "1"},
       "\x1b[38;5;196m\x1b[48;5;21m\u2580\x1b[48;5;46m\u2580\x1b[0m\n" + below},
  };
  for (const Row &row : rows) {
    const ToolResult result = watch(panel.url(), row.words);
    EXPECT_EQ(result.exit_status, 0) << result.errors;
    EXPECT_EQ(result.output, row.output);
  }
}

TEST_F(WatchTest, a_wrong_word_is_told) {
  const ToolResult result = watch(panel.url(), {"--colours", "8"});
  EXPECT_EQ(result.exit_status, 2);
  EXPECT_EQ(result.errors, "buttonctl: watch: --colours must be auto, none, 256 or 24bit, not '8'\n");
}

/// A watch that goes on.
class Watch : public QProcess {
public:
  Watch(const QString &panel, const QStringList &words) {
    start(QStringLiteral(BUTTONCTL), QStringList{"--timeout", "30000", "--panel", panel, "watch"} + words);
  }
  ~Watch() override {
    kill();
    waitForFinished();
  }

  bool shows(const QByteArray &text) {
    return process_events_until([this, text] {
      output += readAllStandardOutput();
      return output.contains(text);
    });
  }

  bool endsAfter(int signal) {
    ::kill(static_cast<pid_t>(processId()), signal);
    const bool ended = process_events_until([this] { return state() == NotRunning; });
    output += readAllStandardOutput();
    return ended && exitStatus() == NormalExit && exitCode() == 0;
  }

  QByteArray output;
};

TEST_F(WatchTest, draws_again_when_something_has_changed_and_gives_the_terminal_back) {
  for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
    lit_toggle = -1;
    const auto asked_before = panel.asked().size();
    Watch watched(panel.url(), {"--colours", "24bit", "--screen", "1"});
    ASSERT_TRUE(watched.shows("toggle indicators: none on"));
    EXPECT_TRUE(watched.output.startsWith(second_screen));
    ASSERT_TRUE(process_events_until([&] { return panel.asked().size() >= asked_before + 6; }));
    EXPECT_EQ(panel.asked().mid(asked_before).count("/screen/1.png"), 1);
    lit_toggle = 1;
    ASSERT_TRUE(watched.shows("toggle indicators: 1 on"));
    EXPECT_FALSE(watched.output.contains(as_before));
    EXPECT_TRUE(watched.endsAfter(signal));
    EXPECT_TRUE(watched.output.endsWith(as_before));
    EXPECT_EQ(watched.output.count("\x1b[H"), 2);
    EXPECT_EQ(watched.output.count(second_screen), 1);
  }
}

TEST_F(WatchTest, without_a_terminal_prints_the_text_when_it_has_changed) {
  is_blinking = true;
  Watch watched(panel.url(), {});
  ASSERT_TRUE(watched.shows("brightness"));
  const auto asked_before = panel.asked().size();
  ASSERT_TRUE(process_events_until([&] { return panel.asked().size() >= asked_before + 3; }));
  lit_toggle = 1;
  ASSERT_TRUE(watched.shows(QByteArray::fromStdString(lit_toggles)));
  EXPECT_TRUE(watched.endsAfter(SIGINT));
  EXPECT_EQ(watched.output.toStdString(), blinking_frame + dark_toggles + "\n" + blinking_frame + lit_toggles);
}

TEST_F(WatchTest, ends_with_a_reason_when_the_panel_goes_away) {
  Watch watched(panel.url(), {"--colours", "256", "--screen", "1"});
  ASSERT_TRUE(watched.shows("brightness"));
  panel.answer("/state.json", "[]");
  ASSERT_TRUE(process_events_until([&] { return watched.state() == QProcess::NotRunning; }));
  EXPECT_EQ(watched.exitCode(), 1);
  EXPECT_TRUE(watched.shows(as_before));
  EXPECT_THAT(watched.readAllStandardError().toStdString(), HasSubstr("/state.json: it is no JSON object"));
}

} // namespace
} // namespace buttondriver::test
