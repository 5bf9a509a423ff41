// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "catalogue.h"

#include <cstddef>
#include <cstdint>

/// The heads of the messages in host order. Their layout is that of the wire, so that a message can be converted in
/// place; the variable part, where there is one, follows the head directly. What the fields mean, with their ranges
/// and units, stands in the rows of the catalogue.
namespace buttondriver {

struct TYPE_NULL_MESSAGE {
  static constexpr std::uint32_t code = 0;
  std::uint32_t opcode;
};

struct BMS_PingReply {
  static constexpr std::uint32_t code = 1;
  std::uint32_t opcode;
};

struct BMS_SetButtonColour {
  static constexpr std::uint32_t code = 4;
  std::uint32_t opcode;
  std::uint32_t button_id;
  std::uint8_t value_1;
  std::uint8_t value_2;
  std::uint8_t value_3;
  std::uint8_t reserved;
};

struct BMS_SetButtonText {
  static constexpr std::uint32_t code = 5;
  std::uint32_t opcode;
  std::uint32_t button_id;
  std::uint32_t text_value;
  std::uint32_t n;
};

struct BMS_UploadImage {
  static constexpr std::uint32_t code = 6;
  std::uint32_t opcode;
  std::int32_t image_id;
  std::int32_t size;
  std::uint8_t image[120];
};

struct BMS_SetButtonImage {
  static constexpr std::uint32_t code = 7;
  std::uint32_t opcode;
  std::uint32_t button_id;
  std::uint32_t image_id;
};

struct BMS_SetParameter {
  static constexpr std::uint32_t code = 8;
  std::uint32_t opcode;
  std::uint32_t parameter;
  std::uint32_t value;
};

struct BMS_Reconfig {
  static constexpr std::uint32_t code = 10;
  std::uint32_t opcode;
  std::uint32_t reserved;
};

struct BMS_SetButtonColourPair {
  static constexpr std::uint32_t code = 11;
  std::uint32_t opcode;
  std::uint32_t button_id;
  std::uint8_t first_value_1;
  std::uint8_t first_value_2;
  std::uint8_t first_value_3;
  std::uint8_t first_reserved;
  std::uint32_t first_time;
  std::uint8_t second_value_1;
  std::uint8_t second_value_2;
  std::uint8_t second_value_3;
  std::uint8_t second_reserved;
  std::uint32_t second_time;
  std::uint16_t not_transmitted; ///< always 0; behind the message's 24 bytes
};

struct BMS_Ping {
  static constexpr std::uint32_t code = 12;
  std::uint32_t opcode;
};

struct BMS_SetButtonImageList {
  static constexpr std::uint32_t code = 13;
  std::uint32_t opcode;
  std::uint32_t button_id;
  std::uint32_t reserved;
  std::uint32_t parameter_b;
  std::uint32_t parameter_a;
  std::uint32_t n;
};

struct BMS_SetValue {
  static constexpr std::uint32_t code = 14;
  std::uint32_t opcode;
  std::uint32_t value_1;
  std::uint32_t value_2;
};

struct BMS_TFTTextLine {
  static constexpr std::uint32_t code = 15;
  std::uint32_t opcode;
  std::int32_t screen_id;
  std::int32_t line_id;
  std::uint32_t flag;
  std::uint32_t n;
};

struct BMS_BlackoutScreen {
  static constexpr std::uint32_t code = 16;
  std::uint32_t opcode;
  std::int32_t screen_id;
};

struct BMS_SetLEDState {
  static constexpr std::uint32_t code = 17;
  std::uint32_t opcode;
  std::int32_t button_id;
  std::int32_t state;
  std::int32_t time;
};

struct BMS_TFTSubTextLine {
  static constexpr std::uint32_t code = 18;
  std::uint32_t opcode;
  std::int32_t _screen_id;
  std::int32_t _line_id;
  std::int32_t _offset;
  std::int32_t _num_chars;
  std::uint32_t _text_colour;
  std::uint32_t _back_colour;
  std::uint32_t n;
};

struct BMS_DrawTFTImage {
  static constexpr std::uint32_t code = 19;
  std::uint32_t opcode;
  std::int32_t _screen_id;
  std::int32_t _xoffset;
  std::int32_t _yoffset;
  std::uint32_t _size;
};

struct BMS_SetLEDStatusIndicator {
  static constexpr std::uint32_t code = 21;
  std::uint32_t opcode;
  std::int32_t button_id;
  std::int32_t state;
};

struct BMS_SetLEDToggleIndicator {
  static constexpr std::uint32_t code = 22;
  std::uint32_t opcode;
  std::int32_t button_id;
  std::int32_t state;
};

namespace records_detail {

/// Where the row of `opcode` stands in the catalogue; behind its end when there is none.
constexpr std::size_t place_of(std::uint32_t opcode) {
  std::size_t place = 0;
  while (place < std::size(catalogue) && catalogue[place].opcode != opcode)
    ++place;
  return place;
}

template <class Record> constexpr const MessageType &row() {
  constexpr std::size_t place = place_of(Record::code);
  static_assert(place < std::size(catalogue), "every record has a row");
  static_assert(sizeof(Record) >= catalogue[place].head_size, "a record holds the whole head");
  return catalogue[place];
}

} // namespace records_detail

/// The catalogue row of a record: `type_of<BMS_Ping>`.
template <class Record> inline constexpr const MessageType &type_of = records_detail::row<Record>();

// One offset in each half of the records that mix widths; all others are plain runs of 32-bit fields.
static_assert(offsetof(BMS_SetButtonColourPair, first_time) == 12 &&
              offsetof(BMS_SetButtonColourPair, second_time) == 20);
static_assert(offsetof(BMS_SetButtonColour, value_3) == 10 && offsetof(BMS_UploadImage, image) == 12);

} // namespace buttondriver
