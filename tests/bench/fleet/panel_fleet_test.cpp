// SPDX-License-Identifier: Apache-2.0
#include "fleet/panels/panel_fleet.h"

#include "fleet/panels/delays.h"
#include "soak/load/loopback_socket.h"
#include "support/hex.h"

#include <gtest/gtest.h>

#include <fcntl.h>

namespace buttondriver::fleet {
namespace {

using soak::LoopbackSocket;

const std::string ping = test::from_hex("00000004 0000000c");
const std::string ping_reply = test::from_hex("00000004 00000001");
const std::string button_on = test::from_hex("00000010 00000011 00000017 00000001 00000000");
constexpr std::chrono::seconds limit{60};

/// A line 0 of screen 0 with a text of 16 characters.
std::string line_frame(const std::string &text) {
  return test::from_hex("00000025 0000000f 00000000 00000000 00000001 00000011") + text + '\0';
}

class PanelFleetTest : public testing::Test {
protected:
  /// A connection that the panel has accepted.
  LoopbackSocket connected(std::size_t panel) {
    LoopbackSocket socket(fleet.port(panel));
    EXPECT_EQ(asked(socket, ping, ping_reply.size()), ping_reply);
    return socket;
  }

  static std::string asked(LoopbackSocket &socket, const std::string &frames, std::size_t bytes) {
    EXPECT_EQ(socket.send(frames), frames.size());
    std::string answer;
    while (answer.size() < bytes && socket.waitForData(60'000)) {
      char part[64];
      const std::size_t count = socket.receive(part, sizeof part);
      if (count == 0)
        break;
      answer.append(part, count);
    }
    return answer;
  }

  bool waitForMessages(std::uint32_t opcode, std::uint64_t count) {
    return fleet.waitUntil([&] { return fleet.counts().messages[opcode] >= count; }, limit);
  }

  PanelFleet fleet{3};
};

TEST_F(PanelFleetTest, answers_each_ping) {
  LoopbackSocket socket = connected(2);
  EXPECT_EQ(asked(socket, ping + button_on + ping, 2 * ping_reply.size()), ping_reply + ping_reply);
  EXPECT_EQ(fleet.counts().messages[12], 3U);
  EXPECT_EQ(fleet.counts().messages[17], 1U);
}

TEST_F(PanelFleetTest, counts_who_is_connected) {
  EXPECT_EQ(fleet.counts().connected, 0U);
  LoopbackSocket first = connected(0);
  const LoopbackSocket second = connected(1);
  EXPECT_EQ(fleet.counts().connected, 2U);
  first.close();
  EXPECT_TRUE(fleet.waitUntil([&] { return fleet.counts().connected == 1; }, limit));
}

TEST_F(PanelFleetTest, remembers_what_each_panel_shows) {
  LoopbackSocket socket = connected(1);
  asked(socket, button_on + ping, ping_reply.size());
  EXPECT_EQ(fleet.state(0).buttons[23], 0);
  EXPECT_EQ(fleet.state(1).buttons[23], 1);
  std::vector<PanelState> wanted(3);
  EXPECT_EQ(fleet.differFrom(wanted), 1U);
  wanted[1].buttons[23] = 1;
  EXPECT_EQ(fleet.differFrom(wanted), 0U);
}

TEST_F(PanelFleetTest, puts_frames_together_wherever_they_are_cut) {
  const std::string frames = button_on + line_frame("0123456789abcdeg") + button_on + ping;
  LoopbackSocket other = connected(1);
  // Within a length, at its end, within a message, at its end, and so on. To know that bytes have arrived takes 40 ms.
  std::uint64_t runs = 0;
  for (const std::size_t cut : {1, 3, 4, 7, 19, 20, 21, 24, 40, 60, 61, 62, 80, 81, 82, 84, 88}) {
    LoopbackSocket socket = connected(0);
    ++runs;
    asked(socket, frames.substr(0, cut), 0);
    while (!socket.hasArrived())
      std::this_thread::yield();
    // What has come first is read first: the beginning, before the rest comes.
    asked(other, ping, ping_reply.size());
    EXPECT_EQ(asked(socket, frames.substr(cut), ping_reply.size()), ping_reply) << cut;
    EXPECT_EQ(fleet.counts().messages[17], 2 * runs) << cut;
    EXPECT_EQ(fleet.counts().messages[15], runs) << cut;
  }
}

TEST_F(PanelFleetTest, tells_how_long_lines_with_stamps_took) {
  LoopbackSocket socket = connected(0);
  asked(socket, line_frame(stamp_now()) + line_frame("no stamp is this") + line_frame(stamp_now()) + ping,
        ping_reply.size());
  const auto ages = fleet.takeAges();
  ASSERT_EQ(ages.size(), 2U);
  EXPECT_GE(ages[0], 0);
  EXPECT_TRUE(fleet.takeAges().empty()) << "they are told once";
}

TEST_F(PanelFleetTest, a_panel_that_is_off_forgets_and_refuses) {
  LoopbackSocket socket = connected(0);
  asked(socket, button_on + ping, ping_reply.size());
  fleet.switchOff(0);
  EXPECT_TRUE(socket.waitForData(60'000));
  char byte = 0;
  EXPECT_EQ(socket.receive(&byte, 1), 0U);
  EXPECT_FALSE(socket.isOpen());
  EXPECT_EQ(fleet.counts().connected, 0U);
  EXPECT_TRUE(fleet.state(0) == PanelState());
  EXPECT_FALSE(LoopbackSocket(fleet.port(0)).isOpen());
  connected(1);
}

TEST_F(PanelFleetTest, a_panel_comes_back_on_its_port) {
  const std::uint16_t port = fleet.port(0);
  fleet.switchOff(0);
  fleet.switchOff(0);
  fleet.switchOn(0);
  fleet.switchOn(0);
  EXPECT_EQ(fleet.port(0), port);
  const LoopbackSocket socket = connected(0);
  EXPECT_EQ(fleet.counts().connected, 1U);
}

TEST_F(PanelFleetTest, ends_a_connection_with_a_length_beyond_all_messages) {
  for (const char *length : {"01000001", "fffffffc", "ffffffff"}) {
    LoopbackSocket socket = connected(0);
    EXPECT_EQ(asked(socket, test::from_hex(length), 1), "") << length;
    EXPECT_FALSE(socket.isOpen()) << length;
  }
}

TEST_F(PanelFleetTest, leaves_the_low_descriptors_to_others) {
  const LoopbackSocket first = connected(0);
  const OwnedDescriptor before(::open("/dev/null", O_RDONLY | O_CLOEXEC));
  const PanelFleet many(20);
  const LoopbackSocket second(many.port(0));
  const OwnedDescriptor after(::open("/dev/null", O_RDONLY | O_CLOEXEC));
  EXPECT_LT(after.get(), before.get() + 10);
}

TEST_F(PanelFleetTest, waits_no_longer_than_it_may) {
  EXPECT_FALSE(fleet.waitUntil([] { return false; }, std::chrono::seconds(0)));
}

} // namespace
} // namespace buttondriver::fleet
