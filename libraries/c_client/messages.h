// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "result.h"

#include <stddef.h>
#include <stdint.h>

/// @file
/// Every message that the daemon acts on, built in memory of the caller, for C and C++. client.h sends the same
/// messages directly and is what most programs want; these are for those that prepare a message once and send it often,
/// have a connection of their own, or use btc_send() of event_client.h:
///
///     uint8_t room[64];
///     buttondriver_message message = {room, sizeof room, 0};
///     if (buttondriver_encode_text(&message, 0, 0, "Hello, panel") == BUTTONDRIVER_OK)
///       btc_send(message.bytes, (uint32_t)message.size);
///
/// A message stands without the length that goes before it on the stream. Nothing is allocated, printed or kept: any
/// thread may call. Whatever fails leaves the buffer and `size` as they were.
///
/// Arguments outside the ranges below are refused here: the daemon would only write a line into its log.

#ifdef __cplusplus
extern "C" {
#endif

/// How many there are. Ids count from 0.
/// @{
#define BUTTONDRIVER_SCREENS 3
#define BUTTONDRIVER_BUTTONS 24
#define BUTTONDRIVER_STATUS_LEDS 32
#define BUTTONDRIVER_TOGGLES 2
/// @}
/// In place of one screen, or of one button.
/// @{
#define BUTTONDRIVER_ALL_SCREENS (-1)
#define BUTTONDRIVER_ALL_BUTTONS (-1)
/// @}

/// States of LEDs and indicators.
/// @{
#define BUTTONDRIVER_OFF 0
#define BUTTONDRIVER_ON 1
/// @}

/// Colours are 0xRRGGBB.
/// @{
#define BUTTONDRIVER_BLACK UINT32_C(0x000000)
#define BUTTONDRIVER_WHITE UINT32_C(0xFFFFFF)
/// @}

/// Bytes of a button image: 24 rows of 40 one-bit pixels, 5 bytes a row, the most significant bit leftmost.
#define BUTTONDRIVER_IMAGE_BYTES 120

/// Bytes of the longest message without a text or a picture.
#define BUTTONDRIVER_LARGEST_FIXED_MESSAGE 132
/// Bytes that stand before a text or a picture, at most. A text has one more after it, its NUL.
#define BUTTONDRIVER_LARGEST_HEAD 32
/// Bytes of the longest message that the daemon takes, 16 MiB.
#define BUTTONDRIVER_LARGEST_MESSAGE 16777216

/// Where a message is put.
typedef struct buttondriver_message {
  void *bytes;     ///< the caller's
  size_t capacity; ///< how many there is room for
  size_t size;     ///< how many the message takes; set by each function that succeeds
} buttondriver_message;

/// Writes a whole line of a screen, white on black; what is wider than the screen is not shown. `screen` is 0 to 2 or
/// BUTTONDRIVER_ALL_SCREENS, `line` 0 is the topmost; how many there are depends on the font, 8 with one of 8x16. A
/// line below the last one is not refused: it stands in another place, or is not seen. `text` is Latin-1 and ends with
/// a NUL; it may be empty, which clears the line.
buttondriver_result buttondriver_encode_text(buttondriver_message *message, int32_t screen, int32_t line,
                                             const char *text);
/// As before, black on white.
buttondriver_result buttondriver_encode_text_inverse(buttondriver_message *message, int32_t screen, int32_t line,
                                                     const char *text);
/// Writes `count` characters of `text` into a line, from character cell `first` on, and leaves the rest of the line as
/// it is; blanks stand for those that the text does not have. `first` and `count` are 0 or more. What is right of the
/// screen's edge is not cut off but stands in another place, as lines below the last one do.
buttondriver_result buttondriver_encode_text_part(buttondriver_message *message, int32_t screen, int32_t line,
                                                  int32_t first, int32_t count, const char *text, uint32_t text_colour,
                                                  uint32_t back_colour);
/// Draws a picture with its top left corner at column `x` and row `y` of a screen, which has 128 of each.
/// It has to lie on the screen: one that sticks out is not refused, and not cut off either, but comes out sheared.
/// `bmp` holds the `size` bytes of an uncompressed 24-bit BMP file with a header of 40 bytes.
buttondriver_result buttondriver_encode_picture(buttondriver_message *message, int32_t screen, int32_t x, int32_t y,
                                                const void *bmp, size_t size);
/// Makes a screen black.
buttondriver_result buttondriver_encode_blackout(buttondriver_message *message, int32_t screen);

/// Switches the LED of a button, 0 to 23 or BUTTONDRIVER_ALL_BUTTONS, on or off; ends its blinking. `state` is
/// BUTTONDRIVER_ON or BUTTONDRIVER_OFF.
buttondriver_result buttondriver_encode_led(buttondriver_message *message, int32_t button, int32_t state);
/// Lets the LED of a button blink: lit for `phase_ms` milliseconds, dark for as long, and so on. 1 or more; the panel
/// rounds it down to a multiple of 20, but not to 0.
buttondriver_result buttondriver_encode_led_blink(buttondriver_message *message, int32_t button, int32_t phase_ms);
/// Switches a status LED, 0 to 31, on or off.
buttondriver_result buttondriver_encode_status(buttondriver_message *message, int32_t led, int32_t state);
/// Switches a toggle indicator, 0 or 1, on or off.
buttondriver_result buttondriver_encode_toggle(buttondriver_message *message, int32_t indicator, int32_t state);

/// Has the daemon keep a button image. Ids 0 to 22 are shared by all programs, those from 23 on belong to the
/// connection. `image` holds `size` bytes, which must be BUTTONDRIVER_IMAGE_BYTES. The daemon has no message that shows
/// one: it reports btc_set_image() as unhandled.
buttondriver_result buttondriver_encode_image(buttondriver_message *message, int32_t image_id, const void *image,
                                              size_t size);
/// Has the daemon read its file of brightness levels again.
buttondriver_result buttondriver_encode_reconfig(buttondriver_message *message);
/// Asks for an answer.
buttondriver_result buttondriver_encode_ping(buttondriver_message *message);
/// Asks for nothing. The daemon writes the message into its log, byte by byte.
buttondriver_result buttondriver_encode_null(buttondriver_message *message);

#ifdef __cplusplus
}
#endif
