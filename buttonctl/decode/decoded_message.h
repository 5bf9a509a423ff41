// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "protocol/catalogue.h"

#include <QByteArray>
#include <QString>

#include <cstdint>
#include <vector>

namespace buttondriver::buttonctl {

/// A number of a message, as the catalogue has it.
struct DecodedField {
  const Field *field;
  std::int64_t value; ///< of no meaning for a field of bytes
};

/// One message, as far as it is there.
struct DecodedMessage {
  QByteArray bytes;                 ///< from the opcode on
  const MessageType *type;          ///< null when there is none
  std::vector<DecodedField> fields; ///< with the opcode, as many as are there as a whole
  QByteArray rest;                  ///< what follows the fields
  QString fault;                    ///< what is unknown, missing or too much; mostly empty
};

/// `bytes` is a message without the length that frames it.
DecodedMessage decode_message(const QByteArray &bytes);

/// What a text holds before its first NUL, for a type that counts text.
QString text_of(const DecodedMessage &message);

/// The numbers that follow the fields, for a type that counts image ids.
std::vector<std::uint32_t> image_ids_of(const DecodedMessage &message);

/// "0xff8000" for a colour, otherwise decimal; "120 bytes" for a field of bytes.
QString value_text(const DecodedField &field);

/// What the value stands for, such as "all screens"; empty when it has no name.
QString value_name(const DecodedField &field);

} // namespace buttondriver::buttonctl
