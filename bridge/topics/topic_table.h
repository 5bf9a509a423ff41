// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "bridge/topics/target.h"
#include "protocol/records.h"

#include <array>
#include <cstdint>

/// Every topic that drives a panel, once, as data. Constants all of it, for any thread.
namespace buttondriver::bridge {

enum class PayloadForm : std::uint8_t {
  led,       ///< "on", "off", "blink MS"
  on_or_off, ///< "on", "off"
  line,      ///< a text in UTF-8
  part,      ///< a JSON object
  picture,   ///< a BMP or PNG file
  now,       ///< "now"
};

struct TopicRow {
  /// The levels below the panel or the group. A level in angle brackets stands for a number, which is a field of the
  /// message: the first one for the first field after the opcode, and so on; "<name>" for a name.
  const char *pattern;
  std::uint32_t opcode; ///< of its message in the catalogue
  PayloadForm form;
  Target::Kind kind; ///< what it sets
  bool newest_wins;
  /// The first fields of the message after the opcode, as they are where the pattern does not name them.
  std::array<std::int16_t, 3> fields;
  const char *example; ///< levels that fit the pattern
  const char *payload; ///< an example; of a picture, the name of its file
  const char *meaning;
};

namespace topic_table_detail {

constexpr std::array<std::int16_t, 3> as_named{};
constexpr std::array<std::int16_t, 3> white_on_black{0, 0, 1};
constexpr std::array<std::int16_t, 3> black_on_white{0, 0, 0};
constexpr std::array<std::int16_t, 3> all_screens{dimensions::all_screens};

using Form = PayloadForm;
using Kind = Target::Kind;

// clang-format off
inline constexpr TopicRow rows[] = {
    {"led/<button>", BMS_SetLEDState::code, Form::led, Kind::button, true, as_named,
     "led/5", "blink 500", "the LED of a button, or of all buttons"},
    {"status/<led>", BMS_SetLEDStatusIndicator::code, Form::on_or_off, Kind::status, true, as_named,
     "status/3", "on", "a status LED"},
    {"toggle/<indicator>", BMS_SetLEDToggleIndicator::code, Form::on_or_off, Kind::toggle, true, as_named,
     "toggle/1", "on", "a toggle indicator"},
    {"screen/<screen>/line/<line>", BMS_TFTTextLine::code, Form::line, Kind::line, true, white_on_black,
     "screen/0/line/2", "Ready", "a whole text line, white on black; line 0 is the topmost"},
    {"screen/<screen>/line/<line>/inverse", BMS_TFTTextLine::code, Form::line, Kind::line, true, black_on_white,
     "screen/0/line/3/inverse", "Alarm", "the same line, black on white"},
    {"screen/<screen>/part", BMS_TFTSubTextLine::code, Form::part, Kind::line, false, as_named,
     "screen/1/part", R"({"line":0,"offset":3,"text":"12.5","colour":"#ff0000"})",
     "some characters of a line, in any colours; the rest of the line stays"},
    {"screen/<screen>/part/<name>", BMS_TFTSubTextLine::code, Form::part, Kind::line, false, as_named,
     "screen/1/part/clock", R"({"line":7,"offset":0,"text":"9:41","chars":8})",
     "the same; each name is kept for itself, so a screen can have many parts"},
    {"screen/<screen>/image", BMS_DrawTFTImage::code, Form::picture, Kind::area, false, as_named,
     "screen/2/image", "logo.png", "a picture, its top left corner in that of the screen"},
    {"screen/<screen>/image/<x>/<y>", BMS_DrawTFTImage::code, Form::picture, Kind::area, false, as_named,
     "screen/2/image/63/63", "logo.bmp", "a picture, its top left pixel in column x and row y"},
    {"screen/<screen>/blackout", BMS_BlackoutScreen::code, Form::now, Kind::screen, false, as_named,
     "screen/1/blackout", "now", "clears a screen to black"},
    {"blackout", BMS_BlackoutScreen::code, Form::now, Kind::screen, false, all_screens,
     "blackout", "now", "clears all screens to black"},
    {"reconfig", BMS_Reconfig::code, Form::now, Kind::no_place, false, as_named,
     "reconfig", "now", "has the daemon read its level file again, which sets the brightness of the screens"},
};
// clang-format on

} // namespace topic_table_detail

inline constexpr const auto &topic_table = topic_table_detail::rows;

/// A message that the daemon handles and that has no topic.
struct NotOffered {
  std::uint32_t opcode;
  const char *reason;
};

inline constexpr NotOffered not_offered[] = {
    {TYPE_NULL_MESSAGE::code, "it is there for diagnosis only: the daemon logs it"},
    {BMS_UploadImage::code, "the daemon keeps such an image and shows it nowhere"},
    {BMS_Ping::code, "the bridge itself sends pings, and publishes how long the answer takes"},
};

namespace topic_table_detail {

constexpr bool has_a_row(std::uint32_t opcode) {
  for (const TopicRow &row : topic_table)
    if (row.opcode == opcode)
      return true;
  return false;
}

constexpr bool is_left_out(std::uint32_t opcode) {
  for (const NotOffered &left_out : not_offered)
    if (left_out.opcode == opcode)
      return true;
  return false;
}

/// Also when the list names one that is offered, or that the daemon does not handle.
constexpr bool each_handled_message_is_there_once() {
  for (const MessageType &type : catalogue)
    if ((type.handling == Handling::server_handles) != (has_a_row(type.opcode) != is_left_out(type.opcode)))
      return false;
  return true;
}

static_assert(each_handled_message_is_there_once(),
              "a message that the daemon handles has a topic, or stands among those that are not offered");

} // namespace topic_table_detail

} // namespace buttondriver::bridge
