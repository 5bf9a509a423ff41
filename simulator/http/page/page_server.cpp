// SPDX-License-Identifier: Apache-2.0
#include "simulator/http/page/page_server.h"

#include "simulator/http/gate/access_rule.h"
#include "simulator/http/gate/gated_server.h"
#include "simulator/http/json/catalogue_json.h"
#include "simulator/http/json/lettering_json.h"
#include "simulator/http/json/state_json.h"
#include "simulator/http/page/page_file.h"
#include "simulator/picture/panel_picture.h"
#include "simulator/picture/screen_image.h"
#include "threads/post.h"

#include <QBuffer>
#include <QHttpServerRequest>
#include <QJsonDocument>

#include <memory>
#include <utility>

namespace buttondriver::simulator {

namespace {

const QByteArray json_type = "application/json";

HttpAnswer picture_answer(const QImage &image) {
  HttpAnswer answer;
  answer.type = "image/png";
  QBuffer buffer(&answer.body);
  buffer.open(QIODevice::WriteOnly);
  image.save(&buffer, "png");
  return answer;
}

QByteArray header_of(const QHttpServerRequest &request, const QByteArray &name) {
  for (const auto &[key, value] : request.headers())
    if (key.toLower() == name)
      return value;
  return {};
}

} // namespace

void PageServer::Client::answer(const HttpAnswer &answer) const {
  if (socket)
    answer.writeTo(*socket, wants_body);
}

PageServer::PageServer(Simulation &simulation)
    : _simulation(simulation), _server(new GatedServer(this)), _feed(simulation) {
  connect(this, &QAbstractHttpServer::newWebSocketConnection, this, &PageServer::welcomePages);
  // Drawing is quick enough for one thread, and slow enough to keep it off this one.
  _painters.setMaxThreadCount(1);
}

PageServer::~PageServer() { _painters.waitForDone(); }

bool PageServer::listenOn(const QHostAddress &address, quint16 port, QString *reason) {
  if (!_server->listenOn(address, port)) {
    *reason = _server->errorString();
    return false;
  }
  bind(_server);
  return true;
}

QHostAddress PageServer::address() const { return _server->serverAddress(); }

quint16 PageServer::port() const { return _server->serverPort(); }

bool PageServer::handleRequest(const QHttpServerRequest &request, QTcpSocket *socket) {
  const Client client{socket, request.method() != QHttpServerRequest::Method::Head};
  const QString path = request.url().path();
  // The WebSocket server takes it up where this says that it is handled.
  if (path == QLatin1String(AccessRule::live_path) && !header_of(request, "upgrade").isEmpty())
    return true;
  if (request.method() != QHttpServerRequest::Method::Post)
    return handleGet(path, client, header_of(request, "host"));
  if (path == QLatin1String("/reset"))
    reset(client);
  else
    client.answer(HttpAnswer::fault(405, "only /reset takes a POST"));
  return true;
}

bool PageServer::handleGet(const QString &path, const Client &client, const QByteArray &host) {
  if (path == QLatin1String("/state.json")) {
    sendState(client);
    return true;
  }
  if (path == QLatin1String("/panel.png")) {
    sendPicture(client, draw_panel);
    return true;
  }
  for (std::size_t screen = 0; screen < screen_count; ++screen) {
    if (path != QStringLiteral("/screen/%1.png").arg(screen))
      continue;
    sendPicture(client,
                [screen](const PanelState &state) { return screen_image(state.screens[screen], state.intensity); });
    return true;
  }
  if (path == QLatin1String("/catalogue.json")) {
    client.answer({200, json_type, catalogue_json(), {}});
    return true;
  }
  if (path == QLatin1String("/lettering.json")) {
    client.answer({200, json_type, lettering_json(), {}});
    return true;
  }
  if (path == QLatin1String("/reset")) {
    client.answer(HttpAnswer::fault(405, "/reset takes a POST"));
    return true;
  }
  if (const std::optional<HttpAnswer> file = page_file(path, host)) {
    client.answer(*file);
    return true;
  }
  return false;
}

void PageServer::missingHandler(const QHttpServerRequest &request, QTcpSocket *socket) {
  const Client client{socket, request.method() != QHttpServerRequest::Method::Head};
  client.answer(HttpAnswer::fault(404, "there is nothing here"));
}

void PageServer::sendState(const Client &client) {
  // What is known at once belongs to the moment of the request, as do the tasks that are waited for.
  const QJsonArray texts = to_json(_simulation.messages().texts().screens());
  const QJsonArray blinking = blinking_to_json(_simulation.daemon().dispatcher().blinkTimes());
  const SimulationCounters at_request = _simulation.counters();
  _simulation.whenWorkIsDone([this, client, texts, blinking, at_request](const PanelState &panel) {
    SimulationCounters counters = _simulation.counters();
    counters.messages = at_request.messages;
    counters.queue_length = at_request.queue_length;
    QJsonObject state = to_json(static_cast<const PanelLamps &>(panel));
    state[QLatin1String("version")] = state_version;
    state[QLatin1String("screens")] = texts;
    state[QLatin1String("blinking")] = blinking;
    state[QLatin1String("counters")] = to_json(counters);
    client.answer({200, json_type, QJsonDocument(state).toJson(QJsonDocument::Compact) + '\n', {}});
  });
}

void PageServer::sendPicture(const Client &client, std::function<QImage(const PanelState &)> draw) {
  _simulation.whenWorkIsDone([this, client, draw = std::move(draw)](const PanelState &state) {
    const auto shared_state = std::make_shared<const PanelState>(state);
    _painters.start(HandedOver([this, client, draw, shared_state] {
      const HttpAnswer answer = picture_answer(draw(*shared_state));
      post(this, [client, answer] { client.answer(answer); });
    }));
  });
}

void PageServer::reset(const Client &client) {
  _simulation.reset([client] { client.answer({204, {}, {}, {}}); });
}

void PageServer::welcomePages() {
  while (std::unique_ptr<QWebSocket> page = nextPendingWebSocketConnection())
    _feed.add(std::move(page));
}

} // namespace buttondriver::simulator
