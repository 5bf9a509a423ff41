// SPDX-License-Identifier: Apache-2.0
#include "buttonctl/decode/decoded_message.h"

#include "bytes/view_of.h"

#include <algorithm>

namespace buttondriver::buttonctl {

namespace {

constexpr int opcode_width = 4;
constexpr int image_id_width = 4;

DecodedField field_in(ByteView message, const Field &field) {
  if (field.kind == FieldKind::bytes)
    return {&field, 0};
  if (field.width == 1)
    return {&field, message.u8(field.offset)};
  const std::uint32_t word = message.bigEndian32(field.offset);
  if (field.kind == FieldKind::signed_integer)
    return {&field, static_cast<std::int32_t>(word)};
  return {&field, word};
}

/// What is wrong with a message whose fields are all there.
QString rest_fault(const DecodedMessage &message) {
  const MessageType &type = *message.type;
  // The null message may hold anything.
  if (type.opcode == 0)
    return {};
  const auto count = type.counted == Counted::nothing ? 0 : static_cast<std::uint32_t>(message.fields.back().value);
  const std::uint64_t whole = type.size(count);
  const auto there = static_cast<std::uint64_t>(message.bytes.size());
  if (there < whole)
    return QStringLiteral("is cut off: %1 announces %2 bytes, but %3 follow")
        .arg(QLatin1String(type.countField().name), QString::number(whole - type.head_size))
        .arg(message.rest.size());
  if (there > whole)
    return QStringLiteral("ends after %1 bytes, but %2 more follow").arg(whole).arg(there - whole);
  return {};
}

} // namespace

DecodedMessage decode_message(const QByteArray &bytes) {
  DecodedMessage message{bytes, nullptr, {}, {}, {}};
  if (bytes.size() < opcode_width) {
    message.rest = bytes;
    message.fault = QStringLiteral("has %1 bytes, too few for an opcode").arg(bytes.size());
    return message;
  }
  const ByteView view = view_of(bytes);
  const std::uint32_t opcode = view.bigEndian32(0);
  message.type = find_message_type(opcode);
  if (!message.type) {
    message.rest = bytes.mid(opcode_width);
    message.fault = QStringLiteral("has the opcode %1, which does not exist").arg(opcode);
    return message;
  }
  for (std::size_t i = 0; i < message.type->fieldCount(); ++i) {
    const Field &field = message.type->fields[i];
    if (int{field.offset} + int{field.width} > bytes.size())
      break;
    message.fields.push_back(field_in(view, field));
  }
  const auto head_size = static_cast<int>(message.type->head_size);
  message.rest = bytes.mid(head_size);
  message.fault =
      bytes.size() < head_size
          ? QStringLiteral("is cut off: its fields take %1 bytes, but it has %2").arg(head_size).arg(bytes.size())
          : rest_fault(message);
  return message;
}

QString text_of(const DecodedMessage &message) {
  const auto end = message.rest.indexOf('\0');
  return QString::fromLatin1(end < 0 ? message.rest : message.rest.left(end));
}

std::vector<std::uint32_t> image_ids_of(const DecodedMessage &message) {
  std::vector<std::uint32_t> ids;
  const ByteView view = view_of(message.rest);
  for (int place = 0; place + image_id_width <= message.rest.size(); place += image_id_width)
    ids.push_back(view.bigEndian32(static_cast<std::size_t>(place)));
  return ids;
}

QString value_text(const DecodedField &field) {
  constexpr int colour_digits = 6;
  constexpr int hexadecimal = 16;
  if (field.field->kind == FieldKind::bytes)
    return QStringLiteral("%1 bytes").arg(field.field->width);
  if (field.field->is_colour)
    return QStringLiteral("0x%1").arg(field.value, colour_digits, hexadecimal, QLatin1Char('0'));
  return QString::number(field.value);
}

QString value_name(const DecodedField &field) {
  const Field &row = *field.field;
  for (std::size_t i = 0; i < row.namedCount(); ++i)
    if (row.named[i].first <= field.value && field.value <= row.named[i].last)
      return QLatin1String(row.named[i].name);
  return row.others ? QString::fromLatin1(row.others) : QString();
}

} // namespace buttondriver::buttonctl
