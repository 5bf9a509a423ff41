// SPDX-License-Identifier: Apache-2.0
#include "http/server/http_answer.h"

#include <QTcpSocket>

namespace buttondriver {

namespace {

const char *phrase_of(int status) {
  switch (status) {
  case 200:
    return "OK";
  case 204:
    return "No Content";
  case 400:
    return "Bad Request";
  case 403:
    return "Forbidden";
  case 404:
    return "Not Found";
  case 405:
    return "Method Not Allowed";
  case 408:
    return "Request Timeout";
  case 411:
    return "Length Required";
  case 413:
    return "Content Too Large";
  case 431:
    return "Request Header Fields Too Large";
  case 503:
    return "Service Unavailable";
  default:
    return "Answer";
  }
}

} // namespace

HttpAnswer HttpAnswer::fault(int status, const QByteArray &reason) {
  HttpAnswer answer;
  answer.status = status;
  answer.body = reason + '\n';
  return answer;
}

void HttpAnswer::writeTo(QTcpSocket &socket, bool with_body) const {
  QByteArray text = "HTTP/1.1 " + QByteArray::number(status) + ' ' + phrase_of(status) + "\r\n";
  const auto add = [&text](const QByteArray &name, const QByteArray &value) { text += name + ": " + value + "\r\n"; };
  if (status != 204) {
    add("Content-Type", type);
    add("Content-Length", QByteArray::number(body.size()));
  }
  add("Connection", "close");
  add("Cache-Control", "no-store");
  add("X-Content-Type-Options", "nosniff");
  add("Cross-Origin-Resource-Policy", "same-origin");
  add("Referrer-Policy", "no-referrer");
  for (const auto &[name, value] : headers)
    add(name, value);
  text += "\r\n";
  if (with_body && status != 204)
    text += body;
  socket.write(text);
}

} // namespace buttondriver
