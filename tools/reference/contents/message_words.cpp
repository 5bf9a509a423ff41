// SPDX-License-Identifier: Apache-2.0
#include "tools/reference/contents/message_words.h"

#include "protocol/field_text.h"
#include "tools/reference/contents/variable_part.h"

#include <algorithm>
#include <sstream>

namespace buttondriver::documents {

namespace {

std::string hex(ByteView bytes) {
  static constexpr char digits[] = "0123456789abcdef";
  std::string text;
  for (std::size_t i = 0; i < bytes.size(); ++i) {
    if (i > 0)
      text += ' ';
    text += digits[bytes.u8(i) >> 4];
    text += digits[bytes.u8(i) & 0xF];
  }
  return text;
}

void write_hex_lines(std::ostream &page, ByteView bytes, std::size_t bytes_a_line, const std::string &legend) {
  for (std::size_t start = 0; start < bytes.size(); start += bytes_a_line) {
    const ByteView line(bytes.data() + start, std::min(bytes_a_line, bytes.size() - start));
    std::string text = hex(line);
    if (start == 0) {
      text.resize(3 * bytes_a_line + 2, ' ');
      text += legend;
    }
    page << text << '\n';
  }
}

std::string value_in_words(const Field &field, ByteView message) {
  if (field.kind == FieldKind::bytes)
    return "";
  const std::uint32_t value = field.width == 1 ? message.u8(field.offset) : message.bigEndian32(field.offset);
  if (field.kind == FieldKind::signed_integer)
    return " = " + std::to_string(static_cast<std::int32_t>(value));
  std::ostringstream text;
  text << " = " << value;
  if (value > 0xFF)
    text << std::hex << " (0x" << value << ')';
  return text.str();
}

} // namespace

std::string title(const MessageType &type) { return std::to_string(type.opcode) + ' ' + type.name; }

std::string size_in_words(const MessageType &type) {
  std::ostringstream size;
  size << type.head_size;
  if (type.counted == Counted::nothing)
    return size.str();
  size << " + ";
  if (type.countedWidth() > 1)
    size << type.countedWidth() << " x ";
  size << '`' << type.countField().name << '`';
  return size.str();
}

std::string type_in_words(const Field &field) {
  switch (field.kind) {
  case FieldKind::bytes:
    return std::to_string(field.width) + " bytes";
  case FieldKind::signed_integer:
    return "i" + std::to_string(8 * field.width);
  case FieldKind::unsigned_integer:
    break;
  }
  return "u" + std::to_string(8 * field.width);
}

std::string variable_type_in_words(const MessageType &type) {
  const std::string count = std::string("`") + type.countField().name + '`';
  return type.counted == Counted::image_ids ? count + " x u32" : count + " bytes";
}

std::string meaning_of(const MessageType &type, const Field &field) {
  return field_text(field) + (field.offset == 0 ? ": " + std::to_string(type.opcode) : std::string());
}

std::string example_lines(const MessageType &type, const WorkedExample &example, std::size_t bytes_a_line) {
  const HexBytes bytes(example.frame);
  const ByteView frame = bytes.view();
  const ByteView message = frame.from(frame_prefix_size);
  std::ostringstream lines;
  write_hex_lines(lines, ByteView(frame.data(), frame_prefix_size), bytes_a_line,
                  "length = " + std::to_string(message.size()));
  for (std::size_t i = 0; i < type.fieldCount(); ++i) {
    const Field &field = type.fields[i];
    write_hex_lines(lines, ByteView(message.data() + field.offset, field.width), bytes_a_line,
                    field.name + value_in_words(field, message));
  }
  if (type.counted != Counted::nothing)
    write_hex_lines(lines, message.from(type.head_size), bytes_a_line, variable_part(type.counted).field);
  return lines.str();
}

} // namespace buttondriver::documents
