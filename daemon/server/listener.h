// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QSocketNotifier>
#include <QTcpServer>
#include <QTimer>

#include <memory>

namespace buttondriver {

/// A QTcpServer that accepts by itself: Qt's own way tells of one failure only, and then tries again in each round of
/// the event loop for as long as somebody waits.
class Listener : public QTcpServer {
  Q_OBJECT

public:
  Listener();

  /// As `listen` of the base class, which is not to be called.
  bool start(const QHostAddress &address, quint16 port);

signals:
  /// At least one connection is pending.
  void accepted();

private slots:
  void acceptAll();

private:
  std::unique_ptr<QSocketNotifier> _somebody_waits;
  QTimer _retry; // runs while the system is given time to accept again
};

} // namespace buttondriver
