// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QByteArray>
#include <QList>
#include <QString>

#include <cstdint>
#include <type_traits>
#include <vector>

/// Builds messages for the daemon. Each function returns exactly one message in network order, without the length that
/// frames it on the stream; all arguments are in host order. Nothing is checked here: a value outside of the ranges
/// below is sent as it is, and the daemon, which answers nothing but pings, says something in its log at most.
///
/// Texts are sent as Latin-1 with a terminating NUL; any other character becomes a question mark. The daemon reads a
/// text up to its first NUL. Screens are 0, 1 and 2, and -1 for all three; lines count from 0 at the top, how many fit
/// depends on the daemon's font. Bytes that a pointer names are copied and stay the caller's. Nothing is shared: any
/// thread may call. A message of 2 GiB or more, which a QByteArray cannot hold everywhere, comes out empty.
namespace buttondriver {

/// `button_id` 0 to 23, -1 for all buttons. `state` 1 is on, -1 blinks with phases of `time` milliseconds (not 0), all
/// else is off.
QByteArray hton_BMS_SetLEDState(std::int32_t button_id, std::int32_t state, std::int32_t time);
/// `button_id` 0 to 31, a status LED. `state` 1 is on, all else off.
QByteArray hton_BMS_SetLEDStatusIndicator(std::int32_t button_id, std::int32_t state);
/// `button_id` 0 or 1, a toggle indicator; `state` 0 or 1.
QByteArray hton_BMS_SetLEDToggleIndicator(std::int32_t button_id, std::int32_t state);
/// Keeps an image at the daemon, under an id from 0 to 22 for all connections, above that for this one alone. `image`
/// holds `size` bytes, 24 rows of 40 one-bit pixels. The daemon accepts only a size of 120; the message has room for
/// 120 bytes, so of a longer image the rest is left out, and `size` says what was asked for. `image` may be null when
/// `size` is below 1.
QByteArray hton_BMS_UploadImage(std::int32_t image_id, const void *image, std::int32_t size);
/// Shows an image on a button; the daemon reports this message as unhandled.
QByteArray hton_BMS_SetButtonImage(std::uint32_t button_id, std::uint32_t image_id);
/// Writes a whole line. `flag` non-zero: white on black; 0: black on white.
QByteArray hton_BMS_TFTTextLine(std::int32_t screen_id, std::int32_t line_id, const QString &text, std::uint8_t flag);
/// Writes `num_chars` characters of `text` from character `offset` of the line on; colours are 0xRRGGBB.
QByteArray hton_BMS_TFTSubTextLine(std::int32_t screen_id, std::int32_t line_id, std::int32_t offset,
                                   std::int32_t num_chars, const QString &text, std::uint32_t text_colour,
                                   std::uint32_t back_colour);
/// Makes a screen black.
QByteArray hton_BMS_BlackoutScreen(std::int32_t screen_id);
/// The daemon answers with BMS_PingReply once it has accepted everything before it.
QByteArray hton_BMS_Ping();
/// Draws a picture with its top left corner at the given pixel. `data` holds `size` bytes, an uncompressed 24-bit BMP
/// file, less than 2 GiB; it may be null when there are none. Tells the size on standard output before, and says that
/// it is done after, the latter without a line feed, as integrators' logs expect it.
QByteArray hton_BMS_DrawTFTImage(std::int32_t screen_id, std::int32_t x_offset, std::int32_t y_offset,
                                 std::uint32_t size, const void *data);
/// Makes the daemon read its button level file again.
QByteArray hton_BMS_Reconfig();
/// Shows images on a button in turn; the daemon reports this message as unhandled. The parameters are carried as they
/// are; on the wire `parameter_b` stands before `parameter_a`.
QByteArray hton_BMS_SetButtonImageList(std::uint32_t button_id, const QList<std::uint32_t> &image_ids,
                                       std::uint32_t parameter_a, std::uint32_t parameter_b);

/// One BMS_UploadImage for each of `images`, with the ids `first_image_id`, `first_image_id` + 1, ..., then the
/// BMS_SetButtonImageList that names them. To be sent in this order. The daemon keeps the images, and reports the list
/// as unhandled.
std::vector<QByteArray> hton_BMS_SetButtonAnimation(std::uint32_t button_id, const QList<QByteArray> &images,
                                                    std::int32_t first_image_id, std::uint32_t parameter_a,
                                                    std::uint32_t parameter_b);

/// Two integers of any type. A literal 0 is as good a pointer as it is an integer of another type; without these, a
/// call with two of them could as well mean the function of that name in converters.h.
template <class First, class Second>
using EncodedIntegers = std::enable_if_t<std::is_integral_v<First> && std::is_integral_v<Second>, QByteArray>;

/// As the function of the same name above; integers that do not fit are cut to 32 bits.
/// @{
template <class Button, class State>
EncodedIntegers<Button, State> hton_BMS_SetLEDStatusIndicator(Button button_id, State state) {
  return hton_BMS_SetLEDStatusIndicator(static_cast<std::int32_t>(button_id), static_cast<std::int32_t>(state));
}
template <class Button, class State>
EncodedIntegers<Button, State> hton_BMS_SetLEDToggleIndicator(Button button_id, State state) {
  return hton_BMS_SetLEDToggleIndicator(static_cast<std::int32_t>(button_id), static_cast<std::int32_t>(state));
}
template <class Button, class Image>
EncodedIntegers<Button, Image> hton_BMS_SetButtonImage(Button button_id, Image image_id) {
  return hton_BMS_SetButtonImage(static_cast<std::uint32_t>(button_id), static_cast<std::uint32_t>(image_id));
}
/// @}

} // namespace buttondriver
