// SPDX-License-Identifier: Apache-2.0
#include "simulator/http/page/page_session.h"

#include <QJsonDocument>
#include <QJsonObject>

#include <utility>

namespace buttondriver::simulator {

namespace {

QString text_of(const QJsonObject &object) {
  return QString::fromUtf8(QJsonDocument(object).toJson(QJsonDocument::Compact));
}

} // namespace

PageSession::PageSession(std::unique_ptr<QWebSocket> socket, std::optional<quint16> daemon_port)
    : _socket(std::move(socket)), _link(daemon_port) {
  _socket->setMaxAllowedIncomingFrameSize(largest_message);
  _socket->setMaxAllowedIncomingMessageSize(largest_message);
  connect(_socket.get(), &QWebSocket::disconnected, this, &PageSession::ended);
  connect(_socket.get(), &QWebSocket::binaryMessageReceived, this, &PageSession::take);
  connect(&_link, &DaemonLink::answered, this, [this](const QString &name) {
    _socket->sendTextMessage(text_of({{QStringLiteral("answer"), name}}));
  });
  connect(&_link, &DaemonLink::failed, this, [this](const QString &reason) {
    _socket->sendTextMessage(text_of({{QStringLiteral("not_sent"), reason}}));
  });
  _socket->sendTextMessage(
      text_of({{QStringLiteral("program"), QStringLiteral(BUTTONDRIVER_VERSION)},
               {QStringLiteral("daemon_port"), daemon_port ? QJsonValue(*daemon_port) : QJsonValue()}}));
}

PageSession::~PageSession() { _socket->disconnect(this); }

bool PageSession::isReady() const { return _socket->bytesToWrite() < most_unsent_bytes; }

void PageSession::send(const LiveUpdate &update) {
  for (const QByteArray &rows : update.pixels)
    _socket->sendBinaryMessage(rows);
  if (!update.text.isEmpty())
    _socket->sendTextMessage(QString::fromUtf8(update.text));
  _position = update.position;
}

void PageSession::take(const QByteArray &message) { _link.send(message); }

} // namespace buttondriver::simulator
