// SPDX-License-Identifier: Apache-2.0
#include "buttonctl/decode/found_messages.h"

#include "buttonctl/recording/frame_splitter.h"
#include "buttonctl/recording/recording_reader.h"
#include "bytes/view_of.h"
#include "protocol/framing.h"

#include <QList>

#include <cctype>

namespace buttondriver::buttonctl {

namespace {

bool is_white(char character) { return std::isspace(static_cast<unsigned char>(character)) != 0; }

Outcome<FoundMessages> messages_in_recording(const QByteArray &content) {
  FoundMessages found;
  int number = 0;
  for (const QByteArray &line : content.split('\n')) {
    ++number;
    if (number == 1) {
      if (const auto title = check_recording_title(line); !title)
        return title.failure();
      continue;
    }
    if (is_recording_remark(line))
      continue;
    const Outcome<RecordedFrame> frame = parse_recorded_frame(line);
    if (frame)
      found.messages.push_back(
          {{0, number}, frame->time_us, frame->connection, frame->bytes.mid(static_cast<int>(frame_prefix_size))});
    else
      found.faults.push_back({{0, number}, frame.failure().text});
  }
  return found;
}

} // namespace

QString FoundPlace::text() const {
  return line > 0 ? QStringLiteral("line %1").arg(line) : QStringLiteral("offset %1").arg(offset);
}

FoundMessages messages_in_stream(const QByteArray &bytes) {
  FoundMessages found;
  const ByteView all = view_of(bytes);
  std::size_t begin = 0;
  while (begin < all.size()) {
    const FoundPlace place{static_cast<std::int64_t>(begin), 0};
    const ByteView rest = all.from(begin);
    const FrameHead head = frame_head(rest, rest.size());
    if (!head.is_known) {
      found.faults.push_back({place, QStringLiteral("a length of 4 bytes is cut off after %1").arg(rest.size())});
      break;
    }
    if (head.length > FrameSplitter::longest_message) {
      found.faults.push_back(
          {place, QStringLiteral("a length of %1 bytes, which is none of a message; what follows is left out")
                      .arg(head.length)});
      break;
    }
    if (!head.is_complete) {
      found.faults.push_back({place, QStringLiteral("a message of %1 bytes is cut off after %2")
                                         .arg(head.length)
                                         .arg(rest.size() - frame_prefix_size)});
      break;
    }
    found.messages.push_back(
        {place, 0, 0, bytes.mid(static_cast<int>(begin + frame_prefix_size), static_cast<int>(head.length))});
    begin += frame_prefix_size + head.length;
  }
  return found;
}

bool is_all_hexadecimal(const QByteArray &text) {
  bool has_digit = false;
  for (const char character : text) {
    const bool is_digit = std::isxdigit(static_cast<unsigned char>(character)) != 0;
    if (!is_digit && !is_white(character))
      return false;
    has_digit = has_digit || is_digit;
  }
  return has_digit;
}

FoundMessages messages_in_hexadecimal(const QByteArray &digits) {
  QByteArray packed;
  for (const char character : digits)
    if (!is_white(character))
      packed += character;
  const bool has_half_a_byte = packed.size() % 2 != 0;
  if (has_half_a_byte)
    packed.chop(1);
  const QByteArray bytes = QByteArray::fromHex(packed);
  FoundMessages found = messages_in_stream(bytes);
  if (has_half_a_byte)
    found.faults.push_back({{bytes.size(), 0}, QStringLiteral("the last byte has one digit, and is left out")});
  return found;
}

Outcome<FoundMessages> messages_in_content(const QByteArray &content) {
  if (content.startsWith(recording_title))
    return messages_in_recording(content);
  return is_all_hexadecimal(content) ? messages_in_hexadecimal(content) : messages_in_stream(content);
}

} // namespace buttondriver::buttonctl
