// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "http/server/http_server.h"
#include "support/event_loop.h"

#include <QTcpSocket>

#include <gtest/gtest.h>

#include <memory>
#include <optional>
#include <vector>

namespace buttondriver {

/// A server without a page, and what it hands on.
class HttpServerTest : public testing::Test {
protected:
  /// Makes a server that remembers what it hands on.
  void serve(const HttpLimits &limits = {}) {
    server.emplace(limits, "/live");
    QObject::connect(&*server, &HttpServer::requested, &*server,
                     [this](const RequestHead &request, const HttpClient &client) {
                       requests.push_back(request);
                       clients.push_back(client);
                     });
    QObject::connect(&*server, &HttpServer::upgradeRequested, &*server, [this](QTcpSocket *socket) {
      upgrades.push_back(socket);
      // As QWebSocketServer does, which has missed it.
      if (upgrades.size() == 1)
        emit socket->readyRead();
    });
    ASSERT_TRUE(server->listenOn({QHostAddress(QHostAddress::LocalHost), 0}));
  }

  std::unique_ptr<QTcpSocket> sent(const QByteArray &request) const {
    auto socket = std::make_unique<QTcpSocket>();
    socket->connectToHost(QHostAddress(QHostAddress::LocalHost), server->serverPort());
    EXPECT_TRUE(test::process_events_until([&] { return socket->state() == QAbstractSocket::ConnectedState; }));
    socket->write(request);
    return socket;
  }

  static QByteArray received(QTcpSocket &socket) {
    EXPECT_TRUE(test::process_events_until([&] { return socket.state() == QAbstractSocket::UnconnectedState; }));
    return socket.readAll();
  }

  std::vector<RequestHead> requests;
  std::vector<HttpClient> clients;
  std::vector<QTcpSocket *> upgrades;
  std::optional<HttpServer> server;
};

inline const QByteArray get_x = "GET /x HTTP/1.1\r\nHost: localhost\r\n\r\n";
inline const QByteArray live =
    "GET /live HTTP/1.1\r\nHost: localhost\r\nConnection: Upgrade\r\nUpgrade: websocket\r\n\r\n";

} // namespace buttondriver
