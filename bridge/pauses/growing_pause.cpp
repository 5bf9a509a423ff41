// SPDX-License-Identifier: Apache-2.0
#include "bridge/pauses/growing_pause.h"

#include <QRandomGenerator>

#include <algorithm>

namespace buttondriver::bridge {

int GrowingPause::next() {
  const int pause_ms = std::max(1, std::min(_next_ms, _longest_ms));
  _next_ms = pause_ms < _longest_ms / 2 ? pause_ms * 2 : _longest_ms;
  return pause_ms - QRandomGenerator::global()->bounded(pause_ms / 2 + 1);
}

} // namespace buttondriver::bridge
