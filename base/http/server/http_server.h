// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "http/request/access_rule.h"
#include "http/server/http_client.h"
#include "http/server/http_endpoint.h"
#include "http/server/http_limits.h"
#include "outcome/outcome.h"

#include <QPointer>
#include <QTcpServer>
#include <QTcpSocket>

#include <vector>

namespace buttondriver {

/// Takes HTTP requests, one to a connection, as far as AccessRule allows them, and leaves the answers to others. Lives
/// on one thread with an event loop.
class HttpServer : public QTcpServer {
  Q_OBJECT

public:
  /// `websocket_path`: where a client gets a WebSocket; empty: nowhere.
  explicit HttpServer(const HttpLimits &limits = {}, QByteArray websocket_path = {});

  /// Starts to take requests; fails when the port cannot be had.
  Outcome<Done> listenOn(const HttpEndpoint &endpoint);

signals:
  /// A request to be answered, now or later.
  void requested(const RequestHead &request, const HttpClient &client);
  /// A connection that is to become a WebSocket, with its request complete and unread. Who takes it deletes it when it
  /// has ended; this object does so at its own end.
  void upgradeRequested(QTcpSocket *socket);

protected:
  void incomingConnection(qintptr descriptor) override;

private:
  bool makeRoom();

  const HttpLimits _limits;
  const QByteArray _websocket_path;
  AccessRule _rule{QHostAddress()};
  std::vector<QPointer<HttpConnection>> _connections; // in order of arrival; those that have become pages are not here
};

} // namespace buttondriver
