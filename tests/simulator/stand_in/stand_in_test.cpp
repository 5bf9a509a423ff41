// SPDX-License-Identifier: Apache-2.0
// A program that uses the device, with what stands in for the device.

#include "simulator/device_link/device_socket.h"
#include "support/captured_log.h"
#include "support/event_loop.h"
#include "support/program.h"

#include <QTemporaryDir>

#include <gmock/gmock.h>

#include <cstring>
#include <optional>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace buttondriver::simulator {
namespace {

using test::Program;
using testing::HasSubstr;

class StandInTest : public testing::Test {
protected:
  StandInTest() {
    socket.emplace(panel);
    EXPECT_TRUE(socket->listen(device));
  }

  /// Starts the program with these steps.
  std::unique_ptr<Program> start(const QStringList &steps) const {
    return std::make_unique<Program>(QStringLiteral(DEVICE_USER), steps, folder.path(), device);
  }

  /// What it prints; its steps are parted by blanks.
  std::string run(const char *steps) const {
    const auto user = start(QString::fromLatin1(steps).split(QLatin1Char(' ')));
    EXPECT_EQ(user->waitForEnd(), 0) << steps;
    return user->standardOutput().toStdString();
  }

  /// What a simulator leaves behind that was killed.
  void leaveStaleSocket() const {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    std::strncpy(address.sun_path, device.toLocal8Bit().constData(), sizeof address.sun_path - 1);
    const int descriptor = ::socket(AF_UNIX, SOCK_STREAM, 0);
    ::bind(descriptor, reinterpret_cast<const sockaddr *>(&address), sizeof address);
    ::close(descriptor);
  }

  test::CapturedOutput output;
  const QTemporaryDir folder;
  const QString device = folder.filePath(QStringLiteral("device"));
  VirtualPanel panel;
  std::optional<DeviceSocket> socket;
};

TEST_F(StandInTest, every_way_to_open_the_device_reaches_the_panel) {
  for (const std::string way : {"open", "open64", "openat", "openat64", "fortified"}) {
    panel::TransferRecord dark{0, 0x2900, 0, 1, 0x4500};
    panel.transfer(0, panel::short_form_request, dark, nullptr);
    EXPECT_EQ(run((way + " w:900:6500 close").c_str()), way + ": done\nw:900:6500: done\nclose: done\n");
    EXPECT_TRUE(panel.lamps().button_leds[5]) << way;
    EXPECT_TRUE(test::process_events_until([this] { return !socket->hasDriver(); }));
  }
}

TEST_F(StandInTest, words_go_both_ways) {
  EXPECT_EQ(run("open w:123:1111,2222,3333 r:123:2 r:123:1 r:124:3 r:123:0"),
            "open: done\nw:123:1111,2222,3333: done\n3333 3333 r:123:2: done\n3333 r:123:1: done\n"
            "0000 0000 0000 r:124:3: done\nr:123:0: done\n");
}

TEST_F(StandInTest, addresses_stay_in_the_process) {
  // The reason is printed with the bytes of the record as it came: of the address it has only whether there is one, and
  // the bytes that nobody has written are zeros.
  EXPECT_EQ(run("open many:65536"), "open: done\nmany:65536: -1 errno 22\n");
  EXPECT_THAT(output.take(),
              HasSubstr("buttondriver-sim: no device would accept this transfer, there are more words than any device "
                        "takes: request 0xc0102400, record 00000000232100000000010001000000\n"));
}

TEST_F(StandInTest, the_device_decides_what_it_accepts) {
  EXPECT_EQ(run("open none:2 many:65535 many:65536 none:0 w:900:6500"),
            "open: done\nnone:2: -1 errno 22\nmany:65535: done\nmany:65536: -1 errno 22\nnone:0: done\n"
            "w:900:6500: done\n");
  EXPECT_EQ(panel.counters().refused, 2U);
}

TEST_F(StandInTest, everything_else_goes_on_to_the_system) {
  EXPECT_EQ(run("other missing w:900:6500 open foreign elsewhere close w:900:6500"),
            "other: done\nmissing: -1 errno 2\nw:900:6500: -1 errno 9\nopen: done\nforeign: -1 errno 25\n"
            "elsewhere: -1 errno 25\nclose: done\n"
            "w:900:6500: -1 errno 9\n");
}

TEST_F(StandInTest, without_its_variable_it_stays_out_of_the_way) {
  Program user(QStringLiteral(DEVICE_USER), {QStringLiteral("open")}, folder.path(), QString());
  EXPECT_EQ(user.waitForEnd(), 0);
  EXPECT_EQ(user.standardOutput(), "open: -1 errno 2\n");
  EXPECT_EQ(user.standardError(), "");
}

TEST_F(StandInTest, signals_do_not_disturb_a_transfer) {
  EXPECT_EQ(run("open interrupted"), "open: done\ninterrupted: done\n");
}

TEST_F(StandInTest, threads_wait_for_each_other) { EXPECT_EQ(run("open threads"), "open: done\nthreads: done\n"); }

TEST_F(StandInTest, a_child_has_the_device_as_well) {
  EXPECT_EQ(run("open fork w:900:6500"), "open: done\nfork: done\nw:900:6500: done\n");
  EXPECT_TRUE(panel.lamps().button_leds[6]);
}

TEST_F(StandInTest, a_panel_that_is_not_there_is_a_device_that_is_not_there) {
  socket.reset();
  for (const char *reason : {"No such file or directory", "Connection refused"}) {
    const auto user = start({QStringLiteral("open")});
    EXPECT_EQ(user->waitForEnd(), 0);
    EXPECT_EQ(user->standardOutput(), "open: -1 errno 2\n") << reason;
    EXPECT_EQ(user->standardError().toStdString(),
              "buttondriver-device: no virtual panel at " + device.toStdString() + ": " + reason + "\n");
    leaveStaleSocket();
  }
}

TEST_F(StandInTest, a_driver_beside_another_one_is_told_that_the_device_is_busy) {
  const auto first = start({QStringLiteral("open"), QStringLiteral("wait"), QStringLiteral("w:900:6500")});
  ASSERT_TRUE(first->waitForOutput("open: done\n"));
  EXPECT_EQ(run("open"), "open: -1 errno 16\n");
  first->write("\n");
  EXPECT_EQ(first->waitForEnd(), 0);
  EXPECT_EQ(first->standardOutput(), "open: done\nwait: done\nw:900:6500: done\n");
}

TEST_F(StandInTest, when_the_panel_goes_every_transfer_fails_and_the_program_goes_on) {
  const auto user =
      start({QStringLiteral("open"), QStringLiteral("wait"), QStringLiteral("w:900:6500"), QStringLiteral("r:900:1"),
             QStringLiteral("many:65535"), QStringLiteral("close"), QStringLiteral("open")});
  ASSERT_TRUE(user->waitForOutput("open: done\n"));
  socket.reset();
  user->write("\n");
  EXPECT_EQ(user->waitForEnd(), 0);
  EXPECT_EQ(user->standardOutput(), "open: done\nwait: done\nw:900:6500: -1 errno 5\n0000 r:900:1: -1 errno 5\n"
                                    "many:65535: -1 errno 5\nclose: done\nopen: -1 errno 2\n");
}

} // namespace
} // namespace buttondriver::simulator
