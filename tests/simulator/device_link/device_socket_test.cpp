// SPDX-License-Identifier: Apache-2.0
// What goes over the device's socket, byte by byte.

#include "simulator/device_link/device_socket.h"

#include "support/captured_log.h"
#include "support/event_loop.h"

#include <QLocalSocket>
#include <QTemporaryDir>

#include <gmock/gmock.h>

#include <memory>

namespace buttondriver::simulator {
namespace {

using test::process_events_until;
using testing::HasSubstr;

constexpr const char *hello = "42445231 01000000";
constexpr const char *welcome = "424452310100000000000000";
constexpr const char *led_5_on = "002410c0 00000000 00000000 0029 0000 01000000 00650000";
constexpr const char *led_5_is_on = "00000000000000000065000000000000";
constexpr const char *invalid = "ffffffff160000000000000000000000";

/// A program at the other end.
class Peer {
public:
  explicit Peer(const QString &path) {
    _socket.connectToServer(path);
    EXPECT_TRUE(_socket.waitForConnected());
  }

  void send(const QByteArray &hex) { write(QByteArray::fromHex(hex)); }
  void write(const QByteArray &bytes) {
    _socket.write(bytes);
    _socket.flush();
  }

  /// The next answer, in hexadecimal; shorter when the connection ends before it is complete.
  std::string take(qsizetype bytes) {
    EXPECT_TRUE(process_events_until([&] { return _socket.bytesAvailable() >= bytes || !isConnected(); }));
    return _socket.read(bytes).toHex().toStdString();
  }
  std::string takeAnswer() { return take(16); }
  std::string greet() {
    send(hello);
    return take(12);
  }

  void stopReading() { _socket.setReadBufferSize(1); }
  void goOnReading() { _socket.setReadBufferSize(0); }

  bool isConnected() const { return _socket.state() == QLocalSocket::ConnectedState; }
  bool isSentAway() {
    return process_events_until([&] { return !isConnected(); });
  }

private:
  QLocalSocket _socket;
};

class DeviceSocketTest : public testing::Test {
protected:
  DeviceSocketTest() { EXPECT_TRUE(socket.listen(path)); }

  const QTemporaryDir folder;
  const QString path = folder.filePath(QStringLiteral("device"));
  test::CapturedOutput output;
  VirtualPanel panel;
  DeviceSocket socket{panel};
};

TEST_F(DeviceSocketTest, carries_out_what_the_driver_asks_for) {
  Peer driver(path);
  EXPECT_EQ(driver.greet(), welcome);
  EXPECT_TRUE(socket.hasDriver());
  driver.send(led_5_on);
  EXPECT_EQ(driver.takeAnswer(), led_5_is_on);
  EXPECT_TRUE(panel.lamps().button_leds[5]);
  // Three words to a register that keeps the last one, which two words of a read then are; and of one word.
  driver.send("002410c0 03000000 00000000 2321 0000 03000000 01000000 1111 2222 3333");
  EXPECT_EQ(driver.takeAnswer(), "00000000000000000000000000000000");
  driver.send("002410c0 00000000 00000000 2361 0000 02000000 01000000");
  EXPECT_EQ(driver.take(20), "0000000000000000000000000200000033333333");
  driver.send("002410c0 00000000 00000000 2361 0000 01000000 00000000");
  EXPECT_EQ(driver.takeAnswer(), "00000000000000003333000000000000");
  // The long form, and no word at all.
  driver.send("012410c0 02000000 00000000 00200020 02000000 01000000 4444 5555");
  EXPECT_EQ(driver.takeAnswer(), "00000000000000000000000000000000");
  driver.send("012410c0 00000000 00000000 00200060 02000000 01000000");
  EXPECT_EQ(driver.take(20), "0000000000000000000000000200000055555555");
  driver.send("002410c0 00000000 00000000 2321 0000 00000000 00000000");
  EXPECT_EQ(driver.takeAnswer(), "00000000000000000000000000000000");
  EXPECT_EQ(panel.counters().transfers, 7U);
  EXPECT_EQ(panel.counters().refused, 0U);
}

TEST_F(DeviceSocketTest, carries_out_as_many_words_as_fit) {
  Peer driver(path);
  ASSERT_EQ(driver.greet(), welcome);
  driver.send("002410c0 ffff0000 00000000 2321 0000 ffff0000 01000000");
  driver.write(QByteArray(65535 * 2, '\x5A'));
  EXPECT_EQ(driver.takeAnswer(), "00000000000000000000000000000000");
  driver.send("002410c0 00000000 00000000 2361 0000 ffff0000 01000000");
  EXPECT_EQ(driver.takeAnswer(), "000000000000000000000000ffff0000");
  EXPECT_EQ(driver.take(65535 * 2), QByteArray(65535 * 2, '\x5A').toHex().toStdString());
}

TEST_F(DeviceSocketTest, an_answer_that_is_not_read_holds_the_next_request) {
  constexpr const char *read_65535 = "002410c0 00000000 00000000 2361 0000 ffff0000 01000000";
  Peer driver(path);
  ASSERT_EQ(driver.greet(), welcome);
  driver.stopReading();
  for (int times = 0; times < 8; ++times)
    driver.send(read_65535);
  test::process_ready_events();
  const std::uint64_t carried_out = panel.counters().transfers;
  EXPECT_GT(carried_out, 0U);
  EXPECT_LT(carried_out, 8U);
  driver.goOnReading();
  for (int times = 0; times < 8; ++times) {
    EXPECT_EQ(driver.takeAnswer(), "000000000000000000000000ffff0000");
    EXPECT_EQ(driver.take(65535 * 2).size(), 65535U * 4);
  }
}

TEST_F(DeviceSocketTest, what_comes_in_pieces_or_at_once_is_the_same) {
  Peer driver(path);
  const QByteArray bytes = QByteArray::fromHex(QByteArray(hello) + led_5_on);
  for (const char byte : bytes) {
    driver.write(QByteArray(1, byte));
    QCoreApplication::processEvents();
  }
  EXPECT_EQ(driver.take(12), welcome);
  EXPECT_EQ(driver.takeAnswer(), led_5_is_on);
  driver.send(QByteArray(led_5_on) + led_5_on + led_5_on);
  for (int times = 0; times < 3; ++times)
    EXPECT_EQ(driver.takeAnswer(), led_5_is_on);
}

TEST_F(DeviceSocketTest, a_transfer_that_no_device_would_accept_fails_and_the_next_goes_on) {
  const char *rows[] = {
      "002410c0 00000000 01000000 0029 0000 01000000 00650000", // reserved word
      "002410c0 00000000 00000000 0009 0000 01000000 00650000", // the bit that is always one
      "022410c0 00000000 00000000 0029 0000 01000000 00650000", // request
      "022410c0 00000000 00000000 0029 0000 02000000 01000000", // request, several words
      "002410c0 00000000 00000000 0029 0000 02000000 00000000", // a write without words
      "002410c0 00000000 00000000 0069 0000 02000000 00000000", // a read without words
      "002410c0 00000000 00000000 0029 0000 00000100 01000000", // 65,536 words
      "002410c0 00000000 00000000 0069 0000 ffffffff 01000000", // 4,294,967,295 words
  };
  Peer driver(path);
  ASSERT_EQ(driver.greet(), welcome);
  unsigned refused = 0;
  for (const char *row : rows) {
    driver.send(row);
    EXPECT_EQ(driver.takeAnswer(), invalid) << row;
    EXPECT_EQ(panel.counters().refused, ++refused);
    driver.send(led_5_on);
    EXPECT_EQ(driver.takeAnswer(), led_5_is_on) << row;
  }
  EXPECT_EQ(panel.counters().transfers, 2 * refused);
  const std::string printed = output.take();
  EXPECT_EQ(QByteArray::fromStdString(printed).count("no device would accept"), 1) << printed;
}

TEST_F(DeviceSocketTest, another_language_ends_the_connection) {
  constexpr const char *other_words = "a request whose words are not those of its record";
  struct Row {
    const char *before;
    const char *sent;
    const char *reason;
  };
  const Row rows[] = {
      {"", "474554202f204854", "a greeting in another language"},                              // "GET / HT"
      {hello, "002410c0 01000000 00000000 2321 0000 03000000 01000000 1111", other_words},     // too few
      {hello, "002410c0 04000000 00000000 2321 0000 03000000 01000000", other_words},          // too many
      {hello, "002410c0 ffffffff 00000000 2321 0000 ffffffff 01000000", other_words},          // far too many
      {hello, "002410c0 02000000 00000000 2361 0000 02000000 01000000 11112222", other_words}, // of a read
      {hello, "002410c0 01000000 00000000 0029 0000 01000000 00650000 1111", other_words},     // beside a single one
      {hello, "002410c0 02000000 00000000 2321 0000 02000000 00504000", "a request with an address"},
  };
  int number = 0;
  for (const Row &row : rows) {
    const QString own_path = path + QString::number(++number);
    DeviceSocket own_socket(panel);
    ASSERT_TRUE(own_socket.listen(own_path));
    Peer peer(own_path);
    if (*row.before) {
      ASSERT_EQ(peer.greet(), welcome);
    }
    testing::internal::CaptureStderr();
    peer.send(row.sent);
    EXPECT_TRUE(peer.isSentAway()) << row.sent;
    EXPECT_EQ(testing::internal::GetCapturedStderr(), std::string("buttondriver-sim: somebody has sent the device ") +
                                                          row.reason + "; the connection was closed\n");
    EXPECT_FALSE(own_socket.hasDriver());
    Peer driver(own_path);
    EXPECT_EQ(driver.greet(), welcome) << row.sent;
  }
  EXPECT_EQ(panel.counters().transfers, 0U);
}

TEST_F(DeviceSocketTest, another_language_is_told_once) {
  testing::internal::CaptureStderr();
  for (int times = 0; times < 3; ++times) {
    Peer peer(path);
    peer.send("474554202f204854");
    EXPECT_TRUE(peer.isSentAway());
  }
  const QByteArray printed = QByteArray::fromStdString(testing::internal::GetCapturedStderr());
  EXPECT_EQ(printed.count('\n'), 1) << printed.toStdString();
}

TEST_F(DeviceSocketTest, what_is_cut_off_is_not_carried_out) {
  for (const char *sent : {"4244", hello, "42445231 01000000 002410c0 00000000 0000",
                           "42445231 01000000 002410c0 03000000 00000000 0029 0000 03000000 01000000 0065"}) {
    std::make_unique<Peer>(path)->send(sent);
    // Until the end of that one has been seen, it may still count as the driver.
    EXPECT_TRUE(process_events_until([this] { return Peer(path).greet() == welcome; })) << sent;
  }
  EXPECT_EQ(panel.counters().transfers, 0U);
}

TEST_F(DeviceSocketTest, another_version_is_told_which_one_this_is) {
  Peer peer(path);
  peer.send("42445231 02000000");
  EXPECT_EQ(peer.take(12), "424452310100000047000000");
  EXPECT_TRUE(peer.isSentAway());
}

TEST_F(DeviceSocketTest, one_drives_at_a_time_and_the_next_finds_the_panel_as_it_was) {
  auto first = std::make_unique<Peer>(path);
  ASSERT_EQ(first->greet(), welcome);
  first->send(led_5_on);
  ASSERT_EQ(first->takeAnswer(), led_5_is_on);
  Peer second(path);
  EXPECT_EQ(second.greet(), "424452310100000010000000");
  EXPECT_TRUE(second.isSentAway());
  first->send(led_5_on);
  EXPECT_EQ(first->takeAnswer(), led_5_is_on);
  first.reset();
  EXPECT_TRUE(process_events_until([this] { return !socket.hasDriver(); }));
  Peer third(path);
  EXPECT_EQ(third.greet(), welcome);
  EXPECT_TRUE(panel.lamps().button_leds[5]);
  EXPECT_THAT(output.take(), HasSubstr("buttondriver-sim: a driver has opened the device\n"
                                       "buttondriver-sim: the device has a driver, another one was refused\n"
                                       "buttondriver-sim: the driver has gone\n"
                                       "buttondriver-sim: a driver has opened the device\n"));
}

TEST_F(DeviceSocketTest, connections_that_say_nothing_give_way_and_the_driver_does_not) {
  Peer driver(path);
  ASSERT_EQ(driver.greet(), welcome);
  std::vector<std::unique_ptr<Peer>> silent;
  for (int count = 0; count < 20; ++count) {
    silent.push_back(std::make_unique<Peer>(path));
    test::process_ready_events();
  }
  for (int index = 0; index < 13; ++index)
    EXPECT_TRUE(silent[static_cast<std::size_t>(index)]->isSentAway()) << index;
  driver.send(led_5_on);
  EXPECT_EQ(driver.takeAnswer(), led_5_is_on);
  int connected = 0;
  for (const auto &peer : silent)
    connected += peer->isConnected() ? 1 : 0;
  EXPECT_EQ(connected, 7);
}

} // namespace
} // namespace buttondriver::simulator
