// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QSocketNotifier>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTimer>

#include <deque>
#include <memory>

namespace buttondriver {

/// A QTcpServer that accepts by itself: Qt's own way tells of one failure only, and then tries again in each round of
/// the event loop for as long as somebody waits. Qt knows nothing of the connections: the base class's pending ones
/// stay empty, and its signals are silent.
class Listener : public QTcpServer {
  Q_OBJECT

public:
  Listener();

  /// As `listen` of the base class, which is not to be called.
  bool start(const QHostAddress &address, quint16 port);

  /// A connection that was accepted and not yet taken, null when there is none. It belongs to this object until the
  /// caller gives it another parent.
  QTcpSocket *takeNext();

signals:
  /// There is at least one connection to take.
  void accepted();

private slots:
  void acceptAll();

private:
  std::deque<QTcpSocket *> _accepted;
  std::unique_ptr<QSocketNotifier> _somebody_waits;
  QTimer _retry; // runs while the system is given time to accept again
};

} // namespace buttondriver
