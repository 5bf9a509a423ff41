// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "simulator/http/gate/http_answer.h"
#include "simulator/http/page/live_feed.h"
#include "simulator/simulation.h"

#include <QAbstractHttpServer>
#include <QImage>
#include <QPointer>
#include <QTcpSocket>
#include <QThreadPool>
#include <QWebSocket>

#include <functional>

namespace buttondriver::simulator {

class GatedServer;

/// Answers the requests for the page, its files, the pictures and the state, and gives each page its live feed.
class PageServer : public QAbstractHttpServer {
  Q_OBJECT

public:
  /// `simulation` outlives this object.
  explicit PageServer(Simulation &simulation);
  ~PageServer() override;

  bool listenOn(const QHostAddress &address, quint16 port, QString *reason);
  QHostAddress address() const;
  quint16 port() const;

protected:
  bool handleRequest(const QHttpServerRequest &request, QTcpSocket *socket) override;
  void missingHandler(const QHttpServerRequest &request, QTcpSocket *socket) override;

private:
  /// Where an answer goes; nowhere any more once the client has gone.
  struct Client {
    QPointer<QTcpSocket> socket;
    bool wants_body;
    void answer(const HttpAnswer &answer) const;
  };

  bool handleGet(const QString &path, const Client &client, const QByteArray &host);
  void sendState(const Client &client);
  void sendPicture(const Client &client, std::function<QImage(const PanelState &)> draw);
  void reset(const Client &client);
  void welcomePages();

  Simulation &_simulation;
  GatedServer *_server; // child of this object
  LiveFeed _feed;
  QThreadPool _painters;
};

} // namespace buttondriver::simulator
