#pragma once

#include <QByteArray>
#include <QList>
#include <QString>

#include <cstdint>
#include <vector>

/// Builds messages for the daemon. Each function returns exactly one message in network order, without the length that
/// frames it on the stream; all arguments are in host order. Texts are sent as Latin-1 with a terminating NUL.
/// A message of 2 GiB or more, which a QByteArray cannot hold everywhere, comes out empty.
/// Thread-safe: nothing is shared.
namespace buttondriver {

/// `state` 1 is on, -1 blinks with phases of `time` milliseconds, all else is off. `button_id` -1 means all buttons.
QByteArray hton_BMS_SetLEDState(std::int32_t button_id, std::int32_t state, std::int32_t time);
/// `state` 1 is on, all else off.
QByteArray hton_BMS_SetLEDStatusIndicator(std::int32_t button_id, std::int32_t state);
/// `button_id` 0 or 1, `state` 0 or 1.
QByteArray hton_BMS_SetLEDToggleIndicator(std::int32_t button_id, std::int32_t state);
/// `image` holds `size` bytes, 24 rows of 40 one-bit pixels. The daemon accepts only a size of 120; the message has
/// room for 120 bytes, so of a longer image the rest is left out, and `size` says what was asked for.
QByteArray hton_BMS_UploadImage(std::int32_t image_id, const void *image, std::int32_t size);
QByteArray hton_BMS_SetButtonImage(std::uint32_t button_id, std::uint32_t image_id);
/// `flag` non-zero: white on black; 0: black on white. Screen ids are 0, 1, 2, and -1 for all.
QByteArray hton_BMS_TFTTextLine(std::int32_t screen_id, std::int32_t line_id, const QString &text, std::uint8_t flag);
/// Writes `num_chars` characters of `text` from character `offset` of the line on; colours are 0xRRGGBB.
QByteArray hton_BMS_TFTSubTextLine(std::int32_t screen_id, std::int32_t line_id, std::int32_t offset,
                                   std::int32_t num_chars, const QString &text, std::uint32_t text_colour,
                                   std::uint32_t back_colour);
QByteArray hton_BMS_BlackoutScreen(std::int32_t screen_id);
QByteArray hton_BMS_Ping();
/// `data` holds `size` bytes of an uncompressed 24-bit BMP file. Prints a line of its own before and after, as
/// integrators' logs expect it.
QByteArray hton_BMS_DrawTFTImage(std::int32_t screen_id, std::int32_t x_offset, std::int32_t y_offset,
                                 std::uint32_t size, const void *data);
QByteArray hton_BMS_Reconfig();
/// On the wire `parameter_b` stands before `parameter_a`.
QByteArray hton_BMS_SetButtonImageList(std::uint32_t button_id, const QList<std::uint32_t> &image_ids,
                                       std::uint32_t parameter_a, std::uint32_t parameter_b);

/// One BMS_UploadImage for each of `images`, with the ids `first_image_id`, `first_image_id` + 1, ..., then the
/// BMS_SetButtonImageList that names them. To be sent in this order.
std::vector<QByteArray> hton_BMS_SetButtonAnimation(std::uint32_t button_id, const QList<QByteArray> &images,
                                                    std::int32_t first_image_id, std::uint32_t parameter_a,
                                                    std::uint32_t parameter_b);

} // namespace buttondriver
