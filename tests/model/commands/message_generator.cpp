// SPDX-License-Identifier: Apache-2.0
#include "model/commands/message_generator.h"

#include "model/commands/message_bytes.h"

#include <algorithm>
#include <cstdlib>
#include <limits>

namespace buttondriver::test {

namespace {

constexpr std::int32_t lowest = std::numeric_limits<std::int32_t>::min();
constexpr std::int32_t highest = std::numeric_limits<std::int32_t>::max();

std::string words(std::initializer_list<std::uint32_t> values) {
  std::string bytes;
  for (const std::uint32_t value : values)
    append_network_word(bytes, value);
  return bytes;
}

std::uint32_t extreme(Dice &dice) {
  const auto value =
      dice.one_of({-1,  -2,   3,    24,    31,    32,      64,     127,        128,        129,       255,
                   256, -128, -256, 65535, 65536, highest, lowest, lowest + 1, 0x10000000, 0x20000001});
  return static_cast<std::uint32_t>(dice.chance(15) ? static_cast<std::int32_t>(dice.word()) : value);
}

/// Between the first two mostly, between the last two now and then, and anything at times.
std::uint32_t field(Dice &dice, std::int32_t first, std::int32_t last, std::int32_t lower, std::int32_t upper) {
  const std::uint32_t kind = dice.below(100);
  if (kind < 70)
    return static_cast<std::uint32_t>(dice.between(first, last));
  if (kind < 92)
    return static_cast<std::uint32_t>(dice.between(lower, upper));
  return extreme(dice);
}

std::uint32_t screen(Dice &dice) {
  return dice.chance(95) ? static_cast<std::uint32_t>(dice.between(-1, 2)) : extreme(dice);
}

std::uint32_t line(Dice &dice) { return field(dice, 0, 7, -3, 30); }

std::uint32_t colour(Dice &dice) {
  return dice.chance(50) ? dice.one_of<std::uint32_t>({0, 0xFFFFFF, 0xFF0000, 0x00FF00, 0x0000FF}) : dice.word();
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
  return dice.chance(90) ? size : dice.chance(60) ? dice.below(size + 5) : extreme(dice);
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

} // namespace

std::string random_text_line(Dice &dice) {
  const std::string characters = text(dice);
  return words({15, screen(dice), line(dice), dice.chance(90) ? dice.below(2) : dice.word(),
                text_size(dice, characters)}) +
         with_nul(dice, characters);
}

std::string random_sub_text_line(Dice &dice) {
  const std::string characters = text(dice);
  const auto written = static_cast<std::uint32_t>(characters.size());
  return words({18, screen(dice), line(dice), field(dice, 0, 16, -30, 40),
                dice.chance(50) ? written : field(dice, 0, 20, -2, 140), colour(dice), colour(dice),
                text_size(dice, characters)}) +
         with_nul(dice, characters);
}

std::string random_picture(Dice &dice) {
  const std::string file = bmp(dice);
  return words({19, screen(dice), field(dice, 0, 100, -150, 150), field(dice, 0, 100, -150, 150),
                static_cast<std::uint32_t>(file.size())}) +
         file;
}

std::string random_blackout(Dice &dice) { return words({16, screen(dice)}); }

std::string random_button_led(Dice &dice) {
  const std::uint32_t time = dice.chance(80) ? dice.below(150) : extreme(dice);
  const std::uint32_t id = dice.chance(2) ? 0xFFFFFFFF : field(dice, 0, 23, -2, 70);
  return words({17, id, field(dice, -1, 2, -1, 1), time});
}

std::string random_status_indicator(Dice &dice) {
  return words({21, field(dice, 0, 31, -40, 300), field(dice, 0, 1, -2, 3)});
}

std::string random_toggle_indicator(Dice &dice) {
  return words({22, field(dice, 0, 1, -2, 3), field(dice, 0, 1, -2, 3)});
}

std::string random_image_upload(Dice &dice) {
  return words({6, field(dice, 0, 40, -2, 30), dice.chance(80) ? 120 : dice.below(200)}) +
         std::string(120, static_cast<char>(dice.word()));
}

std::string random_unknown_message(Dice &dice) {
  const std::uint32_t opcode = dice.chance(70) ? dice.below(30) : extreme(dice);
  std::string message = words({opcode});
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
