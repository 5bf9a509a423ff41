// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "server/frame_reader.h"

#include <QBuffer>
#include <QObject>
#include <QtGlobal>

class QTcpSocket;

namespace buttondriver {

class ButtonSetter;
class LargeFrameBudget;

/// One accepted connection: cuts its byte stream into messages and hands them on, a few at a time. Lives on the event
/// loop's thread.
class ClientButtondriver : public QObject {
  Q_OBJECT

public:
  /// Takes over `socket`. `setter` and `budget` outlive this object. Each connection takes the next id: 1000, 2000, and
  /// so on. With a null socket it stays unconnected, says so, and takes no id.
  ClientButtondriver(QObject *parent, QTcpSocket *socket, ButtonSetter *setter, LargeFrameBudget *budget);
  ~ClientButtondriver() override;

  /// The socket's descriptor when it was accepted, -1 without one.
  qintptr descriptor() const { return _descriptor; }
  bool connected() const { return _connected; }
  /// Whether a turn is of use: the connection is there, or has left something that is not delivered yet.
  bool takesTurns() const { return _connected || _rest.isOpen(); }
  /// What is added to this connection's private image ids.
  qint32 clientId() const { return _client_id; }

  /// Which messages are delivered from now on; the others wait, in the end at the sender.
  void setChoice(FrameChoice choice) { _choice = choice; }
  /// Whether this client alone has to wait, whatever the choice: then nothing but pings is delivered.
  void setHeld(bool is_held) { _is_held = is_held; }

public slots:
  /// Delivers what has arrived, as much as belongs to one turn. Goes on when the connection has ended, until all is
  /// delivered that was read from it; answers to that are lost.
  void clientData();

signals:
  /// There is more to deliver than belonged to the last turn, or something that kept it waiting has gone.
  void wantsTurn();
  /// A large frame is complete or will never be: its share of the budget is free again.
  void largeFrameEnded();
  /// The connection has ended, and what was read from it is delivered.
  void closed();

private slots:
  void keepRest();
  void clientDisconnected();
  void answersRead();

private:
  std::size_t deliver(QIODevice &stream, QIODevice &reply);
  FrameChoice choice() const { return _is_held ? FrameChoice::leading_pings : _choice; }
  void deliverRest();
  void sendAnswers();
  void prepareNextFrame();
  void readNoFurther();
  void keepReading();
  void blockForGood(quint32 length);
  void endLargeFrame();
  void releaseSocket();

  QTcpSocket *_socket;
  bool _connected = false;
  ButtonSetter *_setter;
  LargeFrameBudget *_budget;
  qintptr _descriptor = -1;
  qint32 _client_id = 0;
  FrameChoice _choice = FrameChoice::all;
  bool _is_held = false;
  QBuffer _rest;           // open once the connection has ended and left something
  qint64 _large_frame = 0; // bytes of the budget that this connection holds
  bool _is_blocked = false;
};

} // namespace buttondriver
