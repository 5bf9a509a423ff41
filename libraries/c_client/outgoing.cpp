// SPDX-License-Identifier: Apache-2.0
#include "c_client/outgoing.h"

#include "c_client/bmp_check.h"
#include "dimensions/panel_dimensions.h"

#include <cstring>

namespace buttondriver {

// What the headers for C say in numbers of their own.
static_assert(BUTTONDRIVER_SCREENS == dimensions::screen_count);
static_assert(BUTTONDRIVER_BUTTONS == dimensions::button_count);
static_assert(BUTTONDRIVER_STATUS_LEDS == dimensions::led_count);
static_assert(BUTTONDRIVER_TOGGLES == dimensions::toggle_indicator_count);
static_assert(BUTTONDRIVER_ALL_SCREENS == dimensions::all_screens);
static_assert(BUTTONDRIVER_ALL_BUTTONS == dimensions::all_buttons);
static_assert(BUTTONDRIVER_IMAGE_BYTES == dimensions::button_image_bytes);

namespace {

constexpr std::int32_t blinking = -1;

/// A 32-bit number of a head in host order.
std::int64_t number_of(const Field &field, const void *head) {
  std::uint32_t number = 0;
  std::memcpy(&number, static_cast<const char *>(head) + field.offset, sizeof number);
  return field.kind == FieldKind::signed_integer ? std::int64_t{static_cast<std::int32_t>(number)}
                                                 : std::int64_t{number};
}

bool is_meant(const Field &field, std::int64_t value) {
  if (value >= field.lowest && value <= field.highest)
    return true;
  for (std::size_t i = 0; i < field.namedCount(); ++i)
    if (value >= field.named[i].first && value <= field.named[i].last)
      return true;
  return false;
}

Outgoing failure(buttondriver_result result) {
  Outgoing message;
  message.result = result;
  return message;
}

/// A text after a head of `head_size` bytes, its NUL included; without data when that is too much.
ByteView text_after(std::size_t head_size, const char *text) {
  const std::size_t most = BUTTONDRIVER_LARGEST_MESSAGE - head_size;
  const std::size_t length = ::strnlen(text, most);
  return length < most ? ByteView(text, length + 1) : ByteView();
}

Outgoing outgoing_led_state(std::int32_t button, std::int32_t state, std::int32_t time) {
  return outgoing(BMS_SetLEDState{BMS_SetLEDState::code, button, state, time});
}

bool is_on_or_off(std::int32_t state) { return state == BUTTONDRIVER_ON || state == BUTTONDRIVER_OFF; }

} // namespace

bool is_in_range(const MessageType &type, const void *head) {
  for (std::size_t i = 0; i < type.fieldCount(); ++i) {
    const Field &field = type.fields[i];
    if (field.kind != FieldKind::bytes && !is_meant(field, number_of(field, head)))
      return false;
  }
  return true;
}

Outgoing outgoing_text(std::int32_t screen, std::int32_t line, const char *text, bool is_inverse) {
  using Record = BMS_TFTTextLine;
  if (!text)
    return failure(BUTTONDRIVER_NULL_POINTER);
  const ByteView rest = text_after(type_of<Record>.head_size, text);
  if (!rest.data())
    return failure(BUTTONDRIVER_TEXT_TOO_LONG);
  if (line < 0)
    return failure(BUTTONDRIVER_OUT_OF_RANGE);
  const std::uint32_t flag = is_inverse ? 0 : 1;
  return outgoing(Record{Record::code, screen, line, flag, static_cast<std::uint32_t>(rest.size())}, rest);
}

Outgoing outgoing_text_part(std::int32_t screen, std::int32_t line, std::int32_t first, std::int32_t count,
                            const char *text, std::uint32_t text_colour, std::uint32_t back_colour) {
  using Record = BMS_TFTSubTextLine;
  if (!text)
    return failure(BUTTONDRIVER_NULL_POINTER);
  const ByteView rest = text_after(type_of<Record>.head_size, text);
  if (!rest.data())
    return failure(BUTTONDRIVER_TEXT_TOO_LONG);
  if (line < 0 || first < 0 || count < 0)
    return failure(BUTTONDRIVER_OUT_OF_RANGE);
  return outgoing(Record{Record::code, screen, line, first, count, text_colour, back_colour,
                         static_cast<std::uint32_t>(rest.size())},
                  rest);
}

Outgoing outgoing_picture(std::int32_t screen, std::int32_t x, std::int32_t y, const void *bmp, std::size_t size) {
  using Record = BMS_DrawTFTImage;
  if (!bmp)
    return failure(BUTTONDRIVER_NULL_POINTER);
  if (size > BUTTONDRIVER_LARGEST_MESSAGE - type_of<Record>.head_size)
    return failure(BUTTONDRIVER_PICTURE_TOO_LARGE);
  const ByteView file(static_cast<const std::uint8_t *>(bmp), size);
  if (!is_drawable_bmp(file))
    return failure(BUTTONDRIVER_NOT_A_PICTURE);
  return outgoing(Record{Record::code, screen, x, y, static_cast<std::uint32_t>(size)}, file);
}

Outgoing outgoing_blackout(std::int32_t screen) {
  return outgoing(BMS_BlackoutScreen{BMS_BlackoutScreen::code, screen});
}

Outgoing outgoing_led(std::int32_t button, std::int32_t state) {
  return is_on_or_off(state) ? outgoing_led_state(button, state, 0) : failure(BUTTONDRIVER_OUT_OF_RANGE);
}

Outgoing outgoing_led_blink(std::int32_t button, std::int32_t phase_ms) {
  return phase_ms > 0 ? outgoing_led_state(button, blinking, phase_ms) : failure(BUTTONDRIVER_OUT_OF_RANGE);
}

Outgoing outgoing_status(std::int32_t led, std::int32_t state) {
  return outgoing(BMS_SetLEDStatusIndicator{BMS_SetLEDStatusIndicator::code, led, state});
}

Outgoing outgoing_toggle(std::int32_t indicator, std::int32_t state) {
  return outgoing(BMS_SetLEDToggleIndicator{BMS_SetLEDToggleIndicator::code, indicator, state});
}

Outgoing outgoing_image(std::int32_t image_id, const void *image, std::size_t size) {
  if (!image)
    return failure(BUTTONDRIVER_NULL_POINTER);
  if (size != BUTTONDRIVER_IMAGE_BYTES)
    return failure(BUTTONDRIVER_OUT_OF_RANGE);
  BMS_UploadImage head{BMS_UploadImage::code, image_id, BUTTONDRIVER_IMAGE_BYTES, {}};
  std::memcpy(head.image, image, sizeof head.image);
  return outgoing(head);
}

Outgoing outgoing_reconfig() { return outgoing(BMS_Reconfig{BMS_Reconfig::code, 0}); }
Outgoing outgoing_ping() { return outgoing(BMS_Ping{BMS_Ping::code}); }
Outgoing outgoing_null() { return outgoing(TYPE_NULL_MESSAGE{TYPE_NULL_MESSAGE::code}); }

} // namespace buttondriver
