// SPDX-License-Identifier: Apache-2.0
#include "bridge/seen/statistics.h"

#include <gmock/gmock.h>

#include <string>
#include <vector>

namespace buttondriver::bridge {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// "TOPIC PAYLOAD", in the order in which they came; each has to be retained.
std::vector<std::string> lines_of(const QVector<Publication> &publications) {
  std::vector<std::string> lines;
  for (const Publication &publication : publications) {
    EXPECT_TRUE(publication.is_retained) << publication.topic.constData();
    lines.push_back((publication.topic + ' ' + publication.payload).toStdString());
  }
  return lines;
}

PanelNumbers some_numbers() {
  PanelNumbers numbers;
  numbers.ping_seconds = 0.01234;
  numbers.reconnects = 3;
  numbers.refused = 4;
  numbers.waiting_commands = 5;
  numbers.waiting_bytes = 6;
  return numbers;
}

TEST(StatisticsTest, tells_each_number_of_a_panel) {
  Statistics statistics;
  EXPECT_THAT(lines_of(statistics.changesOf("top/hall", some_numbers())),
              ElementsAre("top/hall/statistics/ping_ms 12.3", "top/hall/statistics/reconnects 3",
                          "top/hall/statistics/waiting_commands 5", "top/hall/statistics/waiting_bytes 6",
                          "top/hall/statistics/refused 4"));
}

TEST(StatisticsTest, tells_each_number_of_the_bridge) {
  BridgeNumbers numbers;
  numbers.broker_reconnects = 1;
  numbers.messages = 18446744073709551615U;
  numbers.wrong_messages = 3;
  numbers.waiting_for_broker = 4;
  Statistics statistics;
  EXPECT_THAT(lines_of(statistics.changesOf("top/bridge/1", numbers)),
              ElementsAre("top/bridge/1/statistics/reconnects 1",
                          "top/bridge/1/statistics/messages 18446744073709551615",
                          "top/bridge/1/statistics/wrong_messages 3", "top/bridge/1/statistics/waiting_messages 4"));
}

TEST(StatisticsTest, tells_only_what_has_changed) {
  Statistics statistics;
  PanelNumbers numbers = some_numbers();
  statistics.changesOf("top/hall", numbers);
  EXPECT_THAT(lines_of(statistics.changesOf("top/hall", numbers)), IsEmpty());
  numbers.ping_seconds = 0.01231; // the same tenth of a millisecond
  numbers.refused = 7;
  EXPECT_THAT(lines_of(statistics.changesOf("top/hall", numbers)), ElementsAre("top/hall/statistics/refused 7"));
  EXPECT_EQ(statistics.changesOf("top/door", numbers).size(), 5) << "another panel has told nothing yet";
}

TEST(StatisticsTest, tells_no_time_of_a_ping_before_there_was_an_answer) {
  Statistics statistics;
  PanelNumbers numbers;
  EXPECT_EQ(statistics.changesOf("top/hall", numbers).size(), 4);
  numbers.ping_seconds = 0;
  EXPECT_THAT(lines_of(statistics.changesOf("top/hall", numbers)), ElementsAre("top/hall/statistics/ping_ms 0.0"));
}

TEST(StatisticsTest, tells_all_again_when_the_broker_may_have_lost_it) {
  Statistics statistics;
  const auto first = lines_of(statistics.changesOf("top/hall", some_numbers()));
  statistics.forget();
  EXPECT_EQ(lines_of(statistics.changesOf("top/hall", some_numbers())), first);
}

TEST(StatisticsTest, takes_back_all_that_was_told_of_a_panel) {
  Statistics statistics;
  statistics.changesOf("top/hall", some_numbers());
  statistics.changesOf("top/door", some_numbers());
  statistics.forget();
  EXPECT_THAT(lines_of(statistics.removalOf("top/hall")),
              ElementsAre("top/hall/statistics/ping_ms ", "top/hall/statistics/reconnects ",
                          "top/hall/statistics/waiting_commands ", "top/hall/statistics/waiting_bytes ",
                          "top/hall/statistics/refused "));
  EXPECT_THAT(lines_of(statistics.removalOf("top/hall")), IsEmpty());
  EXPECT_EQ(statistics.changesOf("top/hall", some_numbers()).size(), 5);
}

} // namespace
} // namespace buttondriver::bridge
