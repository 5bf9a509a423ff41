// SPDX-License-Identifier: Apache-2.0
#include "bridge/app/bridge.h"

#include "bridge/app/log.h"
#include "bridge/topics/topic_commands.h"

#include <QJsonDocument>
#include <QJsonObject>

#include <optional>
#include <utility>

namespace buttondriver::bridge {

namespace {

/// So long a program that is told to end waits for the broker.
constexpr int longest_goodbye_ms = 2000;

const QByteArray online = QByteArrayLiteral("online");
const QByteArray offline = QByteArrayLiteral("offline");

QByteArray error_text(const QByteArray &topic, const QByteArray &why) {
  return QJsonDocument(QJsonObject{{QStringLiteral("topic"), QString::fromUtf8(topic)},
                                   {QStringLiteral("error"), QString::fromUtf8(why)}})
      .toJson(QJsonDocument::Compact);
}

BrokerSettings settings_of(const Configuration &configuration) {
  BrokerSettings settings = configuration.broker;
  settings.client_id = "buttondriver-mqtt-" + configuration.name;
  settings.will_topic = configuration.prefix + "/bridge/" + configuration.name + "/availability";
  settings.will_payload = offline;
  return settings;
}

} // namespace

Bridge::Bridge() : Bridge(Times()) {}

Bridge::Bridge(Times times) : _times(times), _broker(times.broker, nullptr), _fleet(times.panel), _discovery(_broker) {
  _order_timer.setSingleShot(true);
  _order_timer.setInterval(times.order_pause_ms);
  connect(&_order_timer, &QTimer::timeout, this, &Bridge::publishOrders);
  connect(&_statistics_timer, &QTimer::timeout, this, &Bridge::publishStatistics);
  connect(&_fleet, &Fleet::panelCame, this, &Bridge::adopt);
  connect(&_broker, &BrokerConnection::connected, this, [this] {
    log_event("connected to the broker");
    _told_reason.clear();
    _statistics.forget();
    _lost = std::make_unique<LostTopics>(_broker, _configuration.prefix, !_configuration.broker.is_mqtt_5,
                                         [this](const QByteArray &panel, const QByteArray &topic) {
                                           const Panel *const wanting = _fleet.find(panel);
                                           return wanting ? wanting->wanted().payloadOf(topic) : QByteArray();
                                         });
    subscribeAll();
  });
  connect(&_broker, &BrokerConnection::disconnected, this, [this](const QString &reason) {
    _lost.reset();
    // Of a broker that is away for days, once is enough.
    if (std::exchange(_told_reason, reason) != reason)
      log_event("no connection to the broker: " + reason.toUtf8());
  });
  connect(&_broker, &BrokerConnection::messageCame, this, &Bridge::take);
  connect(&_broker, &BrokerConnection::tooLargeCame, this, &Bridge::refuseTooLarge);
  connect(&_broker, &BrokerConnection::everyRetainedHasCome, this, &Bridge::finishSync);
}

Outcome<Done> Bridge::start(const Configuration &configuration) {
  _configuration = configuration;
  _discovery.setNames(configuration.prefix, configuration.name);
  serveMetrics();
  _fleet.apply(configuration);
  log_event("drives " + counted(static_cast<int>(_fleet.panels().size()), "panel"));
  if (configuration.statistics_seconds > 0)
    _statistics_timer.start(configuration.statistics_seconds * 1000);
  return _broker.start(settings_of(configuration));
}

Outcome<Done> Bridge::change(const Configuration &configuration) {
  Configuration next = configuration;
  const bool keeps_names = next.prefix == _configuration.prefix && next.name == _configuration.name;
  next.prefix = _configuration.prefix;
  next.name = _configuration.name;
  const BrokerSettings settings = settings_of(next);
  if (auto outcome = BrokerConnection::check(settings); !outcome)
    return outcome;
  const Configuration before = std::exchange(_configuration, next);

  if (before.metrics_port != next.metrics_port)
    serveMetrics();
  if (next.statistics_seconds > 0)
    _statistics_timer.start(next.statistics_seconds * 1000);
  else
    _statistics_timer.stop();

  if (before.discovery_prefix != next.discovery_prefix)
    for (const auto &panel : _fleet.panels())
      _discovery.takeBack(before.discovery_prefix, panel.first);
  const Fleet::Difference difference = _fleet.apply(next);
  for (const QByteArray &panel : difference.went)
    clearPublished(panel);
  if (!(before.broker == next.broker)) {
    sayGoodbye();
    _discovery.forgetAll();
    _to_clear.clear();
    if (const auto started = _broker.start(settings); !started)
      return started.failure();
  } else if (_broker.isConnected()) {
    QVector<QByteArray> ended;
    for (const QByteArray &filter : difference.filters_to_end)
      ended.append(next.prefix + '/' + filter);
    if (!ended.isEmpty())
      _broker.unsubscribe(ended);
    if (!difference.filters_to_make.isEmpty())
      compare(difference.panels_to_sync, difference.filters_to_make);
    for (const auto &panel : _fleet.panels())
      announce(panel.first);
  }
  if (!keeps_names)
    return Failure{QStringLiteral("the prefix and the name of the bridge change only when it is started again")};
  return Done{};
}

void Bridge::end() { sayGoodbye(); }

void Bridge::sayGoodbye() {
  publishOrders();
  for (const auto &panel : _fleet.panels())
    publish(panel.first + "/availability", offline, true);
  publish(ownTopic("availability"), offline, true);
  _broker.stop(longest_goodbye_ms);
  _lost.reset();
}

BridgeNumbers Bridge::numbers() const {
  BridgeNumbers numbers;
  numbers.is_connected = _broker.isConnected();
  numbers.broker_reconnects = _broker.reconnects();
  numbers.messages = _messages;
  numbers.wrong_messages = _wrong_messages;
  numbers.waiting_for_broker = _broker.waitingMessages();
  return numbers;
}

void Bridge::adopt(Panel *panel) {
  connect(panel, &Panel::refused, this,
          [this, panel](const QByteArray &key, const QByteArray &why) { refuse(panel->name(), key, why); });
  connect(panel, &Panel::orderMayHaveChanged, this, [this, panel] {
    _orders_to_look_at.insert(panel->name());
    if (!_order_timer.isActive())
      _order_timer.start();
  });
  connect(panel, &Panel::availabilityChanged, this, [this, panel](bool is_up) {
    log_event("panel " + panel->name() + (is_up ? " is there" : " is not there"));
    publishAvailability(*panel);
  });
  connect(panel, &Panel::unreachable, this, [panel](const QString &reason) {
    log_event("panel " + panel->name() + " cannot be reached: " + reason.toUtf8());
  });
}

void Bridge::subscribeAll() {
  QVector<Panel *> panels;
  for (const auto &panel : _fleet.panels())
    panels.append(panel.second.get());
  compare(panels, _fleet.filters());
}

void Bridge::compare(const QVector<Panel *> &panels, const QVector<QByteArray> &filters) {
  _is_comparing = true;
  for (Panel *const panel : panels)
    panel->beginSync();
  QVector<QByteArray> whole;
  whole.reserve(filters.size());
  for (const QByteArray &filter : filters)
    whole.append(_configuration.prefix + '/' + filter);
  _broker.subscribe(whole);
  _broker.askForEnd(_configuration.prefix + '/' + ownTopic("sync"));
}

void Bridge::finishSync() {
  _is_comparing = false;
  for (const auto &each : _fleet.panels()) {
    Panel &panel = *each.second;
    if (!panel.isSyncing())
      continue;
    const QVector<WantedState::Entry> lost = panel.endSync();
    for (const WantedState::Entry &entry : lost)
      if (entry.is_retained)
        _lost->add(panel.name(), entry.topic);
    if (!panel.isKnownToBroker())
      _discovery.forget(_configuration.discovery_prefix, panel.name());
    publishAvailability(panel);
    announce(panel.name());
  }
  for (const QByteArray &panel : std::exchange(_to_clear, {}))
    if (_fleet.find(panel) == nullptr)
      clearPublished(panel);
  _lost->publish();
  publish(ownTopic("availability"), online, true);
  Q_EMIT synced();
}

void Bridge::take(const QByteArray &topic, const QByteArray &payload, bool is_retained, bool is_old) {
  const TopicRoute route = route_of(_configuration.prefix, topic);
  if (route.kind == TopicRoute::Kind::none || !_fleet.knows(route))
    return;
  if (route.kind == TopicRoute::Kind::order) {
    Panel &panel = *_fleet.find(route.name);
    if (payload.isEmpty())
      panel.forgetOrderRecord();
    else if (is_old)
      panel.keepOrderRecord(payload);
    return;
  }
  const QByteArray key = topic.mid(_configuration.prefix.size() + 1);
  if (!is_old && _lost && _lost->takeEcho(key, payload))
    return;
  ++_messages;
  // With MQTT 3.1.1 nobody can see whether a message that has just been published is retained. It should be.
  act(route, key, payload, is_retained || !_configuration.broker.is_mqtt_5, is_old);
}

void Bridge::act(const TopicRoute &route, const QByteArray &key, const QByteArray &payload, bool is_retained,
                 bool is_old) {
  const auto refuse_all = [&](const QByteArray &why) {
    ++_wrong_messages;
    const bool is_group = route.kind == TopicRoute::Kind::group;
    refuse(is_group ? "group/" + route.name : QByteArray(route.name), key, why);
  };
  if (payload.isEmpty()) {
    bool is_taken_back = true;
    if (route.is_kept) // below "do/", somebody has taken a retained message away that should not have been one
      _fleet.visit(route, [&](Panel &panel) { is_taken_back &= panel.takeBack(key, is_retained); });
    if (!is_taken_back)
      refuse_all("the broker goes on keeping this: an empty payload takes it back when it is retained");
    return;
  }
  if (!route.is_kept && is_old) {
    refuse_all("what is below do/ is carried out once: it must not be retained");
    return;
  }
  const auto command = command_of(route.tail, payload);
  if (!command) {
    refuse_all(command.failure().text.toUtf8());
    if (is_old && route.is_kept)
      _fleet.visit(route, [&](Panel &panel) { panel.keepFormer(key); });
    return;
  }
  _fleet.visit(route, [&](Panel &panel) {
    if (route.is_kept)
      panel.keep(key, payload, *command, is_retained, is_old);
    else
      panel.carryOut(key, *command);
  });
}

void Bridge::refuseTooLarge(const QByteArray &topic) {
  const TopicRoute route = route_of(_configuration.prefix, topic);
  if (route.kind == TopicRoute::Kind::none || !_fleet.knows(route))
    return;
  ++_messages;
  ++_wrong_messages;
  const bool is_group = route.kind == TopicRoute::Kind::group;
  const QByteArray key = topic.mid(_configuration.prefix.size() + 1);
  refuse(is_group ? "group/" + route.name : QByteArray(route.name), key, "the payload is larger than 8 MiB");
  if (route.is_kept)
    _fleet.visit(route, [&](Panel &panel) { panel.keepFormer(key); });
}

void Bridge::refuse(const QByteArray &root, const QByteArray &key, const QByteArray &why) {
  log_detail(key + ": " + why);
  publish(root + "/error", error_text(_configuration.prefix + '/' + key, why), false, 0);
}

void Bridge::publishAvailability(const Panel &panel) {
  publish(panel.name() + "/availability", panel.numbers().is_up ? online : offline, true);
}

void Bridge::publishOrders() {
  if (!_broker.isConnected() || _is_comparing || !_lost->isEmpty()) {
    _order_timer.start();
    return;
  }
  for (const QByteArray &name : std::exchange(_orders_to_look_at, {}))
    if (Panel *const panel = _fleet.find(name))
      if (const auto record = panel->takeOrderRecord())
        publish(name + "/order", *record, true);
}

void Bridge::publishStatistics() {
  if (!_broker.isConnected() || _is_comparing)
    return;
  bool has_room = publish(_statistics.changesOf(_configuration.prefix + '/' + ownTopic("").chopped(1), numbers()));
  for (const auto &panel : _fleet.panels())
    has_room &= publish(_statistics.changesOf(_configuration.prefix + '/' + panel.first, panel.second->numbers()));
  if (!has_room)
    _statistics.forget(); // nobody knows which are old at the broker
}

void Bridge::announce(const QByteArray &panel) {
  if (!_configuration.discovery_prefix.isEmpty())
    _discovery.announce(_configuration.discovery_prefix, panel);
}

/// What the bridge itself has published of a panel that it does not drive any more. What the panel should show stays:
/// another bridge may drive it.
void Bridge::clearPublished(const QByteArray &panel) {
  _discovery.takeBack(_configuration.discovery_prefix, panel);
  if (!publish(panel + "/availability", offline, true)) {
    _to_clear.insert(panel);
    return;
  }
  publish(_statistics.removalOf(_configuration.prefix + '/' + panel));
}

bool Bridge::publish(const QByteArray &tail, const QByteArray &payload, bool is_retained, int quality_of_service) {
  return _broker.publish(_configuration.prefix + '/' + tail, payload, is_retained, quality_of_service);
}

bool Bridge::publish(const QVector<Publication> &publications) {
  bool has_room = true;
  for (const Publication &one : publications)
    has_room &= _broker.publish(one.topic, one.payload, one.is_retained, 1);
  return has_room;
}

/// A page that cannot be had is no reason not to drive panels.
void Bridge::serveMetrics() {
  _metrics.reset();
  if (_configuration.metrics_port == 0)
    return;
  auto server = std::make_unique<MetricsServer>([this] { return metricsPage(); });
  if (const auto started = server->start(_configuration.metrics_port); !started)
    log_fault(started.failure().text.toUtf8());
  else
    _metrics = std::move(server);
}

QByteArray Bridge::ownTopic(const char *tail) const { return "bridge/" + _configuration.name + '/' + tail; }

QByteArray Bridge::metricsPage() const {
  QVector<PanelRow> rows;
  rows.reserve(static_cast<int>(_fleet.panels().size()));
  for (const auto &panel : _fleet.panels())
    rows.append({panel.first, panel.second->numbers()});
  return metrics_text(numbers(), rows);
}

} // namespace buttondriver::bridge
