// SPDX-License-Identifier: Apache-2.0
// The page of a build without Qt's WebSockets.

#include "simulator/http/web_page.h"

namespace buttondriver::simulator {

class WebPage::Server {};

bool WebPage::isAvailable() { return false; }

WebPage::WebPage(Simulation &simulation) : _simulation(simulation) {}

WebPage::~WebPage() = default;

Outcome<Done> WebPage::listen(const HttpEndpoint &) { return Failure{QStringLiteral("this build has none")}; }

QString WebPage::address() const { return {}; }

std::optional<quint16> WebPage::port() const { return std::nullopt; }

} // namespace buttondriver::simulator
