// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QByteArray>

#include <optional>

namespace buttondriver::simulator {

/// The part of an HTTP/1 request in front of its body, as far as it decides whether the request is taken.
struct RequestHead {
  QByteArray method;
  QByteArray target;
  int size = 0; ///< bytes, the empty line included
  QByteArray host;
  std::optional<QByteArray> origin;
  qint64 body_size = 0;
  bool is_websocket = false;
};

/// Why a request is not taken.
struct RefusedRequest {
  int status; ///< 400 to 503
  QByteArray reason;
};

/// Where the head in `bytes` ends, the empty line included; -1 while it is not complete.
int head_end(const QByteArray &bytes);

/// Reads a complete head. Refuses what is not HTTP/1.1 or 1.0, a line that is no header, a missing or second Host, a
/// second Origin or Content-Length, a length that is no number, bodies without a length, and a
/// WebSocket without "Connection: Upgrade".
bool read_head(const QByteArray &bytes, RequestHead *head, RefusedRequest *refused);

} // namespace buttondriver::simulator
