// SPDX-License-Identifier: Apache-2.0
#include "bridge/wanted/drawing_order.h"

#include "dimensions/panel_dimensions.h"

#include <algorithm>
#include <iterator>

namespace buttondriver::bridge {

namespace {

constexpr std::size_t buttons_part = 0;
constexpr std::size_t status_part = 1;
constexpr std::size_t toggles_part = 2;
constexpr std::size_t first_screen_part = 3;

} // namespace

template <typename Visit> void DrawingOrder::forPartsOf(const Target &target, Visit visit) {
  static_assert(first_screen_part + dimensions::screen_count == std::tuple_size<decltype(_parts)>::value,
                "each screen is a part");
  switch (target.kind) {
  case Target::Kind::button:
    return visit(_parts[buttons_part]);
  case Target::Kind::status:
    return visit(_parts[status_part]);
  case Target::Kind::toggle:
    return visit(_parts[toggles_part]);
  case Target::Kind::line:
  case Target::Kind::area:
  case Target::Kind::screen:
    for (std::size_t screen = 0; screen < dimensions::screen_count; ++screen)
      if (target.screen == Target::everything || target.screen == static_cast<std::int16_t>(screen))
        visit(_parts[first_screen_part + screen]);
    return;
  case Target::Kind::no_place:
    return;
  }
}

bool DrawingOrder::append(WantedEntry &entry) {
  bool has_changed = false;
  entry.overlapped_by = 0;
  forPartsOf(entry.target, [&](Part &part) {
    for (WantedEntry *const earlier : part)
      if (earlier->target.overlaps(entry.target))
        has_changed |= ++earlier->overlapped_by == 1;
    part.push_back(&entry);
  });
  return has_changed;
}

bool DrawingOrder::takeOut(WantedEntry &entry) {
  bool has_changed = entry.overlapped_by > 0;
  forPartsOf(entry.target, [&](Part &part) {
    const auto place = std::find(part.rbegin(), part.rend(), &entry);
    if (place == part.rend())
      return;
    for (auto earlier = std::next(place); earlier != part.rend(); ++earlier)
      if ((*earlier)->target.overlaps(entry.target))
        has_changed |= --(*earlier)->overlapped_by == 0;
    part.erase(std::next(place).base());
  });
  return has_changed;
}

void DrawingOrder::clear() {
  for (Part &part : _parts)
    part.clear();
}

} // namespace buttondriver::bridge
