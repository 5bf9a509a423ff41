// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "server/frame_reader.h"
#include "server/large_frame_budget.h"
#include "server/turn_line.h"

#include <QObject>
#include <QString>
#include <QTcpServer>
#include <QTimer>

#include <unordered_set>
#include <vector>

namespace buttondriver {

class ButtonSetter;
class ClientButtondriver;

/// The command server: accepts connections, keeps them until they are gone, and lets them take turns. Lives on the
/// event loop's thread.
///
/// When the daemon cannot keep up, messages wait with the clients that sent them. Two kinds of backlog may tell so,
/// each for itself: that of the panel pauses everybody, that of the log holds those clients whose null messages wait to
/// be written, and everybody when it is full. A client that is held for itself delivers nothing; where everybody waits,
/// pings that come first on their connection are delivered.
class Connector : public QObject {
  Q_OBJECT

public:
  /// `setter` outlives this object.
  Connector(const QString &address, quint16 port, ButtonSetter *setter);
  ~Connector() override;

  /// Starts to accept. An empty address listens on every interface, IPv4 and IPv6. Any other text is not read: it
  /// listens on every IPv4 interface. Port 0 takes a free port. Returns false when the port cannot be had.
  bool listen();

  /// The port listened on, 0 when not listening.
  quint16 port() const { return _server.serverPort(); }
  /// The connections that are not gone, in the order in which they were accepted.
  const std::vector<ClientButtondriver *> &clients() const { return _clients; }

  /// Everybody waits, and nobody is accepted, until resumeReading.
  void pauseReading();
  void resumeReading();
  /// The connection with this id waits until releaseClient, its pings too. Has no effect when there is none.
  void holdClient(qint32 client_id);
  void releaseClient(qint32 client_id);
  /// Everybody waits, and so do those that are accepted meanwhile, until releaseAllClients. That does not release those
  /// that are held for themselves.
  void holdAllClients();
  void releaseAllClients();

public slots:
  /// Accepts all who want to connect, as far as there is room.
  void newClient();

signals:
  /// A connection is gone; `client_id` is what process_messages got for its messages.
  void clientGone(qint32 client_id);

private:
  void forget(ClientButtondriver *client);
  void pauseAcceptingBriefly();
  bool canAccept() const;
  ClientButtondriver *find(qint32 client_id) const;
  FrameChoice deliveryOf(ClientButtondriver *client) const;
  void updateDeliveries();
  void giveAllATurn();

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
  std::unordered_set<ClientButtondriver *> _held;
};

} // namespace buttondriver
