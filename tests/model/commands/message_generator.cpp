// SPDX-License-Identifier: Apache-2.0
#include "model/commands/message_generator.h"

#include "model/commands/message_bytes.h"

#include <algorithm>
#include <cstdlib>
#include <limits>
#include <vector>

namespace buttondriver::test {

namespace {

constexpr std::int32_t lowest = std::numeric_limits<std::int32_t>::min();
constexpr std::int32_t highest = std::numeric_limits<std::int32_t>::max();
/// A range of more values is drawn from its beginning mostly.
constexpr std::int64_t most_even_values = 300;

std::int64_t extreme(Dice &dice) {
  const auto value =
      dice.one_of({-1,  -2,   3,    24,    31,    32,      64,     127,        128,        129,       255,
                   256, -128, -256, 65535, 65536, highest, lowest, lowest + 1, 0x10000000, 0x20000001});
  return dice.chance(15) ? static_cast<std::int32_t>(dice.word()) : value;
}

/// Of at most 7 bits, the fewer the likelier.
std::int64_t small_number(Dice &dice) { return dice.below(1U << dice.below(8)); }

std::int64_t even_or_small(Dice &dice, std::int64_t first, std::int64_t last) {
  if (last - first > most_even_values)
    return first + small_number(dice);
  return first + dice.below(static_cast<std::uint32_t>(last - first + 1));
}

std::int64_t named_value(Dice &dice, const Field &field) {
  const NamedValue &value = field.named[dice.below(static_cast<std::uint32_t>(field.namedCount()))];
  return even_or_small(dice, value.first, value.last);
}

std::int64_t usual_value(Dice &dice, const Field &field) {
  if (field.is_colour)
    return dice.chance(50) ? dice.one_of<std::int64_t>({0, 0xFFFFFF, 0xFF0000, 0x00FF00, 0x0000FF}) : dice.word();
  if (field.lowest == lowest)
    return dice.chance(20) ? -small_number(dice) : small_number(dice);
  return even_or_small(dice, field.lowest, field.highest);
}

/// Somewhat below or above the usual ones.
std::int64_t value_beside(Dice &dice, const Field &field) {
  const std::int64_t first = std::max<std::int64_t>(field.lowest, -100);
  const std::int64_t last = std::min<std::int64_t>(field.highest, 100);
  return dice.chance(40) ? first - 1 - small_number(dice) : last + 1 + 2 * small_number(dice);
}

/// A value of the range mostly, one with a name or one beside the range now and then, and anything at times.
std::uint32_t random_value(Dice &dice, const Field &field) {
  const std::uint32_t kind = dice.below(100);
  if (kind < 10 && field.namedCount() > 0)
    return static_cast<std::uint32_t>(named_value(dice, field));
  if (kind < 85)
    return static_cast<std::uint32_t>(usual_value(dice, field));
  return static_cast<std::uint32_t>(kind < 94 ? value_beside(dice, field) : extreme(dice));
}

char character(Dice &dice) {
  const std::uint32_t kind = dice.below(400);
  if (kind == 0)
    return static_cast<char>(dice.word());
  if (kind == 1)
    return dice.one_of({'_', 'X', '\0'});
  return dice.one_of({' ', '.', 'A', 'B', 'W', '|', '!', 'M', 'Z', 'a', 'g', 'i', '\xE9', '\xFF'});
}

std::string text(Dice &dice) {
  std::string characters;
  for (std::uint32_t count = dice.below(dice.chance(20) ? 140 : 20); count > 0; --count)
    characters += character(dice);
  return characters;
}

/// The number of characters, their NUL included; sometimes it is wrong.
std::uint32_t text_size(Dice &dice, const std::string &characters) {
  const auto size = static_cast<std::uint32_t>(characters.size() + 1);
  return dice.chance(90) ? size : dice.chance(60) ? dice.below(size + 5) : static_cast<std::uint32_t>(extreme(dice));
}

std::string with_nul(Dice &dice, std::string characters) {
  if (dice.chance(93))
    characters += '\0';
  return characters;
}

std::int32_t picture_size(Dice &dice) {
  const std::uint32_t kind = dice.below(100);
  if (kind < 65)
    return dice.between(1, 40);
  if (kind < 90)
    return dice.between(0, 150);
  return dice.one_of({128, 256, 300, 512, 65536, 70000, 1 << 26, -1, -5, highest, lowest});
}

void append_file_number(std::string &bytes, std::uint32_t number, int count) {
  for (int i = 0; i < count; ++i, number >>= 8)
    bytes += static_cast<char>(number & 0xFF);
}

std::uint32_t perhaps_wrong(Dice &dice, std::uint32_t value) {
  return dice.chance(98) ? value : dice.chance(50) ? value + 1 : dice.word();
}

/// The header's offset of the pixels; sometimes outside of the file.
std::uint32_t pixels_begin(Dice &dice) {
  const std::uint32_t kind = dice.below(100);
  if (kind < 90)
    return 54;
  if (kind < 95)
    return dice.below(200);
  return kind < 98 ? 0 - dice.below(200) : dice.word();
}

std::string bmp_header(Dice &dice, std::int32_t width, std::int32_t height) {
  std::string header;
  header += dice.chance(97) ? 'B' : 'A';
  header += dice.chance(97) ? 'M' : 'A';
  append_file_number(header, dice.word(), 4);
  append_file_number(header, 0, 4);
  append_file_number(header, pixels_begin(dice), 4);
  append_file_number(header, perhaps_wrong(dice, 40), 4);
  append_file_number(header, static_cast<std::uint32_t>(width), 4);
  append_file_number(header, static_cast<std::uint32_t>(height), 4);
  append_file_number(header, perhaps_wrong(dice, 1), 2);
  append_file_number(header, perhaps_wrong(dice, 24), 2);
  append_file_number(header, dice.chance(90) ? 0 : dice.word(), 4);
  header.resize(54);
  return header;
}

std::string bmp(Dice &dice) {
  const std::int32_t width = picture_size(dice);
  const std::int32_t height = dice.chance(88) ? picture_size(dice) : -dice.between(1, 140);
  std::string file = bmp_header(dice, width, height);
  constexpr std::int64_t longest_file = 70'000;
  const std::int64_t row = std::clamp<std::int64_t>(3 * std::int64_t{width} + width % 4, 0, longest_file);
  const std::int64_t needed = std::clamp<std::int64_t>(row * std::abs(std::int64_t{height}), 0, longest_file);
  // A pattern in which every pixel differs from its neighbours.
  const std::uint32_t step = dice.word() | 1;
  for (std::int64_t i = 0; i < needed; ++i)
    file += static_cast<char>(static_cast<std::uint32_t>(i) * step >> 5);
  return file;
}

/// What follows a head, and the count that the head says, which may be wrong.
struct Tail {
  std::string bytes;
  std::uint32_t count = 0;
};

Tail random_tail(Dice &dice, Counted counted) {
  Tail tail;
  switch (counted) {
  case Counted::text_bytes:
    tail.bytes = text(dice);
    tail.count = text_size(dice, tail.bytes);
    tail.bytes = with_nul(dice, tail.bytes);
    break;
  case Counted::image_bytes:
    tail.bytes = bmp(dice);
    tail.count = static_cast<std::uint32_t>(tail.bytes.size());
    break;
  case Counted::image_ids:
    tail.count = dice.below(5);
    for (std::uint32_t i = 0; i < tail.count; ++i)
      append_network_word(tail.bytes, dice.below(40));
    break;
  case Counted::nothing:
    break;
  }
  return tail;
}

} // namespace

std::string random_message(Dice &dice, const MessageType &type) {
  const Tail tail = random_tail(dice, type.counted);
  std::string message;
  append_network_word(message, type.opcode);
  for (std::size_t i = 1; i < type.fieldCount(); ++i) {
    const Field &field = type.fields[i];
    if (type.counted != Counted::nothing && i + 1 == type.fieldCount())
      append_network_word(message, tail.count);
    else if (field.kind == FieldKind::bytes)
      message.append(field.width, static_cast<char>(dice.word()));
    else if (field.width == 1)
      message += static_cast<char>(random_value(dice, field));
    else
      append_network_word(message, random_value(dice, field));
  }
  return message + tail.bytes;
}

std::string random_handled_message(Dice &dice) {
  std::vector<const MessageType *> types;
  for (const MessageType &type : catalogue)
    if (type.handling == Handling::server_handles && type.counted != Counted::image_bytes)
      types.push_back(&type);
  return random_message(dice, *types[dice.below(static_cast<std::uint32_t>(types.size()))]);
}

std::string random_unknown_message(Dice &dice) {
  const std::uint32_t opcode = dice.chance(70) ? dice.below(30) : static_cast<std::uint32_t>(extreme(dice));
  std::string message;
  append_network_word(message, opcode);
  for (std::uint32_t count = dice.below(12); count > 0; --count)
    append_network_word(message, dice.chance(50) ? dice.below(40) : dice.word());
  return message;
}

std::string perhaps_of_another_length(Dice &dice, std::string message) {
  const std::uint32_t kind = dice.below(100);
  if (kind < 6)
    message.resize(dice.below(static_cast<std::uint32_t>(std::min<std::size_t>(message.size(), 80)) + 1));
  else if (kind < 9)
    message.resize(dice.below(static_cast<std::uint32_t>(message.size()) + 1));
  else if (kind < 12)
    message += std::string(dice.below(9), static_cast<char>(dice.word()));
  return message;
}

} // namespace buttondriver::test
