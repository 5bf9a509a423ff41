// SPDX-License-Identifier: Apache-2.0
// What looks at a panel, with a virtual panel that says what the test wants, and with a real one.

#include "buttonctl/support/panel_double.h"
#include "buttonctl/support/pictures.h"
#include "buttonctl/support/tool_run.h"
#include "buttonctl/support/working_folder.h"
#include "support/program.h"

#include <QFile>

#include <gmock/gmock.h>

namespace buttondriver::test {
namespace {

using testing::HasSubstr;
using testing::StartsWith;

QByteArray content_of(const char *name) {
  QFile file(QString::fromLatin1(name));
  return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("no such file");
}

/// A busy machine may be slow to answer.
ToolResult look(const QString &panel, const QStringList &words) {
  return run_tool(QStringList{"--timeout", "30000", "--panel", panel} + words);
}

TEST(LookTest, a_screenshot_goes_where_it_should) {
  PanelDouble panel;
  const QByteArray all = encoded(filled(30, 20, qRgb(1, 2, 3)), "PNG");
  const QByteArray one = encoded(filled(128, 128, qRgb(4, 5, 6)), "PNG");
  panel.answer("/panel.png", all);
  panel.answer("/screen/2.png", one);
  struct Row {
    QStringList words;
    std::string output;
    const char *file; // null for none
    QByteArray content;
  };
  const Row rows[] = {
      {{"screenshot"}, "wrote panel.png\n", "panel.png", all},
      {{"screenshot", "--screen", "2"}, "wrote screen-2.png\n", "screen-2.png", one},
      {{"screenshot", "a.png"}, "wrote a.png\n", "a.png", all},
      {{"screenshot", "--screen=2", "a.png"}, "wrote a.png\n", "a.png", one},
      {{"screenshot", "-"}, all.toStdString(), nullptr, {}},
      {{"screenshot", "-", "--screen", "2"}, one.toStdString(), nullptr, {}},
  };
  const WorkingFolder folder;
  for (const Row &row : rows) {
    const ToolResult result = look(panel.url(), row.words);
    EXPECT_EQ(result.exit_status, 0) << result.errors;
    EXPECT_TRUE(result.output == row.output) << result.output.size();
    if (row.file) {
      EXPECT_TRUE(content_of(row.file) == row.content) << row.file;
    }
  }
  EXPECT_FALSE(QFile::exists(QStringLiteral("-")));
}

TEST(LookTest, what_cannot_be_had_is_told) {
  PanelDouble panel;
  panel.answer("/panel.png", encoded(filled(3, 2, qRgb(1, 2, 3)), "PNG"));
  panel.answer("/screen/0.png", "no picture");
  panel.answer("/state.json", "[]");
  struct Row {
    QStringList words;
    int exit_status;
    const char *error;
  };
  const Row rows[] = {
      {{"screenshot", "missing/a.png"}, 1, "buttonctl: cannot write 'missing/a.png': "},
      {{"screenshot", "--screen", "0"}, 1, "/screen/0.png: "},
      {{"screenshot", "--screen", "1"}, 1, "/screen/1.png answers with status 404; is that the virtual panel?\n"},
      {{"screenshot", "--screen", "3"}, 2, "buttonctl: screenshot: --screen must be a number from 0 to 2, not '3'\n"},
      {{"screenshot", ""}, 2, "buttonctl: screenshot: FILE must not be empty\n"},
      {{"-n", "screenshot"}, 2, "buttonctl: screenshot: there is nothing to print with --dry-run\n"},
      {{"state"}, 1, "/state.json: it is no JSON object"},
      {{"-n", "state"}, 2, "buttonctl: state: there is nothing to print with --dry-run\n"},
      {{"--panel", "http://127.0.0.1:1", "state"}, 1, "http://127.0.0.1:1 refuses the connection"},
  };
  const WorkingFolder folder;
  for (const Row &row : rows) {
    const ToolResult result = look(panel.url(), row.words);
    EXPECT_EQ(result.exit_status, row.exit_status) << row.error;
    EXPECT_EQ(result.output, "");
    EXPECT_THAT(result.errors, HasSubstr(row.error));
  }
  EXPECT_FALSE(QFile::exists(QStringLiteral("screen-0.png")));
}

TEST(LookTest, the_state_is_printed_as_json_as_it_came) {
  PanelDouble panel;
  for (const QByteArray json : {"{\n  \"version\": 9,\n \"odd\": 1 }\n", "{}"}) {
    panel.answer("/state.json", json);
    const ToolResult result = look(panel.url(), {"state", "--json"});
    EXPECT_EQ(result.exit_status, 0) << result.errors;
    EXPECT_EQ(result.output, json == "{}" ? "{}\n" : json.toStdString());
  }
}

/// With a daemon in it, after some commands.
class VirtualPanelTest : public testing::Test {
protected:
  VirtualPanelTest() : _simulator(QStringLiteral(BUTTONDRIVER_SIM_PROGRAM), {"--http", "0", "map", QString(), "0"}) {
    EXPECT_TRUE(_simulator.waitForOutput("buttondriver-sim: listening on port "));
    EXPECT_TRUE(_simulator.waitForOutput("buttondriver-sim: page on http://"));
    _url = told("page on ");
    const ToolResult result = run_tool({"-p", port(), "-t", "30000", "batch"}, "text 1 2 'Channel 7'\n"
                                                                               "led 6,7 on\n"
                                                                               "led 5 blink 600000\n"
                                                                               "status 3 on\n"
                                                                               "toggle 1 on\n");
    EXPECT_EQ(result.exit_status, 0) << result.errors;
  }

  /// The daemon's, not the page's.
  QString port() { return told("listening on port "); }
  const QString &url() const { return _url; }

private:
  /// What stands behind `text` in its line.
  QString told(const QByteArray &text) {
    const QByteArray output = _simulator.standardOutput();
    const auto place = output.indexOf(text) + text.size();
    return QString::fromLatin1(output.mid(place, output.indexOf('\n', place) - place));
  }

  Program _simulator;
  QString _url;
};

TEST_F(VirtualPanelTest, is_told_in_words_and_as_a_picture) {
  const ToolResult state = look(url(), {"state"});
  EXPECT_EQ(state.exit_status, 0) << state.errors;
  EXPECT_THAT(state.output, HasSubstr("screen 1\n"
                                      "  2: Channel 7\n"
                                      "screen 2\n"
                                      "LEDs: 6 7 on, 5 blinking (600000 ms)\n"
                                      "status LEDs: 3 on\n"
                                      "toggle indicators: 1 on\n"
                                      "brightness: 63 of 63\n"));
  const ToolResult json = look(url(), {"state", "--json"});
  EXPECT_THAT(json.output, StartsWith("{"));
  EXPECT_THAT(json.output, HasSubstr("Channel 7"));
  const ToolResult screen = look(url(), {"screenshot", "-", "--screen", "1"});
  QImage image;
  ASSERT_TRUE(image.loadFromData(QByteArray::fromStdString(screen.output), "PNG")) << screen.errors;
  EXPECT_EQ(image.size(), QSize(128, 128));
  const ToolResult panel = look(url(), {"screenshot", "-"});
  ASSERT_TRUE(image.loadFromData(QByteArray::fromStdString(panel.output), "PNG")) << panel.errors;
  EXPECT_GT(image.width(), 3 * 128);
}

} // namespace
} // namespace buttondriver::test
