// SPDX-License-Identifier: Apache-2.0
#include "http/server/http_endpoint.h"

#include <QAbstractSocket>

namespace buttondriver {

namespace {

std::optional<QHostAddress> read_address(QString text) {
  if (text == QLatin1String("localhost"))
    return QHostAddress(QHostAddress::LocalHost);
  const bool is_in_brackets = text.startsWith(QLatin1Char('[')) && text.endsWith(QLatin1Char(']'));
  if (is_in_brackets)
    text = text.mid(1, text.size() - 2);
  const QHostAddress address(text);
  const auto expected = is_in_brackets ? QAbstractSocket::IPv6Protocol : QAbstractSocket::IPv4Protocol;
  // QHostAddress also takes addresses that are not written out, such as "1".
  if (address.protocol() != expected || (!is_in_brackets && text.count(QLatin1Char('.')) != 3))
    return std::nullopt;
  return address;
}

} // namespace

std::optional<HttpEndpoint> read_endpoint(const QString &text) {
  HttpEndpoint endpoint;
  const auto colon = text.lastIndexOf(QLatin1Char(':'));
  if (colon >= 0) {
    const std::optional<QHostAddress> address = read_address(text.left(colon));
    if (!address)
      return std::nullopt;
    endpoint.address = *address;
  }
  const QString port = text.mid(colon + 1);
  bool is_number = !port.isEmpty();
  for (const QChar digit : port)
    is_number = is_number && digit >= QLatin1Char('0') && digit <= QLatin1Char('9');
  bool is_in_range = false;
  endpoint.port = port.toUShort(&is_in_range, 10);
  if (!is_number || !is_in_range)
    return std::nullopt;
  return endpoint;
}

QString page_address(const QHostAddress &address, quint16 port) {
  const bool is_ipv6 = address.protocol() == QAbstractSocket::IPv6Protocol;
  return QStringLiteral("http://%1:%2/")
      .arg(is_ipv6 ? QLatin1Char('[') + address.toString() + QLatin1Char(']') : address.toString())
      .arg(port);
}

} // namespace buttondriver
