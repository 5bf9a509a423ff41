// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "bytes/byte_view.h"
#include "c_client/messages.h"
#include "protocol/converters.h"

#include <array>
#include <cstddef>
#include <cstdint>

namespace buttondriver {

/// A message on its way out: its head in network order, and the caller's bytes that follow it. Or why there is none.
struct Outgoing {
  buttondriver_result result = BUTTONDRIVER_OK;
  std::array<std::uint8_t, BUTTONDRIVER_LARGEST_FIXED_MESSAGE> head; ///< of which `head_size` bytes are set
  std::size_t head_size = 0;
  ByteView rest; ///< borrowed from the caller

  std::size_t size() const { return head_size + rest.size(); }
};

/// Whether there is no number of another size than 32 bits.
constexpr bool has_numbers_of_32_bits_only(const MessageType &type) {
  for (std::size_t i = 0; i < type.fieldCount(); ++i)
    if (type.fields[i].kind != FieldKind::bytes && type.fields[i].width != 4)
      return false;
  return true;
}

/// Whether each number of `head`, which is in host order, is in the range of its row or has a name there. Each number
/// has 32 bits.
bool is_in_range(const MessageType &type, const void *head);

/// The message of `head`, which is in host order, and `rest`.
template <class Record> Outgoing outgoing(const Record &head, ByteView rest = {}) {
  constexpr const MessageType &type = type_of<Record>;
  static_assert(type.handling == Handling::server_handles && has_numbers_of_32_bits_only(type));
  static_assert(type.head_size <=
                (type.counted == Counted::nothing ? BUTTONDRIVER_LARGEST_FIXED_MESSAGE : BUTTONDRIVER_LARGEST_HEAD));
  Outgoing message;
  if (!is_in_range(type, &head)) {
    message.result = BUTTONDRIVER_OUT_OF_RANGE;
    return message;
  }
  swap_head(type, message.head.data(), &head);
  message.head_size = type.head_size;
  message.rest = rest;
  return message;
}

// What the functions of messages.h and client.h have in common: each looks at its arguments, once.
Outgoing outgoing_text(std::int32_t screen, std::int32_t line, const char *text, bool is_inverse);
Outgoing outgoing_text_part(std::int32_t screen, std::int32_t line, std::int32_t first, std::int32_t count,
                            const char *text, std::uint32_t text_colour, std::uint32_t back_colour);
Outgoing outgoing_picture(std::int32_t screen, std::int32_t x, std::int32_t y, const void *bmp, std::size_t size);
Outgoing outgoing_blackout(std::int32_t screen);
Outgoing outgoing_led(std::int32_t button, std::int32_t state);
Outgoing outgoing_led_blink(std::int32_t button, std::int32_t phase_ms);
Outgoing outgoing_status(std::int32_t led, std::int32_t state);
Outgoing outgoing_toggle(std::int32_t indicator, std::int32_t state);
Outgoing outgoing_image(std::int32_t image_id, const void *image, std::size_t size);
Outgoing outgoing_reconfig();
Outgoing outgoing_ping();
Outgoing outgoing_null();

} // namespace buttondriver
