// SPDX-License-Identifier: Apache-2.0
#include "latency/probes.h"

#include "panel/registers/registers.h"
#include "soak/load/frames.h"
#include "soak/load/prober.h"

#include <algorithm>
#include <chrono>
#include <optional>
#include <random>
#include <thread>

namespace buttondriver::latency {

namespace {

using panel::led_command_bits::on;
using panel::led_command_bits::status_indicator;
using soak::LoopbackSocket;

/// Status LEDs that one probe has for itself. Each command changes one of them, and the same one comes again only after
/// all others: a transfer tells which command it belongs to.
class CommandSeries {
public:
  static constexpr unsigned leds = 16;

  explicit CommandSeries(unsigned first_led) : _first_led(first_led) {}

  void next() { ++_count; }
  std::string frame() const { return soak::status_led_frame(led(), state()); }
  /// What the register gets.
  unsigned command() const { return led() + status_indicator + (state() == 1 ? on : 0); }

private:
  unsigned led() const { return _first_led + _count % leds; }
  unsigned state() const { return _count / leds % 2 == 0 ? 1 : 0; }

  unsigned _first_led;
  unsigned _count = 0;
};

constexpr unsigned leds_of_open_connection = 0;
constexpr unsigned leds_of_new_connections = CommandSeries::leds;

double seconds_between(std::int64_t from_ns, std::int64_t to_ns) { return static_cast<double>(to_ns - from_ns) * 1e-9; }

/// When the first transfer of `command` among those from `place` on began; nothing when it does not within the limit.
std::optional<std::int64_t> wait_for_transfer(const ProbeSetting &setting, std::uint32_t place, unsigned command) {
  const std::int64_t end_ns = now_ns() + setting.limit_ns;
  do {
    for (; place < std::min(setting.device.led_commands.load(), DeviceLog::room); ++place)
      if (setting.device.led_command[place].command == command)
        return setting.device.led_command[place].at_ns;
    std::this_thread::sleep_for(std::chrono::milliseconds(1));
  } while (now_ns() < end_ns);
  return {};
}

bool is_answered(const ProbeSetting &setting, LoopbackSocket &socket) {
  return soak::ping(socket, setting.target, static_cast<int>(setting.limit_ns / 1'000'000));
}

/// `attempt` returns when that ended which began at the time that it gets, or nothing.
template <class Attempt> Values repeat(const ProbeSetting &setting, unsigned seed, Attempt attempt) {
  Values values;
  std::mt19937 random(seed);
  std::uniform_int_distribution<int> pause_ms(setting.shortest_pause_ms, setting.longest_pause_ms);
  do {
    const std::int64_t start_ns = now_ns();
    const std::optional<std::int64_t> end_ns = attempt();
    if (!end_ns) {
      ++values.missing;
      values.waited_seconds = seconds_between(0, setting.limit_ns);
      break;
    }
    values.values.push_back(seconds_between(start_ns, *end_ns));
    // Of varying lengths, so that it keeps step with nothing in the daemon.
    std::this_thread::sleep_for(std::chrono::milliseconds(pause_ms(random)));
  } while (now_ns() < setting.end_ns);
  return values;
}

std::optional<std::int64_t> send_and_wait(const ProbeSetting &setting, LoopbackSocket &socket, CommandSeries &series) {
  const std::uint32_t place = setting.device.led_commands;
  socket.send(series.frame());
  const auto transfer_ns = wait_for_transfer(setting, place, series.command());
  series.next();
  return transfer_ns;
}

std::optional<std::int64_t> ping_and_wait(const ProbeSetting &setting, LoopbackSocket &socket) {
  return is_answered(setting, socket) ? std::optional(now_ns()) : std::nullopt;
}

} // namespace

Values probe_open_commands(const ProbeSetting &setting, LoopbackSocket &socket) {
  CommandSeries series(leds_of_open_connection);
  return repeat(setting, 1, [&] { return send_and_wait(setting, socket, series); });
}

Values probe_first_answers(const ProbeSetting &setting) {
  return repeat(setting, 2, [&] {
    LoopbackSocket socket(setting.target.port);
    return ping_and_wait(setting, socket);
  });
}

Values probe_new_commands(const ProbeSetting &setting) {
  CommandSeries series(leds_of_new_connections);
  return repeat(setting, 3, [&] {
    LoopbackSocket socket(setting.target.port);
    return send_and_wait(setting, socket, series);
  });
}

Values probe_pings(const ProbeSetting &setting, LoopbackSocket &socket) {
  return repeat(setting, 4, [&] { return ping_and_wait(setting, socket); });
}

std::uint64_t count_probe_commands(const DeviceLog &device) {
  const std::uint32_t count = std::min(device.led_commands.load(), DeviceLog::room);
  const auto is_ours = [](const LedCommand &any) { return (any.command & status_indicator) != 0; };
  return static_cast<std::uint64_t>(
      std::count_if(device.led_command.begin(), device.led_command.begin() + count, is_ours));
}

} // namespace buttondriver::latency
