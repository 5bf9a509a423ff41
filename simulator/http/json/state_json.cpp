// SPDX-License-Identifier: Apache-2.0
#include "simulator/http/json/state_json.h"

namespace buttondriver::simulator {

namespace {

template <class Values> QJsonArray array_of(const Values &values) {
  QJsonArray array;
  for (const bool value : values)
    array += value;
  return array;
}

template <class Number> QJsonValue known_number(const std::optional<Number> &number) {
  return number ? QJsonValue(static_cast<qint64>(*number)) : QJsonValue();
}

} // namespace

QJsonObject to_json(const PanelLamps &lamps) {
  return {{QStringLiteral("button_leds"), array_of(lamps.button_leds)},
          {QStringLiteral("status_leds"), array_of(lamps.status_leds)},
          {QStringLiteral("toggles"), array_of(lamps.toggles)},
          {QStringLiteral("intensity"), lamps.intensity}};
}

QJsonArray to_json(const std::array<TextMemory::Lines, dimensions::screen_count> &screens) {
  QJsonArray array;
  for (const TextMemory::Lines &lines : screens) {
    QJsonArray texts;
    for (const std::string &line : lines)
      texts += QString::fromLatin1(line.data(), static_cast<int>(line.size()));
    array += QJsonObject{{QStringLiteral("text"), texts}};
  }
  return array;
}

QJsonObject to_json(const SimulationCounters &counters) {
  return {{QStringLiteral("messages"), known_number(counters.messages)},
          {QStringLiteral("transfers"), static_cast<qint64>(counters.transfers)},
          {QStringLiteral("refused_transfers"), static_cast<qint64>(counters.refused_transfers)},
          {QStringLiteral("queue_length"), known_number(counters.queue_length)},
          {QStringLiteral("clients"), known_number(counters.clients)},
          {QStringLiteral("drivers"), known_number(counters.drivers)}};
}

QJsonArray blinking_to_json(const std::map<qint32, qint32> &times) {
  QJsonArray array;
  for (const auto &[button, time] : times)
    array += QJsonObject{{QStringLiteral("button"), button}, {QStringLiteral("time"), time}};
  return array;
}

} // namespace buttondriver::simulator
