// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace buttondriver::soak {

/// Another process, as /proc shows it.
class WatchedProcess {
public:
  explicit WatchedProcess(int pid) : _folder("/proc/" + std::to_string(pid)) {}

  bool isAlive() const;
  /// Resident memory; 0 when the process has gone.
  long memoryKib() const;
  int descriptors() const;
  /// Processor time so far, of all its threads.
  double processorSeconds() const;
  /// The TCP port that it listens on; 0 when there is none.
  std::uint16_t listeningPort() const;

  /// What waits in the kernel on its TCP connections.
  struct Waiting {
    long unread_kib;
    long unsent_kib;
  };
  Waiting waiting() const;

private:
  struct Socket {
    std::uint16_t port;
    int state;
    unsigned long unsent;
    unsigned long unread;
  };
  std::vector<Socket> sockets() const;

  std::string _folder;
};

} // namespace buttondriver::soak
