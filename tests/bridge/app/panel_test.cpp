// SPDX-License-Identifier: Apache-2.0
// One panel of a bridge, with a stand-in at the other end.

#include "bridge/app/panel.h"

#include "bridge/panels/panel_stand_in.h"
#include "bridge/topics/topic_commands.h"
#include "bridge/wanted/restore_list.h"
#include "support/event_loop.h"

#include <gmock/gmock.h>

#include <vector>

namespace buttondriver::bridge {
namespace {

using buttondriver::test::process_events_until;
using buttondriver::test::process_ready_events;
using testing::Each;
using testing::EndsWith;
using testing::IsEmpty;
using testing::SizeIs;

class PanelTest : public testing::Test {
protected:
  PanelTest() {
    QObject::connect(&panel, &Panel::availabilityChanged, [this](bool is_there) { is_up = is_there; });
    QObject::connect(&panel, &Panel::unreachable, [this] { ++failures_told; });
    QObject::connect(&panel, &Panel::refused, [this](const QByteArray &key, const QByteArray &why) {
      refusals.push_back(key.toStdString() + ": " + why.toStdString());
    });
  }

  /// Until the panel is there, and shows what is wanted: nothing. What that took does not count.
  void bringUp() {
    panel.beginSync();
    panel.endSync();
    ASSERT_TRUE(process_events_until([this] { return is_up; }));
    waitUntilRestored(1);
    EXPECT_THAT(place.messages(), SizeIs(test::messages_for_whole_panel));
    place.forgetMessages();
  }
  /// Until the ping after all that is sent is answered, in that connection, and the answer taken.
  void waitUntilRestored(int connection) {
    ASSERT_TRUE(process_events_until([&] { return place.pings() >= 2 * connection; }));
    process_ready_events();
  }
  void loseConnection() {
    place.hangUp();
    ASSERT_TRUE(process_events_until([this] { return !is_up; }));
  }
  void keep(const QByteArray &key, const QByteArray &payload, bool is_old = false) {
    panel.keep(key, payload, *command_of(tail_of(key), payload), true, is_old);
  }
  void carryOut(const QByteArray &tail, const QByteArray &payload) {
    panel.carryOut("hall/do/" + tail, *command_of(tail, payload));
  }
  /// How many messages have come until now, before the one that is sent to find out.
  std::size_t messagesSent() {
    const QByteArray marker = "led/" + QByteArray::number(10 + markers++);
    carryOut(marker, "on");
    const QByteArray last = command_of(marker, "on")->frame.mid(4);
    EXPECT_TRUE(process_events_until([&] { return !place.messages().empty() && place.messages().back() == last; }));
    return place.messages().size() - 1;
  }

  test::PanelStandIn place;
  Panel panel{"hall", PanelAddress{QStringLiteral("127.0.0.1"), place.port()}, {600'000, 600'000, 1, 20}};
  bool is_up = false;
  int failures_told = 0;
  int markers = 0;
  std::vector<std::string> refusals;
};

TEST_F(PanelTest, that_cannot_be_reached_is_told_once_until_it_has_been_there_or_moves) {
  place.closes_at_once = true;
  ASSERT_TRUE(process_events_until([this] { return place.connections() >= 5; }));
  EXPECT_EQ(1, failures_told);

  place.closes_at_once = false;
  ASSERT_TRUE(process_events_until([this] { return is_up; }));
  place.closes_at_once = true;
  place.hangUp();
  const int before = place.connections();
  ASSERT_TRUE(process_events_until([&] { return place.connections() >= before + 5; }));
  EXPECT_EQ(2, failures_told);

  test::PanelStandIn other_place;
  other_place.closes_at_once = true;
  panel.moveTo(PanelAddress{QStringLiteral("127.0.0.1"), other_place.port()});
  ASSERT_TRUE(process_events_until([&] { return other_place.connections() >= 5; }));
  EXPECT_EQ(3, failures_told);
}

TEST_F(PanelTest, what_was_taken_back_while_it_was_away_is_cleared_once) {
  bringUp();
  keep("hall/led/5", "on");
  ASSERT_TRUE(process_events_until([this] { return place.messages().size() == 1; }));
  loseConnection();
  panel.takeBack("hall/led/5", true);
  waitUntilRestored(2);
  EXPECT_THAT(place.messages(), SizeIs(1));
  loseConnection();
  waitUntilRestored(3);
  EXPECT_THAT(place.messages(), IsEmpty());
}

struct KeepRow {
  const char *name;
  const char *key;
  const char *payload;
  bool is_old;
  bool is_syncing;
  std::size_t sent;
};

class PanelKeepTest : public PanelTest, public testing::WithParamInterface<KeepRow> {};

INSTANTIATE_TEST_SUITE_P(Each, PanelKeepTest,
                         testing::Values(KeepRow{"a_group_for_another_panel", "group/g/led/5", "on", true, false, 0},
                                         KeepRow{"a_group_again", "group/g/led/5", "on", false, false, 1},
                                         KeepRow{"another_payload", "group/g/led/5", "off", true, false, 1},
                                         KeepRow{"while_others_are_compared", "hall/led/6", "on", true, false, 1},
                                         KeepRow{"again", "hall/led/6", "on", false, false, 1},
                                         KeepRow{"again_while_it_is_compared", "hall/led/6", "on", false, true, 0}),
                         [](const auto &row) { return row.param.name; });

TEST_P(PanelKeepTest, is_sent_unless_it_has_been_or_will_be) {
  const KeepRow &row = GetParam();
  bringUp();
  keep("group/g/led/5", "on");
  keep("hall/led/6", "on");
  const std::size_t before = messagesSent();
  ASSERT_EQ(2U, before);
  if (row.is_syncing)
    panel.beginSync();
  keep(row.key, row.payload, row.is_old);
  EXPECT_EQ(before + 1 + row.sent, messagesSent());
}

struct TakeBackRow {
  const char *name;
  void (*take_back)(Panel &);
};

class PanelTakeBackTest : public PanelTest, public testing::WithParamInterface<TakeBackRow> {};

INSTANTIATE_TEST_SUITE_P(Each, PanelTakeBackTest,
                         testing::Values(TakeBackRow{"one",
                                                     [](Panel &panel) { panel.takeBack("group/g/led/5", true); }},
                                         TakeBackRow{"all", [](Panel &panel) { panel.takeBackAll("group/g/"); }}),
                         [](const auto &row) { return row.param.name; });

TEST_P(PanelTakeBackTest, is_shown_and_may_change_the_order) {
  bringUp();
  keep("group/g/led/5", "on");
  ASSERT_EQ(1U, messagesSent());
  int orders = 0;
  QObject::connect(&panel, &Panel::orderMayHaveChanged, [&] { ++orders; });
  GetParam().take_back(panel);
  EXPECT_EQ(3U, messagesSent());
  EXPECT_EQ(1, orders);
  GetParam().take_back(panel); // nothing of it is left
  EXPECT_EQ(4U, messagesSent());
  EXPECT_EQ(1, orders);
}

TEST_F(PanelTest, what_the_broker_goes_on_keeping_stays) {
  bringUp();
  keep("hall/led/5", "on");
  panel.keep("hall/led/6", "on", *command_of("led/6", "on"), false, false);
  EXPECT_FALSE(panel.takeBack("hall/led/5", false));
  EXPECT_TRUE(panel.takeBack("hall/led/6", false));
  EXPECT_TRUE(panel.takeBack("hall/led/7", false));
  ASSERT_EQ(1U, panel.wanted().entries().size());
  EXPECT_TRUE(panel.takeBack("hall/led/5", true));
  EXPECT_TRUE(panel.wanted().entries().empty());
}

QByteArray part_key(int number) { return "hall/screen/0/part/" + QByteArray::number(number); }
constexpr const char *part = R"({"line":0,"offset":0,"text":"x"})";
constexpr const char *too_much = ": too much is kept for this panel";

TEST_F(PanelTest, what_is_more_than_may_be_kept_is_refused) {
  bringUp();
  for (int i = 0; i < WantedState::most_topics; ++i)
    keep(part_key(i), part);
  EXPECT_THAT(refusals, IsEmpty());
  keep(part_key(WantedState::most_topics), part);
  EXPECT_EQ(std::vector<std::string>{part_key(WantedState::most_topics).toStdString() + too_much}, refusals);
}

TEST_F(PanelTest, what_is_more_than_may_be_kept_together_with_what_the_broker_has_is_refused) {
  bringUp();
  for (int i = 0; i < WantedState::most_topics; ++i)
    keep(part_key(i), part);
  panel.beginSync(); // of a broker that has lost all these, and has others
  for (int i = 0; i < 3; ++i)
    keep("hall/led/" + QByteArray::number(i), "on", true);
  EXPECT_THAT(refusals, IsEmpty());
  panel.endSync();
  EXPECT_THAT(refusals, SizeIs(3));
  EXPECT_THAT(refusals, Each(EndsWith(too_much)));
}

TEST_F(PanelTest, a_new_payload_of_a_part_is_one_message_when_the_former_is_not_seen_any_more) {
  bringUp();
  keep("hall/screen/0/blackout", "now");
  for (int i = 0; i < 6; ++i)
    keep("hall/screen/0/line/" + QByteArray::number(i), "x");
  struct Update {
    const char *payload;
    std::size_t messages;
  };
  const Update updates[] = {
      {R"({"line":7,"offset":2,"text":"9:41:08","chars":8})", 1}, // the first one
      {R"({"line":7,"offset":2,"text":"9:41:09","chars":8})", 1},
      {R"({"line":7,"offset":2,"text":"9:42","chars":8,"colour":"#ff0000","background":"#00ff00"})", 1},
      {R"({"line":7,"offset":1,"text":"at 9:43:00"})", 1},
      {R"({"line":7,"offset":1,"text":"at 9:43"})", 8}, // black, the lines and the part
      {R"({"line":7,"offset":2,"text":"at 9:43"})", 8},
      {R"({"line":6,"offset":2,"text":"at 9:43"})", 8},
  };
  std::size_t before = messagesSent() + 1; // and what was sent to find out
  for (const Update &update : updates) {
    keep("hall/screen/0/part/clock", update.payload);
    const std::size_t now = messagesSent();
    EXPECT_EQ(update.messages, now - before) << update.payload;
    before = now + 1;
  }
}

TEST_F(PanelTest, what_cannot_be_carried_out_is_refused) {
  bringUp();
  place.reads = false;
  const QByteArray text = R"({"line":0,"offset":0,"text":")" + QByteArray(120, 'x') + R"("})";
  while (refusals.empty())
    carryOut("screen/0/part", text);
  EXPECT_EQ("hall/do/screen/0/part: too much waits for the panel", refusals.back());

  place.close();
  ASSERT_TRUE(process_events_until([this] { return !is_up; }));
  process_ready_events(); // what waited is told as well
  carryOut("led/5", "on");
  EXPECT_EQ("hall/do/led/5: the panel is not connected; what is not kept is not carried out later", refusals.back());
}

TEST_F(PanelTest, is_restored_by_a_comparison_that_changes_something_alone) {
  bringUp();
  keep("hall/led/5", "on");
  ASSERT_EQ(1U, messagesSent());
  for (const char *payload : {"on", "off"}) {
    panel.beginSync();
    keep("hall/led/5", payload, true);
    panel.endSync();
    EXPECT_EQ(payload == QByteArray("on") ? 2U : 4U, messagesSent());
  }
}

TEST_F(PanelTest, a_record_of_the_order_is_that_of_the_last_comparison) {
  panel.keepOrderRecord("[]");
  panel.beginSync();
  panel.endSync();
  EXPECT_FALSE(panel.isKnownToBroker());
  panel.beginSync();
  panel.keepOrderRecord("[]");
  panel.beginSync(); // of another connection, to a broker that has none
  panel.endSync();
  EXPECT_FALSE(panel.isKnownToBroker());
  panel.beginSync();
  panel.keepOrderRecord("[]");
  panel.endSync();
  EXPECT_TRUE(panel.isKnownToBroker());

  keep("hall/led/all", "off");
  keep("hall/led/5", "on");
  panel.beginSync();
  EXPECT_FALSE(panel.takeOrderRecord());
  panel.keepOrderRecord("[]");
  for (const char *key : {"hall/led/all", "hall/led/5"})
    keep(key, key == QByteArray("hall/led/all") ? "off" : "on", true);
  panel.endSync();
  const auto record = panel.takeOrderRecord();
  ASSERT_TRUE(record);
  EXPECT_NE("[]", *record);
}

} // namespace
} // namespace buttondriver::bridge
