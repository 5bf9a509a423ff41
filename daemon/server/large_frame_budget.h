// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "server/limits.h"

namespace buttondriver {

/// The bytes that connections may hold for frames beyond the usual read-ahead, shared by all of them.
class LargeFrameBudget {
public:
  explicit LargeFrameBudget(qint64 bytes = limits::large_frames) : _free(bytes) {}

  /// Takes `bytes` when they are there; false when not.
  bool take(qint64 bytes) {
    if (bytes > _free)
      return false;
    _free -= bytes;
    return true;
  }
  void giveBack(qint64 bytes) { _free += bytes; }

private:
  qint64 _free;
};

} // namespace buttondriver
