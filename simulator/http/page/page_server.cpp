// SPDX-License-Identifier: Apache-2.0
#include "simulator/http/page/page_server.h"

#include "simulator/http/json/catalogue_json.h"
#include "simulator/http/json/feeds_json.h"
#include "simulator/http/json/lettering_json.h"
#include "simulator/http/json/state_json.h"
#include "simulator/http/page/page_file.h"
#include "simulator/picture/panel_picture.h"
#include "simulator/picture/screen_image.h"
#include "simulator/reading/text_reader.h"
#include "threads/post.h"

#include <QBuffer>
#include <QJsonDocument>
#include <QWebSocket>

#include <algorithm>
#include <memory>
#include <optional>
#include <utility>

namespace buttondriver::simulator {

namespace {

const QByteArray json_type = "application/json";

HttpAnswer json_answer(const QJsonObject &object) {
  return {200, json_type, QJsonDocument(object).toJson(QJsonDocument::Compact) + '\n', {}};
}

/// The number in "since=17"; 0 for no query, nothing for any other.
std::optional<std::uint64_t> number_in(const QByteArray &query) {
  if (query.isEmpty())
    return 0;
  const QByteArray name = "since=";
  const QByteArray number = query.startsWith(name) ? query.mid(name.size()) : QByteArray();
  bool is_number =
      !number.isEmpty() && std::all_of(number.begin(), number.end(), [](char c) { return c >= '0' && c <= '9'; });
  const qlonglong value = is_number ? number.toLongLong(&is_number) : 0;
  return is_number ? std::optional(static_cast<std::uint64_t>(value)) : std::nullopt;
}

HttpAnswer picture_answer(const QImage &image) {
  HttpAnswer answer;
  answer.type = "image/png";
  QBuffer buffer(&answer.body);
  buffer.open(QIODevice::WriteOnly);
  image.save(&buffer, "png");
  return answer;
}

/// What can be read on the screens; nothing when no text can be.
std::optional<DrawnTexts> drawn_texts(const PanelState &panel, const ScreenFont &font, const SentTexts &sent) {
  if (!font.fault().empty())
    return std::nullopt;
  DrawnTexts drawn;
  for (std::size_t screen = 0; screen < dimensions::screen_count; ++screen)
    drawn[screen] = read_lines(font, panel.screens[screen], sent[screen]);
  return drawn;
}

} // namespace

PageServer::PageServer(Simulation &simulation, const HttpLimits &limits)
    : _simulation(simulation), _server(limits, "/live"),
      _pages(QStringLiteral("buttondriver-sim"), QWebSocketServer::NonSecureMode), _feed(simulation),
      _states([this](const auto &, const auto &answer) { makeState(answer); }),
      _resets([this](const auto &, const auto &answer) {
        _simulation.reset([answer] { answer({204, {}, {}, {}}); });
      }) {
  connect(&_server, &HttpServer::requested, this, &PageServer::answer);
  connect(&_server, &HttpServer::upgradeRequested, &_pages, &QWebSocketServer::handleConnection);
  connect(&_pages, &QWebSocketServer::newConnection, this, &PageServer::welcomePages);
  // Drawing is quick enough for one thread, and slow enough to keep it off this one.
  _painters.setMaxThreadCount(1);
  addPicture(QStringLiteral("/panel.png"), draw_panel);
  for (std::size_t screen = 0; screen < dimensions::screen_count; ++screen)
    addPicture(QStringLiteral("/screen/%1.png").arg(screen),
               [screen](const PanelState &state) { return screen_image(state.screens[screen], state.intensity); });
}

PageServer::~PageServer() { _painters.waitForDone(); }

void PageServer::answer(const RequestHead &request, const HttpClient &client) {
  if (request.method != "POST")
    answerGet(request, client);
  else if (request.path() == QLatin1String("/reset") && !_simulation.daemon())
    client.answer(HttpAnswer::fault(409, "the panel is driven from outside, and only its driver can reset it"));
  else if (request.path() == QLatin1String("/reset"))
    _resets.add(client);
  else
    client.answer(HttpAnswer::fault(405, "only /reset takes a POST"));
}

void PageServer::answerGet(const RequestHead &request, const HttpClient &client) {
  const QString path = request.path();
  if (path == QLatin1String("/state.json"))
    return _states.add(client);
  if (const auto picture = _pictures.find(path); picture != _pictures.end())
    return picture->second.add(client);
  if (path == QLatin1String("/catalogue.json"))
    return client.answer({200, json_type, catalogue_json(), {}});
  if (path == QLatin1String("/lettering.json"))
    return client.answer({200, json_type, lettering_json(), {}});
  if (path == QLatin1String("/messages.json") || path == QLatin1String("/log.json"))
    return answerFeed(request, client);
  if (path == QLatin1String("/reset"))
    return client.answer(HttpAnswer::fault(405, "/reset takes a POST"));
  if (const std::optional<HttpAnswer> file = page_file(path, request.host))
    return client.answer(*file);
  client.answer(HttpAnswer::fault(404, "there is nothing here"));
}

void PageServer::answerFeed(const RequestHead &request, const HttpClient &client) {
  const std::optional<std::uint64_t> since = number_in(request.query());
  if (!since)
    return client.answer(HttpAnswer::fault(400, "the query of a feed is since=NUMBER"));
  if (request.path() == QLatin1String("/messages.json")) {
    const MessageObserver *const messages = _simulation.messages();
    return client.answer(json_answer(messages_feed(messages ? &messages->messages() : nullptr, *since)));
  }
  // What work logs belongs to the messages that were accepted before the request.
  _simulation.whenWorkIsDone([this, client, since = *since](const PanelState &) {
    const LogTap *const log = _simulation.log();
    const LogTap::Part part = log ? log->since(since, LogTap::kept_entries) : LogTap::Part{0, 0, {}};
    client.answer(json_answer(log_feed(part, since)));
  });
}

void PageServer::makeState(const RequestRounds::Answer &answer) {
  // What is known at once belongs to the moment of the request, as do the tasks that are waited for.
  // Texts as they were sent and blinking are known to a daemon in this program only.
  Daemon *const daemon = _simulation.daemon();
  const MessageObserver *const messages = _simulation.messages();
  const auto sent = messages ? std::optional(messages->texts().screens()) : std::nullopt;
  const QJsonValue blinking = daemon ? QJsonValue(blinking_to_json(daemon->dispatcher().blinkTimes())) : QJsonValue();
  const SimulationCounters at_request = _simulation.counters();
  _simulation.whenTextsCanBeRead(
      [this, answer, sent, blinking, at_request](const PanelState &panel, const ScreenFont &font) {
        SimulationCounters counters = _simulation.counters();
        counters.messages = at_request.messages;
        counters.queue_length = at_request.queue_length;
        QJsonObject state = to_json(static_cast<const PanelLamps &>(panel));
        state[QLatin1String("version")] = state_version;
        state[QLatin1String("screens")] = to_json(sent, drawn_texts(panel, font, sent.value_or(SentTexts())));
        state[QLatin1String("font")] = to_json(font);
        state[QLatin1String("blinking")] = blinking;
        state[QLatin1String("counters")] = to_json(counters);
        answer(json_answer(state));
      });
}

void PageServer::addPicture(const QString &path, const std::function<QImage(const PanelState &)> &draw) {
  _pictures.try_emplace(path, [this, draw](const auto &is_wanted, const auto &answer) {
    _simulation.whenWorkIsDone([this, draw, is_wanted, answer](const PanelState &state) {
      // Nobody draws for a client that has gone.
      if (!is_wanted())
        return answer({});
      const auto shared_state = std::make_shared<const PanelState>(state);
      _painters.start(HandedOver([this, draw, answer, shared_state] {
        const HttpAnswer picture = picture_answer(draw(*shared_state));
        post(this, [answer, picture] { answer(picture); });
      }));
    });
  });
}

void PageServer::welcomePages() {
  while (QWebSocket *page = _pages.nextPendingConnection()) {
    page->setParent(nullptr);
    _feed.add(std::unique_ptr<QWebSocket>(page));
  }
}

} // namespace buttondriver::simulator
