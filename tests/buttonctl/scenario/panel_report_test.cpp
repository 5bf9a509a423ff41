// SPDX-License-Identifier: Apache-2.0
#include "buttonctl/panel/panel_report.h"

#include "buttonctl/scenario/expectations/expectation_parser.h"
#include "buttonctl/support/pictures.h"
#include "buttonctl/support/working_folder.h"

#include <gtest/gtest.h>

#include <vector>

namespace buttondriver::buttonctl {
namespace {

/// F and T as false and true.
QByteArray spelled_out(QByteArray json) {
  return json.replace("F,", "false,")
      .replace("F]", "false]")
      .replace("T,", "true,")
      .replace("T]", "true]")
      .replace("F ", "false ");
}

/// LED 5 blinks and is lit, LED 6 is lit, LED 31 is lit, all others are dark.
const QByteArray state = R"({
  "version": 1,
  "button_leds": [F,F,F,F,F,T,T,F, F,F,F,F,F,F,F,F, F,F,F,F,F,F,F,F, F,F,F,F,F,F,F,T],
  "status_leds": [F,F,F,T,F,F,F,F, F,F,F,F,F,F,F,F, F,F,F,F,F,F,F,F, F,F,F,F,F,F,F,F],
  "toggles": [F,T],
  "intensity": 40,
  "blinking": [{"button": 5, "time": 500}],
  "screens": [{"text": ["Start ", "", "Ready"], "drawn": ["Start", "", "Reset"]}, {"text": [], "drawn": []},
              {"text": ["\u00e9", "Gone"], "drawn": ["\u00e9"]}],
  "font": {"width": 8, "height": 16, "fault": null},
  "counters": {"messages": 1, "transfers": 2, "refused": 0, "queue": 0, "clients": 1},
  "uptime": "what nobody knows"})";

void replace_screens(QByteArray &json, const QByteArray &screens) {
  const auto begin = json.indexOf("[{\"text\"");
  const auto end = json.indexOf("\"font\"");
  json.replace(begin, end - begin, screens + ",\n  ");
}

TEST(PanelReportTest, reads_every_member) {
  const auto report = parse_panel_report(spelled_out(state));
  ASSERT_TRUE(report) << report.failure().text.toStdString();
  std::string leds;
  for (const bool lit : report->button_leds)
    leds += lit ? '1' : '0';
  EXPECT_EQ(leds, "00000110000000000000000000000001");
  leds.clear();
  for (const bool lit : report->status_leds)
    leds += lit ? '1' : '0';
  EXPECT_EQ(leds, "00010000000000000000000000000000");
  EXPECT_FALSE(report->toggles[0]);
  EXPECT_TRUE(report->toggles[1]);
  EXPECT_EQ(report->intensity, 40);
  EXPECT_EQ(report->blinking, (std::map<int, int>{{5, 500}}));
  ASSERT_TRUE(report->sent);
  EXPECT_EQ((*report->sent)[0],
            (std::map<int, QString>{{0, QStringLiteral("Start ")}, {1, QString()}, {2, QStringLiteral("Ready")}}));
  EXPECT_TRUE((*report->sent)[1].empty());
  ASSERT_TRUE(report->drawn);
  EXPECT_EQ((*report->drawn)[0],
            (std::map<int, QString>{{0, QStringLiteral("Start")}, {1, QString()}, {2, QStringLiteral("Reset")}}));
  EXPECT_TRUE((*report->drawn)[1].empty());
  EXPECT_EQ((*report->drawn)[2], (std::map<int, QString>{{0, QStringLiteral("\u00e9")}}));
  EXPECT_EQ(report->drawn_fault, QString());
}

TEST(PanelReportTest, names_the_member_that_is_wrong) {
  struct Row {
    const char *is;
    const char *instead;
    const char *text;
  };
  const Row rows[] = {
      {"\"version\": 1", "\"version\": 2", "its version is 2; this program reads version 1"},
      {"\"version\": 1,", "", "'version' must be a whole number from 0 to 2147483647"},
      {"\"version\": 1", "\"version\": \"1\"", "'version' must be a whole number from 0 to 2147483647"},
      {"[F,F,F,F,F,T,T,F,", "[F,F,F,F,F,T,T,", "'button_leds' must be a list of 32"},
      {"[F,F,F,F,F,T,T,F,", "[F,F,F,F,F,T,1,F,", "'button_leds' must be a list of true and false"},
      {"\"status_leds\"", "\"status\"", "'status_leds' must be a list"},
      {"[F,T],", "[F,T,T],", "'toggles' must be a list of 2"},
      {"[F,T],", "\"FT\",", "'toggles' must be a list"},
      {"\"intensity\": 40", "\"intensity\": 64", "'intensity' must be a whole number from 0 to 63"},
      {"\"intensity\": 40", "\"intensity\": -1", "'intensity' must be a whole number from 0 to 2147483647"},
      {"\"intensity\": 40", "\"intensity\": null", "'intensity' must be a whole number from 0 to 2147483647"},
      {"{\"button\": 5, ", "{", "'blinking.button' must be a whole number from 0 to 2147483647"},
      {"\"time\": 500", "\"time\": 1e99", "'blinking.time' must be a whole number from 0 to 2147483647"},
      {"[{\"button\": 5, \"time\": 500}]", "5", "'blinking' must be a list"},
      {"{\"text\": [], \"drawn\": []},", "", "'screens' must be a list of 3"},
      {"{\"text\": [], ", "{", "'screens.text' must be a list"},
      {"\"Ready\"", "1", "'screens.text' must be a text"},
      {"\"drawn\": []", "\"drawn\": 1", "'screens.drawn' must be a list"},
      {"\"Reset\"", "1", "'screens.drawn' must be a text"},
  };
  for (const Row &row : rows) {
    QByteArray json = state;
    ASSERT_TRUE(json.contains(row.is)) << row.is;
    json.replace(row.is, row.instead);
    const auto report = parse_panel_report(spelled_out(json));
    ASSERT_FALSE(report) << row.instead;
    EXPECT_EQ(report.failure().text.toStdString(), row.text);
  }
  for (const char *json : {"", "[]", "{", "<html>"}) {
    const auto report = parse_panel_report(json);
    ASSERT_FALSE(report) << json;
    EXPECT_TRUE(report.failure().text.startsWith(QStringLiteral("it is no JSON object ("))) << json;
  }
}

struct ExpectationRow {
  QStringList words;
  const char *difference; ///< null: as expected
};

void expect_rows(const std::vector<ExpectationRow> &rows, const QByteArray &json) {
  const auto report = parse_panel_report(spelled_out(json));
  ASSERT_TRUE(report) << report.failure().text.toStdString();
  for (const ExpectationRow &row : rows) {
    const std::string line = row.words.join(QLatin1Char(' ')).toStdString();
    const auto expectation = parse_expectation(row.words, QString(), false);
    ASSERT_TRUE(expectation) << line << ": " << expectation.failure().text.toStdString();
    const auto *questions = std::get_if<std::vector<Question>>(&expectation->test);
    ASSERT_TRUE(questions) << line;
    const auto *test = std::get_if<StateTest>(&questions->front());
    ASSERT_NE(test, nullptr) << line;
    const Outcome<Done> tested = (*test)(*report);
    EXPECT_EQ(tested ? "" : tested.failure().text.toStdString(), row.difference ? row.difference : "") << line;
  }
}

TEST(ExpectationTest, tells_how_the_panel_differs) {
  const std::vector<ExpectationRow> rows = {
      {{"expect-led", "6", "on"}, nullptr},
      {{"expect-led", "6", "off"}, "LED 6 is on, not off"},
      {{"expect-led", "31", "on"}, nullptr},
      {{"expect-led", "0", "off"}, nullptr},
      {{"expect-led", "0", "on"}, "LED 0 is off, not on"},
      {{"expect-led", "5", "blinking"}, nullptr},
      {{"expect-led", "5", "blinking", "500"}, nullptr},
      {{"expect-led", "5", "blinking", "250"}, "LED 5 is blinking 500, not blinking 250"},
      {{"expect-led", "5", "on"}, "LED 5 is blinking 500, not on"},
      {{"expect-led", "6", "blinking"}, "LED 6 is on, not blinking"},
      {{"expect-led", "6", "blinking", "500"}, "LED 6 is on, not blinking 500"},
      {{"expect-status", "3", "on"}, nullptr},
      {{"expect-status", "3", "off"}, "status LED 3 is on, not off"},
      {{"expect-status", "31", "on"}, "status LED 31 is off, not on"},
      {{"expect-toggle", "1", "on"}, nullptr},
      {{"expect-toggle", "0", "on"}, "toggle indicator 0 is off, not on"},
      {{"expect-intensity", "40"}, nullptr},
      {{"expect-intensity", "63"}, "the intensity is 40, not 63"},
      {{"expect-text", "0", "2", "Reset"}, nullptr},
      {{"expect-text", "0", "2", "Ready"}, "line 2 of screen 0 is 'Reset', not 'Ready'; 'Ready' was sent"},
      {{"expect-text", "0", "0", "start"}, "line 0 of screen 0 is 'Start', not 'start'"},
      {{"expect-text", "0", "0", " Start"}, "line 0 of screen 0 is 'Start', not ' Start'"},
      {{"expect-text", "0", "0", "Start"}, nullptr},
      {{"expect-text", "0", "2", "Reset  "}, nullptr},
      {{"expect-text", "1", "2", ""}, nullptr},
      {{"expect-text", "1", "2", "Ready"}, "line 2 of screen 1 is '', not 'Ready'"},
      {{"expect-text", "2", "0", QStringLiteral("\u00e9")}, nullptr},
      {{"expect-text", "2", "1", ""}, nullptr},
      {{"expect-text", "2", "1", "Gone"}, "line 1 of screen 2 is '', not 'Gone'; 'Gone' was sent"},
  };
  expect_rows(rows, state);
}

TEST(ExpectationTest, of_a_panel_that_another_program_drives_only_what_it_shows_is_known) {
  const char *no_blinking = "whether LED 5 blinks is not known, because another program drives the panel";
  const char *no_text = "line 2 of screen 0 cannot be read: the font is not known";
  const std::vector<ExpectationRow> rows = {
      {{"expect-led", "5", "on"}, nullptr},           {{"expect-led", "5", "off"}, "LED 5 is on, not off"},
      {{"expect-led", "5", "blinking"}, no_blinking}, {{"expect-led", "5", "blinking", "500"}, no_blinking},
      {{"expect-status", "3", "on"}, nullptr},        {{"expect-toggle", "1", "on"}, nullptr},
      {{"expect-intensity", "40"}, nullptr},          {{"expect-text", "0", "2", "Ready"}, no_text},
  };
  QByteArray json = state;
  json.replace(R"([{"button": 5, "time": 500}])", "null");
  replace_screens(json, "null");
  json.replace("\"fault\": null", "\"fault\": \"the font is not known\"");
  expect_rows(rows, json);
}

TEST(ExpectationTest, a_text_is_not_true_where_nothing_can_be_read) {
  QByteArray json = state;
  replace_screens(json, R"([{"text": ["Ready"], "drawn": null}, {"text": [], "drawn": null},
                            {"text": [], "drawn": null}])");
  json.replace("\"fault\": null", "\"fault\": \"no font is loaded\"");
  expect_rows(
      {{{"expect-text", "0", "0", "Ready"}, "line 0 of screen 0 cannot be read: no font is loaded; 'Ready' was sent"},
       {{"expect-text", "0", "1", ""}, "line 1 of screen 0 cannot be read: no font is loaded"}},
      json);
}

TEST(ExpectationTest, what_another_program_draws_is_read_where_its_font_is_known) {
  QByteArray json = state;
  replace_screens(json, R"([{"text": null, "drawn": ["Ready"]}, {"text": null, "drawn": []},
                            {"text": null, "drawn": []}])");
  expect_rows({{{"expect-text", "0", "0", "Ready"}, nullptr},
               {{"expect-text", "0", "0", "ready"}, "line 0 of screen 0 is 'Ready', not 'ready'"}},
              json);
}

TEST(ExpectationTest, a_picture_is_looked_for_beside_the_scenario) {
  const test::WorkingFolder folder;
  folder.write("ready.png", test::encoded(test::filled(2, 3, qRgb(1, 2, 3)), "PNG"));
  const auto found = parse_expectation({"expect-screen", "2", "ready.png"}, QDir::currentPath(), false);
  ASSERT_TRUE(found) << found.failure().text.toStdString();
  const auto &picture = std::get<PictureTest>(found->test);
  EXPECT_EQ(picture.screen, 2);
  EXPECT_EQ(picture.file, QDir::currentPath() + QStringLiteral("/ready.png"));
  EXPECT_EQ(picture.expected.size(), QSize(2, 3));
  EXPECT_FALSE(found->timeout_ms.has_value());

  const auto missing = parse_expectation({"expect-screen", "0", "no.png", "--timeout", "50"}, QString(), false);
  ASSERT_TRUE(missing);
  EXPECT_TRUE(std::get<PictureTest>(missing->test).expected.isNull());
  EXPECT_EQ(missing->timeout_ms, 50);
}

TEST(ExpectationTest, bad_lines_are_refused_with_the_reason) {
  struct Row {
    QStringList words;
    const char *text;
  };
  const Row rows[] = {
      {{"expect-leds", "1", "on"}, "unknown expectation 'expect-leds'; see 'buttonctl run --help'"},
      {{"expect-led"}, "expect-led: BUTTON is missing; see 'buttonctl run --help'"},
      {{"expect-led", "32", "on"}, "expect-led: BUTTON must be a number from 0 to 31, not '32'"},
      {{"expect-led", "all", "on"}, "expect-led: BUTTON must be a number from 0 to 31, not 'all'"},
      {{"expect-led", "1"}, "expect-led: STATE is missing; see 'buttonctl run --help'"},
      {{"expect-led", "1", "blink"}, "expect-led: STATE must be 'on', 'off' or 'blinking', not 'blink'"},
      {{"expect-led", "1", "blinking", "0"}, "expect-led: MS must be a number from 1 to 2147483647, not '0'"},
      {{"expect-led", "1", "on", "5"}, "expect-led: '5' is one argument too many; see 'buttonctl run --help'"},
      {{"expect-status", "32", "on"}, "expect-status: ID must be a number from 0 to 31, not '32'"},
      {{"expect-status", "1", "up"}, "expect-status: STATE must be 'on' or 'off', not 'up'"},
      {{"expect-toggle", "2", "on"}, "expect-toggle: ID must be a number from 0 to 1, not '2'"},
      {{"expect-intensity", "64"}, "expect-intensity: LEVEL must be a number from 0 to 63, not '64'"},
      {{"expect-text", "3", "0", "x"}, "expect-text: SCREEN must be a number from 0 to 2, not '3'"},
      {{"expect-text", "0", "128", "x"}, "expect-text: LINE must be a number from 0 to 127, not '128'"},
      {{"expect-text", "0", "0"}, "expect-text: TEXT is missing; see 'buttonctl run --help'"},
      {{"expect-screen", "all", "a.png"}, "expect-screen: SCREEN must be a number from 0 to 2, not 'all'"},
      {{"expect-screen", "0"}, "expect-screen: FILE is missing; see 'buttonctl run --help'"},
      {{"expect-screen", "0", "note.txt"},
       "expect-screen: 'note.txt': not a picture that can be read (neither PNG nor JPEG, BMP or GIF)"},
      {{"expect-led", "1", "on", "--timeout", "0"}, "expect-led: --timeout must be a number from 1 to 600000, not '0'"},
      {{"expect-led", "1", "on", "--host", "x"},
       "expect-led: unknown option '--host'; see 'buttonctl run --help', and put -- before arguments that start with a "
       "dash"},
  };
  const test::WorkingFolder folder;
  folder.write("note.txt", "hello");
  for (const Row &row : rows) {
    const auto expectation = parse_expectation(row.words, QString(), false);
    ASSERT_FALSE(expectation) << row.text;
    EXPECT_EQ(expectation.failure().text.toStdString(), row.text);
  }
  EXPECT_TRUE(parse_expectation({"expect-screen", "0", "note.txt"}, QString(), true))
      << "a picture that is going to be replaced need not be one";
}

} // namespace
} // namespace buttondriver::buttonctl
