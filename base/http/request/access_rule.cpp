// SPDX-License-Identifier: Apache-2.0
#include "http/request/access_rule.h"

namespace buttondriver {

namespace {

/// The name in front of the port; empty when there is something else than a port after it.
QByteArray without_port(const QByteArray &host) {
  const auto bracket = host.lastIndexOf(']');
  const auto colon = host.indexOf(':', bracket < 0 ? 0 : bracket);
  if (colon < 0)
    return host;
  for (const char c : host.mid(colon + 1))
    if (c < '0' || c > '9')
      return {};
  return host.left(colon);
}

} // namespace

std::optional<RefusedRequest> AccessRule::refusal(const RequestHead &head) const {
  if (!isKnownHost(head.host))
    return RefusedRequest{403, "an unknown Host"};
  if (head.origin && *head.origin != "http://" + head.host)
    return RefusedRequest{403, "a request of another site"};
  // "none" is an address that somebody has typed in.
  if (head.fetch_site && *head.fetch_site != "same-origin" && *head.fetch_site != "none")
    return RefusedRequest{403, "a request of another site"};
  if (head.method != "GET" && head.method != "HEAD" && head.method != "POST")
    return RefusedRequest{405, "only GET, HEAD and POST"};
  if (head.body_size > largest_body)
    return RefusedRequest{413, "too large a body"};
  if (head.is_websocket && (_websocket_path.isEmpty() || head.target != _websocket_path || head.method != "GET"))
    return RefusedRequest{404, "no WebSocket there"};
  return std::nullopt;
}

bool AccessRule::isKnownHost(const QByteArray &host) const {
  QByteArray name = without_port(host).toLower();
  if (name == "localhost" || name == "127.0.0.1" || name == "[::1]")
    return true;
  const bool is_in_brackets = name.startsWith('[') && name.endsWith(']');
  if (is_in_brackets)
    name = name.mid(1, name.size() - 2);
  // Only addresses that are written out: no name that could become one, and no zone, which may be any text.
  if ((!is_in_brackets && name.count('.') != 3) || name.contains('%'))
    return false;
  const QHostAddress address(QString::fromLatin1(name));
  if (address.isNull())
    return false;
  const bool listens_everywhere = _listening == QHostAddress(QHostAddress::AnyIPv4) ||
                                  _listening == QHostAddress(QHostAddress::AnyIPv6) ||
                                  _listening == QHostAddress(QHostAddress::Any);
  return listens_everywhere || address == _listening;
}

} // namespace buttondriver
