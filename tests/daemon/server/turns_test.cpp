// SPDX-License-Identifier: Apache-2.0
// How connections take turns.

#include "daemon/server/server_fixture.h"
#include "server/limits.h"

#include <algorithm>
#include <vector>

namespace buttondriver {
namespace {

using test::frame;
using test::process_events_until;

class TurnsTest : public test::ServerFixture {};

TEST_F(TurnsTest, a_turn_is_at_most_64_messages) {
  const auto client = connectClient();
  QByteArray burst;
  for (int i = 0; i < 1000; ++i)
    burst += frame("some message");
  client->write(burst);
  ASSERT_TRUE(process_events_until([&] { return delivered() == 1000; }));
  for (const auto &call : setter.calls)
    EXPECT_LE(call.messages.size(), limits::messages_per_turn);
}

TEST_F(TurnsTest, connections_take_turns) {
  const auto flooding = connectClient();
  const auto other = connectClient();
  QByteArray flood;
  for (int i = 0; i < 20'000; ++i)
    flood += frame("flood");
  flooding->write(flood);
  ASSERT_TRUE(process_events_until([&] { return delivered() > 0; }));
  other->write(frame("other"));
  ASSERT_TRUE(process_events_until([&] { return delivered() == 20'001; }));
  const std::vector<QByteArray> messages = setter.messages();
  const auto place = std::find(messages.begin(), messages.end(), "other") - messages.begin();
  EXPECT_LT(place, 5'000); // one read-ahead holds 7,281 of them
}

TEST_F(TurnsTest, after_a_pause_comes_first_who_has_used_the_device_least) {
  setter.device_time = std::chrono::milliseconds(30); // a turn is one message
  setter.when_called = [this] {
    if (!setter.calls.back().messages.empty())
      connector.pauseReading();
  };
  const auto heavy = connectClient();
  const auto light = connectClient();
  const qint32 heavy_id = connector.clients().front()->clientId();
  const qint32 light_id = connector.clients().back()->clientId();
  heavy->write(frame("picture").repeated(4));
  ASSERT_TRUE(process_events_until([&] { return delivered() == 1; }));
  light->write(frame("light").repeated(2));
  settle();
  std::vector<qint32> ids;
  while (delivered() < 6) {
    setter.calls.clear();
    connector.resumeReading();
    ids.push_back(setter.calls.back().client_id);
  }
  EXPECT_EQ(ids, (std::vector<qint32>{light_id, heavy_id, light_id, heavy_id, heavy_id}));
}

TEST_F(TurnsTest, null_messages_use_up_turns_like_others) {
  constexpr int count = 40;
  setter.device_time = limits::time_per_turn;
  const auto one = connectClient();
  const auto other = connectClient();
  connector.pauseReading();
  one->write(frame(QByteArray(4, '\0')).repeated(count));
  other->write(frame("work").repeated(count));
  ASSERT_TRUE(process_events_until([&] { return held() == 2 * count * 8; }));
  settle();
  setter.forget(); // turns without messages
  connector.resumeReading();
  ASSERT_TRUE(process_events_until([&] { return delivered() == 2 * count; }));
  const std::vector<QByteArray> messages = setter.messages();
  const auto work = std::count(messages.begin(), messages.begin() + count, "work");
  EXPECT_GE(work, count / 2 - 2);
  EXPECT_LE(work, count / 2 + 2);
}

} // namespace
} // namespace buttondriver
