// SPDX-License-Identifier: Apache-2.0
// The live feed, as a page sees it.

#include "support/event_loop.h"
#include "web_page_fixture.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QWebSocket>

#include <gmock/gmock.h>

#include <algorithm>
#include <vector>

namespace buttondriver::simulator {
namespace {

using test::process_events_until;

/// A page that remembers what it was sent.
class Page {
public:
  explicit Page(const QByteArray &host, const QByteArray &origin = {})
      : socket(QString::fromLatin1(origin.isEmpty() ? "http://" + host : origin)) {
    QObject::connect(&socket, &QWebSocket::textMessageReceived, &socket, [this](const QString &text) {
      updates.push_back(QJsonDocument::fromJson(text.toUtf8()).object());
    });
    QObject::connect(&socket, &QWebSocket::binaryMessageReceived, &socket,
                     [this](const QByteArray &bytes) { rows.push_back(bytes); });
    QObject::connect(&socket, &QWebSocket::disconnected, &socket, [this] { has_ended = true; });
    socket.open(QUrl(QString::fromLatin1("ws://" + host + "/live")));
  }

  /// The last value that was sent under `name`.
  QJsonValue latest(const char *name) const {
    for (auto update = updates.rbegin(); update != updates.rend(); ++update)
      if (update->contains(QLatin1String(name)))
        return (*update)[QLatin1String(name)];
    return {};
  }
  bool waitFor(const char *name) {
    return process_events_until([&] { return !latest(name).isUndefined() && !latest(name).isNull(); });
  }

  QWebSocket socket;
  std::vector<QJsonObject> updates;
  std::vector<QByteArray> rows;
  bool has_ended = false;
};

class LiveFeedTest : public WebPageFixture {
protected:
  /// Waits until `page` has been told of everything that was sent to the daemon.
  void settle(const Page &page, int messages) {
    EXPECT_TRUE(process_events_until([&] {
      const QJsonValue counters = page.latest("counters");
      return counters[QLatin1String("messages")].toInt() == messages &&
             counters[QLatin1String("queue_length")].toInt() == 0;
    }));
  }
};

constexpr const char *led_5_on = "00000010 00000011 00000005 00000001 00000000";
constexpr const char *two_pixels =
    "00000052 00000013 00000002 00000003 00000005 0000003e"
    "424d 3e000000 00000000 36000000 28000000 02000000 01000000 0100 1800 00000000 08000000"
    "00000000 00000000 00000000 00000000 0000ff ff0000 0000";

TEST_F(LiveFeedTest, a_page_is_told_the_whole_state_first) {
  sendMessages(QByteArray(led_5_on) + two_pixels);
  get("/state.json");
  Page page(host());
  ASSERT_TRUE(page.waitFor("lamps"));
  EXPECT_EQ(page.updates[0][QLatin1String("daemon_port")].toInt(), simulation->daemon()->server().port());
  EXPECT_TRUE(page.latest("lamps")[QLatin1String("button_leds")][5].toBool());
  EXPECT_EQ(page.latest("lamps")[QLatin1String("intensity")].toInt(), 63);
  EXPECT_EQ(page.latest("screens").toArray().size(), 3);
  EXPECT_EQ(page.latest("messages").toArray().size(), 3);
  EXPECT_EQ(page.latest("messages")[0][QLatin1String("name")].toString(), QStringLiteral("BMS_SetLEDState"));
  EXPECT_FALSE(page.latest("log").toArray().isEmpty());
  QByteArray expected = QByteArray::fromHex("01 02 05 01 000000000000 00f8 1f00");
  expected.append(QByteArray(2 * (128 - 5), '\0'));
  EXPECT_EQ(page.rows, std::vector<QByteArray>{expected});
}

TEST_F(LiveFeedTest, afterwards_it_is_told_what_has_changed) {
  Page page(host());
  ASSERT_TRUE(page.waitFor("lamps"));
  page.updates.clear();
  sendMessages(two_pixels);
  settle(page, 2);
  EXPECT_EQ(page.rows.size(), 1U);
  EXPECT_TRUE(page.latest("lamps").isNull()) << "no lamp has changed";
  EXPECT_TRUE(page.latest("screens").isNull()) << "no text has changed";
  page.rows.clear();
  sendMessages(QByteArray(two_pixels) + led_5_on);
  settle(page, 5);
  EXPECT_TRUE(page.rows.empty()) << "the same pixels again are no change";
  EXPECT_TRUE(page.latest("lamps")[QLatin1String("button_leds")][5].toBool());
}

TEST_F(LiveFeedTest, texts_of_clients_come_as_they_are) {
  Page page(host());
  sendMessages("0000001d 0000000f 00000000 00000001 00000001 00000009 3c623e22e45c0a3100");
  settle(page, 2);
  EXPECT_EQ(page.latest("screens")[0][QLatin1String("text")][1].toString(), QString::fromUtf8("<b>\"ä\\\n1"));
}

TEST_F(LiveFeedTest, what_a_page_sends_goes_the_way_of_a_client) {
  Page page(host());
  ASSERT_TRUE(page.waitFor("lamps"));
  page.socket.sendBinaryMessage(QByteArray::fromHex("00000011 00000007 00000001 00000000"));
  page.socket.sendBinaryMessage(QByteArray::fromHex("0000000c"));
  ASSERT_TRUE(page.waitFor("answer"));
  EXPECT_EQ(page.latest("answer").toString(), QStringLiteral("BMS_PingReply"));
  settle(page, 2);
  EXPECT_TRUE(page.latest("lamps")[QLatin1String("button_leds")][7].toBool());
  EXPECT_EQ(page.latest("counters")[QLatin1String("clients")].toInt(), 1);
  page.socket.close();
  EXPECT_TRUE(process_events_until([&] { return simulation->counters().clients == 0; }));
}

TEST_F(LiveFeedTest, all_pages_are_told_the_same) {
  std::vector<std::unique_ptr<Page>> pages;
  for (int i = 0; i < 10; ++i)
    pages.push_back(std::make_unique<Page>(host()));
  for (const auto &page : pages)
    ASSERT_TRUE(page->waitFor("lamps"));
  sendMessages(QByteArray(two_pixels) + led_5_on);
  for (const auto &page : pages) {
    settle(*page, 3);
    EXPECT_EQ(page->rows, pages[0]->rows);
    EXPECT_EQ(page->rows.size(), 1U);
    EXPECT_TRUE(page->latest("lamps")[QLatin1String("button_leds")][5].toBool());
  }
}

TEST_F(LiveFeedTest, of_very_many_messages_it_is_told_the_newest_and_how_many_are_left_out) {
  Page page(host());
  ASSERT_TRUE(page.waitFor("lamps"));
  QByteArray flood;
  for (int i = 0; i < 5000; ++i)
    flood += "00000004 00000063";
  sendMessages(flood);
  settle(page, 5001);
  int told = 0;
  int left_out = 0;
  EXPECT_TRUE(process_events_until([&] {
    told = left_out = 0;
    for (const QJsonObject &update : page.updates) {
      EXPECT_LE(update[QLatin1String("messages")].toArray().size(), 200);
      told += static_cast<int>(update[QLatin1String("messages")].toArray().size());
      left_out += update[QLatin1String("messages_left_out")].toInt();
    }
    return told + left_out >= 5001;
  }));
  EXPECT_EQ(told + left_out, 5001);
  EXPECT_GT(left_out, 0);
}

TEST_F(LiveFeedTest, messages_and_log_lines_come_with_few_of_many_updates) {
  Page page(host());
  ASSERT_TRUE(page.waitFor("lamps"));
  page.updates.clear();
  const QByteArray led_7_on = QByteArray::fromHex("00000011 00000007 00000001 00000000");
  page.socket.sendBinaryMessage(led_7_on);
  // Each update is answered by another message, so that there is news for nearly every look.
  std::size_t answered = 0;
  EXPECT_TRUE(process_events_until([&] {
    for (; answered < page.updates.size(); ++answered)
      page.socket.sendBinaryMessage(led_7_on);
    return page.updates.size() >= 40;
  }));
  const auto has_entries = [](const QJsonObject &update) {
    return update.contains(QLatin1String("messages")) || update.contains(QLatin1String("log"));
  };
  const auto with_entries = std::count_if(page.updates.begin(), page.updates.end(), has_entries);
  EXPECT_LE(with_entries, 20) << "usually 5";
  EXPECT_GE(with_entries, 2) << "they do come";
}

TEST_F(LiveFeedTest, a_page_is_told_which_buttons_blink_and_how_fast) {
  Page page(host());
  ASSERT_TRUE(page.waitFor("blinking"));
  EXPECT_EQ(page.latest("blinking").toArray().size(), 0);
  sendMessages("00000010 00000011 00000005 ffffffff 000000fa");
  EXPECT_TRUE(process_events_until([&] { return page.latest("blinking").toArray().size() == 1; }));
  EXPECT_EQ(page.latest("blinking")[0], (QJsonObject{{"button", 5}, {"time", 250}}));
  sendMessages(led_5_on);
  EXPECT_TRUE(process_events_until([&] { return page.latest("blinking").toArray().isEmpty(); }));
}

TEST_F(LiveFeedTest, a_message_comes_with_its_bytes) {
  Page page(host());
  ASSERT_TRUE(page.waitFor("lamps"));
  page.updates.clear();
  sendMessages(led_5_on);
  ASSERT_TRUE(page.waitFor("messages"));
  EXPECT_EQ(page.latest("messages")[0][QLatin1String("bytes")].toString(),
            QStringLiteral("00000011000000050000000100000000"));
}

TEST_F(LiveFeedTest, one_page_too_many_is_sent_away) {
  std::vector<std::unique_ptr<Page>> pages;
  for (int i = 0; i < 32; ++i) {
    pages.push_back(std::make_unique<Page>(host()));
    ASSERT_TRUE(pages.back()->waitFor("lamps")) << i;
  }
  Page last(host());
  EXPECT_TRUE(process_events_until([&] { return last.socket.closeReason() == QStringLiteral("too many pages"); }));
  pages.pop_back();
  EXPECT_TRUE(process_events_until([&] {
    Page again(host());
    return process_events_until(
               [&] { return !again.latest("lamps").isNull() || !again.socket.closeReason().isEmpty(); }) &&
           !again.latest("lamps").isNull();
  }));
}

TEST_F(LiveFeedTest, a_page_of_another_site_gets_no_connection) {
  Page page(host(), "http://evil.example");
  EXPECT_TRUE(process_events_until([&] { return page.has_ended; }));
  EXPECT_TRUE(page.updates.empty());
}

TEST_F(LiveFeedTest, too_large_a_message_ends_the_page) {
  Page page(host());
  ASSERT_TRUE(page.waitFor("lamps"));
  page.socket.sendBinaryMessage(QByteArray(64 * 1024 + 1, 'x'));
  EXPECT_TRUE(process_events_until([&] { return page.has_ended; }));
  EXPECT_EQ(simulation->counters().messages, 0U);
  EXPECT_EQ(get("/state.json").status, 200);
}

} // namespace
} // namespace buttondriver::simulator
