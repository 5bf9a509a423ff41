// SPDX-License-Identifier: Apache-2.0
#include "bridge/topics/target.h"

#include <gtest/gtest.h>

#include <set>
#include <string>
#include <utility>
#include <vector>

namespace buttondriver::bridge {
namespace {

using Kind = Target::Kind;

struct Named {
  const char *name;
  Target target;
};

constexpr std::int16_t all = Target::everything;

/// Every kind of target that there is, one after the other, as the tables below name them.
const Named targets[] = {
    {"led 5", {Kind::button, all, 5, false, {}}},
    {"led 6", {Kind::button, all, 6, false, {}}},
    {"leds", {Kind::button, all, all, false, {}}},
    {"status 5", {Kind::status, all, 5, false, {}}},
    {"status 6", {Kind::status, all, 6, false, {}}},
    {"toggle 0", {Kind::toggle, all, 0, false, {}}},
    {"toggle 1", {Kind::toggle, all, 1, false, {}}},
    {"line 0.0", {Kind::line, 0, 0, false, {}}},
    {"line 0.7", {Kind::line, 0, 7, false, {}}},
    {"line 1.7", {Kind::line, 1, 7, false, {}}},
    {"line *.7", {Kind::line, all, 7, false, {}}},
    {"line 0.8", {Kind::line, 0, 8, false, {}}}, // not seen, or in another place
    {"part 0.7", {Kind::line, 0, 7, true, {}, {3, 4}}},
    {"part 0.8", {Kind::line, 0, 8, true, {}, {3, 4}}},
    {"part 0.?", {Kind::line, 0, all, true, {}}},
    {"area 0 left", {Kind::area, 0, all, false, {0, 0, 64, 128}}},
    {"area 0 right", {Kind::area, 0, all, false, {64, 0, 64, 128}}},
    {"area 0 top right", {Kind::area, 0, all, false, {64, 0, 64, 64}}},
    {"area 1 right", {Kind::area, 1, all, false, {64, 0, 64, 128}}},
    {"area * right", {Kind::area, all, all, false, {64, 0, 64, 128}}},
    {"area 0 ?", {Kind::area, 0, all, false, {}}},
    {"screen 0", {Kind::screen, 0, all, false, {}}},
    {"screen 1", {Kind::screen, 1, all, false, {}}},
    {"screens", {Kind::screen, all, all, false, {}}},
    {"nothing", {}},
};

using Pairs = std::set<std::pair<std::string, std::string>>;

/// Each pair with `first` before any of `others`.
struct Line {
  const char *first;
  std::vector<const char *> others;
};

Pairs pairs_of(const std::vector<Line> &lines) {
  Pairs pairs;
  for (const Line &line : lines)
    for (const char *other : line.others)
      pairs.emplace(line.first, other);
  return pairs;
}

TEST(TargetTest, overlaps_what_can_be_seen_in_the_same_place) {
  // Each pair once: it is the same the other way round. That a target overlaps itself is not written here.
  const Pairs expected = pairs_of({
      {"leds", {"led 5", "led 6"}},
      {"line *.7", {"line 0.7", "line 1.7", "part 0.7"}},
      {"line 0.7", {"part 0.7"}},
      {"line 0.8", {"line 0.0", "line 0.7", "line *.7", "part 0.7", "part 0.8"}},
      {"part 0.8", {"line 0.0", "line 0.7", "line *.7", "part 0.7"}},
      {"part 0.?", {"line 0.0", "line 0.7", "line *.7", "line 0.8", "part 0.7", "part 0.8"}},
      {"area 0 left", {"line 0.0", "line 0.7", "line *.7", "line 0.8", "part 0.7", "part 0.8", "part 0.?"}},
      {"area 0 right", {"line 0.0", "line 0.7", "line *.7", "line 0.8", "part 0.7", "part 0.8", "part 0.?"}},
      {"area 0 top right",
       {"line 0.0", "line 0.7", "line *.7", "line 0.8", "part 0.7", "part 0.8", "part 0.?", "area 0 right"}},
      {"area 1 right", {"line 1.7", "line *.7"}},
      {"area * right",
       {"line 0.0", "line 0.7", "line 1.7", "line *.7", "line 0.8", "part 0.7", "part 0.8", "part 0.?", "area 0 right",
        "area 0 top right", "area 1 right"}},
      {"area 0 ?",
       {"line 0.0", "line 0.7", "line *.7", "line 0.8", "part 0.7", "part 0.8", "part 0.?", "area 0 left",
        "area 0 right", "area 0 top right", "area * right"}},
      {"screen 0",
       {"line 0.0", "line 0.7", "line *.7", "line 0.8", "part 0.7", "part 0.8", "part 0.?", "area 0 left",
        "area 0 right", "area 0 top right", "area * right", "area 0 ?"}},
      {"screen 1", {"line 1.7", "line *.7", "area 1 right", "area * right"}},
      {"screens",
       {"line 0.0", "line 0.7", "line 1.7", "line *.7", "line 0.8", "part 0.7", "part 0.8", "part 0.?", "area 0 left",
        "area 0 right", "area 0 top right", "area 1 right", "area * right", "area 0 ?", "screen 0", "screen 1"}},
  });
  for (const Named &one : targets)
    for (const Named &other : targets) {
      const bool is_same = &one == &other && one.target.kind != Kind::no_place;
      EXPECT_EQ(one.target.overlaps(other.target),
                is_same || expected.count({one.name, other.name}) + expected.count({other.name, one.name}) > 0)
          << one.name << " and " << other.name;
    }
}

TEST(TargetTest, covers_what_is_not_seen_any_more_for_sure) {
  const Pairs expected = pairs_of({
      {"led 5", {"led 5"}},
      {"led 6", {"led 6"}},
      {"leds", {"led 5", "led 6", "leds"}},
      {"status 5", {"status 5"}},
      {"status 6", {"status 6"}},
      {"toggle 0", {"toggle 0"}},
      {"toggle 1", {"toggle 1"}},
      {"line 0.0", {"line 0.0"}},
      {"line 0.7", {"line 0.7", "part 0.7"}},
      {"line 1.7", {"line 1.7"}},
      {"line *.7", {"line 0.7", "line 1.7", "line *.7", "part 0.7"}},
      {"line 0.8", {"line 0.8", "part 0.8"}},
      {"part 0.7", {"part 0.7"}},
      {"area 0 left", {"area 0 left"}},
      {"area 0 right", {"area 0 right", "area 0 top right"}},
      {"area 0 top right", {"area 0 top right"}},
      {"area 1 right", {"area 1 right"}},
      {"area * right", {"area 0 right", "area 0 top right", "area 1 right", "area * right"}},
      {"screen 0",
       {"line 0.0", "line 0.7", "line 0.8", "part 0.7", "part 0.8", "part 0.?", "area 0 left", "area 0 right",
        "area 0 top right", "area 0 ?", "screen 0"}},
      {"screen 1", {"line 1.7", "area 1 right", "screen 1"}},
      {"screens",
       {"line 0.0", "line 0.7", "line 1.7", "line *.7", "line 0.8", "part 0.7", "part 0.8", "part 0.?", "area 0 left",
        "area 0 right", "area 0 top right", "area 1 right", "area * right", "area 0 ?", "screen 0", "screen 1",
        "screens"}},
  });
  for (const Named &later : targets)
    for (const Named &earlier : targets)
      EXPECT_EQ(later.target.covers(earlier.target), expected.count({later.name, earlier.name}) > 0)
          << later.name << " over " << earlier.name;
}

TEST(TargetTest, is_another_one_when_anything_differs) {
  for (const Named &one : targets)
    for (const Named &other : targets) {
      EXPECT_EQ(one.target == other.target, &one == &other) << one.name << " and " << other.name;
      EXPECT_EQ(one.target != other.target, &one != &other) << one.name << " and " << other.name;
    }
  const Target part{Kind::line, 0, 7, true, {}, {}};
  EXPECT_FALSE((part == Target{Kind::line, 0, 7, false, {}, {}}));
}

TEST(TargetTest, a_line_that_is_not_known_covers_nothing) {
  const Target line{Kind::line, 0, all, false, {}};
  for (const Named &earlier : targets)
    EXPECT_FALSE(line.covers(earlier.target)) << earlier.name;
  EXPECT_FALSE(line.covers(line));
}

TEST(TargetTest, a_part_covers_parts_whose_characters_lie_within_its_own) {
  const Target middle{Kind::line, 0, 7, true, {}, {3, 4}};
  struct Row {
    Target part;
    bool is_covered;
    bool covers_middle;
  };
  const Row rows[] = {
      {middle, true, true},
      {{Kind::line, 0, 7, true, {}, {4, 2}}, true, false},
      {{Kind::line, 0, 7, true, {}, {3, 3}}, true, false},
      {{Kind::line, 0, 7, true, {}, {4, 3}}, true, false},
      {{Kind::line, 0, 7, true, {}, {2, 4}}, false, false},
      {{Kind::line, 0, 7, true, {}, {4, 4}}, false, false},
      {{Kind::line, 0, 7, true, {}, {2, 5}}, false, true},
      {{Kind::line, 0, 7, true, {}, {3, 5}}, false, true},
      {{Kind::line, 0, 7, true, {}, {0, 16}}, false, true},
      {{Kind::line, 0, 7, true, {}, {7, 4}}, false, false},
      {{Kind::line, 0, 7, true, {}, {}}, false, false},
      {{Kind::line, 0, 6, true, {}, {3, 4}}, false, false},
      {{Kind::line, 1, 7, true, {}, {3, 4}}, false, false},
      {{Kind::line, all, 7, true, {}, {3, 4}}, false, true},
      {{Kind::line, 0, all, true, {}, {3, 4}}, false, false},
      {{Kind::line, 0, 7, false, {}, {}}, false, true}, // all of the line
  };
  for (const Row &row : rows) {
    SCOPED_TRACE(testing::Message() << "row " << &row - rows);
    EXPECT_EQ(middle.covers(row.part), row.is_covered);
    EXPECT_EQ(row.part.covers(middle), row.covers_middle);
    EXPECT_TRUE((!row.is_covered && !row.covers_middle) || row.part.overlaps(middle));
    EXPECT_EQ(row.part == middle, &row == rows);
  }
}

TEST(TargetTest, a_part_that_may_be_drawn_elsewhere_covers_nothing) {
  const Target parts[] = {
      {Kind::line, 0, 8, true, {}, {3, 4}}, {Kind::line, 0, all, true, {}, {3, 4}}, {Kind::line, 0, 7, true, {}, {}}};
  for (const Target &part : parts) {
    for (const Named &earlier : targets)
      EXPECT_FALSE(part.covers(earlier.target)) << earlier.name;
    EXPECT_FALSE(part.covers(part));
  }
}

TEST(TargetTest, that_covers_another_overlaps_it) {
  for (const Named &later : targets)
    for (const Named &earlier : targets)
      EXPECT_TRUE(!later.target.covers(earlier.target) || later.target.overlaps(earlier.target))
          << later.name << " over " << earlier.name;
}

TEST(TargetTest, areas_that_only_touch_do_not_overlap) {
  const Target::Box middle{10, 20, 30, 40};
  struct Row {
    Target::Box box;
    bool meets;
  };
  const Row rows[] = {{{0, 20, 10, 40}, false},  {{0, 20, 11, 40}, true},  {{40, 20, 88, 40}, false},
                      {{39, 20, 89, 40}, true},  {{10, 0, 30, 20}, false}, {{10, 0, 30, 21}, true},
                      {{10, 60, 30, 68}, false}, {{10, 59, 30, 69}, true}};
  for (const Row &row : rows) {
    EXPECT_EQ(middle.meets(row.box), row.meets) << int{row.box.left} << ' ' << int{row.box.top};
    EXPECT_EQ(row.box.meets(middle), row.meets) << int{row.box.left} << ' ' << int{row.box.top};
  }
}

TEST(TargetTest, an_area_contains_what_sticks_out_nowhere) {
  const Target::Box middle{10, 20, 30, 40};
  struct Row {
    Target::Box box;
    bool is_inside;
  };
  const Row rows[] = {{{10, 20, 30, 40}, true},  {{11, 21, 29, 39}, true},  {{9, 20, 30, 40}, false},
                      {{10, 19, 30, 40}, false}, {{10, 20, 31, 40}, false}, {{10, 20, 30, 41}, false}};
  for (const Row &row : rows)
    EXPECT_EQ(middle.contains(row.box), row.is_inside) << int{row.box.left} << ' ' << int{row.box.width};
}

} // namespace
} // namespace buttondriver::bridge
