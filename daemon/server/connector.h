// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "server/large_frame_budget.h"
#include "server/turn_line.h"

#include <QObject>
#include <QString>
#include <QTcpServer>
#include <QTimer>

#include <vector>

namespace buttondriver {

class ButtonSetter;
class ClientButtondriver;

/// The command server: accepts connections, keeps them until they end, and lets them take turns. Lives on the event
/// loop's thread.
class Connector : public QObject {
  Q_OBJECT

public:
  static constexpr quint16 default_port = 3003;

  /// `setter` outlives this object.
  Connector(const QString &address, quint16 port, ButtonSetter *setter);
  ~Connector() override;

  /// Starts to accept. An empty address listens on every interface, IPv4 and IPv6. Any other text is not read: it
  /// listens on every IPv4 interface. Port 0 takes a free port. Returns false when the port cannot be had.
  bool listen();

  /// The port listened on, 0 when not listening.
  quint16 port() const { return _server.serverPort(); }
  /// The connections that are open.
  const std::vector<ClientButtondriver *> &clients() const { return _clients; }

public slots:
  /// Delivers nothing but pings, and accepts nobody, until resumeReading. What clients send meanwhile waits with them.
  void pauseReading();
  void resumeReading();
  /// Delivers nothing but pings of the connection with this id, until releaseClients.
  void holdClient(qint32 client_id);
  /// As holdClient, of all connections and of those that come.
  void holdAllClients();
  void releaseClients();

signals:
  /// A connection has ended; `client_id` is what process_messages got for its messages.
  void clientGone(qint32 client_id);

private slots:
  void newClient();

private:
  void forget(ClientButtondriver *client);
  void giveAllATurn();
  void pauseAcceptingBriefly();
  bool canAccept() const;

  QString _address;
  quint16 _port;
  ButtonSetter *_setter;
  LargeFrameBudget _budget;
  QTcpServer _server;
  std::vector<ClientButtondriver *> _clients; // children of this object
  TurnLine _turns;                            // those that have more to deliver
  QTimer _accept_timer;                       // runs while the system is given time to accept again
  bool _is_paused = false;
  bool _is_everybody_held = false;
};

} // namespace buttondriver
