// SPDX-License-Identifier: Apache-2.0
// The pictures, the state and the files that the page's server answers with.

#include "protocol/catalogue.h"
#include "simulator/picture/panel_picture.h"
#include "support/device/busy_worker.h"
#include "support/event_loop.h"
#include "web_page_fixture.h"

#include <QImage>
#include <QJsonArray>
#include <QJsonDocument>

#include <gmock/gmock.h>

#include <iterator>
#include <optional>
#include <vector>

namespace buttondriver::simulator {
namespace {

using testing::ElementsAre;

class PageServerTest : public WebPageFixture {
protected:
  QJsonObject state() const {
    const Reply answer = get("/state.json");
    EXPECT_EQ(answer.status, 200);
    EXPECT_TRUE(answer.head.contains("Content-Type: application/json\r\n"));
    return answer.json();
  }
  QImage picture(const QByteArray &path) const {
    const Reply answer = get(path);
    EXPECT_EQ(answer.status, 200);
    EXPECT_TRUE(answer.head.contains("Content-Type: image/png\r\n"));
    return QImage::fromData(answer.body, "png");
  }
};

std::vector<int> lit(const QJsonObject &state, const char *name) {
  const QJsonArray lamps = state[QLatin1String(name)].toArray();
  std::vector<int> ids;
  for (int id = 0; id < lamps.size(); ++id)
    if (lamps[id].toBool())
      ids.push_back(id);
  return ids;
}

std::vector<std::string> text(const QJsonObject &state, int screen) {
  std::vector<std::string> lines;
  const QJsonArray screens = state[QLatin1String("screens")].toArray();
  EXPECT_EQ(screens.size(), 3);
  const QJsonArray texts = screens[screen][QLatin1String("text")].toArray();
  for (const QJsonValue &line : texts)
    lines.push_back(line.toString().toStdString());
  return lines;
}

int counter(const QJsonObject &state, const char *name) {
  return state[QLatin1String("counters")][QLatin1String(name)].toInt(-1);
}

constexpr const char *text_hi = "00000017 0000000f 00000001 00000000 00000001 00000003 486900";
constexpr const char *led_5_on = "00000010 00000011 00000005 00000001 00000000";
constexpr const char *led_6_blinks = "00000010 00000011 00000006 ffffffff 00000014";
constexpr const char *status_31_on = "0000000c 00000015 0000001f 00000001";
constexpr const char *toggle_1_on = "0000000c 00000016 00000001 00000001";

TEST_F(PageServerTest, the_state_at_the_start_is_that_of_a_dark_panel) {
  const QJsonObject state = this->state();
  EXPECT_EQ(state[QLatin1String("version")].toInt(), 1);
  EXPECT_EQ(state[QLatin1String("intensity")].toInt(), 63);
  EXPECT_EQ(state[QLatin1String("button_leds")].toArray().size(), 32);
  EXPECT_EQ(state[QLatin1String("status_leds")].toArray().size(), 32);
  EXPECT_EQ(state[QLatin1String("toggles")].toArray().size(), 2);
  EXPECT_THAT(lit(state, "button_leds"), ElementsAre());
  EXPECT_THAT(lit(state, "status_leds"), ElementsAre());
  EXPECT_THAT(lit(state, "toggles"), ElementsAre());
  for (int screen = 0; screen < 3; ++screen)
    EXPECT_THAT(text(state, screen), ElementsAre());
  EXPECT_EQ(counter(state, "messages"), 0);
  EXPECT_EQ(counter(state, "transfers"), 12); // the blackout of all screens
  EXPECT_EQ(counter(state, "refused_transfers"), 0);
  EXPECT_EQ(counter(state, "clients"), 0);
}

TEST_F(PageServerTest, the_queue_length_is_what_the_answer_has_waited_for) {
  FPGA &fpga = simulation->daemon()->fpga();
  ASSERT_TRUE(test::process_events_until([&] { return fpga.queueLength() == 0; }));
  std::optional<test::BusyWorker> busy(std::in_place, fpga);
  fpga.blackoutScreen(0);
  fpga.blackoutScreen(1);
  const auto socket = connected();
  socket->write("GET /state.json HTTP/1.1\r\nHost: " + host() + "\r\n\r\n");
  EXPECT_TRUE(test::process_events_until([&] { return fpga.queueLength() == 4; })) << "three, and the answer's own";
  EXPECT_EQ(socket->bytesAvailable(), 0);
  busy.reset();
  EXPECT_EQ(counter(reply_from(*socket).json(), "queue_length"), 3);
}

TEST_F(PageServerTest, the_state_has_what_was_accepted_before_the_request) {
  sendMessages(QByteArray(text_hi) + led_5_on + status_31_on + toggle_1_on);
  const QJsonObject state = this->state();
  EXPECT_THAT(lit(state, "button_leds"), ElementsAre(5));
  EXPECT_THAT(lit(state, "status_leds"), ElementsAre(31));
  EXPECT_THAT(lit(state, "toggles"), ElementsAre(1));
  EXPECT_THAT(text(state, 0), ElementsAre());
  EXPECT_THAT(text(state, 1), ElementsAre("Hi"));
  EXPECT_EQ(counter(state, "messages"), 5);
  EXPECT_EQ(counter(state, "clients"), 1);
}

TEST_F(PageServerTest, pictures_wait_for_work_that_was_accepted_before_them) {
  QByteArray messages;
  for (int i = 0; i < 200; ++i)
    messages += "00000008 00000010 ffffffff";
  sendMessages(messages + led_5_on);
  PanelState expected;
  expected.button_leds[5] = true;
  EXPECT_EQ(picture("/panel.png"), draw_panel(expected));
}

TEST_F(PageServerTest, a_screen_is_its_128_by_128_pixels) {
  // BMS_DrawTFTImage on screen 2 at 3,5: a BMP of two pixels, pure red and pure blue.
  sendMessages("00000052 00000013 00000002 00000003 00000005 0000003e"
               "424d 3e000000 00000000 36000000 28000000 02000000 01000000 0100 1800 00000000 08000000"
               "00000000 00000000 00000000 00000000 0000ff ff0000 0000");
  const QImage screen = picture("/screen/2.png");
  ASSERT_EQ(screen.size(), QSize(128, 128));
  EXPECT_EQ(screen.pixel(3, 5), 0xFFFF0000U);
  EXPECT_EQ(screen.pixel(4, 5), 0xFF0000FFU);
  EXPECT_EQ(screen.pixel(5, 5), 0xFF000000U);
  EXPECT_EQ(picture("/screen/0.png").pixel(3, 5), 0xFF000000U);
}

TEST_F(PageServerTest, a_reset_makes_the_panel_dark_and_the_counters_zero) {
  sendMessages(QByteArray(text_hi) + led_5_on + led_6_blinks + status_31_on + toggle_1_on);
  const Reply answer = post("/reset");
  EXPECT_EQ(answer.status, 204);
  EXPECT_EQ(answer.body, "");
  EXPECT_TRUE(test::process_events_until([this] { return !simulation->daemon()->dispatcher().isBlinking(); }));
  const QJsonObject state = this->state();
  EXPECT_THAT(lit(state, "button_leds"), ElementsAre());
  EXPECT_THAT(lit(state, "status_leds"), ElementsAre());
  EXPECT_THAT(lit(state, "toggles"), ElementsAre());
  EXPECT_THAT(text(state, 1), ElementsAre());
  EXPECT_EQ(counter(state, "messages"), 0);
  EXPECT_EQ(counter(state, "transfers"), 0);
  EXPECT_EQ(picture("/panel.png"), draw_panel(PanelState()));
}

TEST_F(PageServerTest, after_a_reset_the_toggles_are_told_apart_again) {
  sendMessages(toggle_1_on);
  EXPECT_EQ(post("/reset").status, 204);
  sendMessages("0000000c 00000016 00000000 00000001");
  EXPECT_THAT(lit(state(), "toggles"), ElementsAre(0));
}

TEST_F(PageServerTest, the_page_and_its_files_are_there_and_may_talk_to_this_server_only) {
  struct Row {
    const char *path;
    const char *type;
    const char *part;
  };
  const Row rows[] = {
      {"/", "text/html; charset=utf-8", "<title>Virtual panel</title>"},
      {"/main.js", "text/javascript; charset=utf-8", "import { Link } from './protocol/link.js';"},
      {"/page.css", "text/css; charset=utf-8", ":root {"},
      {"/icon.svg", "image/svg+xml", "<svg "},
  };
  for (const Row &row : rows) {
    const Reply answer = get(row.path);
    EXPECT_EQ(answer.status, 200) << row.path;
    EXPECT_TRUE(answer.head.contains(QByteArray("Content-Type: ") + row.type + "\r\n")) << row.path;
    EXPECT_TRUE(answer.head.contains("connect-src 'self' ws://" + host() + ";")) << row.path;
    EXPECT_TRUE(answer.head.contains("default-src 'none';")) << row.path;
    EXPECT_TRUE(answer.body.contains(row.part)) << row.path;
    EXPECT_TRUE(answer.head.contains("Content-Length: " + QByteArray::number(answer.body.size()) + "\r\n")) << row.path;
  }
}

TEST_F(PageServerTest, the_page_finds_every_file_that_it_names) {
  const QByteArray page = get("/").body;
  for (const char *file : {"page.css", "panel/panel.css", "main.js", "icon.svg"}) {
    EXPECT_TRUE(page.contains(QByteArray("\"") + file + "\"")) << file;
    EXPECT_EQ(get(QByteArray("/") + file).status, 200) << file;
  }
}

TEST_F(PageServerTest, the_catalogue_and_the_lettering_are_there_for_the_page) {
  const QJsonObject answer = get("/catalogue.json").json();
  const QJsonObject panel = answer[QLatin1String("panel")].toObject();
  EXPECT_EQ(panel[QLatin1String("button_count")].toInt(), 24);
  EXPECT_EQ(panel[QLatin1String("all_screens")].toInt(), -1);
  EXPECT_EQ(panel[QLatin1String("default_port")].toInt(), 3003);
  const QJsonArray types = answer[QLatin1String("messages")].toArray();
  ASSERT_EQ(static_cast<std::size_t>(types.size()), std::size(catalogue));
  const QJsonObject blackout = types[13].toObject();
  EXPECT_EQ(blackout[QLatin1String("name")].toString(), QStringLiteral("BMS_BlackoutScreen"));
  EXPECT_EQ(blackout[QLatin1String("opcode")].toInt(), 16);
  EXPECT_EQ(blackout[QLatin1String("head_size")].toInt(), 8);
  EXPECT_EQ(blackout[QLatin1String("handling")].toString(), QStringLiteral("handled"));
  EXPECT_EQ(blackout[QLatin1String("fields")].toArray()[1].toObject(),
            QJsonDocument::fromJson(R"({"name":"screen_id","offset":4,"width":4,"kind":"signed","is_colour":false,
              "meaning":"0, 1 or 2; -1: all screens","lowest":0,"highest":2,
              "named":[{"first":-1,"last":-1,"name":"all screens"}]})")
                .object());
  EXPECT_EQ(get("/lettering.json").json()[QLatin1String("I")].toObject(),
            QJsonDocument::fromJson(R"({"width":0,"strokes":"M00L0c"})").object());
}

TEST_F(PageServerTest, head_is_get_without_the_body) {
  const Reply answer = ask("HEAD /state.json HTTP/1.1\r\nHost: " + host() + "\r\n\r\n");
  EXPECT_EQ(answer.status, 200);
  EXPECT_FALSE(answer.head.contains("Content-Length: 0\r\n"));
  EXPECT_EQ(answer.body, "");
}

TEST_F(PageServerTest, anything_else_is_not_there) {
  for (const char *path : {"/index", "/screen/3.png", "/screen/-1.png", "/screen/0.png/", "/../etc/passwd",
                           "/%2e%2e/%2e%2e/etc/passwd", "/web", "/web.qrc", "/live", "//", "/state.json/x"}) {
    const Reply answer = get(path);
    EXPECT_EQ(answer.status, 404) << path;
    EXPECT_EQ(answer.body, "there is nothing here\n") << path;
  }
}

TEST_F(PageServerTest, a_reset_takes_a_post_and_nothing_else_does) {
  EXPECT_EQ(get("/reset").status, 405);
  EXPECT_EQ(post("/state.json").status, 405);
  EXPECT_EQ(post("/").status, 405);
}

TEST_F(PageServerTest, a_client_that_hangs_up_early_is_no_trouble) {
  for (const char *path : {"/state.json", "/panel.png", "/screen/0.png"}) {
    const auto socket = connected();
    socket->write("GET " + QByteArray(path) + " HTTP/1.1\r\nHost: " + host() + "\r\n\r\n");
    socket->flush();
    socket->abort();
  }
  EXPECT_EQ(get("/panel.png").status, 200);
}

} // namespace
} // namespace buttondriver::simulator
