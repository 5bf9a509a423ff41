// SPDX-License-Identifier: Apache-2.0
#include "bridge/wanted/order_record.h"
#include "bridge/wanted/wanted_state.h"

#include <gtest/gtest.h>

namespace buttondriver::bridge::test {

TEST(OrderRecordTest, is_a_json_array_of_topics) {
  EXPECT_EQ(make_order_record({}), "[]");
  EXPECT_EQ(make_order_record({"hall/screen/0/image", "group/doors/screen/0/part/\"\\\xc3\xa4"}),
            "[\"hall/screen/0/image\",\"group/doors/screen/0/part/\\\"\\\\\xc3\xa4\"]");
}

TEST(OrderRecordTest, gives_each_topic_its_place) {
  const auto places = read_order_record(R"(["b", 5, null, ["c"], "a", "", "b"])");
  ASSERT_TRUE(places);
  EXPECT_EQ(places->size(), 2);
  EXPECT_LT(places->value("b"), places->value("a"));
}

TEST(OrderRecordTest, can_be_read_with_as_many_topics_as_a_panel_can_have) {
  QVector<QByteArray> topics;
  for (int i = 0; i < WantedState::most_topics; ++i)
    topics.append(QByteArray::number(i) + QByteArray(WantedState::longest_topic - 4, '\\'));
  const auto places = read_order_record(make_order_record(topics));
  ASSERT_TRUE(places);
  EXPECT_EQ(places->size(), topics.size());
}

TEST(OrderRecordTest, is_nothing_when_it_cannot_be_read) {
  const QByteArray one_too_long = '[' + QByteArray(longest_order_record - 1, ' ') + ']';
  ASSERT_TRUE(read_order_record('[' + QByteArray(longest_order_record - 2, ' ') + ']'));
  for (const QByteArray &record :
       {QByteArray(), QByteArray("x"), QByteArray("[\"a\""), QByteArray("{\"a\":1}"), QByteArray("\"a\""),
        QByteArray("[\"\xff\xfe\"]x"), QByteArray(1000000, '['), one_too_long})
    EXPECT_FALSE(read_order_record(record)) << record.left(20).constData();
}

} // namespace buttondriver::bridge::test
