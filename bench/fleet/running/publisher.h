// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <mutex>
#include <string>

struct mosquitto;

namespace buttondriver::fleet {

/// A client that publishes, as any program would with libmosquitto: retained, with quality of service 1. After a break
/// it sends again what the broker has not confirmed. One thread calls.
class Publisher {
public:
  /// Connects, and waits for that. Throws std::runtime_error when it does not work.
  explicit Publisher(std::uint16_t port);
  ~Publisher();
  Publisher(const Publisher &) = delete;
  Publisher &operator=(const Publisher &) = delete;

  void publish(const std::string &topic, const std::string &payload);
  /// Waits until the broker has confirmed all; false when that takes longer.
  bool waitUntilConfirmed(std::chrono::seconds limit);

private:
  mosquitto *_client;
  std::uint64_t _published = 0;
  std::mutex _mutex;
  std::condition_variable _changed;
  bool _is_connected = false;
  std::uint64_t _confirmed = 0;
};

} // namespace buttondriver::fleet
