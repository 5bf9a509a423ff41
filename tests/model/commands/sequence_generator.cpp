// SPDX-License-Identifier: Apache-2.0
#include "model/commands/sequence_generator.h"

#include "model/commands/message_generator.h"
#include "protocol/records.h"

#include <ostream>
#include <vector>

namespace buttondriver::test {

namespace {

Command message(std::string bytes) { return {Command::Kind::message, std::move(bytes), 0, 0}; }

std::string level_line(Dice &dice) {
  if (dice.chance(40))
    return "scr " + std::to_string(dice.between(-1, 101));
  return dice.one_of<std::string>({"scr", "lcd 40", "led x", "", "  scr   12  ", "brightness 5", "scr -1",
                                   "scr 70extra", "SCR 5", "scr70", "scr +5", "\tscr\t9", "scr x", " \t", "lcd",
                                   "scr 1 2", std::string(250, 'x') + " scr 33",
                                   "scr " + std::string(251, '0') + "50"});
}

std::string level_file(Dice &dice) {
  std::string file;
  for (std::uint32_t count = dice.below(5); count > 0; --count)
    file += level_line(dice) + '\n';
  if (!file.empty() && dice.chance(30))
    file.pop_back();
  return file;
}

Command font(Dice &dice) {
  // Most of these are fonts; of the others there is no file, or one that is no font.
  const auto [width, height] = dice.one_of<std::pair<int, int>>(
      {{8, 16}, {8, 16}, {8, 16}, {7, 5}, {7, 5}, {7, 5}, {33, 2}, {6, 6}, {9, 9}, {0, 0}});
  return {Command::Kind::font, {}, width, height};
}

void append_levels(Sequence &sequence, Dice &dice) {
  if (dice.chance(8))
    sequence.push_back({Command::Kind::remove_levels, {}, 0, 0});
  else if (dice.chance(70))
    sequence.push_back({Command::Kind::levels, level_file(dice), 0, 0});
  sequence.push_back(message(perhaps_of_another_length(dice, std::string("\0\0\0\x0A\0\0\0\0", 8))));
}

void append_ticks(Sequence &sequence, Dice &dice) {
  for (std::uint32_t count = 1 + dice.below(12); count > 0; --count)
    sequence.push_back({Command::Kind::tick, {}, 0, 0});
}

std::string message_of(std::uint32_t opcode, Dice &dice) { return random_message(dice, *find_message_type(opcode)); }

Command other(Dice &dice) {
  return message(dice.chance(75) ? random_handled_message(dice) : random_unknown_message(dice));
}

void append_command(Sequence &sequence, const Mixture &mixture, Dice &dice) {
  const auto &m = mixture;
  std::uint32_t ticket = dice.below(m.text_lines + m.sub_text_lines + m.pictures + m.blackouts + m.button_leds +
                                    m.indicators + m.fonts + m.levels + m.ticks + m.others);
  const auto is = [&ticket](unsigned weight) {
    const bool mine = ticket < weight;
    ticket -= mine ? 0 : weight;
    return mine;
  };
  const auto append = [&](std::string bytes) {
    sequence.push_back(message(perhaps_of_another_length(dice, std::move(bytes))));
  };
  if (is(m.text_lines))
    append(message_of(BMS_TFTTextLine::code, dice));
  else if (is(m.sub_text_lines))
    append(message_of(BMS_TFTSubTextLine::code, dice));
  else if (is(m.pictures))
    append(message_of(BMS_DrawTFTImage::code, dice));
  else if (is(m.blackouts))
    append(message_of(BMS_BlackoutScreen::code, dice));
  else if (is(m.button_leds))
    append(message_of(BMS_SetLEDState::code, dice));
  else if (is(m.indicators))
    append(message_of(dice.chance(50) ? BMS_SetLEDStatusIndicator::code : BMS_SetLEDToggleIndicator::code, dice));
  else if (is(m.fonts))
    sequence.push_back(font(dice));
  else if (is(m.levels))
    append_levels(sequence, dice);
  else if (is(m.ticks))
    append_ticks(sequence, dice);
  else
    sequence.push_back(other(dice));
}

} // namespace

std::ostream &operator<<(std::ostream &stream, const Mixture &mixture) { return stream << mixture.name; }

Sequence random_sequence(const Mixture &mixture, std::uint64_t seed) {
  Dice dice(seed);
  Sequence sequence;
  for (std::uint32_t count = 1 + dice.below(12); count > 0; --count) {
    append_command(sequence, mixture, dice);
    if (dice.chance(25))
      sequence.push_back({Command::Kind::look, {}, 0, 0});
  }
  sequence.push_back({Command::Kind::look, {}, 0, 0});
  return sequence;
}

} // namespace buttondriver::test
