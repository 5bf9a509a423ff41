// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QHostAddress>
#include <QString>

#include <optional>

namespace buttondriver {

/// Where a server listens.
struct HttpEndpoint {
  QHostAddress address = QHostAddress(QHostAddress::LocalHost);
  quint16 port = 8080; ///< 0: a free one
};

/// Reads "PORT", "ADDRESS:PORT" or "[ADDRESS]:PORT"; ADDRESS is an IPv4 or IPv6 address or "localhost". Nothing when it
/// is something else.
std::optional<HttpEndpoint> read_endpoint(const QString &text);

/// The page's address as a browser takes it: "http://127.0.0.1:8080/".
QString page_address(const QHostAddress &address, quint16 port);

} // namespace buttondriver
