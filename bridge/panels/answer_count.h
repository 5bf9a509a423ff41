// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>

namespace buttondriver::bridge {

/// Counts answers to pings in the bytes that a panel sends, however they are cut. A panel sends nothing else.
class AnswerCount {
public:
  /// How many answers end in these bytes; -1 when something else comes, and from then on.
  int take(const char *bytes, std::size_t count);

private:
  std::size_t _have = 0; // bytes of an answer that is not whole
  bool _is_lost = false;
};

} // namespace buttondriver::bridge
