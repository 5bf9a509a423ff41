// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QByteArray>
#include <QProcess>
#include <QProcessEnvironment>
#include <QString>
#include <QStringList>
#include <QTcpSocket>
#include <QTemporaryDir>

#include <chrono>
#include <memory>

namespace buttondriver::test {

/// A built program that runs beside the test. It is ended, at the latest, when this object goes.
///
/// It sees nothing of a panel that the machine may be, or may have installed: /dev/fpga-reg and what is below
/// /etc/rv1000e and /opt/rv1000e it finds below a folder instead.
class Program {
public:
  /// The folder is an empty one of its own.
  Program(const QString &file, const QStringList &arguments);
  /// The folder is `root`, which belongs to the caller.
  Program(const QString &file, const QStringList &arguments, const QString &root);
  /// As before, and a virtual panel that listens at the socket `device` stands in for its device.
  Program(const QString &file, const QStringList &arguments, const QString &root, const QString &device);
  ~Program();

  /// Waits until standard output holds `text`, as often as `times` says; false after twenty seconds, or when the
  /// program has ended without it.
  bool waitForOutput(const QByteArray &text, int times = 1);
  bool waitForError(const QByteArray &text);
  /// Waits for the program's own end; its exit status, -1 when it was killed or still runs after twenty seconds.
  int waitForEnd();
  /// Whether the program ends by itself within `time`; returns as soon as it does.
  bool endsWithin(std::chrono::milliseconds time);
  void sendSignal(int signal);
  /// Writes to its standard input.
  void write(const QByteArray &input) { _process.write(input); }
  /// Ends its standard input, after what was written.
  void closeInput() { _process.closeWriteChannel(); }
  /// Closes the reading ends of both logs, as a reader does that goes away.
  void stopReading();
  /// Whether it has `file`, which exists, open now.
  bool hasOpen(const QString &file) const;
  bool isRunning() const { return _process.state() == QProcess::Running; }

  /// The TCP port that the program listens on, as the system tells; 0 when there is none within twenty seconds.
  quint16 listeningPort();
  /// A connection to that port.
  std::unique_ptr<QTcpSocket> connectTo();

  /// All of it so far.
  QByteArray standardOutput();
  QByteArray standardError();

private:
  void start(const QString &file, const QStringList &arguments, const QProcessEnvironment &environment);
  void collect();

  QTemporaryDir _empty_root;
  QProcess _process;
  QByteArray _output;
  QByteArray _error;
};

/// Writes frames given in hexadecimal and waits until they have left.
void send_frames(QTcpSocket &socket, const QByteArray &hex);
/// Sends a ping and waits for its answer: then all that was sent before has been accepted. False when none comes, at
/// once when the connection ends.
bool answered_ping(QTcpSocket &socket);

} // namespace buttondriver::test
