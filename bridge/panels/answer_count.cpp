// SPDX-License-Identifier: Apache-2.0
#include "bridge/panels/answer_count.h"

namespace buttondriver::bridge {

namespace {

constexpr unsigned char answer[] = {0, 0, 0, 4, 0, 0, 0, 1};

} // namespace

int AnswerCount::take(const char *bytes, std::size_t count) {
  int answers = 0;
  for (std::size_t i = 0; i < count && !_is_lost; ++i) {
    if (static_cast<unsigned char>(bytes[i]) != answer[_have])
      _is_lost = true;
    else if (++_have == sizeof answer) {
      _have = 0;
      ++answers;
    }
  }
  return _is_lost ? -1 : answers;
}

} // namespace buttondriver::bridge
