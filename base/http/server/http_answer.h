// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QByteArray>

#include <utility>
#include <vector>

class QTcpSocket;

namespace buttondriver {

/// A whole HTTP answer. Nobody may keep it, embed it, or take it for another type.
struct HttpAnswer {
  int status = 200;
  QByteArray type = "text/plain; charset=utf-8";
  QByteArray body;
  std::vector<std::pair<QByteArray, QByteArray>> headers; ///< besides those that every answer has

  /// A line of text that says what is wrong.
  static HttpAnswer fault(int status, const QByteArray &reason);

  /// Writes the answer; `with_body` false leaves the body out, as for HEAD. The answer says that
  /// the connection ends after it.
  void writeTo(QTcpSocket &socket, bool with_body = true) const;
};

} // namespace buttondriver
