// SPDX-License-Identifier: Apache-2.0
#include "buttons/logs/sub_text_line_log.h"

#include "logging/standard_output.h"
#include "logging/visible_text.h"

#include <charconv>
#include <cstdint>
#include <initializer_list>

namespace buttondriver {

namespace {

/// A text that no screen can show goes out in pieces: the log writes them as they come, or keeps them for its reader,
/// and nobody needs several times their memory or waits for it.
constexpr std::size_t piece = 16 * 1024;

/// `format` with its numbers filled in, as printf does for %d and %x, which is all that it may have.
void append_formatted(std::string &line, std::string_view format, std::initializer_list<std::int64_t> numbers) {
  for (const std::int64_t number : numbers) {
    const std::size_t place = format.find('%');
    const int base = format[place + 1] == 'x' ? 16 : 10;
    char digits[20]; // with a sign
    line += format.substr(0, place);
    line.append(digits, std::to_chars(digits, digits + sizeof digits, number, base).ptr);
    format.remove_prefix(place + 2);
  }
  line += format;
}

} // namespace

void SubTextLineLog::print(const BMS_TFTSubTextLine &line, std::string_view text) {
  _line.clear();
  append_formatted(_line, "buttondriver: _screen_id = %d, _line_id = %d,  _offset =%d, _num_chars = %d, _text = '",
                   {line._screen_id, line._line_id, line._offset, line._num_chars});
  for (; text.size() > piece; text.remove_prefix(piece)) {
    append_visible(_line, text.substr(0, piece));
    print_text(_line);
    _line.clear();
  }
  append_visible(_line, text);
  append_formatted(_line, "', _text_colour = 0x%x, _back_colour = 0x%x.\n", {line._text_colour, line._back_colour});
  print_text(_line);
}

} // namespace buttondriver
