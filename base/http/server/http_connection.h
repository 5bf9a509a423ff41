// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "http/request/access_rule.h"
#include "http/server/http_answer.h"
#include "http/server/http_limits.h"

#include <QObject>
#include <QTcpSocket>
#include <QTimer>

namespace buttondriver {

/// One connection with one request. It waits until the request is complete and limits it in size and time; it refuses
/// what the rule does not allow. After the answer the connection ends. One that becomes a WebSocket is let go, with its
/// request unread.
class HttpConnection : public QObject {
  Q_OBJECT

public:
  /// Takes over `socket`, which takes this object with it when it ends. `rule` and `limits` outlive this object.
  HttpConnection(QTcpSocket *socket, const AccessRule &rule, const HttpLimits &limits);

  /// Answers the request, once, after requested().
  void answer(const HttpAnswer &answer);

  /// What goes on: who of many connections gives way to another one.
  enum class State {
    receiving,  ///< the request is not complete
    refused,    ///< it has been refused, and the client has not hung up yet
    answering,  ///< the answer is being made
    delivering, ///< the client has not taken the answer yet
    handed_on,  ///< it has become a WebSocket
  };
  State state() const { return _state; }
  QTcpSocket *socket() const { return _socket; }

signals:
  /// The request is complete and allowed, and has been taken from the socket. To be answered now or later.
  void requested(const RequestHead &head);
  /// The request is complete and allowed, and wants a WebSocket. It is unread in the socket, which this object has
  /// nothing more to do with.
  void upgradeRequested(QTcpSocket *socket);

private:
  void read();
  void take(const RequestHead &head);
  void letGo();
  void refuse(const RefusedRequest &refused);
  void giveUp();

  QTcpSocket *_socket;
  const AccessRule &_rule;
  const HttpLimits &_limits;
  State _state = State::receiving;
  bool _wants_body = true;
  QTimer _timer;
  QMetaObject::Connection _end;
};

} // namespace buttondriver
