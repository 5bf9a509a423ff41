// SPDX-License-Identifier: Apache-2.0
#include "bridge/wanted/restore_list.h"

#include "bridge/topics/topic_commands.h"
#include "bridge/wanted/panel_model.h"
#include "bridge/wanted/targets.h"

#include <gtest/gtest.h>

namespace buttondriver::bridge::test {

namespace {

void set(WantedState &state, const QByteArray &topic, const Target &target, const QByteArray &frame = "1") {
  state.set(topic, payload_of(target, frame), target, true);
}

/// Topics, and "-" for each command that clears.
QByteArray names(const QVector<TopicCommand> &commands) {
  QByteArray text;
  for (const TopicCommand &command : commands)
    text += (command.topic.isEmpty() ? QByteArray("-") : command.topic) + ' ';
  return text.trimmed();
}

} // namespace

TEST(RestoreListTest, clears_screens_of_which_something_is_wanted_before_what_is_drawn_there) {
  WantedState state;
  set(state, "line", line(1, 2));
  set(state, "lamp", button(3));
  const QVector<TopicCommand> commands = restore_list(state, decoded);
  ASSERT_EQ(names(commands), "- line lamp");
  EXPECT_EQ(commands[0].command.target, screen(1));
  EXPECT_EQ(commands[0].command.frame, clearing_frame(screen(1)));
  EXPECT_FALSE(commands[0].command.newest_wins);
}

TEST(RestoreListTest, does_not_clear_a_screen_that_is_covered_first) {
  WantedState state;
  set(state, "picture", screen(1));
  set(state, "line", line(1, 2));
  EXPECT_EQ(names(restore_list(state, decoded)), "picture line");
  set(state, "everywhere", screen(all));
  set(state, "line", line(1, 2));
  set(state, "other line", line(2, 2));
  EXPECT_EQ(names(restore_list(state, decoded)), "everywhere line other line");
}

TEST(RestoreListTest, clears_what_was_taken_back_until_it_has_arrived) {
  WantedState state;
  set(state, "lamp", button(3));
  set(state, "status", status(31));
  set(state, "toggle", toggle(1));
  set(state, "line", line(2, 0));
  for (const char *topic : {"lamp", "status", "toggle", "line"})
    state.remove(topic);
  const QVector<Target> cleared = {button(3), status(31), toggle(1), screen(2)};
  for (int attempt = 0; attempt < 2; ++attempt) {
    const QVector<TopicCommand> commands = restore_list(state, decoded);
    ASSERT_EQ(commands.size(), cleared.size());
    for (int i = 0; i < cleared.size(); ++i) {
      EXPECT_EQ(commands[i].command.target, cleared[i]);
      EXPECT_EQ(commands[i].command.frame, clearing_frame(cleared[i]));
    }
  }
  state.confirmRestored();
  EXPECT_TRUE(restore_list(state, decoded).isEmpty());
}

TEST(RestoreListTest, what_was_taken_back_meanwhile_is_not_confirmed) {
  WantedState state;
  set(state, "one", button(1));
  set(state, "two", button(2));
  state.remove("one");
  restore_list(state, decoded);
  state.remove("two");
  redraw_list(state, decoded);
  state.confirmRestored();
  const QVector<TopicCommand> commands = restore_list(state, decoded);
  ASSERT_EQ(commands.size(), 1);
  EXPECT_EQ(commands[0].command.target, button(2));
}

TEST(RestoreListTest, leaves_out_what_cannot_be_decoded_and_clears_its_screen) {
  WantedState state;
  set(state, "hall/screen/0/image", screen(0));
  set(state, "hall/screen/0/line/1", line(0, 1));
  QVector<QByteArray> tails;
  const Decode decode = [&](const QByteArray &tail, const QByteArray &payload) -> Outcome<Command> {
    tails.append(tail);
    if (tail == "screen/0/image")
      return Failure{"not any more"};
    return decoded(tail, payload);
  };
  EXPECT_EQ(names(restore_list(state, decode)), "- hall/screen/0/line/1");
  EXPECT_EQ(tails, (QVector<QByteArray>{"screen/0/image", "screen/0/line/1"}));
}

TEST(RestoreListTest, clears_the_screen_of_what_cannot_be_decoded_but_no_lamp) {
  struct Row {
    Target target;
    const char *commands;
  };
  const Row rows[] = {{line(0, 1), "-"}, {area(0, {0, 0, 8, 16}), "-"},
                      {screen(0), "-"},  {button(1), ""},
                      {status(1), ""},   {toggle(1), ""},
                      {{}, ""}};
  for (const Row &row : rows) {
    WantedState state;
    set(state, "topic", row.target);
    const Decode decode = [](const QByteArray &, const QByteArray &) { return Failure{"not any more"}; };
    EXPECT_EQ(names(restore_list(state, decode)), row.commands) << static_cast<int>(row.target.kind);
  }
}

TEST(RedrawListTest, has_nothing_to_draw_again_after_all_was_restored) {
  WantedState state;
  set(state, "lamp", button(3));
  state.remove("lamp");
  EXPECT_EQ(names(restore_list(state, decoded)), "-");
  EXPECT_TRUE(redraw_list(state, decoded).isEmpty());
}

TEST(RedrawListTest, draws_only_what_is_concerned) {
  WantedState state;
  set(state, "picture", screen(0));
  set(state, "other picture", screen(1));
  set(state, "lamp", button(3));
  set(state, "line", line(0, 1));
  set(state, "gone", line(0, 2));
  EXPECT_TRUE(redraw_list(state, decoded).isEmpty());
  state.remove("gone");
  EXPECT_EQ(names(redraw_list(state, decoded)), "picture line");
  EXPECT_TRUE(redraw_list(state, decoded).isEmpty());
  state.remove("picture");
  EXPECT_EQ(names(redraw_list(state, decoded)), "- line");
}

TEST(RedrawListTest, draws_what_is_over_that_which_is_drawn_again) {
  WantedState state;
  set(state, "all", button(all));
  set(state, "five", button(5));
  set(state, "six", button(6));
  set(state, "status", status(6));
  state.remove("five");
  EXPECT_EQ(names(redraw_list(state, decoded)), "all six");
  state.remove("all");
  EXPECT_EQ(names(redraw_list(state, decoded)), "- six");
}

TEST(TailTest, is_what_follows_the_panel_or_the_group) {
  EXPECT_EQ(tail_of("hall/led/5"), "led/5");
  EXPECT_EQ(tail_of("group/doors/led/5"), "led/5");
  EXPECT_EQ(tail_of("groups/led/5"), "led/5");
  for (const char *topic : {"", "hall", "group/doors", "group"})
    EXPECT_EQ(tail_of(topic), "") << topic;
}

} // namespace buttondriver::bridge::test
