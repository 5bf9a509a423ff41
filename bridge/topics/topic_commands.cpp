// SPDX-License-Identifier: Apache-2.0
#include "bridge/topics/topic_commands.h"

#include "bridge/topics/message_frame.h"
#include "bridge/topics/payloads/lamp_payload.h"
#include "bridge/topics/payloads/line_text.h"
#include "bridge/topics/payloads/part_payload.h"
#include "bridge/topics/payloads/picture_payload.h"
#include "bridge/topics/payloads/shown.h"
#include "bridge/topics/topic_match.h"
#include "bridge/topics/usual_font.h"

#include <algorithm>
#include <cstring>

namespace buttondriver::bridge {

namespace {

using Kind = Target::Kind;

std::string_view characters(const QByteArray &bytes) {
  return {bytes.constData(), static_cast<std::size_t>(bytes.size())};
}

std::int16_t narrow(std::int32_t number) { return static_cast<std::int16_t>(number); }

Target lamp(Kind kind, std::int16_t place) { return {kind, Target::everything, place, false, {}}; }
Target drawing(Kind kind, std::int16_t screen, std::int32_t place = Target::everything) {
  return {kind, screen, narrow(place), false, {}};
}

/// For the record of a lamp; only that of a button has a time.
template <class Record> QByteArray lamp_frame(std::int32_t id, LampState lamp_state) {
  if constexpr (Record::code == BMS_SetLEDState::code)
    return message_frame(Record{Record::code, id, lamp_state.state, lamp_state.phase_ms});
  else
    return message_frame(Record{Record::code, id, lamp_state.state});
}

template <class Record> Outcome<Command> lamp_command(const TopicMatch &match, const QByteArray &payload) {
  const bool can_blink = match.row->form == PayloadForm::led;
  const Outcome<LampState> state = can_blink ? led_state(characters(payload)) : on_or_off(characters(payload));
  if (!state)
    return state.failure();
  const std::int16_t id = match.fields[0];
  return Command{lamp_frame<Record>(id, *state), lamp(match.row->kind, id), match.row->newest_wins};
}

/// A text with the NUL at its end.
void write_text(std::string_view text, std::size_t count, char *destination) {
  write_latin1(text, count, destination);
  destination[count] = '\0';
}

Outcome<Command> line_command(const TopicMatch &match, const QByteArray &payload) {
  const std::string_view text = characters(payload);
  const Outcome<std::size_t> length = characters_of(text);
  if (!length)
    return length.failure();
  const std::size_t count = std::min(*length, most_line_characters);
  const auto flag = static_cast<std::uint32_t>(match.fields[2]);
  const auto n = static_cast<std::uint32_t>(count) + 1;
  QByteArray frame =
      message_frame(BMS_TFTTextLine{BMS_TFTTextLine::code, match.fields[0], match.fields[1], flag, n}, n);
  write_text(text, count, counted_place<BMS_TFTTextLine>(frame));
  return Command{frame, drawing(match.row->kind, match.fields[0], match.fields[1]), match.row->newest_wins};
}

Outcome<Command> part_command(const TopicMatch &match, const QByteArray &payload) {
  const Outcome<LinePart> part = line_part(payload);
  if (!part)
    return part.failure();
  const auto n = static_cast<std::uint32_t>(part->chars) + 1;
  const BMS_TFTSubTextLine head{BMS_TFTSubTextLine::code,
                                match.fields[0],
                                part->line,
                                part->offset,
                                part->chars,
                                part->colour,
                                part->background,
                                n};
  QByteArray frame = message_frame(head, n);
  // The text is as long as it says, and a QByteArray ends with a NUL.
  std::memcpy(counted_place<BMS_TFTSubTextLine>(frame), part->text.constData(), n);
  // What sticks out of its line runs on in the next one.
  const bool fits = part->offset + part->chars <= usual_font::characters;
  Target target = drawing(match.row->kind, match.fields[0], fits ? part->line : Target::everything);
  target.is_part = true;
  if (fits)
    target.characters = {static_cast<std::uint8_t>(part->offset), static_cast<std::uint8_t>(part->chars)};
  return Command{frame, target, match.row->newest_wins};
}

Outcome<Command> picture_command(const TopicMatch &match, const QByteArray &payload) {
  const std::int16_t screen = match.fields[0];
  const std::int16_t x = match.fields[1];
  const std::int16_t y = match.fields[2];
  const Outcome<ScreenPicture> picture = screen_picture(payload, {x, y});
  if (!picture)
    return picture.failure();
  const auto size = static_cast<std::uint32_t>(picture->bmp.size());
  QByteArray frame = message_frame(BMS_DrawTFTImage{BMS_DrawTFTImage::code, screen, x, y, size}, size);
  std::memcpy(counted_place<BMS_DrawTFTImage>(frame), picture->bmp.constData(), size);
  Target target = drawing(match.row->kind, screen);
  if (picture->size == QSize(dimensions::screen_width, dimensions::screen_height))
    target.kind = Kind::screen;
  else
    target.box = {static_cast<std::uint8_t>(x), static_cast<std::uint8_t>(y),
                  static_cast<std::uint8_t>(picture->size.width()), static_cast<std::uint8_t>(picture->size.height())};
  return Command{frame, target, match.row->newest_wins};
}

Outcome<Command> now_command(const TopicMatch &match, const QByteArray &payload) {
  if (characters(payload) != "now")
    return Failure{QStringLiteral("the payload must be 'now', not '%1'").arg(shown(characters(payload)))};
  if (match.row->kind == Kind::no_place)
    return Command{message_frame(BMS_Reconfig{BMS_Reconfig::code, 0}), {}, match.row->newest_wins};
  const std::int16_t screen = match.fields[0];
  return Command{message_frame(BMS_BlackoutScreen{BMS_BlackoutScreen::code, screen}), drawing(match.row->kind, screen),
                 match.row->newest_wins};
}

/// Bytes that a payload of `form` may have.
constexpr int most_bytes(PayloadForm form) {
  switch (form) {
  case PayloadForm::picture:
    return largest_picture_payload;
  case PayloadForm::line:
  case PayloadForm::part:
    return largest_text_payload;
  default:
    return largest_word_payload;
  }
}

} // namespace

Outcome<Command> command_of(const QByteArray &tail, const QByteArray &payload) {
  const Outcome<TopicMatch> match = match_topic(characters(tail));
  if (!match)
    return match.failure();
  const TopicRow &row = *match->row;
  if (payload.size() > most_bytes(row.form))
    return Failure{QStringLiteral("the payload has %1 bytes; here it may have %2 at most")
                       .arg(payload.size())
                       .arg(most_bytes(row.form))};
  switch (row.opcode) {
  case BMS_SetLEDState::code:
    return lamp_command<BMS_SetLEDState>(*match, payload);
  case BMS_SetLEDStatusIndicator::code:
    return lamp_command<BMS_SetLEDStatusIndicator>(*match, payload);
  case BMS_SetLEDToggleIndicator::code:
    return lamp_command<BMS_SetLEDToggleIndicator>(*match, payload);
  case BMS_TFTTextLine::code:
    return line_command(*match, payload);
  case BMS_TFTSubTextLine::code:
    return part_command(*match, payload);
  case BMS_DrawTFTImage::code:
    return picture_command(*match, payload);
  default:
    return now_command(*match, payload);
  }
}

QByteArray clearing_frame(const Target &target) {
  const LampState off;
  switch (target.kind) {
  case Kind::button:
    return lamp_frame<BMS_SetLEDState>(target.place, off);
  case Kind::status:
    return lamp_frame<BMS_SetLEDStatusIndicator>(target.place, off);
  case Kind::toggle:
    return lamp_frame<BMS_SetLEDToggleIndicator>(target.place, off);
  case Kind::line:
  case Kind::area:
  case Kind::screen:
    return message_frame(BMS_BlackoutScreen{BMS_BlackoutScreen::code, target.screen});
  case Kind::no_place:
    break;
  }
  return {};
}

const QByteArray &ping_frame() {
  static const QByteArray frame = message_frame(BMS_Ping{BMS_Ping::code});
  return frame;
}

} // namespace buttondriver::bridge
