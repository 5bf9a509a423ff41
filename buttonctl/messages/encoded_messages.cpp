// SPDX-License-Identifier: Apache-2.0
#include "buttonctl/messages/encoded_messages.h"

#include "protocol/encode.h"

namespace buttondriver::buttonctl {

QByteArray draw_image_message(std::int32_t screen_id, std::int32_t x, std::int32_t y, const QByteArray &bmp) {
  const auto size = static_cast<std::uint32_t>(bmp.size());
  return encoded(BMS_DrawTFTImage{BMS_DrawTFTImage::code, screen_id, x, y, size}, bmp.constData(), size);
}

QByteArray null_message(const QByteArray &payload) {
  return encoded(TYPE_NULL_MESSAGE{TYPE_NULL_MESSAGE::code}, payload.constData(),
                 static_cast<std::uint32_t>(payload.size()));
}

} // namespace buttondriver::buttonctl
