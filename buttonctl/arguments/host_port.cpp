// SPDX-License-Identifier: Apache-2.0
#include "buttonctl/arguments/host_port.h"

#include "buttonctl/arguments/numbers.h"

namespace buttondriver::buttonctl {

namespace {

constexpr std::int32_t highest_port = 65535;

Failure malformed(const QString &name, const QString &text, bool needs_host) {
  return Failure{QStringLiteral("%1 must be %2, such as %3, not '%4'")
                     .arg(name, QLatin1String(needs_host ? "HOST:PORT" : "PORT or ADDRESS:PORT"),
                          QLatin1String(needs_host ? "127.0.0.1:3003" : "3004 or 0.0.0.0:3004"), text)};
}

} // namespace

Outcome<std::uint16_t> parse_port(const QString &name, const QString &text) {
  const auto port = parse_number(name, text, 1, highest_port);
  if (!port)
    return port.failure();
  return static_cast<std::uint16_t>(*port);
}

Outcome<PossiblePort> parse_host(const QString &name, const QString &text) {
  if (text.isEmpty())
    return Failure{QStringLiteral("%1 must not be empty").arg(name)};
  const bool is_bracketed = text.startsWith(QLatin1Char('['));
  const auto end = is_bracketed ? text.indexOf(QLatin1Char(']')) : text.indexOf(QLatin1Char(':'));
  if (!is_bracketed && text.count(QLatin1Char(':')) != 1)
    return PossiblePort{text, std::nullopt};
  PossiblePort result{is_bracketed ? text.mid(1, end - 1) : text.left(end), std::nullopt};
  const QString rest = is_bracketed ? text.mid(end + 1) : text.mid(end);
  if (end < 0 || result.host.isEmpty() || (!rest.isEmpty() && !rest.startsWith(QLatin1Char(':'))))
    return Failure{QStringLiteral("%1 must be HOST, HOST:PORT or [ADDRESS]:PORT, not '%2'").arg(name, text)};
  if (rest.isEmpty())
    return result;
  const auto port = parse_port(name + QLatin1String(": the port"), rest.mid(1));
  if (!port)
    return port.failure();
  result.port = *port;
  return result;
}

Outcome<HostPort> parse_host_port(const QString &name, const QString &text, const QString &default_host,
                                  int lowest_port) {
  const bool needs_host = default_host.isEmpty();
  const auto colon = text.lastIndexOf(QLatin1Char(':'));
  QString host = colon < 0 ? default_host : text.left(colon);
  if (host.startsWith(QLatin1Char('[')) && host.endsWith(QLatin1Char(']')))
    host = host.mid(1, host.size() - 2);
  else if (host.contains(QLatin1Char(':')))
    return malformed(name, text, needs_host);
  if (host.isEmpty())
    return malformed(name, text, needs_host);
  const auto port = parse_number(name + QLatin1String(": the port"), text.mid(colon + 1), lowest_port, highest_port);
  if (!port)
    return port.failure();
  return HostPort{host, static_cast<std::uint16_t>(*port)};
}

} // namespace buttondriver::buttonctl
