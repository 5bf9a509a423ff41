// SPDX-License-Identifier: Apache-2.0
#include "model/commands/command.h"

#include "model/commands/message_bytes.h"
#include "support/hex.h"

#include <array>
#include <sstream>
#include <stdexcept>
#include <string_view>

namespace buttondriver::test {

namespace {

std::string_view name_of(std::uint32_t opcode) {
  switch (opcode) {
  case 0:
    return "null message";
  case 6:
    return "upload image";
  case 10:
    return "reconfig";
  case 12:
    return "ping";
  case 15:
    return "text line";
  case 16:
    return "blackout";
  case 17:
    return "button LED";
  case 18:
    return "sub-text line";
  case 19:
    return "picture";
  case 21:
    return "status indicator";
  case 22:
    return "toggle indicator";
  default:
    return "not handled";
  }
}

/// How many 32-bit fields of a message are worth saying.
std::size_t fields_of(std::uint32_t opcode) {
  static constexpr std::array<std::size_t, 23> fields = {0, 0, 0, 0, 0, 0, 2, 0, 0, 0, 0, 0,
                                                         0, 0, 0, 4, 1, 3, 7, 4, 0, 2, 2};
  return opcode < fields.size() ? fields[opcode] : 0;
}

std::string message_line(const std::string &message) {
  std::string frame;
  append_network_word(frame, static_cast<std::uint32_t>(message.size()));
  frame += message;
  const std::uint32_t opcode = network_word(message, 0);
  std::ostringstream line;
  line << to_hex(frame) << "  # " << name_of(opcode);
  for (std::size_t i = 1; i <= fields_of(opcode); ++i)
    line << ' ' << signed_network_word(message, 4 * i);
  return line.str();
}

std::string line_of(const Command &command) {
  switch (command.kind) {
  case Command::Kind::message:
    return message_line(command.bytes);
  case Command::Kind::tick:
    return "tick";
  case Command::Kind::font:
    return "font " + std::to_string(command.width) + " " + std::to_string(command.height);
  case Command::Kind::levels:
    return "levels \"" + to_hex(command.bytes) + "\"";
  case Command::Kind::remove_levels:
    return "remove-levels";
  case Command::Kind::look:
    break;
  }
  return "look";
}

Command message_of(const std::string &digits) {
  const std::string frame = from_hex(digits);
  if (frame.size() < 4 || network_word(frame, 0) != frame.size() - 4)
    throw std::invalid_argument("no whole frame: " + digits);
  return {Command::Kind::message, frame.substr(4), 0, 0};
}

Command command_of(const std::string &line) {
  std::istringstream words(line);
  std::string word;
  words >> word;
  if (word == "tick")
    return {Command::Kind::tick, {}, 0, 0};
  if (word == "look")
    return {Command::Kind::look, {}, 0, 0};
  if (word == "remove-levels")
    return {Command::Kind::remove_levels, {}, 0, 0};
  if (word == "font") {
    Command font{Command::Kind::font, {}, 0, 0};
    if (!(words >> font.width >> font.height))
      throw std::invalid_argument("a font has a width and a height: " + line);
    return font;
  }
  if (word == "levels") {
    words >> word;
    if (word.size() < 2 || word.front() != '"' || word.back() != '"')
      throw std::invalid_argument("no level file: " + line);
    return {Command::Kind::levels, from_hex(std::string_view(word).substr(1, word.size() - 2)), 0, 0};
  }
  return message_of(word);
}

} // namespace

bool operator==(const Command &one, const Command &other) {
  return one.kind == other.kind && one.bytes == other.bytes && one.width == other.width && one.height == other.height;
}

std::string to_text(const Sequence &sequence) {
  std::string text;
  for (const Command &command : sequence)
    text += line_of(command) + '\n';
  return text;
}

Sequence read_sequence(const std::string &text) {
  Sequence sequence;
  std::istringstream lines(text);
  std::string line;
  while (std::getline(lines, line)) {
    line.erase(std::min(line.find('#'), line.size()));
    if (line.find_first_not_of(" \t\r") != std::string::npos)
      sequence.push_back(command_of(line));
  }
  return sequence;
}

} // namespace buttondriver::test
