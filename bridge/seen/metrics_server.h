// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "outcome/outcome.h"

#include <QByteArray>
#include <QObject>

#include <functional>
#include <memory>

namespace buttondriver::bridge {

/// Serves one text page, GET /metrics, on 127.0.0.1. What it is asked beyond that costs little: few connections, short
/// requests, and an end to each. One thread, that of the event loop.
class MetricsServer : public QObject {
  Q_OBJECT

public:
  explicit MetricsServer(std::function<QByteArray()> page, QObject *parent = nullptr);
  ~MetricsServer() override;

  /// `port` 0: any free one.
  Outcome<Done> start(quint16 port);
  quint16 port() const;

private:
  class Server;
  std::unique_ptr<Server> _server;
};

} // namespace buttondriver::bridge
