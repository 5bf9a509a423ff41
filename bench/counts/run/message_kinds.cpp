// SPDX-License-Identifier: Apache-2.0
#include "counts/run/message_kinds.h"

#include "dimensions/panel_dimensions.h"
#include "protocol/encode.h"
#include "protocol/encoders.h"
#include "protocol/records.h"
#include "soak/load/frames.h"

#include <QString>

namespace buttondriver::counts {

namespace {

QByteArray status_led(int index) {
  return hton_BMS_SetLEDStatusIndicator(index % dimensions::led_count, index / dimensions::led_count % 2);
}

QByteArray button_led(int index) {
  return hton_BMS_SetLEDState(index % dimensions::button_count, index / dimensions::button_count % 2, 0);
}

QString text_of(int index) { return QStringLiteral("%1 of sixteen").arg(index, 5); }

QByteArray text_line(int index) {
  return hton_BMS_TFTTextLine(index % 3, index / 3 % 8, text_of(index).left(16), static_cast<std::uint8_t>(index % 2));
}

QByteArray sub_text_line(int index) {
  constexpr int offset = 4;
  constexpr int length = 6;
  return hton_BMS_TFTSubTextLine(index % 3, index / 3 % 8, offset, length, text_of(index).left(length), 0xFF0000,
                                 0x00FF00);
}

/// A picture's file; its colours depend on `index`.
QByteArray picture_file(int side, int index) {
  QByteArray file = QByteArray::fromStdString(soak::picture_head(static_cast<std::uint32_t>(side)));
  for (int i = 0; i < 3 * side * side; ++i)
    file.append(static_cast<char>(i * 7 + index));
  return file;
}

/// The encoder of this message prints a line each time.
QByteArray picture(int side, int index) {
  const QByteArray file = picture_file(side, index);
  BMS_DrawTFTImage head{};
  head.opcode = BMS_DrawTFTImage::code;
  head._screen_id = index % 3;
  head._size = static_cast<std::uint32_t>(file.size());
  return encoded(head, file.constData(), head._size);
}

QByteArray small_picture(int index) { return picture(40, index); }
QByteArray full_picture(int index) { return picture(128, index); }
QByteArray blackout(int index) { return hton_BMS_BlackoutScreen(index % 3); }
QByteArray ping(int) { return hton_BMS_Ping(); }

/// An opcode and twelve bytes.
QByteArray generic(std::uint32_t opcode) {
  TYPE_NULL_MESSAGE head{};
  head.opcode = opcode;
  return encoded(head, "twelve bytes", 12);
}

QByteArray null_message(int) { return generic(TYPE_NULL_MESSAGE::code); }
QByteArray unknown_message(int) { return generic(99); }

QByteArray upload(int index, int size) {
  const QByteArray image(dimensions::button_image_bytes, '\x33');
  return hton_BMS_UploadImage(100 + index, image.constData(), size);
}

QByteArray good_upload(int index) { return upload(index, 120); }
QByteArray short_upload(int index) { return upload(index, 119); }

} // namespace

const std::vector<MessageKind> &all_message_kinds() {
  // A null message ends its client's turn; pictures are as many as the kernel keeps of one connection.
  static const std::vector<MessageKind> kinds = {
      {"status_led", 64, 8, 0, status_led},
      {"button_led", 64, 8, 0, button_led},
      {"text_line", 64, 4, 0, text_line},
      {"sub_text_line", 64, 4, 0, sub_text_line},
      {"picture_40x40", 8, 8, 0, small_picture},
      {"picture_128x128", 1, 8, 0, full_picture},
      {"blackout", 8, 8, 0, blackout},
      {"ping", 64, 8, 1, ping},
      {"ping_alone", 1, 64, 1, ping},
      {"null_message_16", 16, 16, 0, null_message},
      {"upload_120", 64, 8, 0, good_upload},
      {"upload_119", 64, 8, 0, short_upload},
      {"unknown_message", 64, 8, 0, unknown_message},
  };
  return kinds;
}

} // namespace buttondriver::counts
