// SPDX-License-Identifier: Apache-2.0
#include "buttonctl/difference/picture_difference.h"

#include "buttonctl/difference/label.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <cstring>

namespace buttondriver::buttonctl {
namespace {

/// Every third pixel of a row, from `x` on, "rrggbb rrggbb "; "?" for one that differs within its 3 x 3.
std::string row(const Picture &picture, int x, int y, int count) {
  std::string text;
  for (int i = 0; i < count; ++i, x += 3) {
    const Colour first = picture.at(x, y);
    bool is_even = true;
    for (int place = 0; place < 9; ++place)
      is_even = is_even && picture.at(x + place % 3, y + place / 3) == first;
    char pixel[8];
    std::snprintf(pixel, sizeof pixel, "%02x%02x%02x ", first.red, first.green, first.blue);
    text += is_even ? pixel : "? ";
  }
  return text;
}

TEST(PictureDifferenceTest, shows_expected_actual_and_where_they_differ_three_times_enlarged) {
  const Picture expected({2, 2}, {0x40, 0x80, 0xFF});
  Picture actual = expected;
  actual.set(1, 0, {0x40, 0x80, 0xFE});
  EXPECT_EQ(count_different_pixels(expected, actual), 1);
  const Picture picture = difference_picture(expected, actual);
  ASSERT_EQ(picture.size(), QSize(3 * 6 + 2 * 12, 24 + 6));
  const std::string gap = "808080 808080 808080 808080 ";
  EXPECT_EQ(row(picture, 0, 24, 14), "4080ff 4080ff " + gap + "4080ff 4080fe " + gap + "10203f ff0000 ");
  EXPECT_EQ(row(picture, 0, 27, 14), "4080ff 4080ff " + gap + "4080ff 4080ff " + gap + "10203f 10203f ");
}

/// How many pieces of writing, parted by columns without any, stand above the part from `left` to `right`.
int letters_above(const Picture &picture, int left, int right) {
  int count = 0;
  bool was_black = false;
  for (int x = left; x < right; ++x) {
    bool is_black = false;
    for (int y = 0; y < 24; ++y)
      is_black = is_black || picture.at(x, y) == Colour{0, 0, 0};
    count += is_black && !was_black;
    was_black = is_black;
  }
  return count;
}

TEST(PictureDifferenceTest, each_part_has_its_name_above_it) {
  const Picture screen({128, 128});
  const Picture picture = difference_picture(screen, screen);
  const struct {
    int left;
    const char *name;
  } parts[] = {{0, "expected"}, {396, "actual"}, {792, "difference"}};
  for (const auto &part : parts) {
    // A label is there at all, a letter for each character, and no other part has the same.
    EXPECT_EQ(letters_above(picture, part.left, part.left + 384), static_cast<int>(std::strlen(part.name)));
    for (int x = part.left; x < part.left + 384; ++x)
      EXPECT_EQ(picture.at(x, 0), (Colour{0x80, 0x80, 0x80}));
  }
  Picture letters({16, label_height}, {255, 255, 255});
  draw_label(letters, 0, 0, "l");
  // As read by a person: an upright line of two pixels.
  for (int y = 4; y < 12; ++y)
    for (int x = 0; x < 10; ++x)
      EXPECT_EQ(letters.at(x, y) == Colour({0, 0, 0}), x == 4 || x == 5) << x << ' ' << y;
}

TEST(PictureDifferenceTest, a_label_that_does_not_fit_is_cut_off) {
  Picture small({3, 3}, {255, 255, 255});
  draw_label(small, -4, -4, "difference");
  draw_label(small, 1, 1, "?");
  EXPECT_EQ(small.size(), QSize(3, 3));
}

TEST(PictureDifferenceTest, lies_in_the_folder_that_is_named) {
  EXPECT_EQ(difference_file(QStringLiteral("."), QStringLiteral("a/ready.png")).toStdString(), "ready.difference.png");
  EXPECT_EQ(difference_file(QStringLiteral("out"), QStringLiteral("ready.2.png")).toStdString(),
            "out/ready.2.difference.png");
  EXPECT_EQ(difference_file(QStringLiteral("/tmp/"), QStringLiteral("/b/ready")).toStdString(),
            "/tmp/ready.difference.png");
}

} // namespace
} // namespace buttondriver::buttonctl
