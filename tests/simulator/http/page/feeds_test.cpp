// SPDX-License-Identifier: Apache-2.0
// The lists of messages and log lines, for scripts.

#include "simulator/http/json/feeds_json.h"
#include "web_page_fixture.h"

#include <QJsonArray>
#include <QJsonDocument>

#include <gmock/gmock.h>

#include <string>

namespace buttondriver::simulator {
namespace {

QJsonObject parsed(const char *json) { return QJsonDocument::fromJson(json).object(); }

std::string text_of(const QJsonObject &object) {
  return QJsonDocument(object).toJson(QJsonDocument::Compact).toStdString();
}

/// Three messages, of which two are kept.
History<MessageRecord> two_of_three() {
  History<MessageRecord> messages(2);
  const QByteArray ping = QByteArray::fromHex("0000000c");
  messages.add({1700000000000, 1000, 4, ping});
  messages.add({1700000000001, 2000, 4, ping});
  messages.add({1700000000002, 1000, 8, QByteArray::fromHex("00000010ffffffff")});
  return messages;
}

constexpr const char *second = R"({"client":2000,"fields":[["opcode",12]],"name":"BMS_Ping","number":2,"size":4,)"
                               R"("time":1700000000001})";
constexpr const char *third = R"({"client":1000,"fields":[["opcode",16],["screen_id",-1]],)"
                              R"("name":"BMS_BlackoutScreen","number":3,"size":8,"time":1700000000002})";

TEST(FeedsJsonTest, messages_have_numbers_and_those_that_are_gone_are_counted) {
  const History<MessageRecord> messages = two_of_three();
  struct Row {
    std::uint64_t since;
    int dropped;
    std::string entries;
  };
  const std::string both = std::string(second) + "," + third;
  const Row rows[] = {{0, 1, both}, {1, 0, both}, {2, 0, third}, {3, 0, ""}, {4, 0, ""}, {~0ULL >> 1, 0, ""}};
  for (const Row &row : rows)
    EXPECT_EQ(text_of(messages_feed(&messages, row.since)), R"({"dropped":)" + std::to_string(row.dropped) +
                                                                R"(,"last":3,"messages":[)" + row.entries +
                                                                R"(],"version":1})")
        << row.since;
}

TEST(FeedsJsonTest, messages_that_are_not_known_are_null) {
  EXPECT_EQ(text_of(messages_feed(nullptr, 0)), R"({"dropped":0,"last":null,"messages":null,"version":1})");
}

TEST(FeedsJsonTest, without_any_there_is_an_empty_list) {
  const History<MessageRecord> messages(2);
  EXPECT_EQ(text_of(messages_feed(&messages, 0)), R"({"dropped":0,"last":0,"messages":[],"version":1})");
  EXPECT_EQ(text_of(log_feed({0, 0, {}}, 7)), R"({"dropped":0,"last":0,"log":[],"version":1})");
}

TEST(FeedsJsonTest, log_lines_have_numbers_and_those_that_are_gone_are_counted) {
  const LogTap::Part part{
      9,
      0,
      {{1700000000003, LogEntry::Source::fault, "no\tway"}, {1700000000004, LogEntry::Source::output, "\xC3\xA9"}}};
  EXPECT_EQ(text_of(log_feed(part, 5)),
            R"({"dropped":2,"last":9,"log":[{"number":8,"source":"fault","text":"no\tway","time":1700000000003},)"
            R"({"number":9,"source":"output","text":"é","time":1700000000004}],"version":1})");
  EXPECT_EQ(log_feed(part, 7)[QLatin1String("dropped")].toInt(), 0);
  EXPECT_EQ(to_json(LogEntry{1, LogEntry::Source::event, "a"}), parsed(R"({"time":1,"source":"event","text":"a"})"));
}

class FeedsTest : public WebPageFixture {
protected:
  const QJsonObject feed(const QByteArray &target) const {
    const Reply answer = get(target);
    EXPECT_EQ(answer.status, 200) << target.toStdString();
    EXPECT_TRUE(answer.head.contains("Content-Type: application/json\r\n"));
    return answer.json();
  }
  /// The texts of the log after this number.
  std::vector<std::string> log_after(const QByteArray &number) const {
    std::vector<std::string> texts;
    for (const QJsonValue line : feed("/log.json?since=" + number)[QLatin1String("log")].toArray())
      texts.push_back(line[QLatin1String("text")].toString().toStdString());
    return texts;
  }
};

constexpr const char *status_31_on = "0000000c 00000015 0000001f 00000001";

TEST_F(FeedsTest, what_a_client_has_sent_is_there_once_it_is_answered) {
  sendMessages(status_31_on); // and a ping
  const QJsonObject all = feed("/messages.json");
  EXPECT_EQ(all[QLatin1String("last")].toInt(), 2);
  const QJsonArray messages = all[QLatin1String("messages")].toArray();
  ASSERT_EQ(messages.size(), 2);
  QJsonObject first = messages[0].toObject();
  EXPECT_GT(first.take(QLatin1String("time")).toDouble(), 1.7e12);
  EXPECT_EQ(first.take(QLatin1String("client")).toInt() % 1000, 0); // counted over all tests
  EXPECT_EQ(text_of(first), R"({"fields":[["opcode",21],["button_id",31],["state",1]],)"
                            R"("name":"BMS_SetLEDStatusIndicator","number":1,"size":12})");
  EXPECT_EQ(feed("/messages.json?since=0"), all);
  const QJsonArray later = feed("/messages.json?since=1")[QLatin1String("messages")].toArray();
  ASSERT_EQ(later.size(), 1);
  EXPECT_EQ(later[0], messages[1]);
}

TEST_F(FeedsTest, numbers_go_on_after_a_reset_and_what_it_forgot_counts_as_dropped) {
  sendMessages(status_31_on);
  EXPECT_EQ(post("/reset").status, 204);
  EXPECT_EQ(feed("/messages.json"), parsed(R"({"version":1,"last":2,"dropped":2,"messages":[]})"));
  sendMessages("");
  const QJsonObject after = feed("/messages.json?since=2");
  EXPECT_EQ(after[QLatin1String("dropped")].toInt(), 0);
  EXPECT_EQ(after[QLatin1String("messages")][0][QLatin1String("number")].toInt(), 3);
}

TEST_F(FeedsTest, the_log_has_what_accepted_work_logs) {
  const int last = feed("/log.json")[QLatin1String("last")].toInt();
  EXPECT_GT(last, 0);
  // A line of a screen that does not exist: the worker finds that out.
  sendMessages("00000015 0000000f 00000009 00000000 00000001 00000001 41");
  const std::vector<std::string> lines = log_after(QByteArray::number(last));
  EXPECT_THAT(lines, testing::Contains("Invalid screen ID 9."));
  EXPECT_EQ(log_after(QByteArray::number(last + static_cast<int>(lines.size()))), std::vector<std::string>());
}

TEST_F(FeedsTest, a_query_that_is_no_number_is_refused) {
  for (const char *query : {"since", "since=", "since=-1", "since=+1", "since=1x", "since= 1", "since=1&x=2", "from=1",
                            "since=9223372036854775808"})
    for (const char *path : {"/messages.json?", "/log.json?"}) {
      const Reply answer = ask(QByteArray("GET ") + path + QByteArray(query).replace(' ', "%20") +
                               " HTTP/1.1\r\nHost: " + host() + "\r\n\r\n");
      EXPECT_EQ(answer.status, 400) << path << query;
      EXPECT_EQ(answer.body, "the query of a feed is since=NUMBER\n") << path << query;
    }
  EXPECT_EQ(log_after("9223372036854775807"), std::vector<std::string>());
  EXPECT_EQ(feed("/messages.json?since=9223372036854775807"),
            parsed(R"({"version":1,"last":0,"dropped":0,"messages":[]})"));
  EXPECT_EQ(post("/messages.json").status, 405);
}

} // namespace
} // namespace buttondriver::simulator
