// SPDX-License-Identifier: Apache-2.0
#include "buttons/null_message_log.h"

#include "bytes/view_of.h"
#include "logging/standard_output.h"

#include <algorithm>
#include <charconv>
#include <string>

namespace buttondriver {

namespace {

/// "data[12] = 0x1f"
void append_line(std::string &text, std::size_t index, std::uint8_t byte) {
  char digits[20];
  const auto append = [&](auto number, int base) {
    text.append(digits, std::to_chars(digits, digits + sizeof digits, number, base).ptr);
  };
  text += "data[";
  append(index, 10);
  text += "] = 0x";
  append(unsigned{byte}, 16);
  text += '\n';
}

/// Many lines go out at once.
void print_lines(const QByteArray &message, std::size_t begin, std::size_t end) {
  const ByteView bytes = view_of(message);
  std::string text;
  for (std::size_t i = begin; i < end; ++i)
    append_line(text, i, bytes.u8(i));
  print_text(text);
}

} // namespace

NullMessageLog::NullMessageLog() {
  _turn.setInterval(0);
  connect(&_turn, &QTimer::timeout, this, &NullMessageLog::writePiece);
}

void NullMessageLog::write(const QByteArray &message, qint32 client_id) {
  const auto size = static_cast<std::size_t>(message.size());
  const std::size_t cost = size + cost_of_a_message;
  if (!_turn.isActive())
    _turn.start();
  if (_waiting.empty() && _cost_of_this_round + cost <= at_once) {
    _cost_of_this_round += cost;
    return print_lines(message, 0, size);
  }
  _waiting.push_back(message);
  _waiting_cost += cost;
  if (_waiting_cost <= high_mark)
    return;
  _is_high = true;
  emit backlogHigh(client_id);
  if (_waiting_cost > full_mark)
    emit backlogFull();
}

void NullMessageLog::writePiece() {
  _cost_of_this_round = 0;
  writeWaiting();
  if (_cost_of_this_round == 0)
    _turn.stop();
  if (!_is_high || _waiting_cost > low_mark)
    return;
  _is_high = false;
  emit backlogLow();
}

void NullMessageLog::writeWaiting() {
  while (!_waiting.empty() && _cost_of_this_round < at_once) {
    const auto size = static_cast<std::size_t>(_waiting.front().size());
    const std::size_t end = std::min(size, _next + at_once - _cost_of_this_round);
    print_lines(_waiting.front(), _next, end);
    _cost_of_this_round += end - _next;
    _waiting_cost -= end - _next;
    _next = end;
    if (end < size)
      return;
    _waiting.pop_front();
    _next = 0;
    _cost_of_this_round += cost_of_a_message;
    _waiting_cost -= cost_of_a_message;
  }
}

} // namespace buttondriver
