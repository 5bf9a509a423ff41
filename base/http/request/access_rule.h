// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "http/request/request_head.h"

#include <QHostAddress>

#include <optional>
#include <utility>

namespace buttondriver {

/// Who may talk to a server: programs, and pages that came from it; no page of another site.
///
/// A browser says in Host by which name it has found the server. Names that somebody else could point at this machine
/// are refused, so that no foreign site becomes "the same origin": allowed are 127.0.0.1, localhost, [::1], the address
/// that is listened on, and, when that is every address, any address written in numbers. An Origin, which browsers
/// send with whatever could do harm, must be that of the very Host. Pictures and links of other sites come without one,
/// and are known by Sec-Fetch-Site, which browsers send to addresses of this machine.
class AccessRule {
public:
  /// `websocket_path`: the only target that may become a WebSocket; empty: none may.
  explicit AccessRule(const QHostAddress &listening, QByteArray websocket_path = {})
      : _listening(listening), _websocket_path(std::move(websocket_path)) {}

  /// Looks at method, size of the body, Host, Origin and Sec-Fetch-Site. Nothing when the request is allowed.
  std::optional<RefusedRequest> refusal(const RequestHead &head) const;

  static constexpr int largest_head = 16 * 1024;
  static constexpr qint64 largest_body = 1024;

private:
  bool isKnownHost(const QByteArray &host) const;

  QHostAddress _listening;
  QByteArray _websocket_path;
};

} // namespace buttondriver
