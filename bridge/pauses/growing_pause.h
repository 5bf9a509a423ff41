// SPDX-License-Identifier: Apache-2.0
#pragma once

namespace buttondriver::bridge {

/// Pauses between attempts: each twice as long as the one before, up to the longest. Of each, some part between a half
/// and all is taken, by chance, so that many who lost the same thing do not come back in one instant.
class GrowingPause {
public:
  GrowingPause(int first_ms, int longest_ms) : _first_ms(first_ms), _longest_ms(longest_ms), _next_ms(first_ms) {}

  /// How many milliseconds to wait now.
  int next();
  /// An attempt went well: the next pause is the first one again.
  void reset() { _next_ms = _first_ms; }

private:
  int _first_ms;
  int _longest_ms;
  int _next_ms;
};

} // namespace buttondriver::bridge
