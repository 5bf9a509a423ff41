// SPDX-License-Identifier: Apache-2.0
#include "bridge/panels/waiting_commands.h"

#include "bridge/panels/link_fixture.h"

namespace buttondriver::bridge::test {

namespace {

using Added = WaitingCommands::Added;

QByteArray taken(WaitingCommands &waiting) {
  QByteArray text;
  for (; !waiting.isEmpty(); waiting.removeFirst())
    text += waiting.first().command.frame.mid(4) + ' ';
  EXPECT_EQ(waiting.count(), 0);
  EXPECT_EQ(waiting.bytes(), 0);
  EXPECT_FALSE(waiting.isRestoring());
  return text.trimmed();
}

} // namespace

TEST(WaitingCommandsTest, a_newer_one_keeps_the_place_when_nothing_overlaps_it_behind) {
  WaitingCommands waiting;
  EXPECT_EQ(waiting.add("a", lamp("a1", 1), true), Added::yes);
  EXPECT_EQ(waiting.add("b", lamp("b1", 2), true), Added::yes);
  EXPECT_EQ(waiting.add("a", lamp("a2, longer", 1), true), Added::replaced);
  EXPECT_EQ(waiting.count(), 2);
  EXPECT_EQ(waiting.bytes(), 14 + 6);
  EXPECT_EQ(taken(waiting), "a2, longer b1");
}

TEST(WaitingCommandsTest, a_newer_one_goes_behind_what_overlaps_it) {
  WaitingCommands waiting;
  waiting.add("line", line("l1", 1), true);
  waiting.add("other", line("o1", 2), true);
  waiting.add("picture", picture("p1"), true);
  waiting.add("picture", picture("p2"), true);
  EXPECT_EQ(waiting.add("line", line("l2", 1), true), Added::replaced);
  EXPECT_EQ(waiting.add("line", line("l3", 1), true), Added::replaced);
  EXPECT_EQ(taken(waiting), "o1 p1 p2 l3");
}

TEST(WaitingCommandsTest, the_same_lamp_by_two_topics_keeps_its_order) {
  WaitingCommands waiting;
  waiting.add("led/5", lamp("a", 5), true);
  waiting.add("do/led/5", lamp("b", 5), false);
  waiting.add("led/5", lamp("c", 5), true);
  EXPECT_EQ(taken(waiting), "b c");
}

TEST(WaitingCommandsTest, what_was_taken_is_not_replaced) {
  WaitingCommands waiting;
  waiting.add("a", lamp("a1"), true);
  waiting.removeFirst();
  EXPECT_EQ(waiting.add("a", lamp("a2"), true), Added::yes);
  EXPECT_EQ(taken(waiting), "a2");
}

TEST(WaitingCommandsTest, a_restoration_takes_the_place_of_what_is_kept_and_does_not_count) {
  WaitingCommands waiting;
  waiting.add("a", lamp("a1", 1), true);
  waiting.add("do/b", lamp("b1", 2), false);
  QVector<TopicCommand> restoration;
  for (int i = 0; i < 1500; ++i)
    restoration.append({"x", picture("x")});
  waiting.restore(restoration);
  waiting.restore({{"a", lamp("A", 1)}, {"", picture("B")}});
  EXPECT_TRUE(waiting.isRestoring());
  EXPECT_EQ(waiting.add("a", lamp("a2", 1), true), Added::replaced);
  EXPECT_TRUE(waiting.isRestoring());
  EXPECT_EQ(taken(waiting), "b1 a2 B");
}

TEST(WaitingCommandsTest, has_bounds_that_count_what_was_added_alone) {
  WaitingCommands waiting;
  waiting.restore(QVector<TopicCommand>(2000, {"x", picture("x")}) +
                  QVector<TopicCommand>{{"restored lamp", lamp("3", 4)}});
  waiting.add("lamp", lamp("1"), true);
  for (int i = 1; i < WaitingCommands::most_commands; ++i)
    ASSERT_EQ(waiting.add("p", picture("p"), true), Added::yes);
  EXPECT_EQ(waiting.add("p", picture("p"), true), Added::no_room);
  EXPECT_EQ(waiting.add("other lamp", lamp("1"), true), Added::no_room);
  EXPECT_EQ(waiting.add("lamp", lamp("2"), true), Added::replaced);
  EXPECT_EQ(waiting.count(), 3001);
  EXPECT_EQ(waiting.add("restored lamp", lamp("4", 4), true), Added::no_room);
}

TEST(WaitingCommandsTest, has_bounds_in_bytes) {
  WaitingCommands waiting;
  const QByteArray half(WaitingCommands::most_bytes / 2 - 4, 'x');
  EXPECT_EQ(waiting.add("a", lamp(half, 1), true), Added::yes);
  EXPECT_EQ(waiting.add("b", lamp(half, 2), true), Added::yes);
  EXPECT_EQ(waiting.add("c", lamp("c", 3), true), Added::no_room);
  EXPECT_EQ(waiting.add("a", lamp(half + 'x', 1), true), Added::no_room);
  EXPECT_EQ(waiting.add("a", lamp(half.left(8), 1), true), Added::replaced);
  EXPECT_EQ(waiting.add("c", lamp("c", 3), true), Added::yes);
}

TEST(WaitingCommandsTest, has_bounds_in_bytes_that_count_what_was_added_alone) {
  WaitingCommands waiting;
  const QByteArray half(WaitingCommands::most_bytes / 2 - 4, 'x');
  const auto expect_room = [&] {
    EXPECT_EQ(waiting.add("a", lamp(half, 1), true), Added::yes);
    EXPECT_EQ(waiting.add("b", lamp(half, 2), true), Added::yes);
    EXPECT_EQ(waiting.add("c", lamp("c", 3), true), Added::no_room);
  };
  waiting.restore({{"restored", lamp(half, 4)}, {"x", picture(half + half)}});
  expect_room();
  EXPECT_EQ(waiting.add("restored", lamp(half, 4), true), Added::no_room);
  waiting.clear();
  expect_room();
  waiting.restore({{"restored", lamp("r", 4)}});
  EXPECT_EQ(waiting.add("restored", lamp(half, 4), true), Added::replaced);
  waiting.removeFirst();
  expect_room();
}

TEST(WaitingCommandsTest, one_of_a_restoration_is_replaced_also_when_an_older_one_of_its_topic_has_gone) {
  WaitingCommands waiting;
  waiting.add("a", lamp("a1", 1), false);
  waiting.restore({{"a", lamp("A", 1)}});
  waiting.removeFirst();
  EXPECT_EQ(waiting.add("a", lamp("a2", 1), true), Added::replaced);
  EXPECT_EQ(taken(waiting), "a2");
}

TEST(WaitingCommandsTest, tells_what_is_not_kept_when_it_goes) {
  WaitingCommands waiting;
  waiting.add("a", lamp("a", 1), true);
  waiting.add("do/b", lamp("b", 2), false);
  waiting.restore({{"a", lamp("A", 1)}});
  EXPECT_EQ(waiting.clear(), QVector<QByteArray>{"do/b"});
  EXPECT_EQ(waiting.add("a", lamp("a", 1), true), Added::yes);
  EXPECT_EQ(taken(waiting), "a");
}

} // namespace buttondriver::bridge::test
