// SPDX-License-Identifier: Apache-2.0
#include "latency/measured_run.h"

#include "latency/probes.h"
#include "latency/rows/blinking.h"
#include "soak/load/endless_sender.h"
#include "soak/load/frames.h"
#include "soak/load/prober.h"
#include "support/panel_daemon.h"

#include <algorithm>
#include <chrono>
#include <stdexcept>
#include <thread>

namespace buttondriver::latency {

namespace {

constexpr int blinking_buttons = 4;

std::int64_t ns_of(double seconds) { return static_cast<std::int64_t>(seconds * 1e9); }

void sleep_until(std::int64_t time_ns) { std::this_thread::sleep_for(std::chrono::nanoseconds(time_ns - now_ns())); }

/// The clients that make the load, until this object goes.
class LoadingClients {
public:
  LoadingClients(soak::Target &target, const LoadKind &kind) : _target(target) {
    for (int i = 0; i < kind.clients; ++i)
      _threads.emplace_back([this, &kind] { soak::send_without_end(_target, kind.frames()); });
  }
  ~LoadingClients() {
    _target.stop = true;
    for (std::thread &thread : _threads)
      thread.join();
  }

private:
  soak::Target &_target;
  std::vector<std::thread> _threads;
};

/// A connection that has been accepted.
soak::LoopbackSocket open_connection(const soak::Target &target) {
  constexpr int limit_ms = 20'000;
  soak::LoopbackSocket socket(target.port);
  if (!soak::ping(socket, target, limit_ms))
    throw std::runtime_error("an idle daemon does not answer");
  return socket;
}

/// Waits until a button has changed so often since `place` of the log. False when that takes too long.
bool wait_for_changes(const DeviceLog &device, std::uint32_t place, int button, int changes, std::int64_t limit_ns) {
  const std::int64_t end_ns = now_ns() + limit_ns;
  for (; changes > 0 && place < DeviceLog::room; ++place) {
    while (place >= device.led_commands) {
      if (now_ns() >= end_ns)
        return false;
      std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    changes -= is_change_of_button(device.led_command[place], button) ? 1 : 0;
  }
  return changes == 0;
}

/// Returns when the last button has gone on once.
void start_blinking(soak::LoopbackSocket &socket, const DeviceLog &device, int half_period_ms) {
  for (std::uint32_t button = 0; button < blinking_buttons; ++button)
    socket.send(soak::blink_frame(button, static_cast<std::uint32_t>(half_period_ms)));
  constexpr int off_and_on = 2;
  constexpr std::int64_t limit_ns = 20'000'000'000;
  if (!wait_for_changes(device, 0, blinking_buttons - 1, off_and_on, limit_ns))
    throw std::runtime_error("an idle daemon lets no button blink");
}

/// A share and a rate for each step of the window.
void watch_device(const DeviceLog &device, std::int64_t step_ns, const Window &window, MeasuredRun &run) {
  std::int64_t before_ns = now_ns();
  std::int64_t busy_before_ns = device.busy_ns;
  std::uint64_t runs_before = device.pixel_runs;
  for (std::int64_t next_ns = window.from_ns + step_ns; next_ns <= window.to_ns; next_ns += step_ns) {
    sleep_until(next_ns);
    const std::int64_t time_ns = now_ns();
    const std::int64_t busy_ns = device.busy_ns;
    const std::uint64_t runs = device.pixel_runs;
    const auto length_ns = static_cast<double>(time_ns - before_ns);
    run[RowId::busy_share].values.push_back(static_cast<double>(busy_ns - busy_before_ns) / length_ns);
    run[RowId::message_rate].values.push_back(static_cast<double>(runs - runs_before) * 1e9 / length_ns);
    before_ns = time_ns;
    busy_before_ns = busy_ns;
    runs_before = runs;
  }
}

/// What no clock is needed for: every row has its values, and every command arrived, once.
std::string fault_of(const MeasuredRun &run, const DeviceLog &device) {
  for (const Row &row : all_rows()) {
    if (!has_row(run, row))
      continue;
    const Values &values = run[row.id];
    if (values.missing > 0)
      return std::string(row.name) + ": " + std::to_string(values.missing) + " missing";
    if (values.values.empty())
      return std::string(row.name) + ": no values";
    if (row.unit != Unit::seconds && *std::max_element(values.values.begin(), values.values.end()) == 0)
      return std::string(row.name) + ": nothing has reached the device";
  }
  if (device.led_commands > DeviceLog::room)
    return "more LED commands than there is room for";
  const std::uint64_t sent = run[RowId::open_command].values.size() + run[RowId::new_command].values.size();
  const std::uint64_t arrived = count_probe_commands(device);
  if (arrived != sent)
    return std::to_string(sent) + " commands were sent, and " + std::to_string(arrived) + " arrived";
  return {};
}

} // namespace

bool has_row(const MeasuredRun &run, const Row &row) {
  if (row.unit == Unit::seconds)
    return true;
  return run.load.clients > 0 && (row.id != RowId::busy_share || run.transfer_seconds > 0);
}

void measure(MeasuredRun &run, const Tempo &tempo) {
  bench::PanelDaemon daemon(run.daemon_program, ns_of(run.transfer_seconds));
  const DeviceLog &device = daemon.device();
  soak::Target target;
  target.port = daemon.port();
  soak::LoopbackSocket commanding = open_connection(target);
  soak::LoopbackSocket pinging = open_connection(target);
  start_blinking(commanding, device, tempo.blink_half_period_ms);

  Window window{};
  {
    const LoadingClients load(target, run.load);
    sleep_until(now_ns() + ns_of(tempo.warm_up_seconds));
    const std::uint32_t place = device.led_commands;
    window.from_ns = now_ns();
    window.to_ns = window.from_ns + ns_of(tempo.seconds);
    const ProbeSetting setting{
        target, device, window.to_ns, ns_of(tempo.limit_seconds), tempo.shortest_pause_ms, tempo.longest_pause_ms};
    std::thread threads[] = {
        std::thread([&] { run[RowId::open_command] = probe_open_commands(setting, commanding); }),
        std::thread([&] { run[RowId::first_answer] = probe_first_answers(setting); }),
        std::thread([&] { run[RowId::new_command] = probe_new_commands(setting); }),
        std::thread([&] { run[RowId::ping] = probe_pings(setting, pinging); }),
    };
    watch_device(device, ns_of(tempo.step_seconds), window, run);
    // Twice on again. A daemon whose work waits long lets that wait too.
    wait_for_changes(device, place, 0, 5, setting.limit_ns);
    for (std::thread &thread : threads)
      thread.join();
    window.to_ns = now_ns();
  }
  const std::uint32_t count = std::min(device.led_commands.load(), DeviceLog::room);
  const std::vector<LedCommand> commands(device.led_command.begin(), device.led_command.begin() + count);
  const Blinking blinking{blinking_buttons, std::int64_t{tempo.blink_half_period_ms} * 1'000'000};
  run[RowId::blink_period] = period_deviations(commands, blinking, window);
  run[RowId::blink_step] = step_spreads(commands, blinking, window);
  run.fault = fault_of(run, device);
}

} // namespace buttondriver::latency
