// SPDX-License-Identifier: Apache-2.0
// The page of a panel that another program drives: what only a daemon knows is not made up.

#include "panel/registers/transfer_record.h"
#include "support/event_loop.h"
#include "web_page_fixture.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QTemporaryDir>
#include <QWebSocket>

namespace buttondriver::simulator {
namespace {

class SocketFolder {
protected:
  const QTemporaryDir _folder;
};

class OutsideDriverTest : SocketFolder, public WebPageFixture {
protected:
  OutsideDriverTest() : WebPageFixture(_folder.filePath(QStringLiteral("device"))) {
    panel::TransferRecord led_5_on{0, 0x2900, 0, 1, 0x6500};
    simulation->panel().transfer(0, panel::short_form_request, led_5_on, nullptr);
  }
};

TEST_F(OutsideDriverTest, the_state_has_the_panel_and_null_for_what_is_not_known) {
  const Reply answer = get("/state.json");
  ASSERT_EQ(answer.status, 200);
  const QJsonObject state = answer.json();
  EXPECT_EQ(state[QLatin1String("version")].toInt(), 1);
  EXPECT_TRUE(state[QLatin1String("button_leds")][5].toBool());
  EXPECT_EQ(state[QLatin1String("intensity")].toInt(), 63);
  const QJsonObject expected_counters{
      {QStringLiteral("messages"), QJsonValue()}, {QStringLiteral("transfers"), 1},
      {QStringLiteral("refused_transfers"), 0},   {QStringLiteral("queue_length"), QJsonValue()},
      {QStringLiteral("clients"), QJsonValue()},  {QStringLiteral("drivers"), 0},
  };
  EXPECT_EQ(state[QLatin1String("counters")].toObject(), expected_counters);
  for (const char *unknown : {"screens", "blinking"}) {
    EXPECT_TRUE(state.contains(QLatin1String(unknown))) << unknown;
    EXPECT_TRUE(state[QLatin1String(unknown)].isNull()) << unknown;
  }
  EXPECT_EQ(state[QLatin1String("font")].toObject(), QJsonDocument::fromJson(R"({"width":null,"height":null,"fault":
              "which font the panel's driver uses is not known; --font tells"})")
                                                         .object());
}

TEST_F(OutsideDriverTest, there_are_pictures_and_there_is_no_reset) {
  EXPECT_EQ(get("/panel.png").status, 200);
  EXPECT_EQ(get("/screen/2.png").status, 200);
  const Reply answer = post("/reset");
  EXPECT_EQ(answer.status, 409);
  EXPECT_EQ(answer.body, "the panel is driven from outside, and only its driver can reset it\n");
  EXPECT_TRUE(simulation->panel().lamps().button_leds[5]);
}

TEST_F(OutsideDriverTest, a_page_is_told_that_there_is_no_daemon_and_can_send_nothing) {
  QWebSocket page;
  std::vector<QJsonObject> updates;
  QObject::connect(&page, &QWebSocket::textMessageReceived, &page,
                   [&](const QString &text) { updates.push_back(QJsonDocument::fromJson(text.toUtf8()).object()); });
  page.open(QUrl(QStringLiteral("ws://") + QString::fromLatin1(host()) + QStringLiteral("/live")));
  ASSERT_TRUE(test::process_events_until([&] { return updates.size() >= 2; }));
  EXPECT_TRUE(updates[0].contains(QLatin1String("daemon_port")));
  EXPECT_TRUE(updates[0].value(QLatin1String("daemon_port")).isNull());
  EXPECT_TRUE(updates[1].value(QLatin1String("lamps"))[QLatin1String("button_leds")][5].toBool());
  for (const char *unknown : {"screens", "messages"})
    EXPECT_FALSE(updates[1].contains(QLatin1String(unknown))) << unknown;
  updates.clear();
  page.sendBinaryMessage(QByteArray::fromHex("0000000c"));
  ASSERT_TRUE(test::process_events_until([&] { return !updates.empty(); }));
  EXPECT_EQ(updates[0].value(QLatin1String("not_sent")).toString(), QStringLiteral("the panel is driven from outside"));
}

} // namespace
} // namespace buttondriver::simulator
