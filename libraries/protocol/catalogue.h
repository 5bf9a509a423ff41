// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "../dimensions/panel_dimensions.h"

#include <cstddef>
#include <cstdint>
#include <iterator>
#include <limits>

/// Every message of the command protocol, once, as data. Sizes, converters, names and documentation come from here.
/// Constants all of it, for any thread.
///
/// A message starts with its opcode; all integers are big-endian; offsets count from the first byte of the message,
/// after the 4-byte length that frames it on the stream (framing.h).
namespace buttondriver {

/// How the bytes of a field are to be read.
enum class FieldKind : std::uint8_t {
  unsigned_integer, ///< one byte, or four in network order
  signed_integer,   ///< four bytes in network order, two's complement
  bytes,            ///< copied as they are
};

/// Values of a field that stand for something of their own, inside of its range or outside of it: one value as a rule,
/// otherwise all from the first to the last.
struct NamedValue {
  std::int64_t first; ///< the lowest of them
  std::int64_t last;  ///< the highest of them, `first` when it is one value
  const char *name;   ///< null marks an unused place of the table
};

/// Room for the named values of any field.
inline constexpr std::size_t most_named_values = 3;

/// A field of the fixed part of a message.
struct Field {
  std::uint16_t offset; ///< bytes from the start of the message
  std::uint16_t width;  ///< bytes; 0 marks an unused place of the table
  FieldKind kind;       ///< how its bytes are to be read
  const char *name;     ///< as its record in records.h has it
  /// Without the range and the named values; null when they say it all. field_text() puts them together.
  const char *meaning;
  /// The values, from the lowest to the highest, that mean something to the daemon, or to the clients for which a
  /// message is there that it ignores. Nobody is kept from sending others.
  std::int64_t lowest = 0;
  std::int64_t highest = 0;                 ///< the other end of that range
  NamedValue named[most_named_values] = {}; ///< those that stand for something of their own, the used places first
  /// What all other values stand for; null when that is nothing.
  const char *others = nullptr;
  bool is_colour = false; ///< 0xRRGGBB

  /// Places of `named` that are used.
  constexpr std::size_t namedCount() const {
    std::size_t count = 0;
    while (count < most_named_values && named[count].name)
      ++count;
    return count;
  }

  /// The least number that there is room for. A field of bytes is no number: 0.
  constexpr std::int64_t leastPossible() const {
    return kind == FieldKind::signed_integer ? std::int64_t{std::numeric_limits<std::int32_t>::min()} : 0;
  }
  /// The largest number that there is room for, as leastPossible().
  constexpr std::int64_t largestPossible() const {
    if (kind == FieldKind::bytes)
      return 0;
    if (width == 1)
      return std::numeric_limits<std::uint8_t>::max();
    return kind == FieldKind::signed_integer ? std::int64_t{std::numeric_limits<std::int32_t>::max()}
                                             : std::int64_t{std::numeric_limits<std::uint32_t>::max()};
  }
};

/// Buttons that a client can name in the messages that the daemon ignores: ids from 0 on.
inline constexpr std::uint32_t client_button_count = 300;
/// In these messages, the id for all of them.
inline constexpr std::uint32_t client_all_buttons = 0xFFFFFFFF;

/// What the last field of a head counts.
enum class Counted : std::uint8_t {
  nothing,     ///< a message of fixed size
  text_bytes,  ///< characters, the terminating NUL included
  image_bytes, ///< bytes of a picture file
  image_ids,   ///< 32-bit integers
};

/// Who does something with a message.
enum class Handling : std::uint8_t {
  server_handles, ///< clients send it, the daemon acts on it
  server_ignores, ///< clients can build it, the daemon reports it as unhandled
  server_sends,   ///< the daemon's answer
};

/// Room for the fields of the longest row.
inline constexpr std::size_t most_fields = 12;

/// A row of the catalogue: a message, with its fields in the order of the wire.
struct MessageType {
  std::uint32_t opcode;      ///< the number that each such message starts with
  const char *name;          ///< of its record in records.h
  std::uint32_t head_size;   ///< bytes up to and including the last fixed field
  Counted counted;           ///< what follows the fixed fields
  Handling handling;         ///< who does something with it
  const char *meaning;       ///< what it does, to follow its name
  Field fields[most_fields]; ///< the used places first

  /// Places of `fields` that are used.
  constexpr std::size_t fieldCount() const {
    std::size_t count = 0;
    while (count < most_fields && fields[count].width > 0)
      ++count;
    return count;
  }

  /// Bytes that one counted thing takes.
  constexpr std::uint32_t countedWidth() const {
    return counted == Counted::nothing ? 0U : counted == Counted::image_ids ? 4U : 1U;
  }

  /// Bytes of a whole message with `count` counted things.
  constexpr std::uint64_t size(std::uint32_t count = 0) const {
    return head_size + std::uint64_t{countedWidth()} * count;
  }

  /// The field that holds the count; only for a type that counts something.
  constexpr const Field &countField() const { return fields[fieldCount() - 1]; }
};

namespace catalogue_detail {

/// A field in the making: a number of any value, until more is known of it.
struct NewField : Field {
  constexpr NewField(std::uint16_t offset_, std::uint16_t width_, FieldKind kind_, const char *name_,
                     const char *meaning_)
      : Field{offset_, width_, kind_, name_, meaning_} {
    lowest = leastPossible();
    highest = largestPossible();
  }

  constexpr NewField in(std::int64_t lowest_, std::int64_t highest_) const {
    NewField field = *this;
    field.lowest = lowest_;
    field.highest = highest_;
    return field;
  }
  constexpr NewField always(std::int64_t value) const { return in(value, value); }
  constexpr NewField with(std::int64_t first, std::int64_t last, const char *value_name) const {
    NewField field = *this;
    field.named[namedCount()] = {first, last, value_name};
    return field;
  }
  constexpr NewField with(std::int64_t value, const char *value_name) const { return with(value, value, value_name); }
  constexpr NewField otherwise(const char *value_name) const {
    NewField field = *this;
    field.others = value_name;
    return field;
  }
};

constexpr NewField u8(std::uint16_t offset, const char *name, const char *meaning = nullptr) {
  return {offset, 1, FieldKind::unsigned_integer, name, meaning};
}
constexpr NewField u32(std::uint16_t offset, const char *name, const char *meaning = nullptr) {
  return {offset, 4, FieldKind::unsigned_integer, name, meaning};
}
constexpr NewField i32(std::uint16_t offset, const char *name, const char *meaning = nullptr) {
  return {offset, 4, FieldKind::signed_integer, name, meaning};
}
constexpr NewField bytes(std::uint16_t offset, std::uint16_t width, const char *name, const char *meaning) {
  return {offset, width, FieldKind::bytes, name, meaning};
}

constexpr NewField opcode() { return u32(0, "opcode", "which message this is"); }
constexpr NewField client_button() {
  return u32(4, "button_id").in(0, client_button_count - 1).with(client_all_buttons, "all buttons");
}
constexpr NewField screen(const char *name) {
  return i32(4, name).in(0, dimensions::screen_count - 1).with(dimensions::all_screens, "all screens");
}
constexpr NewField colour(std::uint16_t offset, const char *name) {
  NewField field = u32(offset, name).in(0, 0xFFFFFF);
  field.is_colour = true;
  return field;
}

inline constexpr std::int64_t largest_id = std::numeric_limits<std::int32_t>::max();
inline constexpr const char *text_count = "text length in bytes, the terminating NUL included";
inline constexpr const char *text_line = "text line, 0 is the topmost";

static_assert(dimensions::button_image_height == 24 && dimensions::button_image_width == 40, "as the text below says");
inline constexpr const char *button_image =
    "24 rows of 40 one-bit pixels, 5 bytes a row, most significant bit leftmost";

// clang-format off
inline constexpr MessageType rows[] = {
    {0, "TYPE_NULL_MESSAGE", 4, Counted::nothing, Handling::server_handles,
     "nothing; the daemon logs the message byte by byte", {
         opcode(),
     }},
    {1, "BMS_PingReply", 4, Counted::nothing, Handling::server_sends, "the answer to a ping", {
         opcode(),
     }},
    {4, "BMS_SetButtonColour", 12, Counted::nothing, Handling::server_ignores, "a button's colour", {
         opcode(),
         client_button(),
         u8(8, "value_1", "first channel value"),
         u8(9, "value_2", "second channel value"),
         u8(10, "value_3", "third channel value"),
         u8(11, "reserved").always(0),
     }},
    {5, "BMS_SetButtonText", 16, Counted::text_bytes, Handling::server_ignores, "a button's text", {
         opcode(),
         client_button(),
         u32(8, "text_value", "a value that goes with the text"),
         u32(12, "n", text_count),
     }},
    {6, "BMS_UploadImage", 132, Counted::nothing, Handling::server_handles, "keeps a button image", {
         opcode(),
         i32(4, "image_id").in(0, largest_id)
             .with(0, dimensions::built_in_image_count - 1, "shared by all connections")
             .with(dimensions::built_in_image_count, largest_id, "private to the connection"),
         i32(8, "size").always(dimensions::button_image_bytes),
         bytes(12, dimensions::button_image_bytes, "image", button_image),
     }},
    {7, "BMS_SetButtonImage", 12, Counted::nothing, Handling::server_ignores, "shows an image on a button", {
         opcode(),
         client_button(),
         u32(8, "image_id", "image to show"),
     }},
    {8, "BMS_SetParameter", 12, Counted::nothing, Handling::server_ignores, "a parameter", {
         opcode(),
         u32(4, "parameter").in(8, 9),
         u32(8, "value").in(0, 1).with(0, "with parameter 8").with(1, "with parameter 9"),
     }},
    {10, "BMS_Reconfig", 8, Counted::nothing, Handling::server_handles, "reads the button level file again", {
         opcode(),
         u32(4, "reserved").always(0),
     }},
    {11, "BMS_SetButtonColourPair", 24, Counted::nothing, Handling::server_ignores, "two colours that alternate", {
         opcode(),
         client_button(),
         u8(8, "first_value_1", "first channel of the first colour"),
         u8(9, "first_value_2", "second channel of the first colour"),
         u8(10, "first_value_3", "third channel of the first colour"),
         u8(11, "first_reserved").always(0),
         u32(12, "first_time", "time of the first colour"),
         u8(16, "second_value_1", "first channel of the second colour"),
         u8(17, "second_value_2", "second channel of the second colour"),
         u8(18, "second_value_3", "third channel of the second colour"),
         u8(19, "second_reserved").always(0),
         u32(20, "second_time", "time of the second colour"),
     }},
    {12, "BMS_Ping", 4, Counted::nothing, Handling::server_handles, "asks for a BMS_PingReply", {
         opcode(),
     }},
    {13, "BMS_SetButtonImageList", 24, Counted::image_ids, Handling::server_ignores, "an animation on a button", {
         opcode(),
         client_button(),
         u32(8, "reserved").always(0),
         u32(12, "parameter_b", "carried as it is"),
         u32(16, "parameter_a", "carried as it is"),
         u32(20, "n", "number of image ids that follow, 4 bytes each"),
     }},
    {14, "BMS_SetValue", 12, Counted::nothing, Handling::server_ignores, "two values", {
         opcode(),
         u32(4, "value_1", "carried as it is"),
         u32(8, "value_2", "carried as it is"),
     }},
    {15, "BMS_TFTTextLine", 20, Counted::text_bytes, Handling::server_handles, "writes a whole text line on a screen", {
         opcode(),
         screen("screen_id"),
         i32(8, "line_id", text_line),
         u32(12, "flag").in(0, 1).with(0, "black on white").with(1, "white on black").otherwise("white on black"),
         u32(16, "n", text_count),
     }},
    {16, "BMS_BlackoutScreen", 8, Counted::nothing, Handling::server_handles, "clears a screen to black", {
         opcode(),
         screen("screen_id"),
     }},
    {17, "BMS_SetLEDState", 16, Counted::nothing, Handling::server_handles, "sets a button LED steady or blinking", {
         opcode(),
         i32(4, "button_id").in(0, dimensions::button_count - 1).with(dimensions::all_buttons, "all buttons"),
         i32(8, "state").in(-1, 1).with(1, "on").with(-1, "blinking").with(0, "off").otherwise("off"),
         i32(12, "time", "length of each blink phase in milliseconds; not 0 when blinking"),
     }},
    {18, "BMS_TFTSubTextLine", 32, Counted::text_bytes, Handling::server_handles, "writes part of a text line", {
         opcode(),
         screen("_screen_id"),
         i32(8, "_line_id", text_line),
         i32(12, "_offset", "first character of the line to write"),
         i32(16, "_num_chars", "number of characters to write"),
         colour(20, "_text_colour"),
         colour(24, "_back_colour"),
         u32(28, "n", text_count),
     }},
    {19, "BMS_DrawTFTImage", 20, Counted::image_bytes, Handling::server_handles, "draws a picture on a screen", {
         opcode(),
         screen("_screen_id"),
         i32(8, "_xoffset", "column of the left edge in pixels"),
         i32(12, "_yoffset", "row of the top edge in pixels"),
         u32(16, "_size", "bytes of the picture, an uncompressed 24-bit BMP file"),
     }},
    {21, "BMS_SetLEDStatusIndicator", 12, Counted::nothing, Handling::server_handles, "sets a status LED", {
         opcode(),
         i32(4, "button_id").in(0, dimensions::led_count - 1),
         i32(8, "state").in(0, 1).with(1, "on").with(0, "off").otherwise("off"),
     }},
    {22, "BMS_SetLEDToggleIndicator", 12, Counted::nothing, Handling::server_handles, "sets a toggle indicator", {
         opcode(),
         i32(4, "button_id").in(0, dimensions::toggle_indicator_count - 1),
         i32(8, "state").in(0, 1).with(0, "off").with(1, "on"),
     }},
};
// clang-format on

} // namespace catalogue_detail

/// The messages in opcode order. Opcodes 2, 3, 9 and 20 do not exist.
inline constexpr const auto &catalogue = catalogue_detail::rows;

/// A layout for messages that are an opcode and some bytes: none of those above has it, but it can be converted.
// clang-format off
inline constexpr MessageType generic_layout = {
    0, "opcode, count and bytes", 8, Counted::image_bytes, Handling::server_ignores, "an opcode, n and n bytes", {
        catalogue_detail::opcode(),
        catalogue_detail::u32(4, "n", "number of bytes that follow"),
    }};
// clang-format on

/// The row of `opcode`, which lives as long as the program; null when there is none.
constexpr const MessageType *find_message_type(std::uint32_t opcode) {
  for (const MessageType &type : catalogue)
    if (type.opcode == opcode)
      return &type;
  return nullptr;
}

namespace catalogue_detail {

constexpr bool has_room_for_its_values(const Field &field) {
  const std::int64_t least = field.leastPossible();
  const std::int64_t largest = field.largestPossible();
  for (std::size_t i = 0; i < field.namedCount(); ++i)
    if (field.named[i].first < least || field.named[i].first > field.named[i].last || field.named[i].last > largest)
      return false;
  return least <= field.lowest && field.lowest <= field.highest && field.highest <= largest;
}

constexpr bool is_consistent() {
  for (std::size_t row = 0; row < std::size(catalogue); ++row) {
    const MessageType &type = catalogue[row];
    if (row > 0 && type.opcode <= catalogue[row - 1].opcode)
      return false;
    std::uint32_t end = 0;
    for (std::size_t i = 0; i < type.fieldCount(); ++i) {
      const Field &field = type.fields[i];
      if (field.offset != end)
        return false;
      if (field.kind != FieldKind::bytes && field.width != 4 && field.width != 1)
        return false;
      if (!has_room_for_its_values(field))
        return false;
      end += field.width;
    }
    if (end != type.head_size)
      return false;
    if (type.counted != Counted::nothing && type.countField().width != 4)
      return false;
  }
  return true;
}

static_assert(is_consistent(), "offsets contiguous, sizes as published, ranges possible, opcodes in order");

} // namespace catalogue_detail

} // namespace buttondriver
