#pragma once

#include "net/frame_reader.h"

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
  /// What is added to this connection's private image ids.
  qint32 clientId() const { return _client_id; }

  /// Which messages are delivered from now on; the others wait, in the end at the sender.
  void setChoice(FrameChoice choice) { _choice = choice; }

  /// Whether the connection stands in the line of those that want a turn; kept here for whoever keeps that line.
  bool isInLine() const { return _is_in_line; }
  void setInLine(bool is_in_line) { _is_in_line = is_in_line; }

public slots:
  /// Delivers what has arrived, as much as belongs to one turn.
  void clientData();

signals:
  /// There is more to deliver than belonged to the last turn, or something that kept it waiting has gone.
  void wantsTurn();
  /// A large frame is complete or will never be: its share of the budget is free again.
  void largeFrameEnded();
  /// The connection has ended; what it had sent is delivered.
  void closed();

private slots:
  void deliverRest();
  void clientDisconnected();
  void answersRead();

private:
  std::size_t deliver(std::size_t limit, FrameChoice choice);
  void sendAnswers();
  void prepareNextFrame();
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
  qint64 _large_frame = 0; // bytes of the budget that this connection holds
  bool _is_blocked = false;
  bool _is_in_line = false;
};

} // namespace buttondriver
