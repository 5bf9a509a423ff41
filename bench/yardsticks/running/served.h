// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "support/panel_daemon.h"
#include "yardsticks/measure/scale.h"
#include "yardsticks/report/comparison.h"
#include "yardsticks/running/client.h"
#include "yardsticks/running/log_reader.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace buttondriver::yardsticks {

/// Messages of one kind.
struct MessageKind {
  const char *name;
  const char *title;
  std::string frame;
  int count;          ///< in a run
  unsigned log_lines; ///< that each of them causes
  /// How many of them a device has got so far.
  std::uint64_t (*arrived)(const bench::DeviceLog &device);
};

/// Status LEDs, text lines of 16 characters, pictures that fill a screen.
std::vector<MessageKind> message_kinds(const Scale &scale);

/// A running server, its log, which is read, and a connection to it.
class Served {
public:
  virtual ~Served() = default;

  virtual pid_t pid() const = 0;

  /// Seconds for each message when many are sent in a row: until all are acted upon, the ping after them is answered,
  /// and all is logged. Throws std::runtime_error when something of that does not come, or is logged twice.
  double secondsOfEach(const MessageKind &kind);
  /// Seconds of each of `count` pings that follow one another.
  std::vector<double> pingSeconds(int count);
  /// Opens connections that have an answer each and are then idle, until there are so many in all.
  void fillUp(int connections);

protected:
  LogReader _log;
  /// To be called when the server runs.
  void connect(std::uint16_t port);

private:
  /// Null when nothing but the log shows what a server did.
  virtual const bench::DeviceLog *device() const { return nullptr; }
  void waitForLog(std::uint64_t more_lines);

  std::uint16_t _port = 0;
  std::unique_ptr<Client> _client;
  std::vector<std::unique_ptr<Client>> _idle;
  std::uint64_t _lines = 0;
};

/// The daemon with a device that takes no time.
std::unique_ptr<Served> serve_daemon(const std::string &program);
/// The bare frame server; "gathered" is how it logs.
std::unique_ptr<Served> serve_bare(bool is_gathered);

/// Calls both in turn, each `runs` times; which one comes first changes from run to run.
void alternate(int runs, const std::function<void()> &ours, const std::function<void()> &theirs);

} // namespace buttondriver::yardsticks
