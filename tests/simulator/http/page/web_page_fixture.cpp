// SPDX-License-Identifier: Apache-2.0
#include "web_page_fixture.h"

#include "panel/leds.h"
#include "panel/panel_lib.h"
#include "support/event_loop.h"

#include <QHostAddress>
#include <QJsonDocument>
#include <QUrl>

namespace buttondriver::simulator {

using test::process_events_until;

const QJsonObject Reply::json() const { return QJsonDocument::fromJson(body).object(); }

WebPageFixture::WebPageFixture(const QString &device) {
  root.writeFontSize(8, 16);
  SimulationSettings settings;
  settings.device_socket = device;
  settings.root = root.path();
  settings.keeps_traffic = true;
  settings.daemon_arguments =
      QStringList{QStringLiteral("buttondriver-sim"), QStringLiteral("map"), QString(), QStringLiteral("0")};
  simulation.emplace(settings);
  EXPECT_TRUE(simulation->start());
  web_page.emplace(*simulation);
  EXPECT_TRUE(web_page->listen({QHostAddress(QHostAddress::LocalHost), 0}));
}

WebPageFixture::~WebPageFixture() {
  web_page.reset();
  simulation.reset();
  panel::panel_lib_done();
  panel::toggle_indicator_bits = 0;
}

quint16 WebPageFixture::port() const { return static_cast<quint16>(QUrl(web_page->address()).port()); }

QByteArray WebPageFixture::host() const { return "127.0.0.1:" + QByteArray::number(port()); }

std::unique_ptr<QTcpSocket> WebPageFixture::connected() const {
  auto socket = std::make_unique<QTcpSocket>();
  socket->connectToHost(QHostAddress(QHostAddress::LocalHost), port());
  EXPECT_TRUE(process_events_until([&] { return socket->state() == QAbstractSocket::ConnectedState; }));
  return socket;
}

Reply reply_from(QTcpSocket &socket) {
  EXPECT_TRUE(process_events_until([&] { return socket.state() == QAbstractSocket::UnconnectedState; }));
  const QByteArray bytes = socket.readAll();
  const auto end = bytes.indexOf("\r\n\r\n");
  Reply answer;
  if (!bytes.startsWith("HTTP/1.1 ") || end < 0)
    return answer;
  answer.status = bytes.mid(9, 3).toInt();
  answer.head = bytes.left(end + 2);
  answer.body = bytes.mid(end + 4);
  return answer;
}

Reply WebPageFixture::ask(const QByteArray &request) const {
  const auto socket = connected();
  socket->write(request);
  return reply_from(*socket);
}

Reply WebPageFixture::get(const QByteArray &path) const {
  return ask("GET " + path + " HTTP/1.1\r\nHost: " + host() + "\r\n\r\n");
}

Reply WebPageFixture::post(const QByteArray &path) const {
  return ask("POST " + path + " HTTP/1.1\r\nHost: " + host() + "\r\nContent-Length: 0\r\n\r\n");
}

void WebPageFixture::sendMessages(const QByteArray &hex) {
  if (_client.state() == QAbstractSocket::UnconnectedState)
    _client.connectToHost(QHostAddress(QHostAddress::LocalHost), simulation->daemon()->server().port());
  _client.write(QByteArray::fromHex(hex + "00000004 0000000c"));
  EXPECT_TRUE(process_events_until([&] { return _client.bytesAvailable() == 8; }));
  EXPECT_EQ(_client.readAll(), QByteArray::fromHex("00000004 00000001"));
}

} // namespace buttondriver::simulator
