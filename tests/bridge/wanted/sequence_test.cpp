// SPDX-License-Identifier: Apache-2.0
// Whatever is published, a panel shows what it would show if each topic had been published once, in the order of the
// last time.
#include "bridge/wanted/panel_model.h"
#include "bridge/wanted/restore_list.h"
#include "bridge/wanted/targets.h"
#include "bridge/wanted/wanted_state.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <vector>

namespace buttondriver::bridge::test {

namespace {

using Change = WantedState::Change;

/// Topics and payloads by chance, the same for the same seed.
class Publisher {
public:
  explicit Publisher(unsigned seed) : _random(seed) {}

  int below(int end) { return static_cast<int>(_random() % static_cast<unsigned>(end)); }

  /// `topic` decides what kind of thing it is, and where; its size differs each time.
  Command commandFor(int topic) {
    const int screen_number = topic % 4 - 1;
    const QByteArray what = QByteArray::number(++_count);
    switch (topic / 4 % 9) {
    case 0:
      return {what, button(topic % 5 - 1), true};
    case 1:
      return {what, status(topic % 3), true};
    case 2:
      return {what, toggle(topic % 2), true};
    case 3:
    case 4:
    case 5:
      return {what, line(screen_number, topic % 3), true};
    case 6: {
      const int column = below(15), width = 1 + below(16 - column);
      return {QByteArray::number(column) + ' ' + QByteArray::number(width) + ' ' + what,
              part(screen_number, below(3), {std::uint8_t(column), std::uint8_t(width)}), false};
    }
    case 7: {
      const int column = below(15), row = below(7);
      return {
          what,
          area(screen_number, {std::uint8_t(column * 8), std::uint8_t(row * 16),
                               std::uint8_t((1 + below(16 - column)) * 8), std::uint8_t((1 + below(8 - row)) * 16)}),
          false};
    }
    default:
      return {what, screen(screen_number), false};
    }
  }

  template <typename Items> void shuffle(Items &items) { std::shuffle(items.begin(), items.end(), _random); }

private:
  std::mt19937 _random;
  int _count = 0;
};

/// The simplest thing that can be right: what is published goes to the end.
struct Naive {
  struct Item {
    QByteArray topic;
    Command command;
  };
  std::vector<Item> items;

  void remove(const QByteArray &topic) {
    items.erase(std::remove_if(items.begin(), items.end(), [&](const Item &item) { return item.topic == topic; }),
                items.end());
  }
  void set(const QByteArray &topic, const Command &command) {
    remove(topic);
    items.push_back({topic, command});
  }
  PanelModel panel() const {
    PanelModel panel;
    for (const Item &item : items)
      panel.carryOut(item.command);
    return panel;
  }
};

void carry_out(const QVector<TopicCommand> &commands, PanelModel &panel) {
  for (const TopicCommand &command : commands)
    panel.carryOut(command.topic.isEmpty() ? Command{"0", command.command.target, false} : command.command);
}

QByteArray name_of(int topic) {
  return (topic % 3 == 0 ? "group/doors/topic/" : "hall/topic/") + QByteArray::number(topic);
}

PanelModel blank_panel_restored(WantedState &state) {
  PanelModel panel;
  carry_out(restore_list(state, decoded), panel);
  return panel;
}

/// What another bridge knows after it has got all from the broker, in any order.
PanelModel after_restart(const WantedState &state, Publisher &publisher) {
  std::vector<WantedState::Entry> retained(state.entries().begin(), state.entries().end());
  publisher.shuffle(retained);
  WantedState restarted;
  restarted.beginSync();
  for (const WantedState::Entry &entry : retained)
    restarted.set(entry.topic, entry.payload, entry.target, true, true);
  restarted.endSync(state.orderRecord());
  EXPECT_EQ(restarted.orderRecord(), state.orderRecord());
  return blank_panel_restored(restarted);
}

} // namespace

class SequenceTest : public testing::TestWithParam<int> {};

TEST_P(SequenceTest, a_panel_shows_the_same_live_restored_and_after_a_restart) {
  Publisher publisher(static_cast<unsigned>(GetParam()));
  const int topics = GetParam() % 2 == 0 ? 12 + publisher.below(24) : 72;
  const int first = publisher.below(72);
  WantedState state;
  Naive naive;
  PanelModel panel;     // gets each command, and what has to be drawn again
  PanelModel old_panel; // is restored now and then
  for (int step = 0; step < 200; ++step) {
    const int topic = (first + publisher.below(topics)) % 72;
    const QByteArray name = name_of(topic);
    if (publisher.below(5) == 0) {
      naive.remove(name);
      if (state.remove(name))
        carry_out(redraw_list(state, decoded), panel);
    } else {
      const Command command = publisher.commandFor(topic);
      naive.set(name, command);
      const Change change = state.set(name, payload_of(command.target, command.frame), command.target, true);
      ASSERT_NE(change, Change::refused);
      if (change == Change::redraw)
        carry_out(redraw_list(state, decoded), panel);
      else
        panel.carryOut(command);
    }
    const PanelModel expected = naive.panel();
    ASSERT_EQ(panel.text(), expected.text()) << "step " << step << ", " << name.constData();
    ASSERT_EQ(blank_panel_restored(state).text(), expected.text()) << "step " << step;
    if (step % 10 == 0) {
      ASSERT_EQ(after_restart(state, publisher).text(), expected.text()) << "step " << step;
    }
  }
}

TEST_P(SequenceTest, a_panel_that_was_away_shows_nothing_of_before) {
  Publisher publisher(static_cast<unsigned>(GetParam()) + 1000);
  WantedState state;
  Naive naive;
  PanelModel panel;
  for (int step = 0; step < 200; ++step) {
    const int topic = publisher.below(72);
    if (publisher.below(3) == 0) {
      naive.remove(name_of(topic));
      state.remove(name_of(topic));
    } else {
      const Command command = publisher.commandFor(topic);
      naive.set(name_of(topic), command);
      state.set(name_of(topic), payload_of(command.target, command.frame), command.target, true);
    }
    if (publisher.below(10) != 0)
      continue;
    QVector<TopicCommand> commands = restore_list(state, decoded);
    if (publisher.below(3) == 0) {
      commands =
          commands.mid(0, publisher.below(static_cast<int>(commands.size()) + 1)); // the connection breaks on the way
      carry_out(commands, panel);
      continue;
    }
    carry_out(commands, panel);
    state.confirmRestored();
    ASSERT_EQ(panel.text(), naive.panel().text()) << "step " << step;
  }
}

INSTANTIATE_TEST_SUITE_P(Seeds, SequenceTest, testing::Range(1, 13));

} // namespace buttondriver::bridge::test
