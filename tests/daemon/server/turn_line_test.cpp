// SPDX-License-Identifier: Apache-2.0
#include "server/turns/turn_line.h"

#include "daemon/server/remembering_setter.h"
#include "server/client_buttondriver.h"
#include "server/frames/large_frame_budget.h"
#include "support/captured_log.h"
#include "support/event_loop.h"

#include <QAbstractEventDispatcher>
#include <QCoreApplication>
#include <QMetaObject>
#include <QObject>

#include <gmock/gmock.h>

#include <chrono>
#include <functional>
#include <memory>
#include <vector>

namespace buttondriver {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class TurnLineTest : public testing::Test {
protected:
  TurnLineTest() {
    for (auto &client : owned) {
      client = std::make_unique<ClientButtondriver>(nullptr, nullptr, &setter, &budget);
      clients.push_back(client.get());
    }
  }

  void joinAll() {
    for (ClientButtondriver *client : clients)
      line.join(client);
  }

  /// Waits until so many turns have been had.
  bool served(std::size_t count) {
    return test::process_events_until([&] { return turns.size() >= count; });
  }

  test::CapturedLog log; // of connections without a socket
  test::RememberingSetter setter;
  LargeFrameBudget budget;
  std::unique_ptr<ClientButtondriver> owned[3];
  std::vector<ClientButtondriver *> clients;

  std::vector<ClientButtondriver *> turns; // who had one
  std::function<void(ClientButtondriver *)> during_a_turn = [](ClientButtondriver *) {};
  TurnLine line{[this](ClientButtondriver *client) {
    turns.push_back(client);
    during_a_turn(client);
  }};
};

TEST_F(TurnLineTest, serves_each_once_in_the_order_in_which_they_joined) {
  for (const std::size_t i : {1U, 0U, 1U, 2U, 0U})
    line.join(clients[i]);
  EXPECT_THAT(turns, IsEmpty()) << "nobody is served before the event loop comes by";
  QCoreApplication::processEvents();
  QCoreApplication::processEvents();
  EXPECT_THAT(turns, ElementsAre(clients[1], clients[0], clients[2]));
}

TEST_F(TurnLineTest, who_joins_during_a_turn_waits_for_the_next_round) {
  std::size_t turns_of_the_first_round = 0;
  QObject context;
  during_a_turn = [&](ClientButtondriver *client) {
    if (turns.size() == 1)
      QMetaObject::invokeMethod(
          &context, [&] { turns_of_the_first_round = turns.size(); }, Qt::QueuedConnection);
    if (turns.size() <= 2)
      line.join(client);
  };
  line.join(clients[0]);
  line.join(clients[1]);
  ASSERT_TRUE(served(4));
  EXPECT_THAT(turns, ElementsAre(clients[0], clients[1], clients[0], clients[1]));
  EXPECT_EQ(turns_of_the_first_round, 2U);
}

TEST_F(TurnLineTest, who_is_forgotten_gets_no_turn_even_when_that_was_during_the_round) {
  during_a_turn = [&](ClientButtondriver *) { line.forget(clients[1]); };
  joinAll();
  line.forget(clients[2]);
  line.forget(clients[2]);
  QCoreApplication::processEvents();
  QCoreApplication::processEvents();
  EXPECT_THAT(turns, ElementsAre(clients[0]));
}

TEST_F(TurnLineTest, who_has_used_the_device_least_comes_first) {
  line.charge(clients[0], std::chrono::milliseconds(2));
  line.charge(clients[1], std::chrono::milliseconds(1));
  joinAll();
  ASSERT_TRUE(served(3));
  EXPECT_THAT(turns, ElementsAre(clients[2], clients[1], clients[0]));
}

TEST_F(TurnLineTest, goes_on_after_the_last_one_served_when_it_was_stopped) {
  // As when the queue is high after each turn: each of them wants more at once, and one is served each time.
  during_a_turn = [&](ClientButtondriver *client) {
    line.join(client);
    line.charge(client, std::chrono::milliseconds(10));
    line.stop();
  };
  joinAll();
  for (int i = 0; i < 6; ++i)
    line.go();
  EXPECT_THAT(turns, ElementsAre(clients[0], clients[1], clients[2], clients[0], clients[1], clients[2]));
}

TEST_F(TurnLineTest, gives_no_turns_while_it_is_stopped_and_the_first_ones_when_it_goes_on) {
  line.join(clients[0]);
  line.stop();
  line.join(clients[1]);
  for (int i = 0; i < 5; ++i)
    QCoreApplication::processEvents();
  EXPECT_THAT(turns, IsEmpty());
  during_a_turn = [&](ClientButtondriver *client) {
    if (turns.size() < 4)
      line.join(client);
  };
  line.go();
  EXPECT_THAT(turns, ElementsAre(clients[0], clients[1])) << "at once";
  ASSERT_TRUE(served(4)) << "and then in the rounds of the event loop";
}

TEST_F(TurnLineTest, an_empty_line_keeps_the_event_loop_at_rest) {
  line.join(clients[0]);
  ASSERT_TRUE(served(1));
  // It tells whether it had anything to do.
  int rounds = 0;
  while (rounds < 100 && QAbstractEventDispatcher::instance()->processEvents(QEventLoop::AllEvents))
    ++rounds;
  EXPECT_LT(rounds, 100);
}

} // namespace
} // namespace buttondriver
