// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QByteArray>
#include <QString>

#include <optional>
#include <variant>

namespace buttondriver {

/// The part of an HTTP/1 request before its body, as far as it decides whether the request is taken.
struct RequestHead {
  QByteArray method;
  QByteArray target; ///< as it came: a path, and perhaps a query
  QByteArray host;
  std::optional<QByteArray> origin;
  std::optional<QByteArray> fetch_site; ///< where the request comes from, as a browser says it
  qint64 body_size = 0;
  bool is_websocket = false;

  /// The target without its query, decoded.
  QString path() const;
  /// What follows the path's question mark, as it came; empty when there is none.
  QByteArray query() const;
};

/// Why a request is not taken.
struct RefusedRequest {
  int status; ///< 400 to 503
  QByteArray reason;
};

/// Where the head in `bytes` ends, the empty line included; -1 while it is not complete.
int head_end(const QByteArray &bytes);

/// Reads a complete head. Refuses what is not HTTP/1.1 or 1.0, a line that is no header, a missing or second Host, a
/// second Origin, Sec-Fetch-Site, Upgrade or Content-Length, a length that is no number, bodies without a length, an
/// upgrade to something else than a WebSocket, and one without "Connection: Upgrade".
std::variant<RequestHead, RefusedRequest> read_head(const QByteArray &bytes);

} // namespace buttondriver
