// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "bridge/panels/panel_numbers.h"
#include "bridge/topics/command.h"

#include <QByteArray>
#include <QObject>
#include <QTcpSocket>
#include <QTimer>
#include <QVector>

#include <functional>

namespace buttondriver::bridge {

/// The connection to one panel: keeps it, sends commands in order, and brings the panel to its wanted state whenever
/// the connection has come up. What a slow panel does not take waits here, within bounds.
///
/// A panel that does not answer a ping for `ping_timeout_ms` while bytes wait for it is taken for gone.
/// Pauses between attempts grow from `first_pause_ms` to `longest_pause_ms`. One thread, that of the event loop.
class PanelLink : public QObject {
  Q_OBJECT

public:
  static constexpr int most_waiting_commands = 1000;
  static constexpr qint64 most_waiting_bytes = 8 * 1024 * 1024;

  struct Times {
    int ping_interval_ms = 10000;
    int ping_timeout_ms = 30000;
    int first_pause_ms = 500;
    int longest_pause_ms = 30000;
  };
  /// Returns all commands that bring a panel to its wanted state, each with the topic that it belongs to.
  struct Waiting {
    QByteArray topic;
    Command command;
  };
  using Restore = std::function<QVector<Waiting>()>;

  /// Does not connect yet. `restore` is called whenever the panel has to be brought to its wanted state; it may be
  /// called until this object is gone.
  PanelLink(QString host, quint16 port, Restore restore, Times times, QObject *parent = nullptr);

  /// Connects, and goes on until the object is gone. Nothing is sent before the wanted state is known: release().
  void start();
  /// The wanted state is known now. Restores it if the connection is up, and from now on whenever it comes up.
  void release();
  /// Has the panel brought to its wanted state in one pass: at once if it is up, else when it is. Commands that wait
  /// and have been published to be kept are part of it, and go.
  void restore();

  enum class Taken {
    yes,
    not_connected, ///< nothing was sent; wanted state will be restored when the panel is there
    no_room,       ///< nothing was sent; the panel will be restored when what waits is sent
  };
  /// Sends a command, or has it wait. `topic` tells which of those that wait it may take the place of. `is_kept`: it is
  /// part of the wanted state. What is not kept is not sent later than a connection that broke.
  Taken send(const QByteArray &topic, const Command &command, bool is_kept);

  const PanelNumbers &numbers() const { return _numbers; }

Q_SIGNALS:
  void availabilityChanged(bool is_up);

private:
  PanelNumbers _numbers;
};

} // namespace buttondriver::bridge
