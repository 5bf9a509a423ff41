// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "simulator/http/gate/access_rule.h"

#include <QObject>
#include <QTimer>

class QTcpSocket;

namespace buttondriver::simulator {

/// Stands in front of one connection until its request is complete and found to be allowed. What follows sees exactly
/// one request, of limited size; the connection ends behind its answer. A WebSocket is let through for good.
class RequestGate : public QObject {
  Q_OBJECT

public:
  /// Takes over `socket`, which takes this object with it when it ends. `rule` outlives this object.
  RequestGate(QTcpSocket *socket, const AccessRule &rule);

  QTcpSocket *socket() const { return _socket; }

signals:
  /// The request is all there, unread. Who takes the socket now gets a readyRead for it.
  void passed();

private:
  enum class State { receiving, handing_on, answering, refused };

  void read();
  void pass(const RequestHead &head);
  void refuse(const RefusedRequest &refused);

  QTcpSocket *_socket;
  const AccessRule &_rule;
  State _state = State::receiving;
  QTimer _limit;
  QMetaObject::Connection _end;
};

} // namespace buttondriver::simulator
