// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QByteArray>
#include <QTcpServer>
#include <QTcpSocket>

#include <functional>
#include <utility>

namespace buttondriver::bridge {

/// Stands in for a broker of MQTT 3.1.1 on 127.0.0.1, in the test's own event loop: takes every client, subscription
/// and publication, and sends a client what the test makes of its publications. It understands short packets only.
class MarkerBroker {
public:
  /// Makes the payload that comes back from the one that was published; nothing comes back where it is empty.
  using Answer = std::function<QByteArray(const QByteArray &payload)>;

  explicit MarkerBroker(Answer answer) : _answer(std::move(answer)) {
    _server.listen(QHostAddress(QHostAddress::LocalHost));
    QObject::connect(&_server, &QTcpServer::newConnection, [this] {
      QTcpSocket *const socket = _server.nextPendingConnection();
      QObject::connect(socket, &QTcpSocket::readyRead, [this, socket] { read(*socket); });
    });
  }

  quint16 port() const { return _server.serverPort(); }

  /// Sends every client a message, whatever it has subscribed.
  void send(const QByteArray &topic, const QByteArray &payload) {
    const QByteArray size(1, static_cast<char>(topic.size()));
    for (QTcpSocket *const socket : _server.findChildren<QTcpSocket *>())
      socket->write(packet('\x30', '\0' + size + topic + payload));
  }

private:
  // A packet begins with its kind and, below 128, with how many bytes follow.
  static QByteArray packet(char kind, const QByteArray &content) {
    return kind + QByteArray(1, static_cast<char>(content.size())) + content;
  }
  static int number(const QByteArray &bytes, int at) {
    return static_cast<quint8>(bytes[at]) << 8 | static_cast<quint8>(bytes[at + 1]);
  }

  void read(QTcpSocket &socket) {
    for (QByteArray head = socket.peek(2); head.size() == 2; head = socket.peek(2)) {
      const int size = 2 + static_cast<quint8>(head[1]);
      if (socket.bytesAvailable() < size)
        return;
      take(socket, socket.read(size));
    }
  }

  void take(QTcpSocket &socket, const QByteArray &bytes) {
    const int kind = static_cast<quint8>(bytes[0]) >> 4;
    if (kind == 1) { // hello
      socket.write(QByteArray::fromHex("20020000"));
    } else if (kind == 8) { // a subscription of one filter: granted
      socket.write(packet('\x90', bytes.mid(2, 2) + '\0'));
    } else if (kind == 3) { // a publication that wants an answer: the length of the topic, the topic, a number
      const int topic_end = 4 + number(bytes, 2);
      socket.write(packet('\x40', bytes.mid(topic_end, 2)));
      if (const QByteArray answer = _answer(bytes.mid(topic_end + 2)); !answer.isEmpty())
        socket.write(packet('\x30', bytes.mid(2, topic_end - 2) + answer));
    }
  }

  Answer _answer;
  QTcpServer _server;
};

} // namespace buttondriver::bridge
