// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "http/server/http_server.h"
#include "http/server/request_rounds.h"
#include "outcome/outcome.h"
#include "simulator/http/page/live_feed.h"
#include "simulator/simulation/simulation.h"

#include <QImage>
#include <QObject>
#include <QThreadPool>
#include <QWebSocketServer>

#include <functional>
#include <map>

namespace buttondriver::simulator {

/// Answers the requests for the page, its files, the pictures and the state, and gives each page its live feed. Lives
/// on the main thread.
class PageServer : public QObject {
  Q_OBJECT

public:
  /// `simulation` outlives this object.
  explicit PageServer(Simulation &simulation, const HttpLimits &limits = {});
  ~PageServer() override;

  /// Starts to serve; fails when the port cannot be had.
  Outcome<Done> listenOn(const HttpEndpoint &endpoint) { return _server.listenOn(endpoint); }
  QHostAddress address() const { return _server.serverAddress(); }
  quint16 port() const { return _server.serverPort(); }

private:
  void answer(const RequestHead &request, const HttpClient &client);
  void answerGet(const RequestHead &request, const HttpClient &client);
  void answerFeed(const RequestHead &request, const HttpClient &client);
  void makeState(const RequestRounds::Answer &answer);
  void addPicture(const QString &path, const std::function<QImage(const PanelState &)> &draw);
  void welcomePages();

  Simulation &_simulation;
  HttpServer _server;
  QWebSocketServer _pages;
  LiveFeed _feed;
  RequestRounds _states;
  RequestRounds _resets;
  std::map<QString, RequestRounds> _pictures; // by their paths
  QThreadPool _painters;
};

} // namespace buttondriver::simulator
