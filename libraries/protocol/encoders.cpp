// SPDX-License-Identifier: Apache-2.0
#include "protocol/encoders.h"

#include "logging/standard_output.h"
#include "protocol/encode.h"

#include <QtEndian>

#include <algorithm>
#include <cstring>

namespace buttondriver {

namespace {

/// Latin-1 text with its NUL counted.
std::uint32_t counted(const QByteArray &text) { return static_cast<std::uint32_t>(text.size()) + 1; }

} // namespace

QByteArray hton_BMS_SetLEDState(std::int32_t button_id, std::int32_t state, std::int32_t time) {
  return encoded(BMS_SetLEDState{BMS_SetLEDState::code, button_id, state, time});
}

QByteArray hton_BMS_SetLEDStatusIndicator(std::int32_t button_id, std::int32_t state) {
  return encoded(BMS_SetLEDStatusIndicator{BMS_SetLEDStatusIndicator::code, button_id, state});
}

QByteArray hton_BMS_SetLEDToggleIndicator(std::int32_t button_id, std::int32_t state) {
  return encoded(BMS_SetLEDToggleIndicator{BMS_SetLEDToggleIndicator::code, button_id, state});
}

QByteArray hton_BMS_UploadImage(std::int32_t image_id, const void *image, std::int32_t size) {
  BMS_UploadImage record{BMS_UploadImage::code, image_id, size, {}};
  const auto copied = std::clamp<std::int32_t>(size, 0, sizeof record.image);
  if (copied > 0)
    std::memcpy(record.image, image, static_cast<std::size_t>(copied));
  return encoded(record);
}

QByteArray hton_BMS_SetButtonImage(std::uint32_t button_id, std::uint32_t image_id) {
  return encoded(BMS_SetButtonImage{BMS_SetButtonImage::code, button_id, image_id});
}

QByteArray hton_BMS_TFTTextLine(std::int32_t screen_id, std::int32_t line_id, const QString &text, std::uint8_t flag) {
  const QByteArray latin1 = text.toLatin1();
  const std::uint32_t n = counted(latin1);
  return encoded(BMS_TFTTextLine{BMS_TFTTextLine::code, screen_id, line_id, flag, n}, latin1.constData(), n);
}

QByteArray hton_BMS_TFTSubTextLine(std::int32_t screen_id, std::int32_t line_id, std::int32_t offset,
                                   std::int32_t num_chars, const QString &text, std::uint32_t text_colour,
                                   std::uint32_t back_colour) {
  const QByteArray latin1 = text.toLatin1();
  const std::uint32_t n = counted(latin1);
  const BMS_TFTSubTextLine head{
      BMS_TFTSubTextLine::code, screen_id, line_id, offset, num_chars, text_colour, back_colour, n};
  return encoded(head, latin1.constData(), n);
}

QByteArray hton_BMS_BlackoutScreen(std::int32_t screen_id) {
  return encoded(BMS_BlackoutScreen{BMS_BlackoutScreen::code, screen_id});
}

QByteArray hton_BMS_Ping() { return encoded(BMS_Ping{BMS_Ping::code}); }

QByteArray hton_BMS_DrawTFTImage(std::int32_t screen_id, std::int32_t x_offset, std::int32_t y_offset,
                                 std::uint32_t size, const void *data) {
  print("Before hton_BMS_DrawTFTImage... size = %d\n", static_cast<int>(size));
  QByteArray message =
      encoded(BMS_DrawTFTImage{BMS_DrawTFTImage::code, screen_id, x_offset, y_offset, size}, data, size);
  print("After hton_BMS_DrawTFTImage...");
  return message;
}

QByteArray hton_BMS_Reconfig() { return encoded(BMS_Reconfig{BMS_Reconfig::code, 0}); }

QByteArray hton_BMS_SetButtonImageList(std::uint32_t button_id, const QList<std::uint32_t> &image_ids,
                                       std::uint32_t parameter_a, std::uint32_t parameter_b) {
  std::vector<std::uint32_t> ids; // in network order
  for (const std::uint32_t id : image_ids)
    ids.push_back(qToBigEndian(id));
  const auto n = static_cast<std::uint32_t>(ids.size());
  const BMS_SetButtonImageList head{BMS_SetButtonImageList::code, button_id, 0, parameter_b, parameter_a, n};
  return encoded(head, ids.data(), ids.size() * sizeof(std::uint32_t));
}

std::vector<QByteArray> hton_BMS_SetButtonAnimation(std::uint32_t button_id, const QList<QByteArray> &images,
                                                    std::int32_t first_image_id, std::uint32_t parameter_a,
                                                    std::uint32_t parameter_b) {
  std::vector<QByteArray> messages;
  QList<std::uint32_t> image_ids;
  auto image_id = static_cast<std::uint32_t>(first_image_id);
  for (const QByteArray &image : images) {
    messages.push_back(hton_BMS_UploadImage(static_cast<std::int32_t>(image_id), image.constData(),
                                            static_cast<std::int32_t>(image.size())));
    image_ids.push_back(image_id);
    ++image_id;
  }
  messages.push_back(hton_BMS_SetButtonImageList(button_id, image_ids, parameter_a, parameter_b));
  return messages;
}

} // namespace buttondriver
