// SPDX-License-Identifier: Apache-2.0
#include "bridge/wanted/target_set.h"

#include "dimensions/panel_dimensions.h"

namespace buttondriver::bridge {

namespace {

std::uint32_t bit_of(std::int16_t place) { return place >= 0 && place < 32 ? std::uint32_t{1} << place : 0; }

template <typename Visit> void for_bits(std::uint32_t bits, Visit visit) {
  for (std::int16_t place = 0; bits != 0; ++place, bits >>= 1)
    if (bits & 1)
      visit(place);
}

Target lamp(Target::Kind kind, std::int16_t place) {
  Target target;
  target.kind = kind;
  target.place = place;
  return target;
}

constexpr std::uint32_t first_bits(int count) { return static_cast<std::uint32_t>((std::uint64_t{1} << count) - 1); }

} // namespace

TargetSet TargetSet::wholePanel() {
  TargetSet all;
  all._buttons = first_bits(dimensions::button_count);
  all._status = first_bits(dimensions::led_count);
  all._toggles = first_bits(dimensions::toggle_indicator_count);
  all._screens = first_bits(dimensions::screen_count);
  return all;
}

void TargetSet::add(const Target &target) {
  switch (target.kind) {
  case Target::Kind::button:
    _has_all_buttons |= target.place == Target::everything;
    _buttons |= bit_of(target.place);
    break;
  case Target::Kind::status:
    _status |= bit_of(target.place);
    break;
  case Target::Kind::toggle:
    _toggles |= bit_of(target.place);
    break;
  case Target::Kind::line:
  case Target::Kind::area:
  case Target::Kind::screen:
    _screens |= target.screen == Target::everything ? first_bits(dimensions::screen_count) : bit_of(target.screen);
    break;
  case Target::Kind::no_place:
    break;
  }
}

void TargetSet::add(const TargetSet &other) {
  _buttons |= other._buttons;
  _status |= other._status;
  _toggles |= other._toggles;
  _screens |= other._screens;
  _has_all_buttons |= other._has_all_buttons;
}

QVector<Target> TargetSet::targets() const {
  QVector<Target> targets;
  if (_has_all_buttons)
    targets.append(lamp(Target::Kind::button, Target::everything));
  else
    for_bits(_buttons, [&](std::int16_t place) { targets.append(lamp(Target::Kind::button, place)); });
  for_bits(_status, [&](std::int16_t place) { targets.append(lamp(Target::Kind::status, place)); });
  for_bits(_toggles, [&](std::int16_t place) { targets.append(lamp(Target::Kind::toggle, place)); });
  for_bits(_screens, [&](std::int16_t place) {
    Target target;
    target.kind = Target::Kind::screen;
    target.screen = place;
    targets.append(target);
  });
  return targets;
}

} // namespace buttondriver::bridge
