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

} // namespace
} // namespace buttondriver
