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

QString to_qstring(const std::string &latin_1) {
  return QString::fromLatin1(latin_1.data(), static_cast<int>(latin_1.size()));
}
QString to_qstring(const std::u16string &text) { return QString::fromStdU16String(text); }

template <class Text> QJsonArray array_of_texts(const std::vector<Text> &texts) {
  QJsonArray array;
  for (const Text &text : texts)
    array += to_qstring(text);
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

QJsonArray to_json(const SentTexts &sent) {
  QJsonArray array;
  for (const TextMemory::Lines &lines : sent)
    array += QJsonObject{{QStringLiteral("text"), array_of_texts(lines)}};
  return array;
}

QJsonValue to_json(const std::optional<SentTexts> &sent, const std::optional<DrawnTexts> &drawn) {
  if (!sent && !drawn)
    return {};
  QJsonArray array;
  for (std::size_t screen = 0; screen < dimensions::screen_count; ++screen)
    array += QJsonObject{
        {QStringLiteral("text"), sent ? QJsonValue(array_of_texts((*sent)[screen])) : QJsonValue()},
        {QStringLiteral("drawn"), drawn ? QJsonValue(array_of_texts((*drawn)[screen])) : QJsonValue()},
    };
  return array;
}

QJsonObject to_json(const ScreenFont &font) {
  const bool is_known = font.fault().empty();
  return {{QStringLiteral("width"), is_known ? QJsonValue(font.cellWidth()) : QJsonValue()},
          {QStringLiteral("height"), is_known ? QJsonValue(font.cellHeight()) : QJsonValue()},
          {QStringLiteral("fault"), is_known ? QJsonValue() : QJsonValue(QString::fromStdString(font.fault()))}};
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
