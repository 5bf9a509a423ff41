// SPDX-License-Identifier: Apache-2.0
#include "buttonctl/decode/message_forms.h"

#include "buttonctl/commands/command_line.h"
#include "buttonctl/session/console.h"
#include "protocol/frames.h"

#include <QJsonArray>
#include <QStringList>

namespace buttondriver::buttonctl {

namespace {

/// Enough to recognise it.
QString shown_bytes(const QByteArray &bytes) {
  constexpr int most_shown = 32;
  const QString digits = QString::fromLatin1(bytes.left(most_shown).toHex());
  return bytes.size() > most_shown ? digits + QStringLiteral("... (%1 bytes)").arg(bytes.size()) : digits;
}

QString joined(const std::vector<std::uint32_t> &numbers) {
  QStringList words;
  for (const std::uint32_t number : numbers)
    words += QString::number(number);
  return words.join(QLatin1Char(','));
}

QString rest_text(const DecodedMessage &message) {
  switch (message.type ? message.type->counted : Counted::nothing) {
  case Counted::text_bytes:
    return QStringLiteral(" text='%1'").arg(as_one_line(text_of(message)));
  case Counted::image_bytes:
    return QStringLiteral(" image=%1 bytes").arg(message.rest.size());
  case Counted::image_ids:
    return QLatin1String(" image_ids=") + joined(image_ids_of(message));
  case Counted::nothing:
    break;
  }
  return message.rest.isEmpty() ? QString() : QLatin1String(" rest=") + shown_bytes(message.rest);
}

/// A word of a batch, in quotes.
QString quoted_word(QString word) {
  word.replace(QLatin1Char('\\'), QLatin1String("\\\\")).replace(QLatin1Char('"'), QLatin1String("\\\""));
  return QLatin1Char('"') + word + QLatin1Char('"');
}

/// The line with the message's name and its fields, whether it can say it all or not.
QString line_by_name(const DecodedMessage &message) {
  const MessageType &type = *message.type;
  if (type.opcode == 0)
    return (QLatin1String("null ") + QString::fromLatin1(message.rest.toHex())).trimmed();
  QString line = QLatin1String("message ") + QLatin1String(type.name);
  const std::size_t count = type.fieldCount() - (type.counted == Counted::nothing ? 0 : 1);
  for (std::size_t i = 1; i < count && i < message.fields.size(); ++i)
    line += QLatin1Char(' ') + QLatin1String(type.fields[i].name) + QLatin1Char('=') + value_text(message.fields[i]);
  if (type.counted == Counted::text_bytes)
    line += QLatin1String(" text=") + quoted_word(text_of(message));
  else if (type.counted == Counted::image_ids)
    line += QLatin1String(" image_ids=") + joined(image_ids_of(message));
  return line.trimmed();
}

bool has_control_characters(const QString &line) {
  for (const QChar character : line)
    if (character.category() == QChar::Other_Control)
      return true;
  return false;
}

/// Whether a batch makes `message` of the line.
bool sends(const QString &line, const DecodedMessage &message, const CommandTable &commands) {
  if (has_control_characters(line))
    return false;
  const Outcome<Steps> steps = parse_batch_line(commands, line.toUtf8());
  return steps && steps->size() == 1 && steps->front().bytes == framed(message.bytes);
}

} // namespace

QString message_text(const DecodedMessage &message) {
  QString text = message.type ? QString::fromLatin1(message.type->name) : QStringLiteral("unknown");
  if (!message.type && !message.bytes.isEmpty())
    return text + QLatin1Char(' ') + shown_bytes(message.bytes);
  for (std::size_t i = 1; i < message.fields.size(); ++i) {
    text += QLatin1Char(' ') + QLatin1String(message.fields[i].field->name) + QLatin1Char('=') +
            value_text(message.fields[i]);
    if (const QString name = value_name(message.fields[i]); !name.isEmpty())
      text += QStringLiteral(" (%1)").arg(name);
  }
  return text + rest_text(message);
}

QJsonObject place_json(const FoundPlace &place) {
  if (place.line > 0)
    return {{QStringLiteral("line"), place.line}};
  return {{QStringLiteral("offset"), static_cast<qint64>(place.offset)}};
}

QJsonObject message_json(const FoundMessage &found, const DecodedMessage &message) {
  QJsonObject object = place_json(found.place);
  if (found.place.line > 0) {
    object[QLatin1String("time_us")] = static_cast<qint64>(found.time_us);
    object[QLatin1String("connection")] = found.connection;
  }
  object[QLatin1String("size")] = static_cast<qint64>(message.bytes.size());
  object[QLatin1String("name")] = message.type ? QString::fromLatin1(message.type->name) : QString();
  QJsonArray fields;
  for (const DecodedField &field : message.fields) {
    const bool is_text = field.field->is_colour || field.field->kind == FieldKind::bytes;
    fields += QJsonArray{QLatin1String(field.field->name),
                         is_text ? QJsonValue(value_text(field)) : QJsonValue(static_cast<qint64>(field.value))};
  }
  object[QLatin1String("fields")] = fields;
  if (message.type && message.type->counted == Counted::text_bytes)
    object[QLatin1String("text")] = text_of(message);
  else if (!message.rest.isEmpty())
    object[QLatin1String("rest")] = static_cast<qint64>(message.rest.size());
  if (!message.fault.isEmpty())
    object[QLatin1String("fault")] = message.fault;
  return object;
}

QString batch_line(const DecodedMessage &message, const CommandTable &commands) {
  if (message.type) {
    const QString line = line_by_name(message);
    if (sends(line, message, commands))
      return line;
  }
  const QString digits = QString::fromLatin1(message.bytes.toHex());
  const QString line = QLatin1String("raw ") + (digits.isEmpty() ? QStringLiteral("''") : digits);
  return message.type ? line + QLatin1String("  # ") + QLatin1String(message.type->name) : line;
}

} // namespace buttondriver::buttonctl
