// SPDX-License-Identifier: Apache-2.0
#include "simulator/http/web_page.h"

#include "simulator/http/page/page_server.h"

namespace buttondriver::simulator {

class WebPage::Server : public PageServer {
public:
  using PageServer::PageServer;
};

bool WebPage::isAvailable() { return true; }

WebPage::WebPage(Simulation &simulation) : _simulation(simulation) {}

WebPage::~WebPage() = default;

Outcome<Done> WebPage::listen(const HttpEndpoint &endpoint) {
  _server = std::make_unique<Server>(_simulation);
  return _server->listenOn(endpoint);
}

QString WebPage::address() const { return page_address(_server->address(), _server->port()); }

std::optional<quint16> WebPage::port() const {
  return _server && _server->port() != 0 ? std::optional(_server->port()) : std::nullopt;
}

} // namespace buttondriver::simulator
