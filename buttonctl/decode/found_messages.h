// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "outcome/outcome.h"

#include <QByteArray>
#include <QString>

#include <cstdint>
#include <vector>

namespace buttondriver::buttonctl {

/// Where something lies in what was read: in a recording by its line, elsewhere by its offset in bytes.
struct FoundPlace {
  std::int64_t offset = 0;
  int line = 0; ///< counted from 1; 0 when the offset says it

  /// "line 3" or "offset 12"
  QString text() const;
};

struct FoundMessage {
  FoundPlace place;
  std::int64_t time_us = 0; ///< only in a recording
  int connection = 0;       ///< only in a recording
  QByteArray bytes;         ///< without its length
};

/// What is broken between messages.
struct FoundFault {
  FoundPlace place;
  QString text;
};

struct FoundMessages {
  std::vector<FoundMessage> messages;
  std::vector<FoundFault> faults;
};

/// The messages in the bytes of one stream, each with its length before it.
FoundMessages messages_in_stream(const QByteArray &bytes);

/// The messages in hexadecimal digits, with white space anywhere.
FoundMessages messages_in_hexadecimal(const QByteArray &digits);

/// Nothing but hexadecimal digits and white space, and at least one digit.
bool is_all_hexadecimal(const QByteArray &text);

/// A recording, digits or bytes, whatever `content` is. Fails for a recording of another version.
Outcome<FoundMessages> messages_in_content(const QByteArray &content);

} // namespace buttondriver::buttonctl
