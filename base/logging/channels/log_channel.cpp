// SPDX-License-Identifier: Apache-2.0
#include "logging/channels/log_channel.h"

namespace buttondriver {

std::string line_about_lost_texts(std::uint64_t number) {
  std::string gap = "\nbuttondriver: texts lost that nobody read: " + std::to_string(number) + "\n";
  return gap;
}

void LogChannel::write(std::string_view text) {
  if (_lost > 0) {
    if (!_descriptor.isWritableWithin(std::chrono::milliseconds(0)) || !writeAll(line_about_lost_texts(_lost))) {
      ++_lost;
      return;
    }
    _lost = 0;
  }
  if (!writeAll(text))
    _lost = 1;
}

/// False when the reader did not read.
bool LogChannel::writeAll(std::string_view text) {
  while (!text.empty()) {
    const ssize_t written = _descriptor.writeSome(text);
    if (written < 0)
      return true; // nobody will ever read it
    if (written == 0 && !_patience.waitFor(_descriptor))
      return false;
    text.remove_prefix(static_cast<std::size_t>(written));
  }
  return true;
}

} // namespace buttondriver
