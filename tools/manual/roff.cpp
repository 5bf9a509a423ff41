// SPDX-License-Identifier: Apache-2.0
#include "tools/manual/roff.h"

#include <algorithm>
#include <cctype>
#include <cstdint>
#include <cstdio>
#include <sstream>

namespace buttondriver::manual {

namespace {

constexpr std::size_t line_width = 110;

bool is_letter(std::string_view text, std::size_t at) {
  return at < text.size() && std::isalpha(static_cast<unsigned char>(text[at])) != 0;
}

bool is_within_a_word(std::string_view text, std::size_t at) {
  return at > 0 && is_letter(text, at - 1) && is_letter(text, at + 1);
}

/// What shows `character` as it is.
std::string shown(char character) {
  switch (character) {
  case '\\':
    return "\\(rs";
  case '-':
    return "\\-";
  case '\'':
    return "\\(aq";
  case '`':
    return "\\(ga";
  case '^':
    return "\\(ha";
  case '~':
    return "\\(ti";
  default:
    return {character};
  }
}

/// The character of two bytes or more that begins at `at`, which is moved to its last byte.
std::string wide_character(std::string_view text, std::size_t &at) {
  const auto lead = static_cast<unsigned char>(text[at]);
  const unsigned more = lead >= 0xF0 ? 3 : lead >= 0xE0 ? 2 : 1;
  std::uint32_t code = lead & (0x3FU >> more);
  for (unsigned i = 0; i < more && at + 1 < text.size(); ++i)
    code = code << 6 | (static_cast<unsigned char>(text[++at]) & 0x3FU);
  char name[16] = {};
  std::snprintf(name, sizeof name, "\\[u%04X]", code);
  return name;
}

std::string escaped(std::string_view text, bool is_literal) {
  std::string roff;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (static_cast<unsigned char>(text[i]) >= 0x80)
      roff += wide_character(text, i);
    else if (!is_literal && (text[i] == '-' || text[i] == '\'') && is_within_a_word(text, i))
      roff += text[i];
    else
      roff += shown(text[i]);
  }
  return roff;
}

bool begins_a_sentence(const std::string &word) {
  const std::string plain = word.rfind("\\f", 0) == 0 ? word.substr(3) : word;
  return !plain.empty() && (std::isupper(static_cast<unsigned char>(plain[0])) != 0 || word[0] == '\\');
}

/// Names are not hyphenated.
std::string unbroken(const std::string &word) {
  return word.find('_') != std::string::npos || word.rfind("\\fB", 0) == 0 ? "\\%" + word : word;
}

bool ends_a_sentence(const std::string &word) { return word.back() == '.' || word.back() == '?'; }

} // namespace

std::string literal(std::string_view text) { return escaped(text, true); }

std::string bold(std::string_view text) { return "\\fB" + literal(text) + "\\fR"; }

std::string italic(std::string_view text) { return "\\fI" + literal(text) + "\\fR"; }

std::string text_line(const std::string &line) {
  return !line.empty() && (line[0] == '.' || line[0] == '\'') ? "\\&" + line : line;
}

std::string inline_text(std::string_view markdown) {
  std::string roff;
  std::size_t at = 0;
  while (at < markdown.size()) {
    const std::size_t mark = std::min(markdown.find_first_of("`[", at), markdown.size());
    roff += escaped(markdown.substr(at, mark - at), false);
    at = mark;
    if (at == markdown.size())
      break;
    const bool is_code = markdown[at] == '`';
    const std::size_t end = markdown.find(is_code ? "`" : "](", at + 1);
    if (end == std::string_view::npos) {
      roff += shown(markdown[at++]);
      continue;
    }
    const std::string_view inner = markdown.substr(at + 1, end - at - 1);
    roff += is_code ? bold(inner) : inline_text(inner);
    at = is_code ? end + 1 : std::min(markdown.find(')', end), markdown.size() - 1) + 1;
  }
  return roff;
}

std::string filled(const std::string &roff_text) {
  std::istringstream words(roff_text);
  std::string text;
  std::string line;
  std::string word;
  const auto end_line = [&] {
    if (!line.empty())
      text += text_line(line) + '\n';
    line.clear();
  };
  bool is_sentence_over = false;
  while (words >> word) {
    if ((is_sentence_over && begins_a_sentence(word)) || line.size() + word.size() >= line_width)
      end_line();
    line += (line.empty() ? "" : " ") + unbroken(word);
    is_sentence_over = ends_a_sentence(word);
  }
  end_line();
  return text;
}

std::string prose(std::string_view markdown) { return filled(inline_text(markdown)); }

std::string example(std::string_view lines) {
  std::string text = ".PP\n.RS 4\n.EX\n";
  while (!lines.empty()) {
    const std::size_t end = std::min(lines.find('\n'), lines.size());
    text += text_line(literal(lines.substr(0, end))) + '\n';
    lines.remove_prefix(std::min(end + 1, lines.size()));
  }
  return text + ".EE\n.RE\n";
}

std::string tagged(const std::string &tag, const std::string &body) { return ".TP\n" + text_line(tag) + '\n' + body; }

} // namespace buttondriver::manual
