// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "simulator/http/gate/access_rule.h"

#include <QTcpServer>

namespace buttondriver::simulator {

/// A TCP server whose pending connections have passed a RequestGate: each has one complete, allowed request to read.
class GatedServer : public QTcpServer {
  Q_OBJECT

public:
  /// More connections than these at once are refused.
  static constexpr int most_connections = 100;

  explicit GatedServer(QObject *parent);

  bool listenOn(const QHostAddress &address, quint16 port);

protected:
  void incomingConnection(qintptr descriptor) override;

private:
  AccessRule _rule{QHostAddress()};
};

} // namespace buttondriver::simulator
