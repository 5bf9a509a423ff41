// SPDX-License-Identifier: Apache-2.0
#include "soak/load/prober.h"

#include "soak/load/frames.h"

#include <chrono>
#include <thread>
#include <utility>

namespace buttondriver::soak {

namespace {

using Clock = std::chrono::steady_clock;

double milliseconds_since(Clock::time_point start) {
  return std::chrono::duration<double, std::milli>(Clock::now() - start).count();
}

} // namespace

bool ping(LoopbackSocket &socket, const Target &target, int longest_wait_ms) {
  constexpr std::size_t answer_size = 8;
  constexpr int look_at_stop_ms = 100;
  const auto start = Clock::now();
  socket.send(ping_frame());
  std::size_t received = 0;
  while (socket.isOpen() && received < answer_size) {
    if (target.stop || milliseconds_since(start) >= longest_wait_ms)
      return false;
    char answer[answer_size];
    if (socket.waitForData(look_at_stop_ms))
      received += socket.receive(answer, answer_size - received);
  }
  return received == answer_size;
}

void Prober::run(Target &target) {
  LoopbackSocket socket;
  while (!target.stop) {
    if (!socket.isOpen())
      socket = LoopbackSocket(target.port);
    const auto start = Clock::now();
    const bool is_answered = ping(socket, target, longest_wait_ms);
    if (target.stop)
      return;
    keep(is_answered ? milliseconds_since(start) : longest_wait_ms, is_answered);
    if (!is_answered)
      socket.close();
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
  }
}

std::vector<double> Prober::takeLatencies() {
  const std::lock_guard lock(_mutex);
  return std::exchange(_latencies, {});
}

int Prober::unanswered() const {
  const std::lock_guard lock(_mutex);
  return _unanswered;
}

void Prober::keep(double latency_ms, bool is_answered) {
  const std::lock_guard lock(_mutex);
  _latencies.push_back(latency_ms);
  _unanswered += is_answered ? 0 : 1;
}

} // namespace buttondriver::soak
