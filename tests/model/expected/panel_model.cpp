// SPDX-License-Identifier: Apache-2.0
#include "model/expected/panel_model.h"

#include "model/commands/message_bytes.h"

namespace buttondriver::test {

namespace {

constexpr TextColours black_on_white = {0x000000, 0xFFFFFF};
constexpr TextColours white_on_black = {0xFFFFFF, 0x000000};

/// The text at `place`: it ends before its NUL, after `count` bytes, or with the message.
std::string text_at(const std::string &message, std::size_t place, std::uint32_t count) {
  std::string text;
  while (text.size() < count && byte_at(message, place + text.size()) != 0)
    text += message[place + text.size()];
  return text;
}

} // namespace

PanelModel::PanelModel(const FontCollection &fonts, int width, int height) : _fonts(fonts) {
  chooseFont(width, height);
}

void PanelModel::apply(const Command &command) {
  switch (command.kind) {
  case Command::Kind::message:
    return applyMessage(command.bytes);
  case Command::Kind::tick:
    return _lamps.tick();
  case Command::Kind::font:
    return chooseFont(command.width, command.height);
  case Command::Kind::levels:
    _level_file = command.bytes;
    return;
  case Command::Kind::remove_levels:
    _level_file.reset();
    return;
  case Command::Kind::look:
    return;
  }
}

void PanelModel::applyMessage(const std::string &message) {
  const auto field = [&](int place) { return signed_network_word(message, static_cast<std::uint64_t>(place)); };
  switch (network_word(message, 0)) {
  case 10:
    return _levels.reconfig(_level_file);
  case 12:
    _answers += std::string("\0\0\0\4\0\0\0\1", 8);
    return;
  case 15:
    return draw(field(4), whole_line(_font, field(8), text_at(message, 20, network_word(message, 16)),
                                     field(12) != 0 ? white_on_black : black_on_white));
  case 16:
    return draw(field(4), blackness());
  case 17:
    return _lamps.set_button(field(4), field(8), field(12));
  case 18:
    return draw(field(4),
                part_of_line(_font, field(8), field(12), field(16), text_at(message, 32, network_word(message, 28)),
                             {network_word(message, 20), network_word(message, 24)}));
  case 19:
    return draw(field(4), picture(message.size() > 20 ? message.substr(20) : std::string(), field(8), field(12)));
  case 21:
    return _lamps.set_status(field(4), field(8));
  case 22:
    return _lamps.set_toggle(network_word(message, 4), network_word(message, 8));
  default:
    return;
  }
}

void PanelModel::chooseFont(int width, int height) {
  const std::pair size(width, height);
  if (size == _font_size)
    return;
  _font_size = size;
  const auto place = _fonts.find(size);
  // A file that does not exist leaves the font in use; one that is no font leaves none.
  if (place != _fonts.end())
    _font = place->second ? &*place->second : nullptr;
}

void PanelModel::draw(std::int32_t screen_id, const std::optional<Drawing> &drawing) {
  if (!drawing || screen_id < -1 || screen_id > 2)
    return;
  for (std::int32_t screen = 0; screen < 3; ++screen)
    if (screen_id == -1 || screen_id == screen)
      _screens[static_cast<std::size_t>(screen)].draw(drawing->columns, drawing->rows, drawing->pixels);
}

ShownPanel PanelModel::shown() const {
  ShownPanel panel;
  _lamps.show(panel);
  panel.intensity = _levels.intensity();
  for (std::size_t screen = 0; screen < _screens.size(); ++screen)
    panel.screens[screen] = _screens[screen].visible();
  panel.answers = _answers;
  return panel;
}

} // namespace buttondriver::test
