// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QByteArray>
#include <QObject>
#include <QTimer>

#include <cstddef>
#include <deque>

namespace buttondriver {

/// Writes the bytes of null messages to the log, a line for each: `at_once` bytes of messages when they come, and as
/// many in each further round of the event loop, so that nobody waits for millions of lines. Messages are written in
/// the order in which they came.
///
/// Lives on a thread that runs an event loop. What waits when it is destroyed is not written.
class NullMessageLog : public QObject {
  Q_OBJECT

public:
  /// Bytes of messages, 13 to 25 bytes of text each. A message counts for `cost_of_a_message` bytes more than it has,
  /// because an empty one takes memory and time too.
  static constexpr std::size_t at_once = 64 * 1024;
  static constexpr std::size_t cost_of_a_message = 64;
  /// Waiting bytes past which who brings more should pause, and past which everybody should, until they are as few as
  /// the low mark.
  static constexpr std::size_t high_mark = 256 * 1024;
  static constexpr std::size_t full_mark = 4 * 1024 * 1024;
  static constexpr std::size_t low_mark = 64 * 1024;

  NullMessageLog();

  /// `client_id` is who sent the message.
  void write(const QByteArray &message, qint32 client_id);

signals:
  /// More waits than the high mark, and this client has added to it.
  void backlogHigh(qint32 client_id);
  /// More waits than the full mark.
  void backlogFull();
  /// What was high or full is down to the low mark.
  void backlogLow();

private slots:
  void writePiece();

private:
  void writeWaiting();

  std::deque<QByteArray> _waiting; // the first one from `_next` on
  std::size_t _next = 0;
  std::size_t _waiting_cost = 0;
  std::size_t _cost_of_this_round = 0;
  bool _is_high = false;
  QTimer _turn; // runs while something waits, and to the end of each round that something was written in
};

} // namespace buttondriver
