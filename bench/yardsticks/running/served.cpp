// SPDX-License-Identifier: Apache-2.0
#include "yardsticks/running/served.h"

#include "soak/load/frames.h"
#include "yardsticks/running/waiting.h"

#include <stdexcept>

namespace buttondriver::yardsticks {

namespace {

constexpr std::size_t ping_answer_size = 8;

std::uint64_t led_commands(const bench::DeviceLog &device) { return device.led_commands; }
std::uint64_t pixel_runs(const bench::DeviceLog &device) { return device.pixel_runs; }

class ServedDaemon : public Served {
public:
  explicit ServedDaemon(const std::string &program) : _daemon(program, 0, _log.descriptor()) {
    connect(_daemon.port());
  }

  pid_t pid() const override { return _daemon.pid(); }

private:
  const bench::DeviceLog *device() const override { return &_daemon.device(); }

  bench::PanelDaemon _daemon;
};

class ServedBare : public Served {
public:
  explicit ServedBare(bool is_gathered)
      : _process({BUTTONDRIVER_BARE_FRAME_SERVER, is_gathered ? "gathered" : "plain"}, {}, _log.descriptor()) {
    connect(_process.waitForPort());
  }

  pid_t pid() const override { return _process.pid(); }

private:
  bench::ChildProcess _process;
};

} // namespace

std::vector<MessageKind> message_kinds(const Scale &scale) {
  // 24 lines come as one; the first of them is as long as any.
  const std::string lines = soak::text_line_frames();
  return {
      {"status_led", "status LEDs", soak::status_led_frame(3, 1), scale.small_frames, 1, led_commands},
      {"text_line", "text lines of 16 characters", lines.substr(0, lines.size() / 24), scale.text_lines, 2, pixel_runs},
      {"picture", "pictures of 128 x 128 pixels", soak::picture_frame(), scale.pictures, 2, pixel_runs},
  };
}

void Served::connect(std::uint16_t port) {
  _port = port;
  _client = std::make_unique<Client>(port);
  fillUp(1);
}

void Served::fillUp(int connections) {
  while (static_cast<int>(_idle.size()) + 1 < connections) {
    _idle.push_back(std::make_unique<Client>(_port));
    _idle.back()->send(soak::ping_frame());
    _idle.back()->expect(ping_answer_size);
  }
  // What a server says of itself and of its connections is over when it has been silent for a while.
  std::uint64_t before = 0;
  _lines = 0;
  pingSeconds(1);
  do {
    before = _log.lines();
    std::this_thread::sleep_for(std::chrono::milliseconds(100));
  } while (before == 0 || before != _log.lines());
  _lines = before;
}

double Served::secondsOfEach(const MessageKind &kind) {
  constexpr std::size_t chunk_size = 64 * 1024;
  const int frames_of_chunk = std::max(1, static_cast<int>(chunk_size / kind.frame.size()));
  std::string chunk;
  for (int i = 0; i < frames_of_chunk; ++i)
    chunk += kind.frame;
  const auto count = static_cast<std::uint64_t>(kind.count);
  const std::uint64_t arrived_before = device() ? kind.arrived(*device()) : 0;
  const double seconds = seconds_of([&] {
    for (int left = kind.count; left > 0; left -= frames_of_chunk)
      _client->send(std::string_view(chunk).substr(0, kind.frame.size() *
                                                          static_cast<std::size_t>(std::min(left, frames_of_chunk))));
    _client->send(soak::ping_frame());
    _client->expect(ping_answer_size);
    if (device())
      wait_until([&] { return kind.arrived(*device()) >= arrived_before + count; }, "a message does not arrive");
    waitForLog(count * kind.log_lines + 1);
  });
  if (device() && kind.arrived(*device()) != arrived_before + count)
    throw std::runtime_error("more arrives than was sent");
  return seconds / static_cast<double>(kind.count);
}

std::vector<double> Served::pingSeconds(int count) {
  const std::string frame = soak::ping_frame();
  std::vector<double> seconds;
  for (int i = 0; i < count; ++i)
    seconds.push_back(seconds_of([&] {
      _client->send(frame);
      _client->expect(ping_answer_size);
    }));
  if (_lines > 0)
    waitForLog(static_cast<std::uint64_t>(count));
  return seconds;
}

void Served::waitForLog(std::uint64_t more_lines) {
  _lines += more_lines;
  wait_until([this] { return _log.lines() >= _lines; }, "a log is not complete");
  if (_log.lines() != _lines)
    throw std::runtime_error("a log has more lines than it should");
}

std::unique_ptr<Served> serve_daemon(const std::string &program) { return std::make_unique<ServedDaemon>(program); }

std::unique_ptr<Served> serve_bare(bool is_gathered) { return std::make_unique<ServedBare>(is_gathered); }

void alternate(int runs, const std::function<void()> &ours, const std::function<void()> &theirs) {
  for (int run = 0; run < runs; ++run) {
    const bool is_ours_first = run % 2 == 0;
    (is_ours_first ? ours : theirs)();
    (is_ours_first ? theirs : ours)();
  }
}

} // namespace buttondriver::yardsticks
