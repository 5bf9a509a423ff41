// SPDX-License-Identifier: Apache-2.0
#include "event_client_fixture.h"

#include "files/owned_descriptor.h"

#include <future>
#include <sys/mman.h>
#include <sys/resource.h>
#include <unistd.h>

namespace buttondriver::test {
namespace {

class EventClientMessagesTest : public EventClientTest {};

std::string counting_image() {
  std::string image;
  for (int i = 0; i < 120; ++i)
    image += static_cast<char>(0x80 + i);
  return image;
}

TEST_F(EventClientMessagesTest, every_operation_sends_its_golden_frame) {
  const std::string image = counting_image();
  struct Row {
    const char *name;
    std::function<int()> operation;
    std::string frame;
  };
  const Row rows[] = {
      {"colour", [] { return btc_set_colour(5, 0x11, 0x22, 0xF3); }, "0000000c 00000004 00000005 1122f300"},
      {"colour of all", [] { return btc_set_colour(BTC_ALL_BUTTONS, 1, 2, 3); }, "0000000c 00000004 ffffffff 01020300"},
      {"colour pair", [] { return btc_set_colour_pair(6, 1, 2, 3, 500, 0xF4, 5, 6, 0x01020304); },
       "00000018 0000000b 00000006 01020300 000001f4 f4050600 01020304"},
      {"text", [] { return btc_set_text(7, "Hi", 0xA0B0C0D0); }, "00000013 00000005 00000007 a0b0c0d0 00000003 486900"},
      {"empty text", [] { return btc_set_text(300, "", 0); }, "00000011 00000005 0000012c 00000000 00000001 00"},
      {"null text", [] { return btc_set_text(301, nullptr, 1); }, "00000011 00000005 0000012d 00000001 00000001 00"},
      {"image upload", [&image] { return btc_upload_image(23, image.data(), 120); },
       "00000084 00000006 00000017 00000078" + to_hex(image)},
      {"image", [] { return btc_set_image(3, 0x01020304); }, "0000000c 00000007 00000003 01020304"},
      {"image -1 on all", [] { return btc_set_image(BTC_ALL_BUTTONS, -1); }, "0000000c 00000007 ffffffff ffffffff"},
      {"values", [] { return btc_set_value(0x01020304, 0xFFFEFDFC); }, "0000000c 0000000e 01020304 fffefdfc"},
      {"parameter off", [] { return btc_parameter_off(); }, "0000000c 00000008 00000008 00000000"},
      {"verbose on", [] { return btc_verbose_on(); }, "0000000c 00000008 00000009 00000001"},
      {"reconfig", [] { return btc_reconfig(); }, "00000008 0000000a 00000000"},
      {"raw bytes", [] { return btc_send("\x00\x00\x00\x0c", 4); }, "00000004 0000000c"},
      {"no bytes", [] { return btc_send("", 0); }, "00000000"},
  };
  ScriptedPeer peer;
  meet(peer);
  std::string expected;
  for (const Row &row : rows) {
    SCOPED_TRACE(row.name);
    EXPECT_EQ(row.operation(), 1);
    const std::string frame = golden(row.frame);
    EXPECT_EQ(to_hex(peer.read(frame.size() / 2)), frame);
  }
  reset_event_client();
  EXPECT_EQ(peer.read_to_end(), "");
}

TEST_F(EventClientMessagesTest, image_of_another_size_is_reported_without_verbose_and_not_sent) {
  const std::string image(200, 'x');
  ScriptedPeer peer;
  meet(peer);
  for (const int size : {119, 121, 0, -1}) {
    const std::string text = "wrong image data size " + std::to_string(size) + ", must be 120\n";
    EXPECT_EQ(printed_by([&] { EXPECT_EQ(btc_upload_image(7, image.data(), size), 0); }), text);
  }
  reset_event_client();
  EXPECT_EQ(peer.read_to_end(), "");
}

TEST_F(EventClientMessagesTest, null_image_is_not_sent) {
  ScriptedPeer peer;
  meet(peer);
  EXPECT_EQ(printed_by([] { EXPECT_EQ(btc_upload_image(7, nullptr, 120), 0); }), "");
  reset_event_client();
  EXPECT_EQ(peer.read_to_end(), "");
}

TEST_F(EventClientMessagesTest, long_text_arrives_whole_at_a_peer_that_takes_one_byte_at_a_time) {
  const std::string text(100000, 'w');
  // 16 + 100001 bytes, framed.
  const std::string head = from_hex("000186b1 00000005 00000001 00000002 000186a1");
  ScriptedPeer peer(ScriptedPeer::Door::open, 2048);
  EventClientCalls calls = observed_calls();
  calls.longest_wait_ms = 10000;
  replace_event_client_calls(calls);
  meet(peer);
  auto received = std::async(std::launch::async, [&] { return peer.read(head.size() + text.size() + 1, 1); });
  EXPECT_EQ(btc_set_text(1, text.c_str(), 2), 1);
  EXPECT_TRUE(received.get() == head + text + '\0');
}

/// A text of 4 GiB, in some memory that is there again and again.
class EndlessText {
public:
  EndlessText() {
    const OwnedDescriptor memory(::memfd_create("text", MFD_CLOEXEC));
    const std::string piece(piece_size, 'x');
    EXPECT_EQ(::write(memory.get(), piece.data(), piece.size()), static_cast<ssize_t>(piece.size()));
    // All zeros, of which one is left at the end.
    void *const place = ::mmap(nullptr, size + piece_size, PROT_READ, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    EXPECT_NE(place, MAP_FAILED);
    _text = static_cast<char *>(place);
    for (std::size_t offset = 0; offset < size; offset += piece_size)
      EXPECT_NE(::mmap(_text + offset, piece_size, PROT_READ, MAP_SHARED | MAP_FIXED, memory.get(), 0), MAP_FAILED);
  }
  ~EndlessText() { ::munmap(_text, size + piece_size); }
  EndlessText(const EndlessText &) = delete;
  EndlessText &operator=(const EndlessText &) = delete;

  const char *text() const { return _text; }

private:
  static constexpr std::size_t piece_size = std::size_t{16} * 1024 * 1024;
  static constexpr std::size_t size = 256 * piece_size;

  char *_text;
};

TEST_F(EventClientMessagesTest, text_whose_length_has_no_room_in_a_frame_is_not_sent) {
  if (sizeof(std::size_t) <= 4)
    GTEST_SKIP() << "no text is that long here";
  const EndlessText endless;
  ScriptedPeer peer;
  meet(peer);
  EXPECT_EQ(btc_set_text(uncached_button, endless.text(), 0), 0);
  EXPECT_EQ(btc_reconfig(), 1);
  reset_event_client();
  EXPECT_EQ(to_hex(peer.read_to_end()), golden("00000008 0000000a 00000000"));
}

TEST_F(EventClientMessagesTest, text_for_which_there_is_no_memory_is_not_sent) {
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
  GTEST_SKIP() << "a sanitizer ends the process that gets no memory";
#endif
  const std::string text(std::size_t{64} * 1024 * 1024, 'x');
  ScriptedPeer peer;
  meet(peer);
  rlimit usual{};
  ASSERT_EQ(::getrlimit(RLIMIT_AS, &usual), 0);
  rlimit none = usual;
  none.rlim_cur = 0; // takes away nothing that the process has
  ASSERT_EQ(::setrlimit(RLIMIT_AS, &none), 0);
  const int result = btc_set_text(uncached_button, text.c_str(), 0);
  ASSERT_EQ(::setrlimit(RLIMIT_AS, &usual), 0);
  EXPECT_EQ(result, 0);
  EXPECT_EQ(btc_reconfig(), 1);
  reset_event_client();
  EXPECT_EQ(to_hex(peer.read_to_end()), golden("00000008 0000000a 00000000"));
}

TEST_F(EventClientMessagesTest, messages_sent_before_a_late_accept_arrive) {
  ScriptedPeer peer;
  ASSERT_EQ(btc_set_server(local_host, peer.port()), 1);
  EXPECT_EQ(btc_set_value(1, 2), 1);
  EXPECT_EQ(btc_reconfig(), 1);
  peer.accept();
  EXPECT_EQ(to_hex(peer.read(28)), golden("0000000c 0000000e 00000001 00000002 00000008 0000000a 00000000"));
}

} // namespace
} // namespace buttondriver::test
