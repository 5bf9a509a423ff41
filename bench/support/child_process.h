// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <string>
#include <sys/types.h>
#include <vector>

namespace buttondriver::bench {

/// A program that runs beside this one until this object goes, or this program ends in whatever way.
class ChildProcess {
public:
  /// Starts the program `words[0]` with the others as arguments, in the environment of this program with `variables`
  /// (NAME=VALUE) in place of those of the same names. What it prints goes to the descriptor `output`, which stays the
  /// caller's, or is thrown away when that is -1. A program that cannot be started ends at once.
  ChildProcess(std::vector<std::string> words, const std::vector<std::string> &variables, int output = -1);
  ~ChildProcess() { end(); }
  ChildProcess(const ChildProcess &) = delete;
  ChildProcess &operator=(const ChildProcess &) = delete;

  pid_t pid() const { return _pid; }
  /// The port that it listens on, as soon as it does; looks every `step_us` microseconds. Throws std::runtime_error
  /// when it has ended, or does not listen within twenty seconds.
  std::uint16_t waitForPort(unsigned step_us = 5000);
  /// Ends it, with force after five seconds.
  void end();

private:
  bool isGone();

  std::string _program;
  pid_t _pid = -1;
};

/// An item before what the list in the environment's variable `name` holds already, as NAME=ITEM:OTHERS.
std::string prepended(const std::string &name, const std::string &item);

} // namespace buttondriver::bench
