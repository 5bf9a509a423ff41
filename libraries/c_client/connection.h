// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "bytes/byte_view.h"
#include "c_client/client.h"

#include <chrono>

namespace buttondriver {

/// When a call has to be done.
class Deadline {
public:
  explicit Deadline(std::int32_t timeout_ms) : _end(Clock::now() + std::chrono::milliseconds(timeout_ms)) {}

  /// Waits until `descriptor` is ready for `events` as in poll(2), or has failed; false when it is too late.
  bool waitFor(int descriptor, short events) const;

private:
  using Clock = std::chrono::steady_clock;
  Clock::time_point _end;
};

/// Ends the connection of an open client.
void drop(buttondriver_client &client);

/// Sends `head` and `rest` as one message, its length before them. `client` is not null.
buttondriver_result send_message(buttondriver_client &client, ByteView head, ByteView rest, const Deadline &deadline);

/// Reads answers until none is owed any more.
buttondriver_result take_owed_answers(buttondriver_client &client, const Deadline &deadline);

} // namespace buttondriver
