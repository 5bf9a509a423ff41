// SPDX-License-Identifier: Apache-2.0
#include "bridge/wanted/topic_collection.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace buttondriver::bridge::test {

namespace {

struct Put {
  const char *topic;
  const char *payload;
  bool has_room;
};

struct Row {
  const char *name;
  std::vector<Put> puts; // into a collection of 3 topics and 20 bytes
  const char *content;
};

const Row rows[] = {
    {"each_topic_once_where_it_came_last", {{"a", "1", true}, {"b", "1", true}, {"a", "2", true}}, "b=1 a=2"},
    {"no_more_topics_than_there_is_room_for",
     {{"a", "1", true}, {"b", "1", true}, {"c", "1", true}, {"d", "1", false}, {"b", "2", true}},
     "a=1 c=1 b=2"},
    {"no_more_bytes_than_there_is_room_for",
     {{"a", "123456789", true}, {"b", "123456789", true}, {"c", "", true}, {"d", "1", false}},
     "a=123456789 b=123456789 c="},
    {"a_payload_that_is_too_long_leaves_the_former", {{"a", "1", true}, {"a", "12345678901234567890", false}}, "a=1"},
    {"a_payload_counts_until_the_next_one",
     {{"a", "1234567890123456789", true}, {"b", "1", false}, {"a", "12345678", true}, {"b", "1234567890", true}},
     "a=12345678 b=1234567890"},
    {"what_takes_back_has_room_always",
     {{"a", "1", true}, {"b", "1", true}, {"c", "12345678901234", true}, {"d", "", true}, {"e", "1", false}},
     "a=1 b=1 c=12345678901234 d="},
};

QByteArray content(const TopicCollection &collection) {
  QByteArray text;
  for (const WantedEntry &entry : collection.entries())
    text += entry.topic + '=' + entry.payload + ' ';
  return text.trimmed();
}

class TopicCollectionTest : public testing::TestWithParam<Row> {};

} // namespace

TEST_P(TopicCollectionTest, keeps_what_came_last) {
  TopicCollection collection(3, 20);
  for (const Put &put : GetParam().puts)
    EXPECT_EQ(collection.put({put.topic, put.payload, {}, true, 0}), put.has_room) << put.topic << put.payload;
  EXPECT_EQ(content(collection), GetParam().content);
}

INSTANTIATE_TEST_SUITE_P(Puts, TopicCollectionTest, testing::ValuesIn(rows),
                         [](const auto &row) { return std::string(row.param.name); });

TEST(TopicCollectionOfGroupsTest, has_room_for_others_when_a_group_is_taken_out) {
  TopicCollection collection(3, 20);
  for (const char *topic : {"g/a", "h/g/", "g/b"})
    EXPECT_TRUE(collection.put({topic, "123", {}, true, 0}));
  collection.removeAll("g/");
  EXPECT_EQ(content(collection), "h/g/=123");
  EXPECT_EQ(collection.find("g/a"), nullptr);
  EXPECT_TRUE(collection.put({"i", "123", {}, true, 0}));
  EXPECT_TRUE(collection.put({"j", "12345678", {}, true, 0}));
}

} // namespace buttondriver::bridge::test
