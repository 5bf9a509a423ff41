// SPDX-License-Identifier: Apache-2.0
#include "simulator/traffic/text_memory.h"

#include "protocol/decode.h"

#include <algorithm>

namespace buttondriver::simulator {

namespace {

/// The line, made together with the ones above it where they are missing; null when no screen has it.
std::string *line_of(TextMemory::Lines &lines, std::int32_t id) {
  if (id < 0 || id >= TextMemory::line_limit)
    return nullptr;
  const auto place = static_cast<std::size_t>(id);
  if (place >= lines.size())
    lines.resize(place + 1);
  return &lines[place];
}

void write_line(TextMemory::Lines &lines, std::int32_t id, std::string_view text) {
  if (std::string *line = line_of(lines, id))
    *line = text.substr(0, TextMemory::column_limit);
}

void write_part(TextMemory::Lines &lines, const BMS_TFTSubTextLine &part, std::string_view text) {
  constexpr auto limit = static_cast<std::int32_t>(TextMemory::column_limit);
  if (part._offset < 0 || part._offset >= limit || part._num_chars <= 0)
    return;
  std::string *line = line_of(lines, part._line_id);
  if (!line)
    return;
  const auto start = static_cast<std::size_t>(part._offset);
  const auto count = static_cast<std::size_t>(std::min(part._num_chars, limit - part._offset));
  std::string shown(text.substr(0, count));
  shown.resize(count, ' ');
  if (line->size() < start + count)
    line->resize(start + count, ' ');
  line->replace(start, count, shown);
}

} // namespace

template <class Change> void TextMemory::change(std::int32_t screen_id, Change change) {
  for (std::size_t screen = 0; screen < dimensions::screen_count; ++screen) {
    if (screen_id != dimensions::all_screens && screen_id != static_cast<std::int32_t>(screen))
      continue;
    const Lines before = _screens[screen];
    change(_screens[screen]);
    if (_screens[screen] != before)
      ++_revision;
  }
}

void TextMemory::follow(ByteView message) {
  switch (message.bigEndian32(0)) {
  case BMS_TFTTextLine::code: {
    const auto line = decode<BMS_TFTTextLine>(message);
    const std::string_view text = message.text(type_of<BMS_TFTTextLine>.head_size, line.n);
    return change(line.screen_id, [&](Lines &lines) { write_line(lines, line.line_id, text); });
  }
  case BMS_TFTSubTextLine::code: {
    const auto part = decode<BMS_TFTSubTextLine>(message);
    const std::string_view text = message.text(type_of<BMS_TFTSubTextLine>.head_size, part.n);
    return change(part._screen_id, [&](Lines &lines) { write_part(lines, part, text); });
  }
  case BMS_BlackoutScreen::code:
    return change(decode<BMS_BlackoutScreen>(message).screen_id, [](Lines &lines) { lines.clear(); });
  default:
    return;
  }
}

void TextMemory::clear() {
  change(dimensions::all_screens, [](Lines &lines) { lines.clear(); });
}

} // namespace buttondriver::simulator
