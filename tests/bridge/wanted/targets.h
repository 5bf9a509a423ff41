// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "bridge/topics/target.h"

namespace buttondriver::bridge::test {

inline Target target_of(Target::Kind kind, int screen, int place, bool is_part = false, Target::Box box = {}) {
  Target target;
  target.kind = kind;
  target.screen = static_cast<std::int16_t>(screen);
  target.place = static_cast<std::int16_t>(place);
  target.is_part = is_part;
  target.box = box;
  return target;
}

inline Target button(int place) { return target_of(Target::Kind::button, Target::everything, place); }
inline Target status(int place) { return target_of(Target::Kind::status, Target::everything, place); }
inline Target toggle(int place) { return target_of(Target::Kind::toggle, Target::everything, place); }
inline Target line(int screen, int place) { return target_of(Target::Kind::line, screen, place); }
/// Without `characters`, those are not known.
inline Target part(int screen, int place, Target::Characters characters = {}) {
  Target target = target_of(Target::Kind::line, screen, place, true);
  target.characters = characters;
  return target;
}
inline Target area(int screen, Target::Box box) {
  return target_of(Target::Kind::area, screen, Target::everything, false, box);
}
inline Target screen(int number) { return target_of(Target::Kind::screen, number, Target::everything); }
inline constexpr int all = Target::everything;

} // namespace buttondriver::bridge::test
