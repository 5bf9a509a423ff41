// SPDX-License-Identifier: Apache-2.0
#include "bridge/seen/discovery.h"

#include "dimensions/panel_dimensions.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace buttondriver::bridge {

namespace {

/// Lines that fit on a screen with the font that the panel is delivered with.
constexpr int line_count = 8;
/// Home Assistant has no longer texts.
constexpr int most_characters = 255;

QString text(const QByteArray &bytes) { return QString::fromUtf8(bytes); }

/// A name as it may stand in a discovery topic: letters, digits, hyphens, and for all else an underscore with two
/// digits. Two names never look the same then.
QByteArray plain(const QByteArray &name) {
  QByteArray result;
  for (const char c : name) {
    const bool may_stand = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '-';
    if (may_stand)
      result += c;
    else
      result += '_' + QByteArray(1, c).toHex().toUpper();
  }
  return result;
}

/// Collects the messages of one panel.
class PanelMessages {
public:
  PanelMessages(QByteArray discovery_prefix, const QByteArray &prefix, const QByteArray &bridge,
                const QByteArray &panel)
      : _discovery_prefix(std::move(discovery_prefix)), _root(prefix + '/' + panel),
        _node(plain(prefix) + "__" + plain(panel)), _device{{QStringLiteral("identifiers"), QJsonArray{text(_node)}},
                                                            {QStringLiteral("name"), text(panel)},
                                                            {QStringLiteral("model"), QStringLiteral("Control panel")}},
        _bridge_availability{{QStringLiteral("topic"), text(prefix + "/bridge/" + bridge + "/availability")}},
        _panel_availability{{QStringLiteral("topic"), text(_root + "/availability")}} {}

  /// A lamp is a switch, not a light: who turns off all lights of a room does not mean what a panel shows.
  void addLamp(const QByteArray &id, const QString &name, const QByteArray &tail) {
    QJsonObject lamp = wish(name, tail);
    lamp.insert(QStringLiteral("payload_on"), QStringLiteral("on"));
    lamp.insert(QStringLiteral("payload_off"), QStringLiteral("off"));
    // A lamp that blinks is on; one that nobody has spoken of, or whose topic was taken back, is off.
    lamp.insert(QStringLiteral("value_template"), QStringLiteral("{{ 'off' if value in ('off', '') else 'on' }}"));
    lamp.insert(QStringLiteral("icon"), QStringLiteral("mdi:led-on"));
    add("switch", id, lamp);
  }

  void addLine(const QByteArray &id, const QString &name, const QByteArray &tail) {
    QJsonObject line = wish(name, tail);
    line.insert(QStringLiteral("min"), 0);
    line.insert(QStringLiteral("max"), most_characters);
    add("text", id, line);
  }

  void addBlackout() {
    QJsonObject blackout{{QStringLiteral("name"), QStringLiteral("Blackout")},
                         {QStringLiteral("command_topic"), text(_root + "/blackout")},
                         {QStringLiteral("payload_press"), QStringLiteral("now")},
                         {QStringLiteral("retain"), true}};
    setAvailability(blackout, {_bridge_availability, _panel_availability});
    add("button", "blackout", blackout);
  }

  void addConnectivity() {
    QJsonObject connectivity{{QStringLiteral("name"), QStringLiteral("Connection")},
                             {QStringLiteral("device_class"), QStringLiteral("connectivity")},
                             {QStringLiteral("entity_category"), QStringLiteral("diagnostic")},
                             {QStringLiteral("state_topic"), text(_root + "/availability")},
                             {QStringLiteral("payload_on"), QStringLiteral("online")},
                             {QStringLiteral("payload_off"), QStringLiteral("offline")}};
    // A panel that is not there is known to be "off", unless the bridge is gone.
    setAvailability(connectivity, {_bridge_availability});
    add("binary_sensor", "connection", connectivity);
  }

  const QVector<Publication> &all() const { return _all; }

private:
  /// What is kept as the retained topic `tail`, which is also where its state is read from.
  QJsonObject wish(const QString &name, const QByteArray &tail) const {
    const QString topic = text(_root + '/' + tail);
    QJsonObject entity{{QStringLiteral("name"), name},
                       {QStringLiteral("command_topic"), topic},
                       {QStringLiteral("state_topic"), topic},
                       {QStringLiteral("retain"), true}};
    setAvailability(entity, {_bridge_availability, _panel_availability});
    return entity;
  }

  static void setAvailability(QJsonObject &entity, const QJsonArray &topics) {
    entity.insert(QStringLiteral("availability"), topics);
    entity.insert(QStringLiteral("availability_mode"), QStringLiteral("all"));
  }

  void add(const char *component, const QByteArray &id, QJsonObject &entity) {
    entity.insert(QStringLiteral("unique_id"), text(_node + "__" + id));
    entity.insert(QStringLiteral("device"), _device);
    const QByteArray topic = _discovery_prefix + '/' + component + '/' + _node + '/' + id + "/config";
    _all.append({topic, QJsonDocument(entity).toJson(QJsonDocument::Compact), true});
  }

  const QByteArray _discovery_prefix;
  const QByteArray _root;
  const QByteArray _node;
  const QJsonObject _device;
  const QJsonObject _bridge_availability;
  const QJsonObject _panel_availability;
  QVector<Publication> _all;
};

void add_lamps(PanelMessages &messages, int count, const QByteArray &id, const QString &name, const QByteArray &tail) {
  for (int i = 0; i < count; ++i) {
    const QByteArray number = QByteArray::number(i);
    messages.addLamp(id + number, name.arg(i), tail + number);
  }
}

} // namespace

QVector<Publication> discovery_messages(const QByteArray &discovery_prefix, const QByteArray &prefix,
                                        const QByteArray &bridge, const QByteArray &panel) {
  PanelMessages messages(discovery_prefix, prefix, bridge, panel);
  add_lamps(messages, dimensions::button_count, "button_", QStringLiteral("Button %1"), "led/");
  add_lamps(messages, dimensions::led_count, "status_", QStringLiteral("Status %1"), "status/");
  add_lamps(messages, dimensions::toggle_indicator_count, "toggle_", QStringLiteral("Toggle %1"), "toggle/");
  for (int screen = 0; screen < dimensions::screen_count; ++screen)
    for (int line = 0; line < line_count; ++line) {
      const QByteArray numbers[] = {QByteArray::number(screen), QByteArray::number(line)};
      messages.addLine("screen_" + numbers[0] + "_line_" + numbers[1],
                       QStringLiteral("Screen %1 line %2").arg(screen).arg(line),
                       "screen/" + numbers[0] + "/line/" + numbers[1]);
    }
  messages.addBlackout();
  messages.addConnectivity();
  return messages.all();
}

QVector<Publication> discovery_removal(const QByteArray &discovery_prefix, const QByteArray &prefix,
                                       const QByteArray &bridge, const QByteArray &panel) {
  QVector<Publication> messages = discovery_messages(discovery_prefix, prefix, bridge, panel);
  for (Publication &message : messages)
    message.payload.clear();
  return messages;
}

} // namespace buttondriver::bridge
