// SPDX-License-Identifier: Apache-2.0
#include "c_client/messages.h"

#include "c_client/outgoing.h"

#include <cstring>

using namespace buttondriver;

namespace {

/// Puts the message into the caller's buffer.
buttondriver_result put(buttondriver_message *place, const Outgoing &message) {
  if (!place || !place->bytes)
    return BUTTONDRIVER_NULL_POINTER;
  if (message.result != BUTTONDRIVER_OK)
    return message.result;
  if (place->capacity < message.size())
    return BUTTONDRIVER_NO_ROOM;
  auto *const bytes = static_cast<std::uint8_t *>(place->bytes);
  // A text or a picture may already lie in the buffer, where the head would overwrite it.
  if (!message.rest.empty())
    std::memmove(bytes + message.head_size, message.rest.data(), message.rest.size());
  std::memcpy(bytes, message.head.data(), message.head_size);
  place->size = message.size();
  return BUTTONDRIVER_OK;
}

} // namespace

buttondriver_result buttondriver_encode_text(buttondriver_message *message, std::int32_t screen, std::int32_t line,
                                             const char *text) {
  return put(message, outgoing_text(screen, line, text, false));
}

buttondriver_result buttondriver_encode_text_inverse(buttondriver_message *message, std::int32_t screen,
                                                     std::int32_t line, const char *text) {
  return put(message, outgoing_text(screen, line, text, true));
}

buttondriver_result buttondriver_encode_text_part(buttondriver_message *message, std::int32_t screen, std::int32_t line,
                                                  std::int32_t first, std::int32_t count, const char *text,
                                                  std::uint32_t text_colour, std::uint32_t back_colour) {
  return put(message, outgoing_text_part(screen, line, first, count, text, text_colour, back_colour));
}

buttondriver_result buttondriver_encode_picture(buttondriver_message *message, std::int32_t screen, std::int32_t x,
                                                std::int32_t y, const void *bmp, std::size_t size) {
  return put(message, outgoing_picture(screen, x, y, bmp, size));
}

buttondriver_result buttondriver_encode_blackout(buttondriver_message *message, std::int32_t screen) {
  return put(message, outgoing_blackout(screen));
}

buttondriver_result buttondriver_encode_led(buttondriver_message *message, std::int32_t button, std::int32_t state) {
  return put(message, outgoing_led(button, state));
}

buttondriver_result buttondriver_encode_led_blink(buttondriver_message *message, std::int32_t button,
                                                  std::int32_t phase_ms) {
  return put(message, outgoing_led_blink(button, phase_ms));
}

buttondriver_result buttondriver_encode_status(buttondriver_message *message, std::int32_t led, std::int32_t state) {
  return put(message, outgoing_status(led, state));
}

buttondriver_result buttondriver_encode_toggle(buttondriver_message *message, std::int32_t indicator,
                                               std::int32_t state) {
  return put(message, outgoing_toggle(indicator, state));
}

buttondriver_result buttondriver_encode_image(buttondriver_message *message, std::int32_t image_id, const void *image,
                                              std::size_t size) {
  return put(message, outgoing_image(image_id, image, size));
}

buttondriver_result buttondriver_encode_reconfig(buttondriver_message *message) {
  return put(message, outgoing_reconfig());
}

buttondriver_result buttondriver_encode_ping(buttondriver_message *message) { return put(message, outgoing_ping()); }

buttondriver_result buttondriver_encode_null(buttondriver_message *message) { return put(message, outgoing_null()); }
