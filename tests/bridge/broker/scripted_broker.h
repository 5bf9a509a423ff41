// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QByteArray>
#include <QTcpServer>
#include <QTcpSocket>
#include <QVector>

#include <utility>

namespace buttondriver::bridge {

// What brokers answer to the first packet of a client: accepted, in either protocol.
inline const QByteArray accepted_5 = QByteArray::fromHex("2003000000");
inline const QByteArray accepted_3_1_1 = QByteArray::fromHex("20020000");

/// Stands in for a broker on 127.0.0.1, in the test's own event loop: sends the next one of its answers whenever bytes
/// of a client have come, and after the last one reads no more.
class ScriptedBroker {
public:
  enum class Manner { answer, answer_and_close, close_at_once };

  explicit ScriptedBroker(const QByteArray &answer, Manner manner = Manner::answer)
      : ScriptedBroker(QVector<QByteArray>{answer}, manner) {}
  explicit ScriptedBroker(QVector<QByteArray> answers, Manner manner = Manner::answer)
      : _answers(std::move(answers)), _manner(manner) {
    _server.listen(QHostAddress(QHostAddress::LocalHost));
    QObject::connect(&_server, &QTcpServer::newConnection, [this] { take(); });
  }

  quint16 port() const { return _server.serverPort(); }
  int clients() const { return _clients; }
  void close() { _server.close(); }
  /// Of the clients that come from now on.
  void setManner(Manner manner) { _manner = manner; }
  void dropClients() {
    for (QTcpSocket *const socket : _server.findChildren<QTcpSocket *>())
      socket->abort();
  }

private:
  void take() {
    QTcpSocket *const socket = _server.nextPendingConnection();
    ++_clients;
    if (_manner == Manner::close_at_once)
      return socket->deleteLater();
    socket->setReadBufferSize(1024); // the system keeps the rest
    socket->setProperty("closes", _manner == Manner::answer_and_close);
    QObject::connect(socket, &QTcpSocket::readyRead, [this, socket] {
      const int answered = socket->property("answered").toInt();
      if (answered == _answers.size())
        return;
      socket->readAll();
      socket->write(_answers[answered]);
      socket->setProperty("answered", answered + 1);
      if (socket->property("closes").toBool())
        socket->disconnectFromHost();
    });
  }

  QVector<QByteArray> _answers;
  Manner _manner;
  QTcpServer _server;
  int _clients = 0;
};

} // namespace buttondriver::bridge
