// SPDX-License-Identifier: Apache-2.0
#include "bridge/wanted/targets.h"
#include "bridge/wanted/wanted_state.h"

#include <gtest/gtest.h>

namespace buttondriver::bridge::test {

namespace {

constexpr bool retained = true;
constexpr bool old = true;

QByteArray content(const WantedState &state) {
  QByteArray text;
  for (const WantedState::Entry &entry : state.entries())
    text += entry.topic + '=' + entry.payload + ' ';
  return text.trimmed();
}

/// A picture, a line over it, and a lamp that the broker does not keep.
WantedState usual_state() {
  WantedState state;
  state.set("picture", "p", screen(0), retained);
  state.set("line", "l", line(0, 1), retained);
  state.set("lamp", "on", button(1), !retained);
  state.takeOrderChange();
  return state;
}

void bring(WantedState &state, const QByteArray &topic, const QByteArray &payload, const Target &target) {
  EXPECT_EQ(state.set(topic, payload, target, retained, old), WantedState::Change::none);
}

} // namespace

TEST(WantedSyncTest, changes_nothing_when_all_is_as_it_was) {
  WantedState state = usual_state();
  state.beginSync();
  EXPECT_TRUE(state.isSyncing());
  bring(state, "line", "l", line(0, 1));
  bring(state, "picture", "p", screen(0));
  const WantedState::SyncOutcome outcome = state.endSync("[\"picture\"]");
  EXPECT_FALSE(state.isSyncing());
  EXPECT_FALSE(outcome.has_changed);
  EXPECT_TRUE(outcome.lost_by_broker.isEmpty());
  EXPECT_EQ(content(state), "picture=p line=l lamp=on");
  EXPECT_FALSE(state.takeOrderChange());
}

TEST(WantedSyncTest, that_is_cut_short_is_not_lost) {
  WantedState state = usual_state();
  state.beginSync();
  bring(state, "picture", "p", screen(0)); // under the line, as before
  bring(state, "status", "on", status(3));
  state.set("lamp", "off", button(1), !retained);
  state.beginSync(); // the broker has gone
  state.beginSync(); // and again, and has lost its memory
  const WantedState::SyncOutcome outcome = state.endSync({});
  EXPECT_TRUE(outcome.has_changed);
  EXPECT_EQ(content(state), "picture=p line=l lamp=off status=on");
  EXPECT_EQ(outcome.lost_by_broker.size(), 4);

  state.beginSync();
  bring(state, "picture", "p", screen(0));
  state.beginSync();
  EXPECT_FALSE(state.endSync({}).has_changed);
}

TEST(WantedSyncTest, that_was_cut_short_is_told_once) {
  WantedState state = usual_state();
  state.beginSync();
  state.set("lamp", "off", button(1), !retained);
  for (const bool has_changed : {true, false}) { // and the record puts the line below the picture
    state.beginSync();
    bring(state, "picture", "p", screen(0));
    bring(state, "line", "l", line(0, 1));
    EXPECT_EQ(state.endSync("[\"line\"]").has_changed, has_changed);
  }
}

TEST(WantedSyncTest, that_was_cut_short_tells_what_found_no_room_and_does_not_come_again) {
  WantedState state;
  const QByteArray third(WantedState::most_bytes / 3, 'x');
  state.set("picture", third + third, screen(0), !retained);
  state.beginSync();
  state.set("line", third, line(0, 1), retained);
  state.set("lamp", third, button(1), !retained);
  state.beginSync(); // with the names of the topics, there is no room for three thirds
  bring(state, "line", "l", line(0, 1));
  EXPECT_EQ(state.endSync({}).refused, QVector<QByteArray>{"lamp"});
  state.beginSync();
  EXPECT_TRUE(state.endSync({}).refused.isEmpty());
}

TEST(WantedSyncTest, that_has_not_begun_does_not_end) {
  WantedState state = usual_state();
  EXPECT_FALSE(state.endSync("[\"line\"]").has_changed);
  EXPECT_EQ(content(state), "picture=p line=l lamp=on");
  EXPECT_FALSE(state.takeOrderChange());
}

TEST(WantedSyncTest, leaves_no_record_to_publish_where_nothing_is_wanted) {
  WantedState state;
  state.beginSync();
  EXPECT_FALSE(state.endSync({}).has_changed);
  EXPECT_FALSE(state.takeOrderChange());
}

TEST(WantedSyncTest, forgets_what_was_collected_of_a_group_that_is_taken_back) {
  WantedState state = usual_state();
  state.beginSync();
  bring(state, "group/doors/status", "on", status(3));
  bring(state, "group/door/status", "on", status(4));
  state.set("group/doors/toggle", "on", toggle(1), retained);
  EXPECT_FALSE(state.removeAll("group/doors/"));
  state.beginSync();
  state.set("group/doors/toggle", "on", toggle(1), retained);
  EXPECT_FALSE(state.removeAll("group/doors/"));
  state.endSync({});
  EXPECT_EQ(content(state), "picture=p line=l lamp=on group/door/status=on");
}

TEST(WantedSyncTest, takes_out_what_the_broker_no_longer_keeps) {
  WantedState state = usual_state();
  state.beginSync();
  bring(state, "picture", "p", screen(0));
  const WantedState::SyncOutcome outcome = state.endSync("[\"picture\"]");
  EXPECT_TRUE(outcome.has_changed);
  EXPECT_EQ(content(state), "picture=p lamp=on");
  EXPECT_EQ(state.takeToClear().targets(), QVector<Target>{screen(0)});
  EXPECT_TRUE(state.takeOrderChange()) << "the record has the picture without need";
}

TEST(WantedSyncTest, a_topic_that_was_retained_once_is_the_brokers_to_keep) {
  WantedState state = usual_state();
  state.set("line", "m", line(0, 1), !retained);
  state.set("lamp", "on", button(1), retained);
  state.beginSync();
  bring(state, "picture", "p", screen(0));
  EXPECT_TRUE(state.endSync("[\"picture\"]").has_changed);
  EXPECT_EQ(content(state), "picture=p");
}

TEST(WantedSyncTest, keeps_what_a_broker_without_memory_has_lost) {
  WantedState state = usual_state();
  state.beginSync();
  bring(state, "line", "new", line(0, 1));
  const WantedState::SyncOutcome outcome = state.endSync({});
  EXPECT_TRUE(outcome.has_changed);
  EXPECT_EQ(content(state), "picture=p line=new lamp=on");
  ASSERT_EQ(outcome.lost_by_broker.size(), 2);
  EXPECT_EQ(outcome.lost_by_broker[0].topic, "picture");
  EXPECT_TRUE(outcome.lost_by_broker[0].is_retained);
  EXPECT_EQ(outcome.lost_by_broker[1].topic, "lamp");
  EXPECT_FALSE(outcome.lost_by_broker[1].is_retained);
  EXPECT_TRUE(state.takeOrderChange());
}

TEST(WantedSyncTest, takes_the_order_from_the_record_and_puts_the_rest_behind_it_as_it_came) {
  WantedState state;
  state.beginSync();
  for (const char *topic : {"e", "d", "c", "b", "a"})
    bring(state, topic, "x", part(0, 1));
  EXPECT_TRUE(state.endSync("[\"unknown\",\"a\",\"b\",\"c\"]").has_changed);
  EXPECT_EQ(content(state), "a=x b=x c=x e=x d=x");
  EXPECT_TRUE(state.takeOrderChange());
}

TEST(WantedSyncTest, a_record_that_cannot_be_read_is_a_memory_without_an_order) {
  for (const QByteArray &record : {QByteArray("x"), QByteArray("{}"), QByteArray(3000000, 'x'), QByteArray("[7]")}) {
    WantedState state = usual_state();
    state.beginSync();
    bring(state, "line", "l", line(0, 1));
    bring(state, "late", "l", line(0, 1));
    bring(state, "picture", "p", screen(0));
    const WantedState::SyncOutcome outcome = state.endSync(record);
    EXPECT_TRUE(outcome.lost_by_broker.isEmpty());
    EXPECT_EQ(content(state), "picture=p line=l lamp=on late=l");
    EXPECT_TRUE(state.takeOrderChange());
    EXPECT_EQ(state.orderRecord(), "[\"picture\",\"line\"]");
  }
}

TEST(WantedSyncTest, an_older_record_of_its_own_does_not_undo_the_order) {
  WantedState state = usual_state();
  state.set("picture", "p", screen(0), retained);
  EXPECT_TRUE(state.takeOrderChange()); // and the connection broke before it was sent
  state.beginSync();
  bring(state, "line", "l", line(0, 1));
  bring(state, "picture", "p", screen(0));
  EXPECT_FALSE(state.endSync("[\"picture\"]").has_changed);
  EXPECT_EQ(content(state), "line=l lamp=on picture=p");
  EXPECT_TRUE(state.takeOrderChange());
}

TEST(WantedSyncTest, knows_the_last_8_records_of_its_own) {
  for (const int newer_records : {7, 8}) {
    SCOPED_TRACE(newer_records);
    WantedState state = usual_state(); // with the record of the picture
    for (int i = 0; i < newer_records; ++i) {
      state.set("lamp" + QByteArray::number(i), "on", button(1), !retained);
      EXPECT_TRUE(state.takeOrderChange());
    }
    state.set("picture", "p", screen(0), retained);
    state.beginSync();
    bring(state, "picture", "p", screen(0));
    bring(state, "line", "l", line(0, 1));
    state.endSync("[\"picture\"]");
    EXPECT_EQ(state.entries().front().topic, newer_records == 7 ? "line" : "picture");
  }
}

TEST(WantedSyncTest, what_a_record_does_not_know_stays_in_its_order) {
  WantedState state;
  state.beginSync();
  QByteArray expected;
  for (int i = 0; i < 200; ++i) {
    const QByteArray topic = QByteArray::number((i * 77) % 200);
    bring(state, topic, "x", part(0, 1));
    expected += topic + "=x ";
  }
  state.endSync("[]");
  EXPECT_EQ(content(state), expected.trimmed());
}

TEST(WantedSyncTest, has_no_record_to_publish_before_its_end) {
  WantedState state = usual_state();
  state.set("picture", "p", screen(0), retained);
  state.beginSync();
  EXPECT_FALSE(state.takeOrderChange());
  bring(state, "line", "l", line(0, 1));
  bring(state, "picture", "p", screen(0));
  state.endSync("[\"picture\"]");
  EXPECT_TRUE(state.takeOrderChange());
}

TEST(WantedSyncTest, what_comes_live_is_newer_than_what_is_old) {
  WantedState state = usual_state();
  state.beginSync();
  bring(state, "picture", "p", screen(0));
  state.set("picture", "live", screen(0), retained);
  bring(state, "line", "l", line(0, 1));
  state.set("lamp", "off", button(1), !retained);
  state.set("new", "n", button(2), !retained);
  EXPECT_TRUE(state.endSync("[\"picture\"]").has_changed);
  EXPECT_EQ(content(state), "line=l lamp=off picture=live new=n");
}

TEST(WantedSyncTest, what_is_taken_back_live_is_gone) {
  WantedState state = usual_state();
  state.beginSync();
  bring(state, "line", "l", line(0, 1));
  bring(state, "picture", "p", screen(0));
  EXPECT_EQ(state.remove("picture"), std::nullopt);
  EXPECT_EQ(state.remove("lamp"), std::nullopt);
  EXPECT_EQ(state.remove("never there"), std::nullopt);
  EXPECT_TRUE(state.endSync("[\"picture\"]").has_changed);
  EXPECT_EQ(content(state), "line=l");
}

TEST(WantedSyncTest, what_is_kept_and_cannot_be_shown_leaves_what_was_known_before) {
  WantedState state = usual_state();
  state.beginSync();
  state.stay("picture");
  state.stay("never there");
  bring(state, "line", "m", line(0, 1));
  state.stay("line"); // something has come in its place
  state.set("lamp", "off", button(1), !retained);
  state.stay("lamp");
  state.endSync("[\"picture\"]");
  EXPECT_EQ(content(state), "picture=p line=m lamp=off");
  state.stay("picture");
  EXPECT_EQ(content(state), "picture=p line=m lamp=off");
}

TEST(WantedSyncTest, tells_what_the_broker_keeps_as_it_comes) {
  WantedState state = usual_state();
  state.beginSync();
  bring(state, "status", "on", status(3));
  for (const auto &[topic, is_retained] :
       {std::pair("status", true), {"line", true}, {"lamp", false}, {"other", false}})
    EXPECT_EQ(state.isRetained(topic), is_retained) << topic;
}

TEST(WantedSyncTest, counts_what_came_last_when_it_begins_again) {
  WantedState state = usual_state();
  state.beginSync();
  bring(state, "line", "other", line(0, 1));
  state.beginSync();
  bring(state, "line", "l", line(0, 1));
  bring(state, "picture", "p", screen(0));
  state.endSync("[\"picture\"]");
  EXPECT_EQ(content(state), "picture=p line=l lamp=on");
}

TEST(WantedSyncTest, what_is_known_has_room_before_what_is_new) {
  WantedState state;
  for (int i = 0; i < 10; ++i)
    state.set("known" + QByteArray::number(i), "x", button(i), !retained);
  state.beginSync();
  for (int i = 0; i < 1000; ++i)
    EXPECT_EQ(state.set("new" + QByteArray::number(i), "x", part(0, 1), retained, old), WantedState::Change::none);
  EXPECT_EQ(state.set("too many", "x", part(0, 1), retained, old), WantedState::Change::refused);
  const WantedState::SyncOutcome outcome = state.endSync("[]");
  EXPECT_EQ(state.entries().size(), 1000U);
  ASSERT_EQ(outcome.refused.size(), 10);
  EXPECT_EQ(outcome.refused.first(), "new990");
}

} // namespace buttondriver::bridge::test
