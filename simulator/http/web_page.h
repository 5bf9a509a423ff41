// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "http/server/http_endpoint.h"
#include "outcome/outcome.h"

#include <QString>

#include <memory>
#include <optional>

namespace buttondriver::simulator {

class Simulation;

/// The panel as a web page, live, and as pictures and data for scripts. Lives on the main thread.
class WebPage {
public:
  /// Whether this build has one; where not, listen() fails.
  static bool isAvailable();

  /// `simulation` outlives this object.
  explicit WebPage(Simulation &simulation);
  ~WebPage();
  WebPage(const WebPage &) = delete;
  WebPage &operator=(const WebPage &) = delete;

  /// Starts to serve, once the simulation has been started with its traffic kept. Fails when the port cannot be had.
  Outcome<Done> listen(const HttpEndpoint &endpoint);
  /// "http://127.0.0.1:8080/", with the port that is listened on.
  QString address() const;
  /// That port; nothing while no page is served.
  std::optional<quint16> port() const;

private:
  class Server;

  Simulation &_simulation;
  std::unique_ptr<Server> _server;
};

} // namespace buttondriver::simulator
