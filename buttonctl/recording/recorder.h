// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "buttonctl/commands/request.h"
#include "buttonctl/recording/recorded_connection.h"
#include "buttonctl/recording/recording_writer.h"

#include <QElapsedTimer>
#include <QTcpServer>

#include <map>
#include <memory>

namespace buttondriver::buttonctl {

/// Accepts clients, passes them on to the daemon and writes what they send. Works by the event loop of its thread.
class Recorder {
public:
  explicit Recorder(const Request &request) : _request(request) {}

  /// Makes the file and listens; says so on standard output.
  Outcome<Done> start();
  /// Accepts nobody any more and sends what is recorded but has not left yet; says how much was recorded. The failure
  /// is that of a file that could not be written any more.
  Outcome<Done> finish();

private:
  void accept();
  void write(int connection, const QByteArray &frame);

  const Request _request;
  RecordingWriter _writer;
  QElapsedTimer _elapsed;
  std::map<int, std::unique_ptr<RecordedConnection>> _connections;
  int _accepted = 0;
  int _frames = 0;
  Outcome<Done> _written{Done{}};
  QTcpServer _server; ///< the last, so that no client comes while the rest goes
};

/// `buttonctl record`: records until SIGINT or SIGTERM. Returns the exit status.
int run_recorder(const Request &request);

} // namespace buttondriver::buttonctl
