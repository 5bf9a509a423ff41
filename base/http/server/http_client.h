// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "http/server/http_connection.h"

#include <QPointer>

namespace buttondriver {

/// Where the answer to one request goes. It may be kept and copied; once the client has gone, answers go nowhere.
class HttpClient {
public:
  explicit HttpClient(HttpConnection *connection) : _connection(connection) {}

  /// Whether the client still waits for an answer.
  bool isThere() const { return !_connection.isNull(); }
  /// Answers the request, once, on the server's thread.
  void answer(const HttpAnswer &answer) const {
    if (_connection)
      _connection->answer(answer);
  }

private:
  QPointer<HttpConnection> _connection;
};

} // namespace buttondriver
