// SPDX-License-Identifier: Apache-2.0
#include "soak/load/loads.h"

#include "soak/load/endless_sender.h"
#include "soak/load/frames.h"
#include "soak/load/loopback_socket.h"

#include <array>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <thread>

namespace buttondriver::soak {

namespace {

using std::chrono::milliseconds;
using Clock = std::chrono::steady_clock;

/// As many clients at once send `bytes` over and over; each connects again when its connection is lost.
void send_from_several(Target &target, std::size_t clients, const std::string &bytes, int receive_buffer = 0) {
  std::vector<LoopbackSocket> sockets(clients);
  std::vector<EndlessSender> senders(clients, EndlessSender(bytes));
  while (!target.stop) {
    bool any = false;
    for (std::size_t i = 0; i < clients; ++i) {
      if (!sockets[i].isOpen()) {
        sockets[i] = connect(target, receive_buffer);
        senders[i].startOver();
      }
      any |= senders[i].sendSome(sockets[i], target);
    }
    std::this_thread::sleep_for(milliseconds(any ? 1 : 10));
  }
}

void flood(Target &target) { send_without_end(target, many_small_frames()); }

void flood_with_pictures(Target &target) { send_from_several(target, 5, picture_frame()); }

/// Connects, sends a few frames and a part of one more, and leaves: with or without a reset, answers read or not.
void reconnect(Target &target) {
  const std::string words = ping_frame() + reconfig_frame() + ping_frame().substr(0, 6);
  for (unsigned turn = 0; !target.stop; ++turn) {
    LoopbackSocket socket = connect(target);
    target.bytes_sent += socket.send(words.substr(0, words.size() - turn % 8));
    if (turn % 3 == 0)
      socket.waitForData(50);
    if (turn % 2 == 0)
      socket.reset();
    std::this_thread::sleep_for(milliseconds(10));
  }
}

/// Sends more work than the daemon takes at once, and leaves before it is done; with or without a reset.
void leave_work(Target &target) {
  std::string work;
  for (int i = 0; i < 12; ++i)
    work += many_small_frames();
  for (unsigned turn = 0; !target.stop; ++turn) {
    LoopbackSocket socket = connect(target);
    target.bytes_sent += socket.send(work);
    if (turn % 2 == 0)
      socket.reset();
    std::this_thread::sleep_for(milliseconds(200));
  }
}

void write_in_place(const std::string &file, const std::string &content) { std::ofstream(file) << content; }

void replace_by_rename(const std::string &file, const std::string &content) {
  write_in_place(file + ".new", content);
  std::error_code ignored;
  std::filesystem::rename(file + ".new", file, ignored);
}

void swap_fonts(Target &target) {
  const std::string file = target.root + "/etc/rv1000e/launcher.cfg";
  // The last is one that does not exist.
  static constexpr std::array<const char *, 4> sizes = {"width=8\nheight=16", "width=6\nheight=10",
                                                        "width=12\nheight=24", "width=3\nheight=99"};
  for (unsigned turn = 0; !target.stop; ++turn) {
    // No two in a row are of the same length, so that each is seen as a change.
    const std::string content = std::string("[font]\n") + sizes[turn % sizes.size()] + std::string(1 + turn % 2, '\n');
    if (turn / 2 % 2 == 0)
      write_in_place(file, content);
    else
      replace_by_rename(file, content);
    std::this_thread::sleep_for(milliseconds(50));
  }
}

void change_levels(Target &target) {
  const std::string file = target.root + "/etc/rv1000e/buttonlevel";
  LoopbackSocket socket;
  for (unsigned turn = 0; !target.stop; ++turn) {
    if (!socket.isOpen())
      socket = connect(target);
    write_in_place(file, "led 50\nlcd 40\nscr " + std::to_string(turn % 101) + "\n");
    target.bytes_sent += socket.send(reconfig_frame());
    std::this_thread::sleep_for(milliseconds(50));
  }
}

/// Asks and asks, and never listens.
void stall(Target &target) {
  std::string pings;
  for (int i = 0; i < 500; ++i)
    pings += ping_frame();
  constexpr int smallest_buffer = 2048;
  send_from_several(target, 8, pings, smallest_buffer);
}

/// Announces almost four gigabytes, delivers drop by drop, and begins again after ten seconds.
void never_end_a_frame(Target &target) {
  const std::string announcement = "\xFF\xFF\xFF\xF0";
  const std::string drop(8192, 'x');
  while (!target.stop) {
    LoopbackSocket socket = connect(target);
    socket.send(announcement);
    const auto end = Clock::now() + std::chrono::seconds(10);
    while (!target.stop && socket.isOpen() && Clock::now() < end) {
      target.bytes_sent += socket.send(drop);
      std::this_thread::sleep_for(milliseconds(50));
    }
  }
}

} // namespace

const std::vector<Load> &all_loads() {
  static const std::vector<Load> loads = {
      {"floods", flood},         {"pictures", flood_with_pictures},
      {"reconnects", reconnect}, {"endings", leave_work},
      {"fonts", swap_fonts},     {"levels", change_levels},
      {"stalled", stall},        {"endless", never_end_a_frame},
  };
  return loads;
}

} // namespace buttondriver::soak
