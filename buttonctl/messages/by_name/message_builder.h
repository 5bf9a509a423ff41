// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "buttonctl/messages/by_name/message_fields.h"
#include "outcome/outcome.h"

#include <QByteArray>
#include <QString>

#include <cstdint>

namespace buttondriver::buttonctl {

/// `text` as a number of `width` bytes, 1 or 4: decimal, or hexadecimal after 0x; a negative one in two's complement.
/// Whatever the bytes can hold is taken, with or without a sign. `name` is what a failure calls it.
Outcome<std::uint32_t> parse_field_number(const QString &name, const QString &text, int width);

/// Puts a message of one type together. What is not set is 0, and what is counted is empty.
class MessageBuilder {
public:
  /// Borrows `type`, a row of the catalogue.
  explicit MessageBuilder(const MessageType &type);

  /// Of a field that takes numbers.
  Outcome<Done> setNumber(const Field &field, const QString &text);
  /// Of a field of bytes, which must be as many as the field has.
  Outcome<Done> setBytes(const Field &field, const QByteArray &bytes);
  /// Latin-1; the terminating NUL is added.
  void setCountedText(const QString &text);
  void setCountedBytes(const QByteArray &bytes);
  /// Numbers, a comma between them; an empty text is none.
  Outcome<Done> setCountedNumbers(const QString &name, const QString &text);

  /// In network order, from the opcode on, the count as it comes out.
  QByteArray message() const;

private:
  const MessageType &_type;
  QByteArray _head;
  QByteArray _counted;
};

} // namespace buttondriver::buttonctl
