// SPDX-License-Identifier: Apache-2.0
#include "bridge/seen/metrics_server.h"

#include <utility>

namespace buttondriver::bridge {

namespace {

/// Whoever collects numbers asks with one connection at a time, now and then. A page is written in one piece, of any
/// size.
constexpr HttpLimits few = {/*request_ms=*/2'000, /*answer_ms=*/10'000, /*farewell_ms=*/1'000, /*most_connections=*/8};

} // namespace

MetricsServer::MetricsServer(std::function<QByteArray()> page, QObject *parent)
    : MetricsServer(std::move(page), few, parent) {}

MetricsServer::MetricsServer(std::function<QByteArray()> page, const HttpLimits &limits, QObject *parent)
    : QObject(parent), _page(std::move(page)), _server(limits) {
  connect(&_server, &HttpServer::requested, this,
          [this](const RequestHead &request, const HttpClient &client) { client.answer(answerTo(request)); });
}

Outcome<Done> MetricsServer::start(quint16 port) {
  const auto outcome = _server.listenOn({QHostAddress(QHostAddress::LocalHost), port});
  if (!outcome)
    return Failure{QStringLiteral("cannot serve metrics on port %1: %2").arg(port).arg(outcome.failure().text)};
  return Done{};
}

HttpAnswer MetricsServer::answerTo(const RequestHead &request) const {
  if (request.path() != QLatin1String("/metrics"))
    return HttpAnswer::fault(404, "there is only /metrics");
  if (request.method != "GET" && request.method != "HEAD") {
    HttpAnswer answer = HttpAnswer::fault(405, "only GET and HEAD");
    answer.headers.push_back({"Allow", "GET, HEAD"});
    return answer;
  }
  return {200, "text/plain; version=0.0.4; charset=utf-8", _page(), {}};
}

} // namespace buttondriver::bridge
