// SPDX-License-Identifier: Apache-2.0
#include "simulator/http/server/http_server.h"

namespace buttondriver::simulator {

HttpServer::HttpServer(const HttpLimits &limits) : _limits(limits) {}

Outcome<Done> HttpServer::listenOn(const HttpEndpoint &endpoint) {
  _rule = AccessRule(endpoint.address);
  if (!listen(endpoint.address, endpoint.port))
    return Failure{errorString()};
  return Done{};
}

void HttpServer::incomingConnection(qintptr descriptor) {
  auto *socket = new QTcpSocket(this); // this object owns it until the connection ends
  socket->setSocketDescriptor(descriptor);
  if (findChildren<QTcpSocket *>(QString(), Qt::FindDirectChildrenOnly).size() > _limits.most_connections) {
    socket->abort();
    socket->deleteLater();
    return;
  }
  auto *connection = new HttpConnection(socket, _rule, _limits); // the socket owns it
  connect(connection, &HttpConnection::requested, this,
          [this, connection](const RequestHead &head) { emit requested(head, HttpClient(connection)); });
  connect(connection, &HttpConnection::upgradeRequested, this, &HttpServer::upgradeRequested);
}

} // namespace buttondriver::simulator
