#pragma once

#include <QObject>
#include <QtGlobal>

class QTcpSocket;

namespace buttondriver {

class ButtonSetter;

/// One accepted connection: cuts its byte stream into messages and hands them on. Lives on the event loop's thread.
class ClientButtondriver : public QObject {
  Q_OBJECT

public:
  /// Takes over `socket`. `setter` outlives this object. Each connection takes the next id: 1000, 2000, and so on.
  /// With a null socket it stays unconnected, says so, and takes no id.
  ClientButtondriver(QObject *parent, QTcpSocket *socket, ButtonSetter *setter);
  ~ClientButtondriver() override;

  /// The socket's descriptor when it was accepted, -1 without one.
  qintptr descriptor() const { return _descriptor; }
  bool connected() const { return _connected; }
  /// What is added to this connection's private image ids.
  qint32 clientId() const { return _client_id; }

signals:
  /// The connection has ended; what it had sent is delivered.
  void closed();

private slots:
  void clientDisconnected();
  void clientData();

private:
  void releaseSocket();

  QTcpSocket *_socket;
  bool _connected = false;
  ButtonSetter *_setter;
  qintptr _descriptor = -1;
  qint32 _client_id = 0;
};

} // namespace buttondriver
