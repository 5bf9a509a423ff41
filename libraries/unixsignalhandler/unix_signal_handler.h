// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QObject>

#include <atomic>
#include <map>
#include <memory>
#include <string>

class QSocketNotifier;

namespace unixsignalhandler {

/// Called for one Unix signal, inside the event loop, so it may do whatever a slot may. It does not learn which signal
/// came: a component that handles several registers a function for each.
using SignalCallback = void (*)();

/// Turns Unix signals into calls on the thread of the event loop. What the kernel calls only writes the signal's number
/// into a socket pair; the event loop reads it at the other end and calls the callback that is registered for it.
///
/// One bridge for each process, made on the thread that runs the event loop; callbacks are installed after that, from
/// the same thread, and the bridge is destroyed last. The registry of callbacks belongs to the class, not to the
/// object: each construction and each destruction empties it, while the handlers that the kernel has stay as they are.
/// Each construction opens a new pair of descriptors, closed on exec, that lives until the process ends, so that a
/// signal that comes late never writes into somebody else's file. A second bridge takes over all signals from the
/// first.
class UnixSignalHandler : public QObject {
  Q_OBJECT

public:
  /// Ends the process with a fatal message when no socket pair can be had.
  explicit UnixSignalHandler(QObject *parent = nullptr);
  ~UnixSignalHandler() override;

  /// Has `callback` called for signal `sig` from now on. False when it is not: for SIGKILL and SIGSTOP, for a signal
  /// that has a callback already (that one stays), and when the system refuses the number.
  static bool installSignalHandler(int sig, SignalCallback callback);

  /// Gives signal `sig` its default action back and forgets its callback. False when it has none, or when the system
  /// refuses; then the callback stays.
  static bool removeSignalHandler(int sig);

  /// What the kernel calls for a signal, on any thread at any moment. Never blocks and leaves errno alone; a signal
  /// that comes when the pair is full (some hundred are waiting) is dropped.
  static void writeSignalToSocket(int sig);

  /// Printable names by signal number. A number without a name gets an empty one when it is first used.
  static const std::map<int, std::string> &nameTable();

public Q_SLOTS:
  /// Reads one waiting signal, if there is one, and calls its callback. The next one is not read before that returns.
  void callSignalHandlers();

private:
  std::unique_ptr<QSocketNotifier> _notifier;

  /// Write end and read end of the newest bridge; -1 before the first construction.
  static std::atomic<int> signalsFd[2];
  static std::map<int, SignalCallback> signalHandlers;
  static std::map<int, std::string> signalNames;
};

} // namespace unixsignalhandler
