// SPDX-License-Identifier: Apache-2.0
#include "bridge/topics/target.h"

#include "bridge/topics/usual_font.h"

namespace buttondriver::bridge {

namespace {

using Kind = Target::Kind;

bool is_lamp(Kind kind) { return kind == Kind::button || kind == Kind::status || kind == Kind::toggle; }
bool is_drawn(Kind kind) { return kind == Kind::line || kind == Kind::area || kind == Kind::screen; }

bool can_be_one(std::int16_t one, std::int16_t other) {
  return one == other || one == Target::everything || other == Target::everything;
}

bool includes(std::int16_t place, std::int16_t other) { return place == other || place == Target::everything; }

/// Others may be drawn over any line, or be seen on none.
bool has_rows_of_its_own(const Target &line) { return line.place >= 0 && line.place < usual_font::lines; }

bool can_meet(const Target &one, const Target &other) {
  if (one.kind == Kind::line && other.kind == Kind::line && has_rows_of_its_own(one) && has_rows_of_its_own(other))
    return one.place == other.place;
  if (one.kind == Kind::area && other.kind == Kind::area && one.box.isKnown() && other.box.isKnown())
    return one.box.meets(other.box);
  return true;
}

/// A part draws over each pixel of its characters, also where its text is shorter, and over no other. Of a whole line
/// they are not known: with another font, there are more than any part has.
bool covers_line(const Target &line, const Target &earlier) {
  if (earlier.kind != Kind::line || line.place < 0 || line.place != earlier.place)
    return false;
  return !line.is_part ||
         (has_rows_of_its_own(line) && earlier.characters.isKnown() && line.characters.contains(earlier.characters));
}

} // namespace

bool Target::overlaps(const Target &other) const {
  if (is_lamp(kind))
    return kind == other.kind && can_be_one(place, other.place);
  return is_drawn(kind) && is_drawn(other.kind) && can_be_one(screen, other.screen) && can_meet(*this, other);
}

bool Target::covers(const Target &earlier) const {
  if (is_lamp(kind))
    return kind == earlier.kind && includes(place, earlier.place);
  if (!is_drawn(kind) || !is_drawn(earlier.kind) || !includes(screen, earlier.screen))
    return false;
  switch (kind) {
  case Kind::screen:
    return true;
  case Kind::line:
    return covers_line(*this, earlier);
  case Kind::area:
    return earlier.kind == Kind::area && earlier.box.isKnown() && box.contains(earlier.box);
  default:
    return false;
  }
}

} // namespace buttondriver::bridge
