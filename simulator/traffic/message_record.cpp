// SPDX-License-Identifier: Apache-2.0
#include "simulator/traffic/message_record.h"

#include "bytes/view_of.h"
#include "protocol/catalogue.h"

#include <QJsonArray>
#include <QLatin1String>

#include <string_view>

namespace buttondriver::simulator {

namespace {

QJsonValue value_of(const Field &field, ByteView message) {
  if (field.kind == FieldKind::bytes)
    return QStringLiteral("%1 bytes").arg(field.width);
  if (field.width == 1)
    return int{message.u8(field.offset)};
  const std::uint32_t word = message.bigEndian32(field.offset);
  if (field.is_colour)
    return QStringLiteral("0x%1").arg(word, 6, 16, QLatin1Char('0'));
  if (field.kind == FieldKind::signed_integer)
    return qint64{static_cast<std::int32_t>(word)};
  return qint64{word};
}

void add_variable_part(QJsonObject &object, const MessageType &type, const MessageRecord &record, ByteView message) {
  if (type.counted == Counted::text_bytes) {
    const std::string_view text = message.text(type.head_size, message.bigEndian32(type.countField().offset));
    object[QLatin1String("text")] = QString::fromLatin1(text.data(), static_cast<int>(text.size()));
  } else if (record.size > qint64{type.head_size}) {
    object[QLatin1String("rest")] = record.size - qint64{type.head_size};
  }
}

} // namespace

QJsonObject to_json(const MessageRecord &record) {
  QJsonObject object{{QStringLiteral("time"), record.time_ms},
                     {QStringLiteral("client"), record.client},
                     {QStringLiteral("size"), record.size}};
  const ByteView message = view_of(record.bytes);
  const std::uint32_t opcode = message.bigEndian32(0);
  QJsonArray fields{QJsonArray{QStringLiteral("opcode"), qint64{opcode}}};
  if (const MessageType *type = find_message_type(opcode)) {
    object[QLatin1String("name")] = QLatin1String(type->name);
    for (std::size_t i = 1; i < type->fieldCount(); ++i)
      fields += QJsonArray{QLatin1String(type->fields[i].name), value_of(type->fields[i], message)};
    add_variable_part(object, *type, record, message);
  } else {
    object[QLatin1String("name")] = QString();
  }
  object[QLatin1String("fields")] = fields;
  return object;
}

} // namespace buttondriver::simulator
