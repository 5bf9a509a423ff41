// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtGlobal>

namespace buttondriver {

/// How long a connection may take for what, in milliseconds, and how many there may be.
struct HttpLimits {
  /// For a request to arrive.
  int request_ms = 10'000;
  /// For an answer to be made, after all work that it waits for, and to be taken.
  int answer_ms = 60'000;
  /// For a client to take the answer that refuses its request, and to hang up.
  int farewell_ms = 2'000;
  /// When one more comes, the oldest of those that the server waits for gives way to it: one whose request is not
  /// complete, or else one that does not take its answer. When there is none, the new one is refused.
  int most_connections = 100;
  /// A client for which more than this waits is cut off. A page is sent at most some 3 MB at once.
  qint64 most_unsent_bytes = 4 * 1024 * 1024;
};

} // namespace buttondriver
