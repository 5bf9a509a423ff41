// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "buttonctl/arguments/host_port.h"
#include "buttonctl/recording/recorded_connection.h"
#include "buttonctl/recording/recording_writer.h"
#include "buttonctl/session/endpoint.h"

#include <QElapsedTimer>
#include <QTcpServer>

#include <map>
#include <memory>
#include <utility>

namespace buttondriver::buttonctl {

/// What is recorded, and where.
struct RecordingPlan {
  QString file;      ///< is replaced when it is there
  HostPort listen;   ///< where clients connect; port 0 takes a free one
  Endpoint endpoint; ///< the daemon
};

/// Accepts clients, passes them on to the daemon and writes what they send. Works by the event loop of its thread.
class Recorder {
public:
  explicit Recorder(RecordingPlan plan) : _plan(std::move(plan)) {}

  /// Makes the file and listens; prints that it does.
  Outcome<Done> start();
  /// Accepts nobody any more and sends what is recorded but has not left yet; prints how much was recorded. The failure
  /// is that of a file that could not be written any more.
  Outcome<Done> finish();

private:
  void accept();
  void write(int connection, const QByteArray &frame);

  const RecordingPlan _plan;
  RecordingWriter _writer;
  QElapsedTimer _elapsed;
  std::map<int, std::unique_ptr<RecordedConnection>> _connections;
  int _accepted = 0;
  int _frames = 0;
  Outcome<Done> _written{Done{}};
  QTcpServer _server; ///< the last, so that no client comes while the rest goes
};

} // namespace buttondriver::buttonctl
