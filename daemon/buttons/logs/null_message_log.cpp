// SPDX-License-Identifier: Apache-2.0
#include "buttons/logs/null_message_log.h"

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

NullMessageLog::~NullMessageLog() {
  while (!_waiting.empty())
    if (printPiece(at_once))
      _waiting.pop_front();
}

void NullMessageLog::write(const QByteArray &message, qint32 client_id) {
  if (message.isEmpty())
    return;
  const auto size = static_cast<std::size_t>(message.size());
  const std::size_t cost = size + cost_of_a_message;
  if (!_turn.isActive())
    _turn.start();
  if (_waiting.empty() && _cost_of_this_round + cost <= at_once) {
    _cost_of_this_round += cost;
    return print_lines(message, 0, size);
  }
  _waiting.push_back({message, client_id});
  _waiting_cost += cost;
  emit clientWaits(client_id);
  if (_waiting_cost <= full_mark)
    return;
  _is_full = true;
  emit backlogFull();
}

void NullMessageLog::finishWaiting(qint32 client_id) {
  if (!waits(client_id))
    return;
  while (waits(client_id))
    if (printPiece(at_once))
      removeFirst();
  tellWhenLow();
}

void NullMessageLog::pause() { _is_paused = true; }

void NullMessageLog::resume() {
  _is_paused = false;
  if (!_waiting.empty())
    _turn.start();
}

void NullMessageLog::writePiece() {
  _cost_of_this_round = 0;
  if (_is_paused)
    return _turn.stop();
  while (!_waiting.empty() && _cost_of_this_round < at_once)
    if (printPiece(at_once - _cost_of_this_round))
      removeFirst();
  if (_cost_of_this_round == 0)
    _turn.stop();
  tellWhenLow();
}

bool NullMessageLog::waits(qint32 client_id) const {
  return std::any_of(_waiting.begin(), _waiting.end(),
                     [client_id](const Waiting &waiting) { return waiting.client_id == client_id; });
}

/// Prints the next bytes of the first message that waits. True when that was the last of it.
bool NullMessageLog::printPiece(std::size_t most_bytes) {
  const QByteArray &message = _waiting.front().message;
  const auto size = static_cast<std::size_t>(message.size());
  const std::size_t end = std::min(size, _next + most_bytes);
  print_lines(message, _next, end);
  _cost_of_this_round += end - _next;
  _waiting_cost -= end - _next;
  _next = end;
  if (end < size)
    return false;
  _next = 0;
  _cost_of_this_round += cost_of_a_message;
  _waiting_cost -= cost_of_a_message;
  return true;
}

void NullMessageLog::removeFirst() {
  const qint32 client_id = _waiting.front().client_id;
  _waiting.pop_front();
  if (!waits(client_id))
    emit clientGoesOn(client_id);
}

void NullMessageLog::tellWhenLow() {
  if (!_is_full || _waiting_cost > low_mark)
    return;
  _is_full = false;
  emit backlogLow();
}

} // namespace buttondriver
