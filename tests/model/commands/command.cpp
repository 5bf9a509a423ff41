// SPDX-License-Identifier: Apache-2.0
#include "model/commands/command.h"

#include "model/commands/message_bytes.h"
#include "protocol/catalogue.h"
#include "support/hex.h"

#include <sstream>
#include <stdexcept>
#include <string_view>

namespace buttondriver::test {

namespace {

/// The name and the numbers of a message, for a person.
std::string remark_on(const std::string &message) {
  const MessageType *type = find_message_type(network_word(message, 0));
  if (!type)
    return "no message";
  std::string remark = type->name;
  for (std::size_t i = 1; i < type->fieldCount(); ++i)
    if (type->fields[i].width == 4)
      remark += ' ' + std::to_string(signed_network_word(message, type->fields[i].offset));
  return remark;
}

std::string message_line(const std::string &message) {
  std::string frame;
  append_network_word(frame, static_cast<std::uint32_t>(message.size()));
  frame += message;
  return to_hex(frame) + "  # " + remark_on(message);
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
