// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "protocol/catalogue.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace buttondriver {

/// Three opaque channel values.
struct ButtonColour {
  std::uint8_t value_1;
  std::uint8_t value_2;
  std::uint8_t value_3;
};

/// Two colours that alternate, with the time of each.
struct ButtonColourPair {
  ButtonColour first;
  std::uint32_t first_time;
  ButtonColour second;
  std::uint32_t second_time;
};

/// What a client last asked of each button, so that a request that changes nothing need not be sent.
///
/// Each take_... function notes a request and returns whether it has to be sent. For a button id below `button_count`
/// it compares with that button's record; `all_buttons` writes to every record and always has to be sent; any other id
/// is not noted and always has to be sent. Not thread-safe.
class ButtonCache {
public:
  static constexpr std::uint32_t button_count = client_button_count;
  static constexpr std::uint32_t all_buttons = client_all_buttons;
  /// Characters of a text that a record keeps.
  static constexpr std::size_t text_capacity = 100;
  static constexpr std::int32_t unknown_image = -1;

  /// Forgets everything: no colour, no text, text value 0, image unknown.
  void clear();

  /// Unchanged when the button has a colour, its first colour is this one and its second time is 0.
  bool takeColour(std::uint32_t button_id, const ButtonColour &colour);

  /// Unchanged when the button has a colour and all eight values are equal. For all buttons the values are noted, but a
  /// button without a colour still counts as one without.
  bool takeColourPair(std::uint32_t button_id, const ButtonColourPair &pair);

  /// Unchanged when `text` equals the characters kept and the value is equal. At most `text_capacity` characters are
  /// kept, so a longer text never counts as unchanged, and its beginning alone does. A noted text makes the image
  /// unknown. For all buttons the value is not noted.
  bool takeText(std::uint32_t button_id, std::string_view text, std::uint32_t text_value);

  /// Unchanged when the button shows this image; `unknown_image` is thus unchanged on a button whose image is unknown.
  /// For all buttons the texts are forgotten, their values are not.
  bool takeImage(std::uint32_t button_id, std::int32_t image_id);

  /// Image `image_id` has new contents: no button is known to show it any more.
  void forgetImage(std::int32_t image_id);

private:
  struct Record {
    bool valid = false; ///< a colour was noted
    ButtonColourPair colours{};
    std::array<char, text_capacity + 1> text{}; ///< always ends with a NUL
    std::uint32_t text_value = 0;
    std::int32_t image = unknown_image;

    void keepText(std::string_view new_text);
  };

  std::array<Record, button_count> _records{};
};

} // namespace buttondriver
