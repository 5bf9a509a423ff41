// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "server/frame_reader.h"
#include "server/large_frame_budget.h"

#include <QBuffer>
#include <QObject>
#include <QtGlobal>

class QTcpSocket;

namespace buttondriver {

class ButtonSetter;

/// One accepted connection: cuts its byte stream into messages and hands them on, a few at a time. Lives on the event
/// loop's thread.
///
/// It is in one of four states, and never goes back to one that it has left:
///
///     reading   the socket is open; what arrives is delivered
///     blocked   the socket is open; what arrives is thrown away, so that the end of the connection is noticed
///     draining  the socket is gone; what was read from it before is still delivered, answers are lost
///     gone      the socket is gone, and nothing is left to deliver
///
///     event                                        from      to        what happens
///     -------------------------------------------  --------  --------  ---------------------------------------------
///     made with a socket                           -         reading   takes the next client id
///     made with a null socket                      -         gone      logged; takes no client id
///     turn, or bytes have arrived                  reading   reading   one turn's messages are delivered
///     the next frame is longer than largest_frame  reading   blocked   logged; the frame and all after it is lost
///     the socket has failed                        reading   reading   what was read is saved: the socket drops it,
///                                                                      and ends next
///     the socket has ended, unread bytes are left  reading   draining  logged, after a first turn as in draining
///     the socket has ended, nothing is left        reading   gone      logged; closed() is emitted
///     bytes have arrived                           blocked   blocked   thrown away
///     the socket has ended                         blocked   gone      logged; closed() is emitted
///     turn, more is left                           draining  draining  one turn's messages are delivered
///     turn, no complete frame is left              draining  gone      the last ones are delivered; closed() is
///                                                                      emitted
///     turn                                         gone      gone      logged: there is no socket
///
/// A turn delivers `limits::messages_per_turn` messages at most, and only those that setDelivery lets pass. It ends
/// with a null message: the lines of that may have to be written first.
class ClientButtondriver : public QObject {
  Q_OBJECT

public:
  /// Takes over `socket`, which may be null. `setter` and `budget` outlive this object; without a `budget` it has one
  /// of its own. The client ids of one process are 1000, 2000, and so on.
  ClientButtondriver(QObject *parent, QTcpSocket *socket, ButtonSetter *setter, LargeFrameBudget *budget = nullptr);
  /// Closes the socket, if there is one. What is not delivered by then is lost.
  ~ClientButtondriver() override;

  /// The socket's descriptor when it was accepted, -1 without one.
  qintptr descriptor() const { return _descriptor; }
  /// Whether the socket is open.
  bool connected() const { return _state == State::reading || _state == State::blocked; }
  /// What is added to this connection's private image ids; 0 when it was made with a null socket.
  qint32 clientId() const { return _client_id; }

  /// Which messages are delivered from now on. The others wait: here as far as they are read ahead, else with the
  /// sender. Gives no turn by itself.
  void setDelivery(FrameChoice delivery) { _delivery = delivery; }

  /// One turn, the same that is taken whenever bytes arrive.
  void takeTurn() { clientData(); }

signals:
  /// There is more to deliver than belonged to the last turn, or what kept it waiting has gone.
  void wantsTurn();
  /// A large frame is complete or will never be: its share of the budget is free again.
  void largeFrameEnded();
  /// The last one: the connection is gone now.
  void closed();

private slots:
  void clientDisconnected();
  void clientData();

private:
  enum class State : quint8 { reading, blocked, draining, gone };

  void readSocket();
  void drain();
  void leave();
  std::size_t deliver(QIODevice &stream, QIODevice &reply);
  void saveUndelivered();
  void answersRead();
  bool prepareNextFrame();
  void readNoFurther();
  void keepReading();
  void blockForGood(quint32 length);
  void endLargeFrame();
  void releaseSocket();

  State _state = State::gone;
  QTcpSocket *_socket; // null unless reading or blocked
  ButtonSetter *_setter;
  LargeFrameBudget _own_budget;
  LargeFrameBudget *_budget;
  qintptr _descriptor = -1;
  qint32 _client_id = 0;
  FrameChoice _delivery = FrameChoice::all;
  qint64 _large_frame = 0; // bytes of the budget that this connection holds
  QBuffer _undelivered;    // what draining delivers
};

} // namespace buttondriver
