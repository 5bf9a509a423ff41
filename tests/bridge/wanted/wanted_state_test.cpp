// SPDX-License-Identifier: Apache-2.0
#include "bridge/wanted/wanted_state.h"

#include "bridge/wanted/targets.h"

#include <gtest/gtest.h>

#include <vector>

namespace buttondriver::bridge {

std::ostream &operator<<(std::ostream &stream, WantedState::Change change) {
  const char *const names[] = {"none", "last", "redraw", "refused"};
  return stream << names[static_cast<int>(change)];
}

namespace test {

namespace {

using Change = WantedState::Change;

QByteArray topics(const WantedState &state) {
  QByteArray text;
  for (const WantedState::Entry &entry : state.entries())
    text += entry.topic + ' ';
  return text.trimmed();
}

QByteArray visible_topics(const WantedState &state) {
  QByteArray text;
  for (const WantedState::Entry *entry : state.visibleEntries())
    text += entry->topic + ' ';
  return text.trimmed();
}

struct Step {
  const char *topic;
  Target target; // no_place: the topic is taken back
  const char *payload;
  Change change;
};

struct Sequence {
  const char *name;
  std::vector<Step> steps;
  const char *order;
  const char *visible;
  const char *record;
};

class WantedOrderTest : public testing::TestWithParam<Sequence> {};

const Target::Box corner{0, 0, 32, 32};
const Target::Box larger{0, 0, 64, 64};
const Target::Box middle{64, 64, 32, 32};

const Sequence sequences[] = {
    {"lamps_keep_their_places",
     {{"a", button(1), "on", Change::last},
      {"b", button(2), "on", Change::last},
      {"a", button(1), "off", Change::last}},
     "a b",
     "a b",
     "[]"},
    {"the_same_again_is_no_change",
     {{"a", button(1), "on", Change::last}, {"b", button(2), "on", Change::last}, {"a", button(1), "on", Change::none}},
     "a b",
     "a b",
     "[]"},
    {"a_lamp_goes_behind_what_concerned_it_later",
     {{"a", button(1), "on", Change::last},
      {"all", button(all), "off", Change::last},
      {"a", button(1), "on", Change::last}},
     "all a",
     "all a",
     "[\"all\"]"},
    {"what_is_covered_is_not_seen",
     {{"a", button(1), "on", Change::last}, {"all", button(all), "off", Change::last}},
     "a all",
     "all",
     "[\"a\"]"},
    {"a_line_over_a_picture_keeps_its_place",
     {{"p", screen(0), "p", Change::last}, {"l", line(0, 1), "x", Change::last}, {"l", line(0, 1), "y", Change::last}},
     "p l",
     "p l",
     "[\"p\"]"},
    {"a_picture_goes_over_the_line",
     {{"p", screen(0), "p", Change::last}, {"l", line(0, 1), "x", Change::last}, {"p", screen(0), "q", Change::last}},
     "l p",
     "p",
     "[\"l\"]"},
    {"screens_do_not_concern_each_other",
     {{"p", screen(0), "p", Change::last}, {"l", line(1, 1), "x", Change::last}, {"p", screen(0), "q", Change::last}},
     "p l",
     "p l",
     "[]"},
    {"a_line_of_all_screens_concerns_each",
     {{"l", line(all, 1), "x", Change::last},
      {"p", screen(2), "p", Change::last},
      {"l", line(all, 1), "y", Change::last}},
     "p l",
     "p l",
     "[\"p\"]"},
    {"a_smaller_picture_leaves_something_of_the_former",
     {{"i", area(0, larger), "i", Change::last}, {"i", area(0, corner), "j", Change::redraw}},
     "i",
     "i",
     "[]"},
    {"a_larger_picture_leaves_nothing",
     {{"i", area(0, corner), "i", Change::last}, {"i", area(0, larger), "j", Change::last}},
     "i",
     "i",
     "[]"},
    {"a_part_of_characters_that_are_not_known_may_leave_something_of_the_former",
     {{"t", part(0, 1), "long", Change::last}, {"t", part(0, 1), "l", Change::redraw}},
     "t",
     "t",
     "[]"},
    {"a_shorter_part_leaves_something_of_the_former",
     {{"t", part(0, 1, {3, 5}), "12:34", Change::last}, {"t", part(0, 1, {3, 4}), "1:23", Change::redraw}},
     "t",
     "t",
     "[]"},
    {"a_part_of_the_same_characters_leaves_nothing",
     {{"p", screen(0), "p", Change::last},
      {"t", part(0, 1, {3, 5}), "12:34", Change::last},
      {"t", part(0, 1, {3, 5}), "12:35", Change::last}},
     "p t",
     "p t",
     "[\"p\"]"},
    {"a_longer_part_leaves_nothing_and_is_over_what_it_touches_now",
     {{"t", part(0, 1, {3, 4}), "9:59", Change::last},
      {"l", line(0, 2), "l", Change::last},
      {"u", part(0, 1, {7, 1}), "u", Change::last},
      {"t", part(0, 1, {3, 5}), "10:00", Change::last}},
     "l u t",
     "l t",
     "[\"u\"]"},
    {"a_part_that_is_elsewhere_now_is_over_what_is_there",
     {{"t", part(0, 1), "t", Change::last},
      {"l", line(0, 2), "l", Change::last},
      {"t", part(0, 2), "t", Change::redraw}},
     "l t",
     "l t",
     "[\"l\"]"},
    {"a_part_that_is_published_again_as_it_was_leaves_nothing",
     {{"t", part(0, 1), "t", Change::last}, {"u", part(0, 1), "u", Change::last}, {"t", part(0, 1), "t", Change::last}},
     "u t",
     "u t",
     "[\"u\"]"},
    {"what_is_taken_back_is_gone",
     {{"p", screen(0), "p", Change::last},
      {"l", line(0, 1), "x", Change::last},
      {"p", {}, "", Change::none},
      {"q", {}, "", Change::none}},
     "l",
     "l",
     "[]"},
    {"what_stays_nowhere_has_no_order",
     {{"r", target_of(Target::Kind::line, 0, all), "now", Change::last},
      {"n", area(0, middle), "now", Change::last},
      {"m", area(0, corner), "now", Change::last}},
     "r n m",
     "r n m",
     "[\"r\"]"},
};

} // namespace

TEST_P(WantedOrderTest, is_as_it_was_drawn) {
  WantedState state;
  for (const Step &step : GetParam().steps) {
    if (step.target.kind == Target::Kind::no_place)
      state.remove(step.topic);
    else
      EXPECT_EQ(state.set(step.topic, step.payload, step.target, true), step.change) << step.topic;
  }
  EXPECT_EQ(topics(state), GetParam().order);
  EXPECT_EQ(visible_topics(state), GetParam().visible);
  EXPECT_EQ(state.orderRecord(), GetParam().record);
}

INSTANTIATE_TEST_SUITE_P(Sequences, WantedOrderTest, testing::ValuesIn(sequences),
                         [](const auto &row) { return std::string(row.param.name); });

TEST(WantedStateTest, tells_what_was_taken_back) {
  WantedState state;
  state.set("hall/led/5", "on", button(5), true);
  EXPECT_EQ(state.remove("hall/led/5"), button(5));
  EXPECT_EQ(state.remove("hall/led/5"), std::nullopt);
  EXPECT_TRUE(state.visibleEntries().isEmpty());
}

TEST(WantedStateTest, refuses_the_1001st_topic_and_takes_new_payloads_of_the_others) {
  WantedState state;
  for (int i = 0; i < WantedState::most_topics; ++i)
    ASSERT_EQ(state.set("t" + QByteArray::number(i), "x", part(0, 1), true), Change::last);
  EXPECT_EQ(state.set("one more", "x", button(1), true), Change::refused);
  EXPECT_EQ(state.set("t5", "y", part(0, 1), true), Change::redraw);
  EXPECT_EQ(state.entries().size(), 1000U);
  state.remove("t7");
  EXPECT_EQ(state.set("one more", "x", button(1), true), Change::last);
}

TEST(WantedStateTest, refuses_what_makes_more_than_8_mebibytes) {
  WantedState state;
  const QByteArray half(WantedState::most_bytes / 2 - 1, 'x');
  EXPECT_EQ(state.set("a", half, screen(0), true), Change::last);
  EXPECT_EQ(state.set("b", half, screen(1), true), Change::last);
  EXPECT_EQ(state.set("c", "x", screen(2), true), Change::refused);
  EXPECT_EQ(state.set("a", half + 'y', screen(0), true), Change::refused);
  EXPECT_EQ(state.entries().front().payload, half);
  EXPECT_EQ(state.set("a", "x", screen(0), true), Change::last);
  EXPECT_EQ(state.set("c", "x", screen(2), true), Change::last);
  state.remove("b");
  EXPECT_EQ(state.set("d", half, screen(1), true), Change::last);
}

TEST(WantedStateTest, refuses_a_topic_of_513_bytes) {
  WantedState state;
  EXPECT_EQ(state.set(QByteArray(512, 't'), "x", button(1), true), Change::last);
  EXPECT_EQ(state.set(QByteArray(513, 't'), "x", button(1), true), Change::refused);
}

TEST(WantedStateTest, has_a_record_to_publish_from_the_first_topic_on_and_whenever_it_changes) {
  WantedState state;
  EXPECT_FALSE(state.takeOrderChange());
  state.set("l", "x", line(0, 1), true);
  EXPECT_TRUE(state.takeOrderChange());
  EXPECT_FALSE(state.takeOrderChange());
  state.set("l", "y", line(0, 1), true);
  state.set("m", "y", line(0, 2), true);
  EXPECT_FALSE(state.takeOrderChange());
  state.set("p", "p", screen(0), true);
  EXPECT_TRUE(state.takeOrderChange());
  EXPECT_EQ(state.orderRecord(), "[\"l\",\"m\"]");
  state.set("p", "q", screen(0), true);
  EXPECT_FALSE(state.takeOrderChange());
  state.set("m", "z", line(0, 2), true);
  EXPECT_TRUE(state.takeOrderChange());
  EXPECT_EQ(state.orderRecord(), "[\"l\",\"p\"]");
  state.remove("l");
  EXPECT_TRUE(state.takeOrderChange());
  EXPECT_EQ(state.orderRecord(), "[\"p\"]");
  state.remove("m");
  EXPECT_TRUE(state.takeOrderChange());
  EXPECT_EQ(state.orderRecord(), "[]");
}

TEST(WantedStateTest, has_a_record_to_publish_when_a_part_goes_from_a_line_to_another_one) {
  WantedState state;
  state.set("under", "x", part(0, 1), true);
  state.set("goes", "x", part(0, 1), true);
  state.set("elsewhere", "x", part(0, 3), true);
  EXPECT_TRUE(state.takeOrderChange());
  EXPECT_EQ(state.orderRecord(), "[\"under\"]");
  state.set("goes", "y", part(0, 2), true);
  EXPECT_TRUE(state.takeOrderChange());
  EXPECT_EQ(state.orderRecord(), "[]");
  state.set("goes", "z", part(0, 3), true);
  EXPECT_TRUE(state.takeOrderChange());
  EXPECT_EQ(state.orderRecord(), "[\"elsewhere\"]");
}

TEST(WantedStateTest, has_no_record_to_publish_when_nothing_is_left_before_the_first_one) {
  WantedState state;
  state.set("l", "x", line(0, 1), true);
  state.remove("l");
  EXPECT_FALSE(state.takeOrderChange());
}

TEST(WantedStateTest, takes_back_all_of_a_group_and_tells_what_has_to_be_drawn_again) {
  WantedState state;
  state.set("group/doors/led/1", "on", button(1), true);
  state.set("group/door/led/2", "on", button(2), true);
  state.set("group/doors/toggle/1", "on", toggle(1), true);
  EXPECT_TRUE(state.removeAll("group/doors/"));
  EXPECT_EQ(topics(state), "group/door/led/2");
  EXPECT_TRUE(state.takeToRedraw().targets() == (QVector<Target>{button(1), toggle(1)}));
  EXPECT_TRUE(state.takeToClear().targets() == (QVector<Target>{button(1), toggle(1)}));
  EXPECT_FALSE(state.removeAll("group/doors/"));
}

} // namespace test
} // namespace buttondriver::bridge
