// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "bridge/panels/answer_count.h"
#include "bridge/panels/panel_numbers.h"
#include "bridge/panels/sent_tail.h"
#include "bridge/panels/waiting_commands.h"
#include "bridge/pauses/growing_pause.h"
#include "bridge/topics/topic_command.h"

#include <QByteArray>
#include <QElapsedTimer>
#include <QObject>
#include <QString>
#include <QTcpSocket>
#include <QTimer>
#include <QVector>

#include <functional>

namespace buttondriver::bridge {

/// The connection to one panel: keeps it, sends commands in order, and brings the panel to its wanted state whenever
/// the connection has come up. What a slow panel does not take waits here, within bounds.
///
/// A panel is up when it has answered a ping. One that does not answer a ping, and takes none of what waits for it, for
/// `ping_timeout_ms` is taken for gone, and so is one that sends anything but answers to pings. Pauses between attempts
/// grow from `first_pause_ms` to `longest_pause_ms`, see GrowingPause; the first one comes again when a panel was up.
///
/// One thread, that of the event loop. Signals come from the event loop, never from within a call; the object may be
/// destroyed in a slot.
class PanelLink : public QObject {
  Q_OBJECT

public:
  static constexpr int most_waiting_commands = WaitingCommands::most_commands;
  static constexpr qint64 most_waiting_bytes = WaitingCommands::most_bytes;

  struct Times {
    int ping_interval_ms = 10000; ///< from an answer to the next ping
    int ping_timeout_ms = 30000;  ///< also for connecting
    int first_pause_ms = 500;
    int longest_pause_ms = 30000;
  };
  /// Returns all commands that bring a panel to its wanted state, each with the topic that it belongs to.
  using Waiting = TopicCommand;
  using Restore = std::function<QVector<Waiting>()>;

  /// Does not connect yet. `restore` is called whenever the panel has to be brought to its wanted state; it may be
  /// called until this object is gone, must not call this object, and must not destroy it.
  PanelLink(QString host, quint16 port, Restore restore, Times times, QObject *parent = nullptr);
  ~PanelLink() override;

  /// Connects, and goes on until the object is gone. No command is sent before the wanted state is known: release().
  void start();
  /// The panel is somewhere else now: connects there at once. What waited and is not kept is lost().
  void moveTo(const QString &host, quint16 port);
  /// The wanted state is known now. Restores it if the connection is up, and from now on whenever it comes up.
  void release();
  /// Has the panel brought to its wanted state in one pass: at once if it is up, else when it is. Commands that wait
  /// and have been published to be kept are part of it, and go. What waits and is not kept is sent before.
  void restore();

  enum class Taken {
    yes,
    not_connected, ///< nothing was sent; wanted state will be restored when the panel is there
    no_room,       ///< nothing was sent; what is kept will be restored when what waits is sent
  };
  /// Sends a command, or has it wait. `topic` tells which of those that wait it may take the place of. `is_kept`: it is
  /// part of the wanted state. What is not kept is not sent later than a connection that broke; see lost().
  Taken send(const QByteArray &topic, const Command &command, bool is_kept);

  const PanelNumbers &numbers() const { return _numbers; }

Q_SIGNALS:
  void availabilityChanged(bool is_up);
  /// All of the last restoration has arrived at the panel.
  void restored();
  /// A command that is not kept was taken, and did not leave before the connection broke. Those that had left may have
  /// been lost as well; nobody knows.
  void lost(const QByteArray &topic);
  /// An attempt failed or the connection broke; each time, with a reason for people.
  void brokeOff(const QString &reason);

private:
  enum class State { not_started, pausing, connecting, greeting, up };
  enum class Proof { none, after_restoration, with_next_ping, with_this_ping }; // that a restoration has arrived

  bool isActive() const { return _state >= State::connecting; }
  bool takesCommands() const { return _state == State::up && _is_released; }
  bool hasRoomInSocket() const;
  bool write(const QByteArray &frame);
  void hand(const QByteArray &topic, const Command &command, bool is_kept);
  void beginRestoration();
  void goOn();
  void proveRestoration();

  void connectToPanel();
  void greet();
  void ping();
  void takeAnswers();
  void takeAnswer();
  void checkSocket();
  void breakOff(const QString &reason);
  void drop();
  void timeIsUp();

  QString _host;
  quint16 _port;
  const Restore _restore;
  const Times _times;
  PanelNumbers _numbers;
  QTcpSocket _socket;
  QTimer _timer; // the end of a pause, of patience, of the time between pings
  GrowingPause _pause;
  WaitingCommands _waiting;
  SentTail _sent_tail;
  AnswerCount _answers;
  QElapsedTimer _since_ping;
  QElapsedTimer _since_movement;
  qint64 _handed = 0; // bytes, to all connections
  quint64 _restorations = 0;
  State _state = State::not_started;
  Proof _proof = Proof::none;
  bool _is_released = false;
  bool _awaits_answer = false;
  bool _has_failed = false;
  bool _had_no_room = false; // so the panel has to be restored
  bool _was_up = false;
};

} // namespace buttondriver::bridge
