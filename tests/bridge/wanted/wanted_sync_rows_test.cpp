// SPDX-License-Identifier: Apache-2.0
// What a connection to a broker makes of what is wanted.
#include "bridge/wanted/targets.h"
#include "bridge/wanted/wanted_state.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace buttondriver::bridge::test {

namespace {

enum class How { old, live, taken_back };

struct Event {
  How how;
  const char *topic;
  const char *payload;
  Target target;
};

const Event old_picture{How::old, "picture", "p", screen(0)};
const Event old_line{How::old, "line", "l", line(0, 1)};

/// Upon the picture "p" on screen 0 and the line "l" over it, which are retained, and the lamp "on", which is not.
struct Row {
  const char *name;
  std::vector<Event> events;
  const char *record;
  bool has_changed;
  const char *content;
  const char *lost;
};

const Row rows[] = {
    {"what_comes_again_has_been_published",
     {old_picture, old_line, {How::old, "line", "m", line(0, 1)}},
     "[\"picture\"]",
     true,
     "picture=p line=m lamp=on",
     ""},
    {"what_is_kept_from_now_on_counts_after_what_was_not",
     {{How::live, "line", "k", line(0, 1)}, old_picture, {How::old, "line", "m", line(0, 1)}},
     "[\"picture\"]",
     true,
     "picture=p line=m lamp=on",
     ""},
    {"what_is_taken_back_can_be_published_again",
     {old_picture, old_line, {How::taken_back, "line", "", {}}, {How::old, "line", "l", line(0, 1)}},
     "[\"picture\"]",
     false,
     "picture=p line=l lamp=on",
     ""},
    {"what_a_group_keeps_comes_again_when_a_panel_joins_it",
     {old_picture,
      old_line,
      {How::old, "group/g/led/2", "on", button(2)},
      {How::live, "group/g/led/2", "off", button(2)},
      {How::old, "group/g/led/2", "on", button(2)}},
     "[\"picture\"]",
     true,
     "picture=p line=l lamp=on group/g/led/2=off",
     ""},
    {"what_is_published_for_a_group_again_is_something_else_or_was_taken_back",
     {old_picture,
      old_line,
      {How::old, "group/g/led/2", "on", button(2)},
      {How::old, "group/g/led/2", "off", button(2)},
      {How::old, "group/g/led/3", "on", button(3)},
      {How::taken_back, "group/g/led/3", "", {}},
      {How::old, "group/g/led/3", "on", button(3)}},
     "[\"picture\"]",
     true,
     "picture=p line=l lamp=on group/g/led/2=off group/g/led/3=on",
     ""},
    {"a_live_payload_keeps_the_place",
     {old_picture, {How::live, "line", "m", line(0, 1)}},
     "[\"picture\"]",
     true,
     "picture=p line=m lamp=on",
     ""},
    {"what_is_live_is_not_lost",
     {{How::live, "line", "m", line(0, 1)}, {How::taken_back, "lamp", "", {}}},
     "",
     true,
     "picture=p line=m",
     "picture"},
    {"what_came_old_can_be_taken_back",
     {old_picture, old_line, {How::old, "status", "on", status(3)}, {How::taken_back, "status", "", {}}},
     "[\"picture\"]",
     true, // in case of doubt
     "picture=p line=l lamp=on",
     ""},
    {"what_came_live_can_be_taken_back",
     {old_picture, old_line, {How::live, "status", "on", status(3)}, {How::taken_back, "status", "", {}}},
     "[\"picture\"]",
     false,
     "picture=p line=l lamp=on",
     ""},
    {"one_lamp_more_is_a_change",
     {old_picture, old_line, {How::old, "status", "on", status(3)}},
     "[\"picture\"]",
     true,
     "picture=p line=l lamp=on status=on",
     ""},
    {"one_lamp_less_is_a_change",
     {old_picture, old_line, {How::taken_back, "lamp", "", {}}},
     "[\"picture\"]",
     true,
     "picture=p line=l",
     ""},
    {"a_part_in_the_place_of_a_line_is_a_change",
     {old_picture, old_line, {How::live, "line", "part", part(0, 1)}},
     "[\"picture\"]",
     true,
     "picture=p lamp=on line=part",
     ""},
    {"another_order_is_a_change", {old_picture, old_line}, "[\"line\"]", true, "line=l picture=p lamp=on", ""},
};

QByteArray content(const WantedState &state) {
  QByteArray text;
  for (const WantedState::Entry &entry : state.entries())
    text += entry.topic + '=' + entry.payload + ' ';
  return text.trimmed();
}

QByteArray names(const QVector<WantedState::Entry> &entries) {
  QByteArray text;
  for (const WantedState::Entry &entry : entries)
    text += entry.topic + ' ';
  return text.trimmed();
}

class WantedSyncRowsTest : public testing::TestWithParam<Row> {};

} // namespace

TEST_P(WantedSyncRowsTest, is_what_is_known_with_what_came) {
  WantedState state;
  state.set("picture", "p", screen(0), true);
  state.set("line", "l", line(0, 1), true);
  state.set("lamp", "on", button(1), false);
  state.beginSync();
  for (const Event &event : GetParam().events)
    if (event.how == How::taken_back)
      state.remove(event.topic);
    else
      state.set(event.topic, event.payload, event.target, true, event.how == How::old);
  const WantedState::SyncOutcome outcome = state.endSync(GetParam().record);
  EXPECT_EQ(outcome.has_changed, GetParam().has_changed);
  EXPECT_EQ(content(state), GetParam().content);
  EXPECT_EQ(names(outcome.lost_by_broker), GetParam().lost);
  EXPECT_TRUE(outcome.refused.isEmpty());
}

INSTANTIATE_TEST_SUITE_P(Events, WantedSyncRowsTest, testing::ValuesIn(rows),
                         [](const auto &row) { return std::string(row.param.name); });

TEST(WantedSyncPlacesTest, that_would_be_seen_beside_what_came_are_cleared) {
  struct Place {
    Target before;
    Target after;
    QVector<Target> cleared;
  };
  const Place places[] = {{screen(0), screen(0), {}},
                          {line(0, 1), line(0, 1), {}},
                          {part(0, 1), part(0, 1), {screen(0)}},
                          {screen(1), area(1, {0, 0, 8, 16}), {screen(1)}},
                          {button(1), toggle(1), {button(1)}}};
  for (const Place &place : places) {
    WantedState state;
    state.set("topic", "before", place.before, true);
    state.beginSync();
    state.set("topic", "after", place.after, true, true);
    EXPECT_TRUE(state.endSync("[]").has_changed);
    EXPECT_TRUE(state.takeToClear().targets() == place.cleared) << static_cast<int>(place.before.kind);
  }
}

TEST(WantedSyncRoomTest, what_is_known_and_has_no_room_any_more_is_cleared_and_not_lost) {
  struct Loss {
    bool is_lamp_first; // what is known first has room
    const char *record;
    const char *lost;
    const char *refused;
    Target cleared;
  };
  const Loss losses[] = {{false, "", "", "lamp", button(1)},
                         {false, "[]", "", "lamp", button(1)},
                         {true, "", "lamp", "picture", screen(0)},
                         {true, "[]", "", "picture", screen(0)}};
  for (const Loss &loss : losses) {
    WantedState state;
    const auto set_lamp = [&] { state.set("lamp", QByteArray(1000, 'x'), button(1), false); };
    if (loss.is_lamp_first)
      set_lamp();
    state.set("picture", "p", screen(0), true);
    if (!loss.is_lamp_first)
      set_lamp();
    state.beginSync();
    state.set("picture", QByteArray(WantedState::most_bytes - 500, 'x'), screen(0), true, true);
    const WantedState::SyncOutcome outcome = state.endSync(loss.record);
    EXPECT_TRUE(outcome.has_changed);
    EXPECT_EQ(outcome.refused, QVector<QByteArray>{loss.refused});
    EXPECT_EQ(names(outcome.lost_by_broker), loss.lost);
    EXPECT_EQ(state.entries().size(), 1U);
    EXPECT_TRUE(state.takeToClear().targets() == QVector<Target>{loss.cleared}) << loss.refused;
  }
}

TEST(WantedSyncRoomTest, is_what_it_was_when_the_same_has_come) {
  WantedState state;
  const QByteArray half(WantedState::most_bytes / 2 - 1, 'x');
  state.set("a", half, screen(0), true);
  state.beginSync();
  state.set("a", half, screen(0), true, true);
  state.endSync("[]");
  EXPECT_EQ(state.set("b", half, screen(1), true), WantedState::Change::last);
  EXPECT_EQ(state.set("c", "x", screen(2), true), WantedState::Change::refused);
}

TEST(WantedSyncRoomTest, what_is_live_is_refused_when_there_is_none) {
  WantedState state;
  for (int i = 0; i < WantedState::most_topics; ++i)
    state.set("known" + QByteArray::number(i), "x", button(1), false);
  state.beginSync();
  EXPECT_EQ(state.set("new", "x", button(2), false), WantedState::Change::none);
  const WantedState::SyncOutcome outcome = state.endSync({});
  EXPECT_FALSE(outcome.has_changed);
  EXPECT_EQ(outcome.refused, QVector<QByteArray>{"new"});
}

TEST(WantedSyncRoomTest, is_not_taken_by_what_was_never_there) {
  WantedState state;
  state.beginSync();
  for (int i = 0; i < WantedState::most_topics; ++i)
    state.remove("unknown" + QByteArray::number(i));
  EXPECT_EQ(state.set("new", "x", button(2), false), WantedState::Change::none);
  EXPECT_TRUE(state.endSync({}).has_changed);
  EXPECT_EQ(content(state), "new=x");
}

} // namespace buttondriver::bridge::test
