// SPDX-License-Identifier: Apache-2.0
#include "model/expected/level_model.h"

#include <algorithm>

namespace buttondriver::test {

namespace {

constexpr std::size_t longest_piece = 255;
constexpr const char *blanks = " \t\n\v\f\r";

/// The number that `text` begins with, after blanks.
std::optional<std::int64_t> leading_number(const std::string &text) {
  std::size_t place = std::min(text.find_first_not_of(blanks), text.size());
  const bool is_negative = place < text.size() && text[place] == '-';
  if (place < text.size() && (text[place] == '-' || text[place] == '+'))
    ++place;
  if (place >= text.size() || text[place] < '0' || text[place] > '9')
    return std::nullopt;
  std::int64_t number = 0;
  for (; place < text.size() && text[place] >= '0' && text[place] <= '9'; ++place)
    number = number * 10 + (text[place] - '0');
  return is_negative ? -number : number;
}

} // namespace

void LevelModel::reconfig(const std::optional<std::string> &file) {
  if (!file)
    return;
  std::string key;
  std::string rest = *file;
  while (!rest.empty()) {
    const std::size_t line_end = rest.find('\n');
    const std::size_t line = line_end == std::string::npos ? rest.size() : line_end + 1;
    const std::string piece = rest.substr(0, std::min(line, longest_piece));
    rest.erase(0, piece.size());
    read_piece(piece, key);
  }
}

/// `key` stays what it was when there is no word in the piece.
void LevelModel::read_piece(const std::string &piece, std::string &key) {
  const std::size_t word = piece.find_first_not_of(blanks);
  std::string after_word;
  if (word != std::string::npos) {
    const std::size_t word_end = std::min(piece.find_first_of(blanks, word), piece.size());
    key = piece.substr(word, word_end - word);
    after_word = piece.substr(word_end);
  }
  if (key != "scr")
    return;
  _percent = leading_number(after_word).value_or(_percent);
  if (_percent >= 0 && _percent <= 100)
    _intensity = static_cast<unsigned>(_percent * 63 / 100);
}

} // namespace buttondriver::test
