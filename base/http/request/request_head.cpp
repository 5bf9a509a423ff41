// SPDX-License-Identifier: Apache-2.0
#include "http/request/request_head.h"

#include <QList>
#include <QUrl>

#include <algorithm>
#include <utility>

namespace buttondriver {

namespace {

constexpr int longest_length_digits = 9;

bool is_token(const QByteArray &text) {
  for (const char c : text)
    if (c <= ' ' || c >= 0x7F || c == ':')
      return false;
  return !text.isEmpty();
}

std::optional<qint64> length_of(const QByteArray &value) {
  if (value.isEmpty() || value.size() > longest_length_digits)
    return std::nullopt;
  for (const char c : value)
    if (c < '0' || c > '9')
      return std::nullopt;
  return value.toLongLong();
}

/// Gathers what the lines of a head say. Each function returns why the request is refused, if it is.
class HeadReader {
public:
  std::optional<RefusedRequest> readRequestLine(const QByteArray &line) {
    const QList<QByteArray> words = line.split(' ');
    if (words.size() != 3 || !is_token(words[0]) || !words[1].startsWith('/') ||
        (words[2] != "HTTP/1.1" && words[2] != "HTTP/1.0"))
      return RefusedRequest{400, "not a request of HTTP/1.1"};
    _head.method = words[0];
    _head.target = words[1];
    return std::nullopt;
  }

  std::optional<RefusedRequest> readHeader(const QByteArray &line) {
    const auto colon = line.indexOf(':');
    const QByteArray name = line.left(colon).toLower();
    if (colon < 0 || !is_token(name))
      return RefusedRequest{400, "a line that is no header"};
    const QByteArray value = line.mid(colon + 1).trimmed();
    if (name == "host")
      return keep(_host, value, "more than one Host");
    if (name == "origin")
      return keep(_head.origin, value, "more than one Origin");
    if (name == "sec-fetch-site")
      return keep(_head.fetch_site, value, "more than one Sec-Fetch-Site");
    if (name == "upgrade")
      return readUpgrade(value);
    if (name == "content-length")
      return readLength(value);
    if (name == "transfer-encoding")
      return RefusedRequest{411, "a body without a Content-Length"};
    if (name == "connection")
      _wants_upgrade = _wants_upgrade || value.toLower().contains("upgrade");
    return std::nullopt;
  }

  std::variant<RequestHead, RefusedRequest> result() {
    if (!_host)
      return RefusedRequest{400, "no Host"};
    // Who looks at one of the two alone would read this in two ways.
    if (_head.is_websocket && !_wants_upgrade)
      return RefusedRequest{400, "an Upgrade that Connection does not name"};
    _head.host = *_host;
    return std::move(_head);
  }

private:
  static std::optional<RefusedRequest> keep(std::optional<QByteArray> &place, const QByteArray &value,
                                            const char *if_second) {
    if (place)
      return RefusedRequest{400, if_second};
    place = value;
    return std::nullopt;
  }

  std::optional<RefusedRequest> readLength(const QByteArray &value) {
    const auto length = length_of(value);
    if (_has_length || !length)
      return RefusedRequest{400, "a Content-Length that is none"};
    _has_length = true;
    _head.body_size = *length;
    return std::nullopt;
  }

  std::optional<RefusedRequest> readUpgrade(const QByteArray &value) {
    // Who takes the connection over may read another one of several.
    if (_head.is_websocket)
      return RefusedRequest{400, "more than one Upgrade"};
    _head.is_websocket = value.toLower() == "websocket";
    if (!_head.is_websocket)
      return RefusedRequest{400, "an Upgrade to something else than a WebSocket"};
    return std::nullopt;
  }

  RequestHead _head;
  std::optional<QByteArray> _host;
  bool _has_length = false;
  bool _wants_upgrade = false;
};

} // namespace

QString RequestHead::path() const {
  const auto end = std::find_if(target.begin(), target.end(), [](char c) { return c == '?' || c == '#'; });
  return QUrl::fromPercentEncoding(target.left(static_cast<int>(end - target.begin())));
}

QByteArray RequestHead::query() const {
  const QByteArray sent = target.split('#').first();
  const auto mark = sent.indexOf('?');
  return mark < 0 ? QByteArray() : sent.mid(mark + 1);
}

int head_end(const QByteArray &bytes) {
  const auto end = bytes.indexOf("\r\n\r\n");
  return end < 0 ? -1 : static_cast<int>(end) + 4;
}

std::variant<RequestHead, RefusedRequest> read_head(const QByteArray &bytes) {
  HeadReader reader;
  bool is_first = true;
  for (QByteArray line : bytes.left(head_end(bytes) - 4).split('\n')) {
    if (line.endsWith('\r'))
      line.chop(1);
    if (const auto refused = is_first ? reader.readRequestLine(line) : reader.readHeader(line))
      return *refused;
    is_first = false;
  }
  return reader.result();
}

} // namespace buttondriver
