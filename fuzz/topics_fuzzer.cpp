// SPDX-License-Identifier: Apache-2.0
// Topics and payloads, as the bridge to MQTT makes messages of them.
//
// Input: the length of the topic (one byte), the topic below its panel, and the payload.
#include "bridge/topics/topic_commands.h"
#include "bridge/topics/topic_levels.h"
#include "bridge/topics/usual_font.h"
#include "bytes/view_of.h"
#include "fuzz/fuzz_target.h"
#include "fuzz/support/input.h"
#include "fuzz/support/require.h"
#include "pictures/bmp_file.h"
#include "protocol/decode.h"
#include "protocol/framing.h"

#include <QByteArray>

#include <algorithm>
#include <optional>

namespace buttondriver::fuzz {

namespace {

using namespace bridge;
using Kind = Target::Kind;

QByteArray byte_array(const std::vector<std::uint8_t> &bytes) {
  return QByteArray(reinterpret_cast<const char *>(bytes.data()), static_cast<int>(bytes.size()));
}

void require_one_line(const QString &text) {
  constexpr int longest = 500;
  require(!text.isEmpty() && text.size() <= longest, "a failure is told, and not at length");
  require(std::all_of(text.begin(), text.end(), [](QChar c) { return c.unicode() >= 0x20 && c.unicode() < 0x7F; }),
          "a failure is one line of printable characters");
}

/// Of a message that counts characters: they are there, and a NUL ends them.
void require_text(ByteView message, const MessageType &type) {
  const std::uint32_t count = message.bigEndian32(type.countField().offset);
  require(count >= 1 && count <= 129, "a text is no longer than a line can be");
  require(message.size() == type.size(count), "the message ends with its text");
  require(message.text(type.head_size, count).size() + 1 == count, "a text ends at its only NUL");
  for (std::uint32_t i = 0; i + 1 < count; ++i) {
    const std::uint8_t character = message.u8(type.head_size + i);
    require(character >= 0x20 && (character < 0x7F || character >= 0xA0), "a text has no control characters");
  }
}

void require_picture(ByteView message) {
  const auto head = decode<BMS_DrawTFTImage>(message);
  const std::optional<QSize> size = size_of_screen_bmp(message.from(type_of<BMS_DrawTFTImage>.head_size));
  require(size.has_value(), "the panel understands a picture");
  require(head._xoffset >= 0 && head._xoffset + size->width() <= dimensions::screen_width && head._yoffset >= 0 &&
              head._yoffset + size->height() <= dimensions::screen_height,
          "a picture lies on the screen");
  require(message.size() == type_of<BMS_DrawTFTImage>.size(head._size), "the message ends with its picture");
}

void require_sense(const Target &target) {
  const bool stays = target.kind != Kind::no_place;
  require(target.overlaps(target) == stays, "what stays overlaps itself");
  const bool lies_where_it_says = target.place >= 0 && target.place < usual_font::lines && target.characters.isKnown();
  const bool hides_itself = stays && (!target.is_part || lies_where_it_says);
  require(target.covers(target) == hides_itself, "all cover themselves but parts that may lie anywhere");
  require(clearing_frame(target).isEmpty() != stays, "what stays can be cleared");
  require(target.screen >= -1 && target.screen < dimensions::screen_count, "a screen is one, or all");
}

void require_sound(const Command &command) {
  const ByteView frame = view_of(command.frame);
  require(frame.bigEndian32(0) + frame_prefix_size == frame.size(), "a frame says how long its message is");
  const ByteView message = frame.from(frame_prefix_size);
  const MessageType *const type = find_message_type(message.bigEndian32(0));
  require(type && type->handling == Handling::server_handles, "the daemon handles the message");
  // The fields that have a range keep to it, or have a name.
  for (std::size_t i = 1; i < type->fieldCount(); ++i) {
    const Field &field = type->fields[i];
    const std::uint32_t bits = message.bigEndian32(field.offset);
    const std::int64_t value =
        field.kind == FieldKind::signed_integer ? std::int64_t{static_cast<std::int32_t>(bits)} : std::int64_t{bits};
    const bool has_name = field.namedCount() > 0 && value == field.named[0].first;
    require(has_name || (value >= field.lowest && value <= field.highest), "a field keeps to its range");
  }
  if (type->counted == Counted::text_bytes)
    require_text(message, *type);
  else if (type->counted == Counted::image_bytes)
    require_picture(message);
  else
    require(message.size() == type->head_size, "the message is as long as its fields");
  require_sense(command.target);
}

} // namespace

} // namespace buttondriver::fuzz

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
  using namespace buttondriver::fuzz;
  Input input(data, size);
  const std::vector<std::uint8_t> length = input.bytes(1);
  const QByteArray tail = byte_array(input.bytes(length.empty() ? 0 : length.front()));
  const QByteArray payload = byte_array(input.rest());
  const buttondriver::Outcome<Command> command = command_of(tail, payload);
  if (command)
    require_sound(*command);
  else
    require_one_line(command.failure().text);
  return 0;
}
