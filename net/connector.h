#pragma once

#include <QObject>
#include <QString>
#include <QTcpServer>

#include <vector>

namespace buttondriver {

class ButtonSetter;
class ClientButtondriver;

/// The command server: accepts connections and keeps them until they end. Lives on the event loop's thread.
class Connector : public QObject {
  Q_OBJECT

public:
  static constexpr quint16 default_port = 3003;

  /// `setter` outlives this object.
  Connector(const QString &address, quint16 port, ButtonSetter *setter);
  /// Ends the connections that are open.
  ~Connector() override;

  /// Starts to accept. An empty address listens on every interface, IPv4 and IPv6. Any other text is not read: it
  /// listens on every IPv4 interface. Port 0 takes a free port. Returns false when the port cannot be had.
  bool listen();

  /// The port listened on, 0 when not listening.
  quint16 port() const { return _server.serverPort(); }
  /// The connections that are open, in order of acceptance.
  const std::vector<ClientButtondriver *> &clients() const { return _clients; }

private slots:
  void newClient();

private:
  void forget(ClientButtondriver *client);

  QString _address;
  quint16 _port;
  ButtonSetter *_setter;
  QTcpServer _server;
  std::vector<ClientButtondriver *> _clients; // children of this object
};

} // namespace buttondriver
