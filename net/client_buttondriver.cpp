#include "net/client_buttondriver.h"

#include "buttons/button_setter.h"
#include "logging/log_line.h"
#include "net/frame_reader.h"

#include <QTcpSocket>

namespace buttondriver {

namespace {

/// Ids go on for as long as the process lives; after 2^32 / 1000 connections they wrap.
qint32 take_client_id() {
  static quint32 next_client_id = 1000;
  const quint32 id = next_client_id;
  next_client_id += 1000;
  return static_cast<qint32>(id);
}

} // namespace

ClientButtondriver::ClientButtondriver(QObject *parent, QTcpSocket *socket, ButtonSetter *setter)
    : QObject(parent), _socket(socket), _setter(setter) {
  if (!_socket) {
    debug_line() << "collector: ClientButtondriver::ClientButtondriver, null socket";
    return;
  }
  _socket->setParent(this);
  _descriptor = _socket->socketDescriptor();
  _connected = true;
  connect(_socket, SIGNAL(disconnected()), this, SLOT(clientDisconnected()));
  connect(_socket, SIGNAL(readyRead()), this, SLOT(clientData()));
  _client_id = take_client_id();
}

ClientButtondriver::~ClientButtondriver() {
  if (_socket)
    releaseSocket();
}

void ClientButtondriver::clientData() {
  if (!_socket) {
    critical_line() << "buttondriver::ClientButtondriver::clientData NULL socket";
    return;
  }
  _setter->process_messages(take_frames(*_socket), _socket, _client_id);
}

void ClientButtondriver::clientDisconnected() {
  if (_socket) {
    if (_socket->bytesAvailable() > 0)
      clientData();
    debug_line() << "buttondriver: client disconnected" << qint64{_descriptor};
    releaseSocket();
  }
  _connected = false;
  emit closed();
}

void ClientButtondriver::releaseSocket() {
  // Closing may say "disconnected" once more.
  _socket->disconnect(this);
  _socket->close();
  _socket->deleteLater();
  _socket = nullptr;
}

} // namespace buttondriver
