// SPDX-License-Identifier: Apache-2.0
#include "bridge/wanted/panel_model.h"

#include <QList>

namespace buttondriver::bridge::test {

namespace {

template <typename Lamps> void switch_lamps(Lamps &lamps, int place, int what) {
  for (std::size_t i = 0; i < lamps.size(); ++i)
    if (place == Target::everything || place == static_cast<int>(i))
      lamps[i] = what;
}

} // namespace

void PanelModel::carryOut(const Command &command) {
  const Target &target = command.target;
  const int what = command.frame.split(' ').last().toInt();
  switch (target.kind) {
  case Target::Kind::button:
    return switch_lamps(_buttons, target.place, what);
  case Target::Kind::status:
    return switch_lamps(_status, target.place, what);
  case Target::Kind::toggle:
    return switch_lamps(_toggles, target.place, what);
  case Target::Kind::no_place:
    return;
  default:
    for (int screen = 0; screen < 3; ++screen)
      if (target.screen == Target::everything || target.screen == screen)
        draw(screen, command);
  }
}

void PanelModel::draw(int screen, const Command &command) {
  const Target &target = command.target;
  const QList<QByteArray> words = command.frame.split(' ');
  int left = 0, top = 0, width = 16, height = 8;
  if (target.kind == Target::Kind::line) {
    top = target.place;
    height = 1;
    if (target.is_part) {
      left = words[0].toInt();
      width = words[1].toInt();
    }
  } else if (target.kind == Target::Kind::area) {
    left = target.box.left / 8;
    top = target.box.top / 16;
    width = target.box.width / 8;
    height = target.box.height / 16;
  }
  auto &cells = _screens[static_cast<std::size_t>(screen)];
  for (int y = top; y < top + height; ++y)
    for (int x = left; x < left + width; ++x)
      cells.at(static_cast<std::size_t>(y)).at(static_cast<std::size_t>(x)) = words.last().toInt();
}

bool PanelModel::operator==(const PanelModel &other) const {
  return _buttons == other._buttons && _status == other._status && _toggles == other._toggles &&
         _screens == other._screens;
}

std::string PanelModel::text() const {
  std::string text;
  const auto add_lamps = [&text](const char *name, const auto &lamps) {
    text += name;
    for (const int lamp : lamps)
      text += ' ' + std::to_string(lamp);
    text += '\n';
  };
  add_lamps("buttons", _buttons);
  add_lamps("status", _status);
  add_lamps("toggles", _toggles);
  for (const auto &screen : _screens)
    for (const auto &row : screen)
      add_lamps("line", row);
  return text;
}

QByteArray payload_of(const Target &target, const QByteArray &frame) {
  QByteArray payload;
  for (const int number : {int(target.kind), int(target.screen), int(target.place), int(target.is_part),
                           int(target.box.left), int(target.box.top), int(target.box.width), int(target.box.height),
                           int(target.characters.first), int(target.characters.count)})
    payload += QByteArray::number(number) + ' ';
  return payload + frame;
}

Outcome<Command> decoded(const QByteArray &, const QByteArray &payload) {
  const QList<QByteArray> words = payload.split(' ');
  const auto byte = [&words](int i) { return static_cast<std::uint8_t>(words[i].toInt()); };
  Command command;
  command.target.kind = static_cast<Target::Kind>(words[0].toInt());
  command.target.screen = words[1].toShort();
  command.target.place = words[2].toShort();
  command.target.is_part = words[3] == "1";
  command.target.box = {byte(4), byte(5), byte(6), byte(7)};
  command.target.characters = {byte(8), byte(9)};
  command.frame = words.mid(10).join(' ');
  return command;
}

} // namespace buttondriver::bridge::test
