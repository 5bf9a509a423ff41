// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "http/server/http_server.h"
#include "outcome/outcome.h"

#include <QByteArray>
#include <QObject>

#include <functional>

namespace buttondriver::bridge {

/// Serves one text page, GET /metrics, on 127.0.0.1. What it is asked beyond that costs little: few connections, short
/// requests, and an end to each. One thread, that of the event loop.
class MetricsServer : public QObject {
  Q_OBJECT

public:
  /// `page` is called for each request that is answered with it, and not after this object is gone.
  explicit MetricsServer(std::function<QByteArray()> page, QObject *parent = nullptr);
  /// `limits` of its own are for tests.
  MetricsServer(std::function<QByteArray()> page, const HttpLimits &limits, QObject *parent);

  /// `port` 0: any free one. Fails when it cannot be had; the failure names it.
  Outcome<Done> start(quint16 port);
  quint16 port() const { return _server.serverPort(); }

private:
  HttpAnswer answerTo(const RequestHead &request) const;

  std::function<QByteArray()> _page;
  HttpServer _server;
};

} // namespace buttondriver::bridge
