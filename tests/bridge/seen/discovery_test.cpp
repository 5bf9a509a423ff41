// SPDX-License-Identifier: Apache-2.0
#include "bridge/seen/discovery.h"

#include <QHash>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSet>

#include <gtest/gtest.h>

#include <ostream>

namespace buttondriver::bridge {
namespace {

QVector<Publication> messages_of(const QByteArray &panel) {
  return discovery_messages("homeassistant", "buttondriver", "1", panel);
}

QByteArray payload_of(const QVector<Publication> &messages, const QByteArray &topic) {
  for (const Publication &message : messages)
    if (message.topic == topic)
      return message.payload;
  return {};
}

/// With the keys in order, and indented.
std::string readable(const QByteArray &json) { return QJsonDocument::fromJson(json).toJson().toStdString(); }

struct Expected {
  const char *topic;
  const char *payload;
};

void PrintTo(const Expected &expected, std::ostream *stream) { *stream << expected.topic; }

class DiscoveryMessageTest : public testing::TestWithParam<Expected> {};

TEST_P(DiscoveryMessageTest, is_as_home_automation_expects_it) {
  const QByteArray payload = payload_of(messages_of("hall"), GetParam().topic);
  ASSERT_FALSE(readable(GetParam().payload).empty());
  EXPECT_EQ(readable(payload), readable(GetParam().payload));
}

const Expected expected_messages[] = {
    {"homeassistant/switch/buttondriver__hall/button_23/config", R"({
      "name": "Button 23", "unique_id": "buttondriver__hall__button_23", "icon": "mdi:led-on",
      "command_topic": "buttondriver/hall/led/23", "state_topic": "buttondriver/hall/led/23",
      "payload_on": "on", "payload_off": "off", "retain": true,
      "value_template": "{{ 'off' if value in ('off', '') else 'on' }}",
      "availability": [{"topic": "buttondriver/bridge/1/availability"}, {"topic": "buttondriver/hall/availability"}],
      "availability_mode": "all",
      "device": {"identifiers": ["buttondriver__hall"], "name": "hall", "model": "Control panel"}})"},
    {"homeassistant/switch/buttondriver__hall/status_31/config", R"({
      "name": "Status 31", "unique_id": "buttondriver__hall__status_31", "icon": "mdi:led-on",
      "command_topic": "buttondriver/hall/status/31", "state_topic": "buttondriver/hall/status/31",
      "payload_on": "on", "payload_off": "off", "retain": true,
      "value_template": "{{ 'off' if value in ('off', '') else 'on' }}",
      "availability": [{"topic": "buttondriver/bridge/1/availability"}, {"topic": "buttondriver/hall/availability"}],
      "availability_mode": "all",
      "device": {"identifiers": ["buttondriver__hall"], "name": "hall", "model": "Control panel"}})"},
    {"homeassistant/switch/buttondriver__hall/toggle_1/config", R"({
      "name": "Toggle 1", "unique_id": "buttondriver__hall__toggle_1", "icon": "mdi:led-on",
      "command_topic": "buttondriver/hall/toggle/1", "state_topic": "buttondriver/hall/toggle/1",
      "payload_on": "on", "payload_off": "off", "retain": true,
      "value_template": "{{ 'off' if value in ('off', '') else 'on' }}",
      "availability": [{"topic": "buttondriver/bridge/1/availability"}, {"topic": "buttondriver/hall/availability"}],
      "availability_mode": "all",
      "device": {"identifiers": ["buttondriver__hall"], "name": "hall", "model": "Control panel"}})"},
    {"homeassistant/text/buttondriver__hall/screen_2_line_7/config", R"({
      "name": "Screen 2 line 7", "unique_id": "buttondriver__hall__screen_2_line_7",
      "command_topic": "buttondriver/hall/screen/2/line/7", "state_topic": "buttondriver/hall/screen/2/line/7",
      "min": 0, "max": 255, "retain": true,
      "availability": [{"topic": "buttondriver/bridge/1/availability"}, {"topic": "buttondriver/hall/availability"}],
      "availability_mode": "all",
      "device": {"identifiers": ["buttondriver__hall"], "name": "hall", "model": "Control panel"}})"},
    {"homeassistant/button/buttondriver__hall/blackout/config", R"({
      "name": "Blackout", "unique_id": "buttondriver__hall__blackout",
      "command_topic": "buttondriver/hall/blackout", "payload_press": "now", "retain": true,
      "availability": [{"topic": "buttondriver/bridge/1/availability"}, {"topic": "buttondriver/hall/availability"}],
      "availability_mode": "all",
      "device": {"identifiers": ["buttondriver__hall"], "name": "hall", "model": "Control panel"}})"},
    {"homeassistant/binary_sensor/buttondriver__hall/connection/config", R"({
      "name": "Connection", "unique_id": "buttondriver__hall__connection",
      "device_class": "connectivity", "entity_category": "diagnostic",
      "state_topic": "buttondriver/hall/availability", "payload_on": "online", "payload_off": "offline",
      "availability": [{"topic": "buttondriver/bridge/1/availability"}], "availability_mode": "all",
      "device": {"identifiers": ["buttondriver__hall"], "name": "hall", "model": "Control panel"}})"},
};

INSTANTIATE_TEST_SUITE_P(Each, DiscoveryMessageTest, testing::ValuesIn(expected_messages));

TEST(DiscoveryTest, speaks_of_each_thing_once) {
  QHash<QByteArray, int> counts;
  QSet<QByteArray> topics;
  QSet<QString> ids;
  for (const Publication &message : messages_of("hall")) {
    EXPECT_TRUE(message.is_retained);
    EXPECT_FALSE(message.payload.contains('\n')) << "nobody reads it with his own eyes";
    ++counts[message.topic.split('/').at(1)];
    topics.insert(message.topic);
    ids.insert(QJsonDocument::fromJson(message.payload).object().value(QStringLiteral("unique_id")).toString());
  }
  EXPECT_EQ(counts.value("switch"), 24 + 32 + 2);
  EXPECT_EQ(counts.value("text"), 3 * 8);
  EXPECT_EQ(counts.value("button"), 1);
  EXPECT_EQ(counts.value("binary_sensor"), 1);
  EXPECT_EQ(topics.size(), 84);
  EXPECT_EQ(ids.size(), 84);
}

TEST(DiscoveryTest, is_taken_back_by_the_same_topics_without_a_payload) {
  const auto messages = messages_of("hall");
  const auto removal = discovery_removal("homeassistant", "buttondriver", "1", "hall");
  ASSERT_EQ(removal.size(), messages.size());
  for (int i = 0; i < removal.size(); ++i) {
    EXPECT_EQ(removal.at(i).topic, messages.at(i).topic);
    EXPECT_EQ(removal.at(i).payload, "");
    EXPECT_TRUE(removal.at(i).is_retained);
  }
}

TEST(DiscoveryTest, writes_names_with_letters_digits_and_marks_that_stand_for_others) {
  struct Row {
    const char *prefix;
    const char *panel;
    const char *node;
  };
  const Row rows[] = {
      {"buttondriver", "Hall-2", "buttondriver__Hall-2"},
      {"works/panels", "hall", "works_2Fpanels__hall"},
      {"a", "b_c", "a__b_5Fc"},
      {"a_b", "c", "a_5Fb__c"},
      {"a", "T\xc3\xbcr 1", "a__T_C3_BCr_201"},
  };
  for (const Row &row : rows) {
    const auto messages = discovery_messages("ha/x", row.prefix, "1", row.panel);
    const QByteArray topic = QByteArray("ha/x/button/") + row.node + "/blackout/config";
    const QJsonObject message = QJsonDocument::fromJson(payload_of(messages, topic)).object();
    EXPECT_EQ(message.value(QStringLiteral("command_topic")).toString().toUtf8(),
              QByteArray(row.prefix) + '/' + row.panel + "/blackout");
    const QJsonObject device = message.value(QStringLiteral("device")).toObject();
    EXPECT_EQ(device.value(QStringLiteral("name")).toString().toUtf8(), row.panel);
  }
}

} // namespace
} // namespace buttondriver::bridge
