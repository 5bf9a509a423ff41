// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "logging/channels/log_descriptor.h"
#include "logging/channels/patience.h"

#include <chrono>
#include <cstdint>
#include <string>
#include <string_view>

namespace buttondriver {

/// The line that stands where texts are missing. Its first line feed ends a text that was cut off.
std::string line_about_lost_texts(std::uint64_t number);

/// Writes each text of the log at once. It never holds its writers up for long: they wait for a slow reader as long as
/// the patience lasts. While there is none left, texts that the reader has no room for are lost, and a line of its own
/// gives their number before the next one. A descriptor that fails is ignored. For one thread at a time.
class LogChannel {
public:
  /// The descriptor stays the caller's.
  explicit LogChannel(int descriptor, std::chrono::milliseconds patience = Patience::usual)
      : _descriptor(descriptor), _patience(patience) {}

  /// Writes `text` as it is.
  void write(std::string_view text);

private:
  bool writeAll(std::string_view text);

  const LogDescriptor _descriptor;
  Patience _patience;
  std::uint64_t _lost = 0; // texts since the patience was used up
};

} // namespace buttondriver
