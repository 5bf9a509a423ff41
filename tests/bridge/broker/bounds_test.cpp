// SPDX-License-Identifier: Apache-2.0
// What may wait for a broker, and which settings are those of another connection.
#include "bridge/broker/broker_settings.h"
#include "bridge/broker/waiting_messages.h"

#include <gtest/gtest.h>

namespace buttondriver::bridge {
namespace {

struct WaitingRow {
  int quality_of_service;
  int most_messages;
  qint64 most_bytes;
};

class WaitingMessagesTest : public testing::TestWithParam<WaitingRow> {};

INSTANTIATE_TEST_SUITE_P(Each, WaitingMessagesTest,
                         testing::Values(WaitingRow{0, 1'000, 1'048'576}, WaitingRow{1, 50'000, 33'554'432}),
                         [](const auto &row) { return "quality_" + std::to_string(row.param.quality_of_service); });

TEST_P(WaitingMessagesTest, have_bounds_and_make_room_when_they_go) {
  const auto [quality_of_service, most_messages, most_bytes] = GetParam();
  WaitingMessages many;
  for (int number = 1; number <= most_messages; ++number) {
    ASSERT_TRUE(many.hasRoomFor(1, quality_of_service)) << number;
    many.add(number, "a", 1);
  }
  EXPECT_FALSE(many.hasRoomFor(1, quality_of_service));
  EXPECT_TRUE(many.remove(7));
  EXPECT_FALSE(many.remove(7));
  EXPECT_TRUE(many.hasRoomFor(1, quality_of_service));

  WaitingMessages large;
  EXPECT_FALSE(large.hasRoomFor(most_bytes + 1, quality_of_service));
  EXPECT_TRUE(large.hasRoomFor(most_bytes, quality_of_service));
  large.add(1, "a", most_bytes);
  EXPECT_EQ(large.topicOf(1), "a");
  EXPECT_FALSE(large.hasRoomFor(1, quality_of_service));
  EXPECT_TRUE(large.remove(1));
  EXPECT_EQ(large.topicOf(1), "");
  EXPECT_EQ(large.count(), 0);
  EXPECT_TRUE(large.hasRoomFor(most_bytes, quality_of_service));
}

TEST(BrokerSettingsTest, differ_in_each_of_their_parts) {
  void (*const changes[])(BrokerSettings &) = {
      [](BrokerSettings &one) { one.host = QStringLiteral("x"); },
      [](BrokerSettings &one) { one.port = 1; },
      [](BrokerSettings &one) { one.is_mqtt_5 = false; },
      [](BrokerSettings &one) { one.client_id = "x"; },
      [](BrokerSettings &one) { one.user = QStringLiteral("x"); },
      [](BrokerSettings &one) { one.password = "x"; },
      [](BrokerSettings &one) { one.has_tls = true; },
      [](BrokerSettings &one) { one.ca_file = QStringLiteral("x"); },
      [](BrokerSettings &one) { one.cert_file = QStringLiteral("x"); },
      [](BrokerSettings &one) { one.key_file = QStringLiteral("x"); },
      [](BrokerSettings &one) { one.keep_alive_seconds = 31; },
      [](BrokerSettings &one) { one.will_topic = "x"; },
      [](BrokerSettings &one) { one.will_payload = "x"; },
  };
  EXPECT_TRUE(BrokerSettings() == BrokerSettings());
  int row = 0;
  for (const auto change : changes) {
    BrokerSettings settings;
    change(settings);
    EXPECT_FALSE(settings == BrokerSettings()) << row;
    ++row;
  }
}

} // namespace
} // namespace buttondriver::bridge
