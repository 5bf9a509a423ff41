// SPDX-License-Identifier: Apache-2.0
#include "simulator/http/gate/request_head.h"

#include <QList>

namespace buttondriver::simulator {

namespace {

constexpr int longest_length_digits = 9;

bool refuse(RefusedRequest *refused, int status, const char *reason) {
  *refused = {status, reason};
  return false;
}

bool is_token(const QByteArray &text) {
  for (const char c : text)
    if (c <= ' ' || c >= 0x7F || c == ':')
      return false;
  return !text.isEmpty();
}

bool read_length(const QByteArray &value, qint64 *length) {
  if (value.isEmpty() || value.size() > longest_length_digits)
    return false;
  for (const char c : value)
    if (c < '0' || c > '9')
      return false;
  *length = value.toLongLong();
  return true;
}

bool read_request_line(const QByteArray &line, RequestHead *head) {
  const QList<QByteArray> words = line.split(' ');
  if (words.size() != 3 || !is_token(words[0]) || !words[1].startsWith('/'))
    return false;
  if (words[2] != "HTTP/1.1" && words[2] != "HTTP/1.0")
    return false;
  head->method = words[0];
  head->target = words[1];
  return true;
}

} // namespace

int head_end(const QByteArray &bytes) {
  const auto end = bytes.indexOf("\r\n\r\n");
  return end < 0 ? -1 : static_cast<int>(end) + 4;
}

bool read_head(const QByteArray &bytes, RequestHead *head, RefusedRequest *refused) {
  *head = RequestHead();
  head->size = head_end(bytes);
  QList<QByteArray> lines = bytes.left(head->size - 4).split('\n');
  for (QByteArray &line : lines)
    if (line.endsWith('\r'))
      line.chop(1);
  if (lines.isEmpty() || !read_request_line(lines.takeFirst(), head))
    return refuse(refused, 400, "not a request of HTTP/1.1");

  bool has_host = false;
  bool has_length = false;
  bool wants_websocket = false;
  bool wants_upgrade = false;
  for (const QByteArray &line : lines) {
    const auto colon = line.indexOf(':');
    const QByteArray name = line.left(colon).toLower();
    if (colon < 0 || !is_token(name))
      return refuse(refused, 400, "a line that is no header");
    const QByteArray value = line.mid(colon + 1).trimmed();
    if (name == "host") {
      if (has_host)
        return refuse(refused, 400, "more than one Host");
      has_host = true;
      head->host = value;
    } else if (name == "origin") {
      if (head->origin)
        return refuse(refused, 400, "more than one Origin");
      head->origin = value;
    } else if (name == "content-length") {
      if (has_length || !read_length(value, &head->body_size))
        return refuse(refused, 400, "a Content-Length that is none");
      has_length = true;
    } else if (name == "transfer-encoding") {
      return refuse(refused, 411, "a body without a Content-Length");
    } else if (name == "upgrade") {
      wants_websocket = value.toLower() == "websocket";
    } else if (name == "connection") {
      wants_upgrade = wants_upgrade || value.toLower().contains("upgrade");
    }
  }
  if (!has_host)
    return refuse(refused, 400, "no Host");
  // Who looks at one of the two alone would read this in two ways.
  if (wants_websocket && !wants_upgrade)
    return refuse(refused, 400, "an Upgrade that Connection does not name");
  head->is_websocket = wants_websocket;
  return true;
}

} // namespace buttondriver::simulator
