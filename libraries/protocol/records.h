// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "catalogue.h"

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <type_traits>

/// The heads of the messages in host order. Their layout is that of the wire, so that a message can be converted in
/// place; the variable part, where there is one, follows the head directly. What the fields mean, with their ranges
/// and units, stands in the rows of the catalogue.
namespace buttondriver {

namespace records_detail {

/// Where a field lies in its record.
struct RecordField {
  std::string_view name;
  std::size_t offset;
  std::size_t width;
  FieldKind kind;
};

template <class Type> constexpr FieldKind kind_of() {
  if (std::is_array_v<Type>)
    return FieldKind::bytes;
  return std::is_signed_v<Type> ? FieldKind::signed_integer : FieldKind::unsigned_integer;
}

} // namespace records_detail

using records_detail::RecordField;

/// The fields of a record that are on the wire, in the order of its row. It is what type_of compares with the row.
template <class Record> struct FieldsOf;

/// A field of `Record` in its list.
#define BMS_FIELD(field)                                                                                               \
  RecordField {                                                                                                        \
#field, offsetof(Record, field), sizeof(Record::field), records_detail::kind_of < decltype(Record::field)>()       \
  }

struct TYPE_NULL_MESSAGE {
  static constexpr std::uint32_t code = 0;
  std::uint32_t opcode;
};
template <> struct FieldsOf<TYPE_NULL_MESSAGE> {
  using Record = TYPE_NULL_MESSAGE;
  static constexpr RecordField list[] = {BMS_FIELD(opcode)};
};

struct BMS_PingReply {
  static constexpr std::uint32_t code = 1;
  std::uint32_t opcode;
};
template <> struct FieldsOf<BMS_PingReply> {
  using Record = BMS_PingReply;
  static constexpr RecordField list[] = {BMS_FIELD(opcode)};
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
template <> struct FieldsOf<BMS_SetButtonColour> {
  using Record = BMS_SetButtonColour;
  static constexpr RecordField list[] = {BMS_FIELD(opcode),  BMS_FIELD(button_id), BMS_FIELD(value_1),
                                         BMS_FIELD(value_2), BMS_FIELD(value_3),   BMS_FIELD(reserved)};
};

struct BMS_SetButtonText {
  static constexpr std::uint32_t code = 5;
  std::uint32_t opcode;
  std::uint32_t button_id;
  std::uint32_t text_value;
  std::uint32_t n;
};
template <> struct FieldsOf<BMS_SetButtonText> {
  using Record = BMS_SetButtonText;
  static constexpr RecordField list[] = {BMS_FIELD(opcode), BMS_FIELD(button_id), BMS_FIELD(text_value), BMS_FIELD(n)};
};

struct BMS_UploadImage {
  static constexpr std::uint32_t code = 6;
  std::uint32_t opcode;
  std::int32_t image_id;
  std::int32_t size;
  std::uint8_t image[dimensions::button_image_bytes];
};
template <> struct FieldsOf<BMS_UploadImage> {
  using Record = BMS_UploadImage;
  static constexpr RecordField list[] = {BMS_FIELD(opcode), BMS_FIELD(image_id), BMS_FIELD(size), BMS_FIELD(image)};
};

struct BMS_SetButtonImage {
  static constexpr std::uint32_t code = 7;
  std::uint32_t opcode;
  std::uint32_t button_id;
  std::uint32_t image_id;
};
template <> struct FieldsOf<BMS_SetButtonImage> {
  using Record = BMS_SetButtonImage;
  static constexpr RecordField list[] = {BMS_FIELD(opcode), BMS_FIELD(button_id), BMS_FIELD(image_id)};
};

struct BMS_SetParameter {
  static constexpr std::uint32_t code = 8;
  std::uint32_t opcode;
  std::uint32_t parameter;
  std::uint32_t value;
};
template <> struct FieldsOf<BMS_SetParameter> {
  using Record = BMS_SetParameter;
  static constexpr RecordField list[] = {BMS_FIELD(opcode), BMS_FIELD(parameter), BMS_FIELD(value)};
};

struct BMS_Reconfig {
  static constexpr std::uint32_t code = 10;
  std::uint32_t opcode;
  std::uint32_t reserved;
};
template <> struct FieldsOf<BMS_Reconfig> {
  using Record = BMS_Reconfig;
  static constexpr RecordField list[] = {BMS_FIELD(opcode), BMS_FIELD(reserved)};
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
  std::uint16_t not_transmitted; ///< always 0; after the message's 24 bytes, swapped with a whole record only
};
template <> struct FieldsOf<BMS_SetButtonColourPair> {
  using Record = BMS_SetButtonColourPair;
  static constexpr RecordField list[] = {
      BMS_FIELD(opcode),         BMS_FIELD(button_id),      BMS_FIELD(first_value_1),   BMS_FIELD(first_value_2),
      BMS_FIELD(first_value_3),  BMS_FIELD(first_reserved), BMS_FIELD(first_time),      BMS_FIELD(second_value_1),
      BMS_FIELD(second_value_2), BMS_FIELD(second_value_3), BMS_FIELD(second_reserved), BMS_FIELD(second_time)};
};

struct BMS_Ping {
  static constexpr std::uint32_t code = 12;
  std::uint32_t opcode;
};
template <> struct FieldsOf<BMS_Ping> {
  using Record = BMS_Ping;
  static constexpr RecordField list[] = {BMS_FIELD(opcode)};
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
template <> struct FieldsOf<BMS_SetButtonImageList> {
  using Record = BMS_SetButtonImageList;
  static constexpr RecordField list[] = {BMS_FIELD(opcode),      BMS_FIELD(button_id),   BMS_FIELD(reserved),
                                         BMS_FIELD(parameter_b), BMS_FIELD(parameter_a), BMS_FIELD(n)};
};

struct BMS_SetValue {
  static constexpr std::uint32_t code = 14;
  std::uint32_t opcode;
  std::uint32_t value_1;
  std::uint32_t value_2;
};
template <> struct FieldsOf<BMS_SetValue> {
  using Record = BMS_SetValue;
  static constexpr RecordField list[] = {BMS_FIELD(opcode), BMS_FIELD(value_1), BMS_FIELD(value_2)};
};

struct BMS_TFTTextLine {
  static constexpr std::uint32_t code = 15;
  std::uint32_t opcode;
  std::int32_t screen_id;
  std::int32_t line_id;
  std::uint32_t flag;
  std::uint32_t n;
};
template <> struct FieldsOf<BMS_TFTTextLine> {
  using Record = BMS_TFTTextLine;
  static constexpr RecordField list[] = {BMS_FIELD(opcode), BMS_FIELD(screen_id), BMS_FIELD(line_id), BMS_FIELD(flag),
                                         BMS_FIELD(n)};
};

struct BMS_BlackoutScreen {
  static constexpr std::uint32_t code = 16;
  std::uint32_t opcode;
  std::int32_t screen_id;
};
template <> struct FieldsOf<BMS_BlackoutScreen> {
  using Record = BMS_BlackoutScreen;
  static constexpr RecordField list[] = {BMS_FIELD(opcode), BMS_FIELD(screen_id)};
};

struct BMS_SetLEDState {
  static constexpr std::uint32_t code = 17;
  std::uint32_t opcode;
  std::int32_t button_id;
  std::int32_t state;
  std::int32_t time;
};
template <> struct FieldsOf<BMS_SetLEDState> {
  using Record = BMS_SetLEDState;
  static constexpr RecordField list[] = {BMS_FIELD(opcode), BMS_FIELD(button_id), BMS_FIELD(state), BMS_FIELD(time)};
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
template <> struct FieldsOf<BMS_TFTSubTextLine> {
  using Record = BMS_TFTSubTextLine;
  static constexpr RecordField list[] = {BMS_FIELD(opcode),       BMS_FIELD(_screen_id), BMS_FIELD(_line_id),
                                         BMS_FIELD(_offset),      BMS_FIELD(_num_chars), BMS_FIELD(_text_colour),
                                         BMS_FIELD(_back_colour), BMS_FIELD(n)};
};

struct BMS_DrawTFTImage {
  static constexpr std::uint32_t code = 19;
  std::uint32_t opcode;
  std::int32_t _screen_id;
  std::int32_t _xoffset;
  std::int32_t _yoffset;
  std::uint32_t _size;
};
template <> struct FieldsOf<BMS_DrawTFTImage> {
  using Record = BMS_DrawTFTImage;
  static constexpr RecordField list[] = {BMS_FIELD(opcode), BMS_FIELD(_screen_id), BMS_FIELD(_xoffset),
                                         BMS_FIELD(_yoffset), BMS_FIELD(_size)};
};

struct BMS_SetLEDStatusIndicator {
  static constexpr std::uint32_t code = 21;
  std::uint32_t opcode;
  std::int32_t button_id;
  std::int32_t state;
};
template <> struct FieldsOf<BMS_SetLEDStatusIndicator> {
  using Record = BMS_SetLEDStatusIndicator;
  static constexpr RecordField list[] = {BMS_FIELD(opcode), BMS_FIELD(button_id), BMS_FIELD(state)};
};

struct BMS_SetLEDToggleIndicator {
  static constexpr std::uint32_t code = 22;
  std::uint32_t opcode;
  std::int32_t button_id;
  std::int32_t state;
};
template <> struct FieldsOf<BMS_SetLEDToggleIndicator> {
  using Record = BMS_SetLEDToggleIndicator;
  static constexpr RecordField list[] = {BMS_FIELD(opcode), BMS_FIELD(button_id), BMS_FIELD(state)};
};

#undef BMS_FIELD

namespace records_detail {

constexpr bool is_in_place(const RecordField &field, const Field &in_row) {
  return field.name == in_row.name && field.offset == in_row.offset && field.width == in_row.width &&
         field.kind == in_row.kind;
}

template <class Record> constexpr bool fits_row(const MessageType &row) {
  if (std::size(FieldsOf<Record>::list) != row.fieldCount())
    return false;
  for (std::size_t i = 0; i < row.fieldCount(); ++i)
    if (!is_in_place(FieldsOf<Record>::list[i], row.fields[i]))
      return false;
  return true;
}

/// Where the row of `opcode` stands in the catalogue; its length when there is none.
constexpr std::size_t place_of(std::uint32_t opcode) {
  std::size_t place = 0;
  while (place < std::size(catalogue) && catalogue[place].opcode != opcode)
    ++place;
  return place;
}

template <class Record> constexpr const MessageType &row() {
  constexpr std::size_t place = place_of(Record::code);
  static_assert(place < std::size(catalogue), "every record has a row");
  static_assert(fits_row<Record>(catalogue[place]), "the fields of a record are those of its row, each in its place");
  return catalogue[place];
}

} // namespace records_detail

/// The catalogue row of a record: `type_of<BMS_Ping>`.
template <class Record> inline constexpr const MessageType &type_of = records_detail::row<Record>();

} // namespace buttondriver
