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
/// the order in which they came, each one whole before the next one begins.
///
/// What a client sends after a null message belongs after its lines. So it calls `finish` first. That writes at once
/// what still waits, however much it is; whoever lets the client wait from `clientWaits` to `clientGoesOn` spares
/// everybody that.
///
/// Lives on a thread that runs an event loop. What waits when it is destroyed is written then.
class NullMessageLog : public QObject {
  Q_OBJECT

public:
  /// Bytes of messages, 13 to 25 bytes of text each. A message counts for `cost_of_a_message` bytes more than it has,
  /// because a short one takes memory and time too. One without any bytes has no lines and counts for nothing.
  static constexpr std::size_t at_once = 64 * 1024;
  static constexpr std::size_t cost_of_a_message = 64;
  /// Waiting bytes past which everybody should wait, until they are as few as the low mark.
  static constexpr std::size_t full_mark = 4 * 1024 * 1024;
  static constexpr std::size_t low_mark = 64 * 1024;

  NullMessageLog();
  ~NullMessageLog() override;

  /// `client_id` is who sent the message.
  void write(const QByteArray &message, qint32 client_id);
  /// Writes all messages of this client that wait, and those that came before them.
  void finish(qint32 client_id) {
    if (!_waiting.empty())
      finishWaiting(client_id);
  }
  /// Nothing is written in further rounds until `resume`, because the log is full.
  void pause();
  void resume();

signals:
  /// A message of this client waits to be written.
  void clientWaits(qint32 client_id);
  /// No message of this client waits any more.
  void clientGoesOn(qint32 client_id);
  /// More waits than the full mark.
  void backlogFull();
  /// What was full is down to the low mark.
  void backlogLow();

private slots:
  void writePiece();

private:
  struct Waiting {
    QByteArray message;
    qint32 client_id;
  };

  void finishWaiting(qint32 client_id);
  bool waits(qint32 client_id) const;
  bool printPiece(std::size_t most_bytes);
  void removeFirst();
  void tellWhenLow();

  std::deque<Waiting> _waiting; // the first one from `_next` on
  std::size_t _next = 0;
  std::size_t _waiting_cost = 0;
  std::size_t _cost_of_this_round = 0;
  bool _is_full = false;
  bool _is_paused = false;
  QTimer _turn; // runs while something waits, and to the end of each round that something was written in
};

} // namespace buttondriver
