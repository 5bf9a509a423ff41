// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QRandomGenerator>

#include <algorithm>

namespace buttondriver::bridge {

/// How long to wait before the next attempt: twice as long each time, up to a bound.
class GrowingPause {
public:
  /// Both above 0.
  GrowingPause(int first_ms, int longest_ms) : _first_ms(first_ms), _longest_ms(longest_ms), _ms(first_ms) {}

  /// Between a half and all of it, by chance, so that the clients of a broker do not all come back at once.
  int next() {
    const int half = _ms / 2;
    const int pause = _ms - static_cast<int>(QRandomGenerator::global()->bounded(half + 1));
    _ms = _ms > _longest_ms / 2 ? _longest_ms : 2 * _ms;
    return pause;
  }
  void reset() { _ms = _first_ms; }

private:
  int _first_ms;
  int _longest_ms;
  int _ms;
};

} // namespace buttondriver::bridge
