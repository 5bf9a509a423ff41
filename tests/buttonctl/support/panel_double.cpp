// SPDX-License-Identifier: Apache-2.0
#include "buttonctl/support/panel_double.h"

#include <QHostAddress>

#include <stdexcept>

namespace buttondriver::test {

namespace {

QByteArray lamps(int count, int lit) {
  QByteArray list = "[";
  for (int i = 0; i < count; ++i)
    list += QByteArray(i > 0 ? "," : "") + (i == lit ? "true" : "false");
  return list + "]";
}

} // namespace

PanelDouble::PanelDouble() {
  QObject::connect(&_server, &QTcpServer::newConnection, &_server, [this] { accept(); });
  if (!_server.listen(QHostAddress::LocalHost, 0))
    throw std::runtime_error("no port to listen on");
}

QString PanelDouble::url() const { return QStringLiteral("http://127.0.0.1:%1").arg(_server.serverPort()); }

void PanelDouble::answer(const QByteArray &path, const QByteArray &body) {
  _bodies[path] = [body] { return body; };
}

void PanelDouble::accept() {
  while (QTcpSocket *socket = _server.nextPendingConnection()) {
    QObject::connect(socket, &QTcpSocket::readyRead, socket, [this, socket] { take(*socket); });
    take(*socket);
  }
}

void PanelDouble::take(QTcpSocket &socket) {
  _unfinished[&socket] += socket.readAll();
  for (;;) {
    // Looked up each time: making a body may run the event loop, and other connections may come meanwhile.
    QByteArray &request = _unfinished[&socket];
    const auto end = request.indexOf("\r\n\r\n");
    if (end < 0)
      return;
    const QByteArray path = request.left(request.indexOf("\r\n")).split(' ').value(1);
    request.remove(0, end + 4);
    _asked += path;
    if (_is_silent)
      continue;
    const bool is_known = _bodies.contains(path);
    const QByteArray body = is_known ? _bodies[path]() : QByteArray("no such thing");
    socket.write(QByteArray("HTTP/1.1 ") + (is_known ? "200 OK" : "404 Not Found") +
                 "\r\nContent-Length: " + QByteArray::number(body.size()) + "\r\n\r\n" + body);
  }
}

QByteArray PanelStateText::json() const {
  return "{\"version\":1,\"button_leds\":" + lamps(32, lit_button) + ",\"status_leds\":" + lamps(32, lit_status) +
         ",\"toggles\":" + lamps(2, lit_toggle) + ",\"intensity\":" + QByteArray::number(intensity) +
         ",\"blinking\":" + blinking + ",\"screens\":" + screens + ",\"counters\":{}}";
}

} // namespace buttondriver::test
