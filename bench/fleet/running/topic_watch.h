// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <mutex>
#include <string>
#include <unordered_map>

struct mosquitto;

namespace buttondriver::fleet {

/// A client that sees whether a broker keeps some topics with some payloads, or gets to keep them while this object
/// lives.
class TopicWatch {
public:
  /// Throws std::runtime_error when it cannot be started.
  TopicWatch(std::uint16_t port, const std::unordered_map<std::string, std::string> &topics);
  ~TopicWatch();
  TopicWatch(const TopicWatch &) = delete;
  TopicWatch &operator=(const TopicWatch &) = delete;

  /// Waits until the broker has all of them; those that it has not when that takes longer.
  std::unordered_map<std::string, std::string> missingAfter(std::chrono::seconds limit);

private:
  std::mutex _mutex;
  std::condition_variable _changed;
  std::unordered_map<std::string, std::string> _missing;
  mosquitto *_client;
};

} // namespace buttondriver::fleet
