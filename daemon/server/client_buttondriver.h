// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "protocol/framing.h"
#include "server/answers.h"
#include "server/frames/frame_choice.h"
#include "server/frames/large_frame_budget.h"

#include <QObject>
#include <QtGlobal>

#include <memory>
#include <optional>

class QBuffer;
class QTcpSocket;

namespace buttondriver {

class ButtonSetter;

/// One accepted connection: cuts its byte stream into messages and hands them on, a few at a time. Lives on the event
/// loop's thread.
///
/// It is in one of four states, and never goes back to one that it has left:
///
///     reading   the socket is open; what arrives is delivered
///     draining  the socket is gone; what was read from it before is still delivered
///     owing     the socket is gone, and all is delivered; answers that are owed are still sent
///     gone      nothing is left to deliver or to send
///
///     event                                        from      to        what happens
///     -------------------------------------------  --------  --------  ---------------------------------------------
///     made with a socket                           -         reading   takes the next client id
///     made with a null socket                      -         gone      logged; takes no client id
///     turn, or bytes have arrived                  reading   reading   one turn's messages are delivered
///     the next frame is longer than largest_frame  reading   reading   logged; the frame is skipped as it arrives
///     the budget was needed by somebody else       reading   reading   logged; the frame that comes is skipped
///     the socket has ended, unread bytes are left  reading   draining  logged, after a first turn as in draining
///     the socket has ended, nothing is left        reading   owing     logged
///     giveUp                                       reading   gone      logged; what is left is lost; closed()
///     turn, more is left                           draining  draining  one turn's messages are delivered
///     turn, no complete frame is left              draining  owing     the last ones are delivered
///     nothing is owed                              owing     gone      closed() is emitted
///     turn                                         owing     owing     nothing
///     turn                                         gone      gone      logged: there is no socket
///
/// A turn delivers `limits::messages_per_turn` messages at most, no more than what brings `limits::time_per_turn` of
/// work for the device, and only those that setDelivery lets pass. It ends with a null message: the lines of that may
/// have to be written first.
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
  bool connected() const { return _state == State::reading; }
  /// What is added to this connection's private image ids; 0 when it was made with a null socket.
  qint32 clientId() const { return _client_id; }

  /// Which messages are delivered from now on. The others wait: here as far as they are read ahead, else with the
  /// sender. Gives no turn by itself.
  void setDelivery(FrameChoice delivery) { _delivery = delivery; }

  /// One turn, the same that is taken whenever bytes arrive.
  void takeTurn() { clientData(); }

  /// Whether a message has come from this client, ever.
  bool hasSpoken() const { return _has_spoken; }
  /// Grows with each arrival of bytes at any connection of the process: the least one has been silent longest.
  quint64 lastHeard() const { return _last_heard; }
  /// Ends the connection in favour of another one. Has no effect when its socket is gone.
  void giveUp();

signals:
  /// A turn was taken in which something was delivered, and what that costs: nanoseconds, of the device's time.
  void tookTurn(qint64 cost);
  /// There is more to deliver than belonged to the last turn. `has_to_wait`: not while everybody waits.
  void wantsTurn(bool has_to_wait);
  /// A large frame is complete or will never be: its share of the budget is free again.
  void largeFrameEnded();
  /// A large frame needs more of the budget than is to be had. It asks again in its next turn.
  void waitsForBudget();
  /// The last one: the connection is gone now.
  void closed();

private slots:
  void clientDisconnected();
  void clientData();

private:
  enum class State : quint8 { reading, draining, owing, gone };

  /// What a turn has delivered and left.
  struct Turn {
    std::size_t delivered = 0; // messages
    FrameHead next;            // the frame that comes first then
    qint64 left = 0;           // bytes that are there from it on
  };

  Answers &answers();
  void readSocket();
  void drain();
  void askForAnother(std::size_t delivered);
  void settle();
  void leave();
  Turn deliver(QIODevice &stream);
  void prepareNextFrame(Turn &turn);
  void growLargeFrame(qint64 needed, qint64 there);
  void readNoFurther(qint64 there);
  void keepReading(qint64 left);
  qint64 startToSkip(quint32 length);
  qint64 skip();
  void giveUpFrame();
  void endLargeFrame();
  void releaseSocket();

  State _state = State::gone;
  QTcpSocket *_socket; // null unless reading
  ButtonSetter *_setter;
  qintptr _descriptor = -1;
  qint32 _client_id = 0;
  FrameChoice _delivery = FrameChoice::all;
  std::optional<Answers> _answers;                     // none until something is there to be delivered
  const std::unique_ptr<LargeFrameBudget> _own_budget; // null when somebody else's is used
  LargeFrameBudget::Share _large_frame;
  quint64 _to_skip = 0; // bytes of a frame that is not put together
  bool _has_spoken = false;
  quint64 _last_heard;
  std::unique_ptr<QBuffer> _undelivered; // what draining delivers; null before
};

} // namespace buttondriver
