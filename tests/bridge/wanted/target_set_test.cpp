// SPDX-License-Identifier: Apache-2.0
#include "bridge/wanted/target_set.h"

#include "bridge/wanted/targets.h"

#include <gtest/gtest.h>

#include <string>

namespace buttondriver::bridge::test {

namespace {

struct Row {
  const char *name;
  QVector<Target> added;
  QVector<Target> places;
};

const Row rows[] = {
    {"nothing", {{}}, {}},
    {"the_first_of_each", {button(0), status(0), toggle(0), screen(0)}, {button(0), status(0), toggle(0), screen(0)}},
    {"the_last_of_each",
     {button(23), status(31), toggle(1), screen(2)},
     {button(23), status(31), toggle(1), screen(2)}},
    {"one_twice", {button(3), button(3)}, {button(3)}},
    {"all_buttons_at_once", {button(3), button(all), button(4)}, {button(all)}},
    {"screens_of_what_is_drawn", {line(2, 7), area(1, {1, 2, 3, 4}), part(2, all)}, {screen(1), screen(2)}},
    {"each_screen", {line(all, 7)}, {screen(0), screen(1), screen(2)}},
};

class TargetSetTest : public testing::TestWithParam<Row> {};

} // namespace

TEST_P(TargetSetTest, has_the_places_to_clear) {
  TargetSet places;
  for (const Target &target : GetParam().added)
    places.add(target);
  EXPECT_TRUE(places.targets() == GetParam().places);
  TargetSet others;
  others.add(places);
  EXPECT_TRUE(others.targets() == GetParam().places);
}

TEST(TargetSetTest, of_a_whole_panel_has_each_lamp_and_each_screen) {
  TargetSet places;
  for (int place = 0; place < 32; ++place) {
    if (place < 24)
      places.add(button(place));
    places.add(status(place));
    if (place < 2)
      places.add(toggle(place));
  }
  places.add(screen(all));
  EXPECT_TRUE(TargetSet::wholePanel().targets() == places.targets());
  EXPECT_EQ(TargetSet::wholePanel().targets().size(), 24 + 32 + 2 + 3);
}

INSTANTIATE_TEST_SUITE_P(Places, TargetSetTest, testing::ValuesIn(rows),
                         [](const auto &row) { return std::string(row.param.name); });

} // namespace buttondriver::bridge::test
