// SPDX-License-Identifier: Apache-2.0
#include "buttonctl/messages/by_name/message_builder.h"

#include <QStringList>

#include <limits>

namespace buttondriver::buttonctl {

namespace {

constexpr int bits_a_byte = 8;
constexpr int number_width = 4;

bool is_well_formed(const QString &text, bool is_hexadecimal) {
  const QString digits = QLatin1String(is_hexadecimal ? "0123456789abcdefABCDEF" : "0123456789");
  const QString number = !is_hexadecimal && text.startsWith(QLatin1Char('-')) ? text.mid(1) : text;
  for (const QChar character : number)
    if (!digits.contains(character))
      return false;
  return !number.isEmpty();
}

/// The lowest `width` bytes, in network order.
QByteArray big_endian(std::uint32_t number, int width) {
  QByteArray bytes(width, '\0');
  for (int i = 0; i < width; ++i)
    bytes[i] = static_cast<char>(number >> bits_a_byte * (width - 1 - i));
  return bytes;
}

void put(QByteArray &head, const Field &field, std::uint32_t number) {
  head.replace(field.offset, field.width, big_endian(number, field.width));
}

} // namespace

Outcome<std::uint32_t> parse_field_number(const QString &name, const QString &text, int width) {
  const qlonglong highest = (qlonglong{1} << bits_a_byte * width) - 1;
  const qlonglong lowest = -(qlonglong{1} << (bits_a_byte * width - 1));
  const bool is_hexadecimal = text.startsWith(QLatin1String("0x"));
  const QString digits = is_hexadecimal ? text.mid(2) : text;
  bool good = is_well_formed(digits, is_hexadecimal);
  const qlonglong number = good ? digits.toLongLong(&good, is_hexadecimal ? 16 : 10) : 0;
  if (!good || number < lowest || number > highest)
    return Failure{QStringLiteral("%1 must be a number from %2 to %3, or hexadecimal after 0x, not '%4'")
                       .arg(name, QString::number(lowest), QString::number(highest), text)};
  return static_cast<std::uint32_t>(number);
}

MessageBuilder::MessageBuilder(const MessageType &type) : _type(type), _head(static_cast<int>(type.head_size), '\0') {
  put(_head, type.fields[0], type.opcode);
  if (type.counted == Counted::text_bytes)
    setCountedText(QString());
}

Outcome<Done> MessageBuilder::setNumber(const Field &field, const QString &text) {
  const Outcome<std::uint32_t> number = parse_field_number(QLatin1String(field.name), text, field.width);
  if (!number)
    return number.failure();
  put(_head, field, *number);
  return Done{};
}

Outcome<Done> MessageBuilder::setBytes(const Field &field, const QByteArray &bytes) {
  if (bytes.size() != int{field.width})
    return Failure{QStringLiteral("%1 must have %2 bytes, but the file has %3")
                       .arg(QLatin1String(field.name))
                       .arg(field.width)
                       .arg(bytes.size())};
  _head.replace(field.offset, field.width, bytes);
  return Done{};
}

void MessageBuilder::setCountedText(const QString &text) { _counted = text.toLatin1() + '\0'; }

void MessageBuilder::setCountedBytes(const QByteArray &bytes) { _counted = bytes; }

Outcome<Done> MessageBuilder::setCountedNumbers(const QString &name, const QString &text) {
  _counted.clear();
  if (text.isEmpty())
    return Done{};
  for (const QString &item : text.split(QLatin1Char(','))) {
    const Outcome<std::uint32_t> number = parse_field_number(name, item, number_width);
    if (!number)
      return number.failure();
    _counted += big_endian(*number, number_width);
  }
  return Done{};
}

QByteArray MessageBuilder::message() const {
  QByteArray head = _head;
  if (_type.counted != Counted::nothing)
    put(head, _type.countField(), static_cast<std::uint32_t>(_counted.size()) / _type.countedWidth());
  return head + _counted;
}

} // namespace buttondriver::buttonctl
