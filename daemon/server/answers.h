// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "files/owned_descriptor.h"

#include <QByteArray>
#include <QIODevice>
#include <QSocketNotifier>

#include <cstddef>
#include <memory>

namespace buttondriver {

/// The answers to one client, on their way to its socket. They are gathered, and sent at the end of a turn. What the
/// system does not take is owed, and sent when it takes more. Answers are all alike, so what is owed is a number and
/// the bytes of one; a client that never reads its answers costs next to nothing and goes on being served.
///
/// Never waits. It sends by itself and not through the QTcpSocket, which throws away what it has read when it cannot
/// send any more. Lives on the event loop's thread.
class Answers : public QIODevice {
  Q_OBJECT

public:
  /// `descriptor` is a connected socket and stays the caller's; -1: nobody hears the answers.
  explicit Answers(int descriptor);
  ~Answers() override;

  /// Whether something is still to be sent.
  bool isOwing() const { return _owed > 0 || !_begun.isEmpty(); }
  /// The caller's descriptor is closed, or will be at once. Answers that are owed are sent all the same, and so are
  /// those that come until they are; without a debt nobody hears further ones.
  void socketIsGone();

public slots:
  /// Sends what can be sent now.
  void send();

signals:
  /// Nothing is owed any more: all is sent, or the client is gone.
  void settled();

protected:
  qint64 readData(char *, qint64) override { return -1; }
  qint64 writeData(const char *data, qint64 size) override;

private:
  bool sendBegun();
  void waitForRoom();
  void dropAll();
  bool takeAsOne(const char *answer, qint64 size);

  int _descriptor;
  OwnedDescriptor _own; // the same socket, open while something is owed
  std::unique_ptr<QSocketNotifier> _writable;
  QByteArray _answer; // one answer
  QByteArray _begun;  // what is being sent; it may be the same memory
  std::size_t _sent = 0;
  qint64 _owed = 0; // answers after that
  bool _has_dropped = false;
};

} // namespace buttondriver
