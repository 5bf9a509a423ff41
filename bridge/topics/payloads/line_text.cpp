// SPDX-License-Identifier: Apache-2.0
#include "bridge/topics/payloads/line_text.h"

#include "dimensions/panel_dimensions.h"

#include <algorithm>

namespace buttondriver::bridge {

static_assert(most_line_characters == dimensions::screen_width);

namespace {

constexpr char32_t highest_latin1 = 0xFF;
constexpr char32_t line_feed = 0x0A;
constexpr char32_t no_character = 0xFFFFFFFF;

constexpr bool is_control(char32_t character) { return character < 0x20 || (character >= 0x7F && character < 0xA0); }

/// The sequence of UTF-8 that `bytes`, which are not empty, begin with.
struct Sequence {
  std::size_t size = 1;
  char32_t character = no_character; ///< or what is there is none
};

Sequence first_sequence(std::string_view bytes) {
  const auto byte = [bytes](std::size_t i) { return static_cast<unsigned char>(bytes[i]); };
  const unsigned char lead = byte(0);
  if (lead < 0x80)
    return {1, lead};
  // 0xC0 and 0xC1 would be a longer way to write what one byte holds.
  const std::size_t size = lead < 0xC2 ? 0 : lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : lead < 0xF5 ? 4 : 0;
  if (size == 0 || size > bytes.size())
    return {};
  auto character = static_cast<char32_t>(lead & (0x7F >> size));
  for (std::size_t i = 1; i < size; ++i) {
    if ((byte(i) & 0xC0) != 0x80)
      return {};
    character = character << 6 | (byte(i) & 0x3FU);
  }
  const bool is_too_long = (size == 3 && character < 0x800) || (size == 4 && character < 0x10000);
  const bool is_none = character > 0x10FFFF || (character >= 0xD800 && character < 0xE000);
  return is_too_long || is_none ? Sequence{} : Sequence{size, character};
}

QString code_point(char32_t character) {
  return QLatin1String("U+") +
         QString::number(static_cast<uint>(character), 16).toUpper().rightJustified(4, QLatin1Char('0'));
}

/// `place`: counted from 1.
Failure unsuitable(char32_t character, std::size_t place) {
  if (character == line_feed)
    return Failure{
        QStringLiteral("character %1 of the text is a line feed; a line has none, each line has a topic").arg(place)};
  if (is_control(character))
    return Failure{QStringLiteral("character %1 of the text is the control character %2, which the panel cannot show")
                       .arg(place)
                       .arg(code_point(character))};
  return Failure{QStringLiteral("character %1 of the text is %2; the panel has those of Latin-1 only, up to U+00FF")
                     .arg(place)
                     .arg(code_point(character))};
}

constexpr bool is_suitable(char32_t character) { return character <= highest_latin1 && !is_control(character); }

} // namespace

Outcome<std::size_t> characters_of(std::string_view text) {
  std::size_t count = 0;
  for (std::size_t i = 0; i < text.size(); ++count) {
    const Sequence sequence = first_sequence(text.substr(i, 4));
    if (sequence.character == no_character)
      return Failure{QStringLiteral("byte %1 of the text is not UTF-8").arg(i + 1)};
    if (!is_suitable(sequence.character))
      return unsuitable(sequence.character, count + 1);
    i += sequence.size;
  }
  return count;
}

Outcome<std::size_t> characters_of(const QString &text) {
  const auto size = static_cast<std::size_t>(text.size());
  for (std::size_t i = 0; i < size; ++i) {
    const QChar unit = text.at(static_cast<int>(i));
    const bool is_pair = unit.isHighSurrogate() && i + 1 < size && text.at(static_cast<int>(i) + 1).isLowSurrogate();
    const char32_t character =
        is_pair ? QChar::surrogateToUcs4(unit, text.at(static_cast<int>(i) + 1)) : char32_t{unit.unicode()};
    if (!is_suitable(character))
      return unsuitable(character, i + 1);
  }
  return size;
}

void write_latin1(std::string_view text, std::size_t count, char *destination) {
  for (std::size_t i = 0; count > 0; --count) {
    const Sequence sequence = first_sequence(text.substr(i, 4));
    *destination++ = static_cast<char>(sequence.character);
    i += sequence.size;
  }
}

} // namespace buttondriver::bridge
