// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "event_client/event_client.h"
#include "event_client/event_client_testing.h"
#include "support/hex.h"
#include "support/scripted_peer.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <sys/time.h>

namespace buttondriver::test {

inline constexpr const char *local_host = "127.0.0.1";
inline constexpr std::uint32_t uncached_button = 300;

/// A client as in a program that has just started, except that its clock stands still unless a test moves it on.
class EventClientTest : public testing::Test {
protected:
  EventClientTest() { start_anew(); }
  ~EventClientTest() override { reset_event_client(); }

  static void start_anew() {
    reset_event_client();
    _now_us = 1000000000250;
    _connects = 0;
    replace_event_client_calls(observed_calls());
  }

  /// The system's calls with this clock and with connects counted; for tests that replace more of them.
  static EventClientCalls observed_calls() {
    EventClientCalls calls = event_client_system_calls();
    calls.gettimeofday = [](timeval *now, void *) {
      now->tv_sec = static_cast<time_t>(_now_us / 1000000);
      now->tv_usec = static_cast<suseconds_t>(_now_us % 1000000);
      return 0;
    };
    calls.connect = [](int descriptor, const sockaddr *address, socklen_t size) {
      ++_connects;
      return ::connect(descriptor, address, size);
    };
    return calls;
  }

  static void advance_ms(int milliseconds) { _now_us += std::int64_t{milliseconds} * 1000; }

  /// Attempts to connect that reached the system.
  static int connects() { return _connects; }

  /// Connects the client to `peer`, with the cache empty and the connection accepted.
  static void meet(ScriptedPeer &peer) {
    ASSERT_EQ(btc_set_server(local_host, peer.port()), 1);
    peer.accept();
  }

  /// What `act` writes to standard output.
  static std::string printed_by(const std::function<void()> &act) {
    testing::internal::CaptureStdout();
    act();
    return testing::internal::GetCapturedStdout();
  }

private:
  static inline std::int64_t _now_us = 0; ///< since 1970
  static inline int _connects = 0;
};

/// Lower-case digits without the blanks that help the reader.
inline std::string golden(std::string_view digits) { return to_hex(from_hex(digits)); }

} // namespace buttondriver::test
