// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QByteArray>

#include <cstdint>

namespace buttondriver::buttonctl {

/// A BMS_DrawTFTImage, built without the lines that the public encoder prints.
QByteArray draw_image_message(std::int32_t screen_id, std::int32_t x, std::int32_t y, const QByteArray &bmp);

/// A TYPE_NULL_MESSAGE with `payload` after its opcode.
QByteArray null_message(const QByteArray &payload);

} // namespace buttondriver::buttonctl
