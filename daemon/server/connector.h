// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "server/frames/frame_choice.h"
#include "server/frames/large_frame_budget.h"
#include "server/limits.h"
#include "server/listener.h"
#include "server/turns/turn_line.h"

#include <QObject>
#include <QString>
#include <QTimer>

#include <unordered_set>
#include <vector>

class QTcpSocket;

namespace buttondriver {

class ButtonSetter;
class ClientButtondriver;

/// The command server: accepts connections, keeps them until they are gone, and lets them take turns. Lives on the
/// event loop's thread.
///
/// When the daemon cannot keep up, messages wait with the clients that sent them; everybody is accepted all the same.
/// There are several reasons to wait, each for itself:
///
///     the panel is busy                        everybody waits
///     nobody reads the log                     everybody waits
///     null messages wait to be logged          who sent one waits, its pings too
///     too many of them wait                    further null messages wait, and what follows them on their connections
///
/// Where everybody waits, pings that come first on their connection are delivered.
///
/// When all places are taken, a newcomer gets that of the client which has never sent a message and has been silent
/// longest. When there is none, and more than half of all places belong to one address that is not the newcomer's, the
/// one among those which has been silent longest gives way. Otherwise the newcomer is refused.
class Connector : public QObject {
  Q_OBJECT

public:
  /// `setter` outlives this object. No more than `places` connections are open at once.
  Connector(const QString &address, quint16 port, ButtonSetter *setter,
            std::size_t places = limits::possible_connections());
  ~Connector() override;

  /// Starts to accept. An empty address listens on every interface, IPv4 and IPv6. Any other text is not read: it
  /// listens on every IPv4 interface. Port 0 takes a free port. Returns false when the port cannot be had.
  bool listen();

  /// The port listened on, 0 when not listening.
  quint16 port() const { return _server.serverPort(); }
  /// The connections that are not gone, in the order in which they were accepted.
  const std::vector<ClientButtondriver *> &clients() const { return _clients; }

  /// Everybody waits until resumeReading, which gives the first turns at once.
  void pauseReading();
  void resumeReading();
  /// The connection with this id waits until releaseClient, its pings too. Has no effect when there is none.
  void holdClient(qint32 client_id);
  void releaseClient(qint32 client_id);
  /// Everybody waits, and so do those that are accepted meanwhile, until releaseAllClients. That does not release those
  /// that are held for themselves.
  void holdAllClients();
  void releaseAllClients();
  /// Null messages wait until releaseNullMessages.
  void holdNullMessages();
  void releaseNullMessages();

public slots:
  /// Takes over all connections that are pending.
  void newClient();

signals:
  /// A connection is gone; `client_id` is what process_messages got for its messages.
  void clientGone(qint32 client_id);

private:
  void add(QTcpSocket *socket);
  bool makeRoomFor(const QTcpSocket &newcomer);
  void refuse(QTcpSocket *newcomer);
  void forget(ClientButtondriver *client);
  ClientButtondriver *find(qint32 client_id) const;
  bool isEverybodyWaiting() const { return _is_paused || _is_everybody_held; }
  FrameChoice deliveryOf(ClientButtondriver *client) const;
  void updateDeliveries();
  void goOn();
  void giveTurn(ClientButtondriver *client);
  void giveAllATurn();

  QString _address;
  quint16 _port;
  ButtonSetter *_setter;
  std::size_t _places;
  LargeFrameBudget _budget;
  Listener _server;
  std::vector<ClientButtondriver *> _clients; // children of this object
  TurnLine _turns;                            // those that have more to deliver; stopped while everybody waits
  TurnLine _ping_turns;                       // those of them that may have pings to deliver meanwhile
  QTimer _budget_timer;                       // runs while somebody waits for the budget
  bool _is_full_logged = false;
  bool _is_paused = false;
  bool _is_everybody_held = false;
  bool _are_null_messages_held = false;
  std::unordered_set<ClientButtondriver *> _held;
};

} // namespace buttondriver
