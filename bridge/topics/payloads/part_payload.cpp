// SPDX-License-Identifier: Apache-2.0
#include "bridge/topics/payloads/part_payload.h"

#include "bridge/topics/payloads/line_text.h"
#include "bridge/topics/payloads/shown.h"
#include "dimensions/panel_dimensions.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QJsonParseError>

#include <cmath>
#include <optional>

namespace buttondriver::bridge {

namespace {

constexpr int highest_line = dimensions::screen_height - 1;
constexpr int highest_offset = dimensions::screen_width - 1;
constexpr int most_chars = most_line_characters;

constexpr const char *keys[] = {"line", "offset", "text", "chars", "colour", "background"};

bool is_key(const QString &name) {
  for (const char *key : keys)
    if (name == QLatin1String(key))
      return true;
  return false;
}

QString shown_value(const QJsonValue &value) {
  switch (value.type()) {
  case QJsonValue::Double:
    return QString::number(value.toDouble(), 'g', 12);
  case QJsonValue::String:
    return QLatin1Char('\'') + shown(value.toString().left(64).toUtf8().toStdString()) + QLatin1Char('\'');
  case QJsonValue::Bool:
    return QLatin1String(value.toBool() ? "true" : "false");
  case QJsonValue::Array:
    return QStringLiteral("an array");
  case QJsonValue::Object:
    return QStringLiteral("an object");
  default:
    return QStringLiteral("null");
  }
}

/// Reads the values of an object, and keeps the first thing that is wrong with them.
class PartReader {
public:
  explicit PartReader(const QJsonObject &object) : _object(object) {}

  void refuseOtherKeys() {
    for (auto member = _object.begin(); member != _object.end(); ++member)
      if (!is_key(member.key()))
        fail(QStringLiteral("'%1' is no key of a part; they are line, offset, text, chars, colour and background")
                 .arg(shown(member.key().left(64).toUtf8().toStdString())));
  }

  bool has(const char *key) const { return _object.contains(QLatin1String(key)); }

  void require(const char *key) {
    if (!has(key))
      fail(QStringLiteral("'%1' is missing; a part has line, offset and text").arg(QLatin1String(key)));
  }

  std::int32_t number(const char *key, int lowest, int highest) {
    const QJsonValue value = _object.value(QLatin1String(key));
    const double number = value.toDouble(lowest - 1);
    if (number >= lowest && number <= highest && std::floor(number) == number)
      return static_cast<std::int32_t>(number);
    fail(QStringLiteral("'%1' must be a whole number from %2 to %3, not %4")
             .arg(QLatin1String(key))
             .arg(lowest)
             .arg(highest)
             .arg(shown_value(value)));
    return lowest;
  }

  QString text(const char *key) {
    const QJsonValue value = _object.value(QLatin1String(key));
    if (!value.isString())
      fail(QStringLiteral("'%1' must be a string, not %2").arg(QLatin1String(key), shown_value(value)));
    const QString text = value.toString();
    const Outcome<std::size_t> characters = characters_of(text);
    if (!characters)
      fail(QStringLiteral("'%1': %2").arg(QLatin1String(key), characters.failure().text));
    return text;
  }

  std::uint32_t colour(const char *key, std::uint32_t fallback) {
    if (!has(key))
      return fallback;
    const QJsonValue value = _object.value(QLatin1String(key));
    const QString text = value.toString();
    bool is_good = text.size() == 7 && text.at(0) == QLatin1Char('#');
    // The conversion of numbers lets blanks and signs pass.
    for (int i = 1; is_good && i < 7; ++i)
      is_good = is_hexadecimal(text.at(i));
    if (!is_good)
      fail(QStringLiteral("'%1' must be a colour such as \"#ff8000\", not %2")
               .arg(QLatin1String(key), shown_value(value)));
    return is_good ? text.mid(1).toUInt(nullptr, 16) : fallback;
  }

  void fail(const QString &text) {
    if (!_failure)
      _failure = Failure{text};
  }
  const std::optional<Failure> &failure() const { return _failure; }

private:
  static bool is_hexadecimal(QChar character) {
    const ushort code = character.unicode() | 0x20;
    return (character >= QLatin1Char('0') && character <= QLatin1Char('9')) || (code >= 'a' && code <= 'f');
  }

  const QJsonObject _object;
  std::optional<Failure> _failure;
};

} // namespace

Outcome<LinePart> line_part(const QByteArray &payload) {
  QJsonParseError error{};
  const QJsonDocument document = QJsonDocument::fromJson(payload, &error);
  if (!document.isObject()) {
    QString text = QStringLiteral("the payload must be a JSON object such as "
                                  "{\"line\":0,\"offset\":3,\"text\":\"12.5\"}, not '%1'")
                       .arg(shown({payload.constData(), static_cast<std::size_t>(payload.size())}));
    // Which fault that is, each version of Qt says in its own words.
    if (error.error != QJsonParseError::NoError)
      text += QStringLiteral(" (it cannot be read on at byte %1)").arg(error.offset);
    return Failure{text};
  }
  PartReader reader(document.object());
  reader.refuseOtherKeys();
  for (const char *key : {"line", "offset", "text"})
    reader.require(key);
  LinePart part;
  part.line = reader.number("line", 0, highest_line);
  part.offset = reader.number("offset", 0, highest_offset);
  const QString text = reader.text("text");
  part.chars = reader.has("chars") ? reader.number("chars", 1, most_chars) : static_cast<std::int32_t>(text.size());
  part.colour = reader.colour("colour", part.colour);
  part.background = reader.colour("background", part.background);
  if (part.chars < 1 || part.chars > most_chars)
    reader.fail(QStringLiteral("'text' must have 1 to %1 characters, not %2; 'chars' says how many to write")
                    .arg(most_chars)
                    .arg(part.chars));
  if (reader.failure())
    return *reader.failure();
  part.text = text.leftJustified(part.chars, QLatin1Char(' '), true).toLatin1();
  return part;
}

} // namespace buttondriver::bridge
