// SPDX-License-Identifier: Apache-2.0
#include "buttonctl/commands/endpoint_finder.h"

#include "buttonctl/arguments/host_port.h"
#include "buttonctl/arguments/numbers.h"
#include "buttonctl/session/panel_address.h"

namespace buttondriver::buttonctl {

namespace {

constexpr std::int32_t longest_timeout_ms = 600000;
const QString host_option = QStringLiteral("host");
const QString port_option = QStringLiteral("port");
const QString timeout_option = QStringLiteral("timeout");
const QString panel_option = QStringLiteral("panel");
constexpr char host_variable[] = "BUTTONDRIVER_HOST";
constexpr char port_variable[] = "BUTTONDRIVER_PORT";
constexpr char panel_variable[] = "BUTTONDRIVER_PANEL";

/// A variable that is empty counts as one that is not there.
bool is_set(const char *variable) { return !qEnvironmentVariableIsEmpty(variable); }

QString dashes(const QString &option) { return QLatin1String("--") + option; }

} // namespace

Outcome<Done> EndpointFinder::take(const QCommandLineParser &parser) {
  if (parser.isSet(host_option)) {
    const auto host = parse_host(dashes(host_option), parser.value(host_option));
    if (!host)
      return host.failure();
    _host = host->host;
    _port_of_host = host->port;
  }
  if (parser.isSet(port_option)) {
    const auto port = parse_port(dashes(port_option), parser.value(port_option));
    if (!port)
      return port.failure();
    _port = *port;
  }
  if (parser.isSet(timeout_option)) {
    const auto timeout = parse_number(dashes(timeout_option), parser.value(timeout_option), 1, longest_timeout_ms);
    if (!timeout)
      return timeout.failure();
    _timeout_ms = *timeout;
  }
  if (parser.isSet(panel_option)) {
    const auto panel = parse_panel_url(dashes(panel_option), parser.value(panel_option));
    if (!panel)
      return panel.failure();
    _panel = *panel;
  }
  return Done{};
}

Outcome<Endpoint> EndpointFinder::endpoint() const {
  Endpoint endpoint;
  endpoint.timeout_ms = _timeout_ms;
  std::optional<std::uint16_t> port = _port ? _port : _port_of_host;
  if (_host) {
    endpoint.host = *_host;
  } else if (is_set(host_variable)) {
    const auto host = parse_host(QLatin1String(host_variable), qEnvironmentVariable(host_variable));
    if (!host)
      return host.failure();
    endpoint.host = host->host;
    // Another variable may say it, which counts more.
    if (!port && !is_set(port_variable))
      port = host->port;
  }
  if (!port && is_set(port_variable)) {
    const auto number = parse_port(QLatin1String(port_variable), qEnvironmentVariable(port_variable));
    if (!number)
      return number.failure();
    port = *number;
  }
  endpoint.port = port.value_or(endpoint.port);
  return endpoint;
}

Outcome<QString> EndpointFinder::panel() const {
  if (_panel)
    return *_panel;
  if (is_set(panel_variable))
    return parse_panel_url(QLatin1String(panel_variable), qEnvironmentVariable(panel_variable));
  return default_panel_url();
}

} // namespace buttondriver::buttonctl
