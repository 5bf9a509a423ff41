// SPDX-License-Identifier: Apache-2.0
#include "bridge/app/bridge.h"

#include "bridge/app/log.h"
#include "bridge/seen/discovery.h"
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

Bridge::Bridge(Times times) : _times(times), _broker(times.broker, nullptr), _fleet(times.panel) {
  _order_timer.setSingleShot(true);
  _order_timer.setInterval(times.order_pause_ms);
  connect(&_order_timer, &QTimer::timeout, this, &Bridge::publishOrders);
  connect(&_statistics_timer, &QTimer::timeout, this, &Bridge::publishStatistics);
  connect(&_fleet, &Fleet::panelCame, this, &Bridge::adopt);
  connect(&_broker, &BrokerConnection::connected, this, &Bridge::subscribeAll);
  connect(&_broker, &BrokerConnection::disconnected, this, [this](const QString &reason) {
    _is_comparing = false;
    log_event("no connection to the broker: " + reason.toUtf8());
  });
  connect(&_broker, &BrokerConnection::messageCame, this, &Bridge::take);
  connect(&_broker, &BrokerConnection::everyRetainedHasCome, this, &Bridge::finishSync);
}

Outcome<Done> Bridge::start(const Configuration &configuration) {
  _configuration = configuration;
  serveMetrics();
  _fleet.apply(configuration);
  log_event("drives " + QByteArray::number(static_cast<int>(_fleet.panels().size())) + " panels");
  if (configuration.statistics_seconds > 0)
    _statistics_timer.start(configuration.statistics_seconds * 1000);
  return _broker.start(settings_of(configuration));
}

Outcome<Done> Bridge::change(const Configuration &configuration) {
  Configuration next = configuration;
  const bool keeps_names = next.prefix == _configuration.prefix && next.name == _configuration.name;
  next.prefix = _configuration.prefix;
  next.name = _configuration.name;
  const Configuration before = std::exchange(_configuration, next);

  if (before.metrics_port != next.metrics_port)
    serveMetrics();
  if (next.statistics_seconds > 0)
    _statistics_timer.start(next.statistics_seconds * 1000);
  else
    _statistics_timer.stop();

  if (before.discovery_prefix != next.discovery_prefix) {
    for (const QByteArray &panel : std::as_const(_discovered))
      publish(discovery_removal(before.discovery_prefix, next.prefix, next.name, panel));
    _discovered.clear();
  }
  const Fleet::Difference difference = _fleet.apply(next);
  for (const QByteArray &panel : difference.went)
    clearPublished(panel);
  if (!(before.broker == next.broker)) {
    _broker.stop(longest_goodbye_ms);
    if (const auto started = _broker.start(settings_of(next)); !started)
      return started.failure();
  } else if (_broker.isConnected()) {
    QVector<QByteArray> ended;
    for (const QByteArray &filter : difference.filters_to_end)
      ended.append(next.prefix + '/' + filter);
    if (!ended.isEmpty())
      _broker.unsubscribe(ended);
    if (_is_comparing)
      subscribeAll(); // what was asked for last counts
    else if (!difference.filters_to_make.isEmpty())
      compare(difference.panels_to_sync, difference.filters_to_make);
    for (const auto &panel : _fleet.panels())
      publishDiscovery(panel.first);
  }
  if (!keeps_names)
    return Failure{QStringLiteral("the prefix and the name of the bridge change only when it is started again")};
  return Done{};
}

void Bridge::end() {
  for (const auto &panel : _fleet.panels())
    publish(panel.first + "/availability", offline, true);
  publish(ownTopic("availability"), offline, true);
  _broker.stop(longest_goodbye_ms);
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
  log_event("connected to the broker");
  _statistics.forget();
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
  QSet<QByteArray> published;
  for (const auto &each : _fleet.panels()) {
    Panel &panel = *each.second;
    if (!panel.isSyncing())
      continue;
    const auto lost = panel.endSync();
    if (!lost.isEmpty()) {
      publishAgain(lost, published);
      _discovered.remove(panel.name());
    }
    publishAvailability(panel);
    publishDiscovery(panel.name());
  }
  publish(ownTopic("availability"), online, true);
  Q_EMIT synced();
}

void Bridge::take(const QByteArray &topic, const QByteArray &payload, bool is_retained, bool is_old) {
  const TopicRoute route = route_of(_configuration.prefix, topic);
  if (route.kind == TopicRoute::Kind::none || !_fleet.knows(route))
    return;
  if (route.kind == TopicRoute::Kind::order) {
    if (is_old)
      _fleet.find(route.name)->keepOrderRecord(payload);
    return;
  }
  ++_messages;
  act(route, topic.mid(_configuration.prefix.size() + 1), payload, is_retained, is_old);
}

void Bridge::act(const TopicRoute &route, const QByteArray &key, const QByteArray &payload, bool is_retained,
                 bool is_old) {
  const auto refuse_all = [&](const QByteArray &why) {
    ++_wrong_messages;
    const bool is_group = route.kind == TopicRoute::Kind::group;
    refuse(is_group ? "group/" + route.name : QByteArray(route.name), key, why);
  };
  if (payload.isEmpty()) {
    if (route.is_kept)
      _fleet.visit(route, [&](Panel &panel) { panel.takeBack(key); });
    return; // below "do/", somebody has taken a retained message away that should not have been one
  }
  if (!route.is_kept && is_old) {
    refuse_all("what is below do/ is carried out once: it must not be retained");
    return;
  }
  const auto command = command_of(route.tail, payload);
  if (!command) {
    refuse_all(command.failure().text.toUtf8());
    return;
  }
  _fleet.visit(route, [&](Panel &panel) {
    if (route.is_kept)
      panel.keep(key, payload, *command, is_retained, is_old);
    else
      panel.carryOut(key, *command);
  });
}

void Bridge::refuse(const QByteArray &root, const QByteArray &key, const QByteArray &why) {
  log_detail(key + ": " + why);
  publish(root + "/error", error_text(_configuration.prefix + '/' + key, why), false, 0);
}

void Bridge::publishAvailability(const Panel &panel) {
  publish(panel.name() + "/availability", panel.numbers().is_up ? online : offline, true);
}

void Bridge::publishOrders() {
  if (!_broker.isConnected() || _is_comparing) {
    _order_timer.start();
    return;
  }
  for (const QByteArray &name : std::exchange(_orders_to_look_at, {}))
    if (Panel *const panel = _fleet.find(name))
      if (const auto record = panel->takeOrderRecord())
        publish(name + "/order", *record, true);
}

/// Topics of groups are wanted by several panels.
void Bridge::publishAgain(const QVector<WantedState::Entry> &lost, QSet<QByteArray> &published) {
  for (const WantedState::Entry &entry : lost)
    if (entry.is_retained && !published.contains(entry.topic)) {
      published.insert(entry.topic);
      publish(entry.topic, entry.payload, true);
    }
}

void Bridge::publishStatistics() {
  if (!_broker.isConnected() || _is_comparing)
    return;
  publish(_statistics.changesOf(_configuration.prefix + '/' + ownTopic("").chopped(1), numbers()));
  for (const auto &panel : _fleet.panels())
    publish(_statistics.changesOf(_configuration.prefix + '/' + panel.first, panel.second->numbers()));
}

void Bridge::publishDiscovery(const QByteArray &panel) {
  if (_configuration.discovery_prefix.isEmpty() || _discovered.contains(panel) || !_broker.isConnected())
    return;
  _discovered.insert(panel);
  publish(discovery_messages(_configuration.discovery_prefix, _configuration.prefix, _configuration.name, panel));
}

/// What the bridge itself has published of a panel that it does not drive any more. What the panel should show stays:
/// another bridge may drive it.
void Bridge::clearPublished(const QByteArray &panel) {
  publish(panel + "/availability", offline, true);
  if (_discovered.remove(panel))
    publish(discovery_removal(_configuration.discovery_prefix, _configuration.prefix, _configuration.name, panel));
}

void Bridge::publish(const QByteArray &tail, const QByteArray &payload, bool is_retained, int quality_of_service) {
  _broker.publish(_configuration.prefix + '/' + tail, payload, is_retained, quality_of_service);
}

void Bridge::publish(const QVector<Publication> &publications) {
  for (const Publication &one : publications)
    _broker.publish(one.topic, one.payload, one.is_retained, 0);
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
