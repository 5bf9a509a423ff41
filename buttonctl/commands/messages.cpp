// SPDX-License-Identifier: Apache-2.0
#include "buttonctl/commands/messages.h"

#include "protocol/converters.h"
#include "protocol/framing.h"
#include "protocol/records.h"

#include <cstring>

namespace buttondriver::buttonctl {

namespace {

/// `head` in network order with `tail` behind it.
template <class Record> QByteArray encode(const Record &head, const QByteArray &tail) {
  QByteArray message(static_cast<int>(type_of<Record>.head_size), Qt::Uninitialized);
  std::memcpy(message.data(), &head, type_of<Record>.head_size);
  swap_head(type_of<Record>, message.data(), message.constData());
  return message + tail;
}

} // namespace

QByteArray framed(const QByteArray &message) {
  const auto prefix = frame_prefix(static_cast<std::uint32_t>(message.size()));
  return QByteArray(reinterpret_cast<const char *>(prefix.data()), static_cast<int>(prefix.size())) + message;
}

QByteArray draw_image_message(std::int32_t screen_id, std::int32_t x, std::int32_t y, const QByteArray &bmp) {
  const auto size = static_cast<std::uint32_t>(bmp.size());
  return encode(BMS_DrawTFTImage{BMS_DrawTFTImage::code, screen_id, x, y, size}, bmp);
}

QByteArray null_message(const QByteArray &payload) {
  return encode(TYPE_NULL_MESSAGE{TYPE_NULL_MESSAGE::code}, payload);
}

} // namespace buttondriver::buttonctl
