// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "buttonctl/recording/frame_splitter.h"
#include "buttonctl/session/endpoint.h"

#include <QByteArray>
#include <QDeadlineTimer>
#include <QTcpSocket>
#include <QTimer>

#include <functional>
#include <memory>

namespace buttondriver::buttonctl {

/// One client and its connection to the daemon: bytes go both ways unchanged, and whole frames of the client are
/// reported. Neither side is read faster than the other one takes. Works by the event loop of its thread.
class RecordedConnection {
public:
  using FrameCallback = std::function<void(int connection, const QByteArray &frame)>;
  using EndCallback = std::function<void(int connection)>;

  /// Connects to the daemon at once. Nothing of the client is read, and so nothing is reported, before that has
  /// succeeded. `end` is called once, when both sides are closed, and must not delete this object within the call.
  RecordedConnection(int number, std::unique_ptr<QTcpSocket> client, const Endpoint &daemon, FrameCallback frame,
                     EndCallback end);
  ~RecordedConnection();
  RecordedConnection(const RecordedConnection &) = delete;
  RecordedConnection &operator=(const RecordedConnection &) = delete;

  /// Sends what was reported already but has not left yet, and waits until the daemon has closed its side too, so that
  /// nothing gets lost on the way; no longer than `limit`. Blocks.
  void close(QDeadlineTimer limit);

private:
  void passRequests();
  void passAnswers();
  void reportFrames(const QByteArray &bytes);
  void failToConnect();
  void clientClosed();
  void daemonClosed();
  void endWhenBothAreClosed();

  const int _number;
  const Endpoint _endpoint;
  const FrameCallback _frame;
  const EndCallback _end;
  FrameSplitter _splitter;
  std::unique_ptr<QTcpSocket> _client;
  QTcpSocket _daemon;
  QTimer _connection_limit;
  bool _is_connected = false;
  bool _has_ended = false;
};

} // namespace buttondriver::buttonctl
