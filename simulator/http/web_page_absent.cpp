// SPDX-License-Identifier: Apache-2.0
// The page of a build without Qt's HTTP server and WebSockets.

#include "simulator/http/web_page.h"

namespace buttondriver::simulator {

class WebPage::Server {};

bool WebPage::isAvailable() { return false; }

WebPage::WebPage(Simulation &simulation) : _simulation(simulation) {}

WebPage::~WebPage() = default;

bool WebPage::listen(const HttpEndpoint &, QString *reason) {
  *reason = QStringLiteral("this build has none");
  return false;
}

QString WebPage::address() const { return {}; }

} // namespace buttondriver::simulator
