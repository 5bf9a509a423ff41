// SPDX-License-Identifier: Apache-2.0
#include "simulator/picture/panel_picture.h"

#include "simulator/picture/panel_layout.h"

#include <gtest/gtest.h>

#include <QGuiApplication>
#include <QRect>

#include <cstdlib>
#include <cstring>
#include <iterator>
#include <string>
#include <thread>
#include <vector>

namespace buttondriver::simulator {
namespace {

/// Pixels as they are sent to a screen, and as they are seen at the highest intensity.
struct Colour {
  std::uint16_t pixel;
  QRgb shown;
};
constexpr Colour colours[] = {{0x0000, 0xFF000000}, {0xFFFF, 0xFFFFFFFF}, {0xF800, 0xFFFF0000},
                              {0x07E0, 0xFF00FF00}, {0x001F, 0xFF0000FF}, {0x8410, 0xFF848284},
                              {0x1234, 0xFF1045A5}, {0xABCD, 0xFFAD796B}, {0x0821, 0xFF080408}};

/// Neighbours, and the same place on the three screens, differ.
const Colour &colour_at(std::size_t screen, std::size_t x, std::size_t y) {
  return colours[(x + 2 * y + 4 * screen) % std::size(colours)];
}

PanelState coloured_screens() {
  PanelState state;
  for (std::size_t screen = 0; screen < 3; ++screen)
    for (std::size_t y = 0; y < 128; ++y)
      for (std::size_t x = 0; x < 128; ++x)
        state.screens[screen][y * 128 + x] = colour_at(screen, x, y).pixel;
  return state;
}

/// The smallest rectangle with all pixels in which the pictures differ.
QRect difference(const QImage &one, const QImage &other) {
  QRect found;
  for (int y = 0; y < one.height(); ++y) {
    const auto *a = reinterpret_cast<const QRgb *>(one.constScanLine(y));
    const auto *b = reinterpret_cast<const QRgb *>(other.constScanLine(y));
    if (std::memcmp(a, b, static_cast<std::size_t>(one.bytesPerLine())) == 0)
      continue;
    for (int x = 0; x < one.width(); ++x)
      if (a[x] != b[x])
        found |= QRect(x, y, 1, 1);
  }
  return found;
}

int brightness(QRgb colour) { return qRed(colour) + qGreen(colour) + qBlue(colour); }

struct Lamp {
  std::string name;
  QRect lamp;
  QRect light;
  PanelState lit_alone;
};

std::vector<Lamp> all_lamps() {
  std::vector<Lamp> lamps;
  for (std::size_t id = 0; id < 32; ++id) {
    lamps.push_back({"button " + std::to_string(id), layout::button_led(id), layout::button_light(id), {}});
    lamps.back().lit_alone.button_leds[id] = true;
    lamps.push_back({"status " + std::to_string(id), layout::status_led(id), layout::status_light(id), {}});
    lamps.back().lit_alone.status_leds[id] = true;
  }
  for (std::size_t id = 0; id < 2; ++id) {
    lamps.push_back({"toggle " + std::to_string(id), layout::toggle(id), layout::toggle_light(id), {}});
    lamps.back().lit_alone.toggles[id] = true;
  }
  return lamps;
}

PanelState all_lit() {
  PanelState state;
  state.button_leds.fill(true);
  state.status_leds.fill(true);
  state.toggles.fill(true);
  return state;
}

TEST(PanelPictureTest, has_the_size_of_the_layout_and_is_opaque) {
  const QImage picture = draw_panel(PanelState());
  EXPECT_EQ(picture.size(), QSize(layout::picture_width, layout::picture_height));
  EXPECT_EQ(picture.format(), QImage::Format_RGB32);
}

TEST(PanelPictureTest, needs_only_a_core_application) {
  ASSERT_EQ(qobject_cast<QGuiApplication *>(QCoreApplication::instance()), nullptr);
  EXPECT_FALSE(draw_panel(PanelState()).isNull());
}

TEST(PanelPictureTest, shows_each_screen_pixel_as_a_square_of_three_by_three) {
  const QImage picture = draw_panel(coloured_screens());
  for (std::size_t screen = 0; screen < 3; ++screen)
    for (int y = 0; y < 384; ++y)
      for (int x = 0; x < 384; ++x) {
        const auto column = static_cast<std::size_t>(x / 3);
        const auto row = static_cast<std::size_t>(y / 3);
        const QPoint place = layout::screen(screen).topLeft() + QPoint(x, y);
        ASSERT_EQ(picture.pixel(place), colour_at(screen, column, row).shown) << screen << ": " << x << ", " << y;
        ASSERT_TRUE(layout::screen_pixel(screen, column, row).contains(place)) << screen << ": " << x << ", " << y;
      }
}

TEST(PanelPictureTest, changes_one_square_when_one_screen_pixel_changes) {
  const QImage dark = draw_panel(PanelState());
  for (std::size_t screen = 0; screen < 3; ++screen) {
    PanelState state;
    state.screens[screen][127 * 128 + 3] = 0xFFFF;
    EXPECT_EQ(difference(dark, draw_panel(state)), layout::screen_pixel(screen, 3, 127)) << screen;
  }
}

TEST(PanelPictureTest, changes_only_the_light_of_a_lamp_when_it_goes_on) {
  const QImage dark = draw_panel(PanelState());
  for (const Lamp &lamp : all_lamps()) {
    const QImage picture = draw_panel(lamp.lit_alone);
    const QRect changed = difference(dark, picture);
    EXPECT_TRUE(lamp.light.contains(changed)) << lamp.name;
    EXPECT_TRUE(changed.contains(lamp.lamp)) << lamp.name;
    const QPoint middle = lamp.lamp.center();
    EXPECT_GT(brightness(picture.pixel(middle)), brightness(dark.pixel(middle)) + 300) << lamp.name;
  }
}

TEST(PanelPictureTest, shows_a_lamp_the_same_whatever_the_others_do) {
  const QImage lit = draw_panel(all_lit());
  for (const Lamp &lamp : all_lamps())
    EXPECT_EQ(lit.copy(lamp.light), draw_panel(lamp.lit_alone).copy(lamp.light)) << lamp.name;
}

TEST(PanelPictureTest, numbers_every_key_differently) {
  const QImage picture = draw_panel(PanelState());
  // The same shade may come out one step apart at two places; ink and no ink are far apart.
  const auto clearly_different = [&](std::size_t one, std::size_t other) {
    int count = 0;
    for (int y = 8; y < layout::key(one).height() - 8; ++y)
      for (int x = 8; x < layout::key(one).width() - 8; ++x) {
        const int first = brightness(picture.pixel(layout::key(one).topLeft() + QPoint(x, y)));
        const int second = brightness(picture.pixel(layout::key(other).topLeft() + QPoint(x, y)));
        count += std::abs(first - second) > 100 ? 1 : 0;
      }
    return count;
  };
  for (std::size_t one = 0; one < 24; ++one)
    for (std::size_t other = one + 1; other < 24; ++other)
      EXPECT_GT(clearly_different(one, other), 10) << one << " and " << other;
}

TEST(PanelPictureTest, lights_as_many_segments_as_the_intensity) {
  PanelState state;
  state.intensity = 0;
  const QImage without = draw_panel(state);
  for (state.intensity = 0; state.intensity <= 63; ++state.intensity) {
    const QImage picture = draw_panel(state);
    for (int level = 1; level <= 63; ++level) {
      const QPoint middle = layout::intensity_segment(level).center();
      const bool lit = brightness(picture.pixel(middle)) > brightness(without.pixel(middle)) + 200;
      EXPECT_EQ(lit, level <= state.intensity) << level << " at " << state.intensity;
    }
    EXPECT_TRUE(layout::intensity_window.contains(difference(without, picture)) || state.intensity == 0);
  }
}

TEST(PanelPictureTest, writes_every_intensity_as_a_different_number) {
  const QRect last_segment = layout::intensity_segment(63);
  QRect number = layout::intensity_window;
  number.setLeft(last_segment.right() + 1);
  std::vector<QImage> numbers;
  PanelState state;
  for (state.intensity = 0; state.intensity <= 63; ++state.intensity)
    numbers.push_back(draw_panel(state).copy(number));
  for (std::size_t one = 0; one < numbers.size(); ++one)
    for (std::size_t other = one + 1; other < numbers.size(); ++other)
      EXPECT_NE(numbers[one], numbers[other]) << one << " and " << other;
}

TEST(PanelPictureTest, dims_the_screens_with_the_intensity) {
  PanelState state;
  state.screens[1].fill(0xFFFF);
  int before = -1;
  for (state.intensity = 0; state.intensity <= 63; ++state.intensity) {
    const int now = brightness(draw_panel(state).pixel(layout::screen(1).center()));
    EXPECT_GT(now, before) << state.intensity;
    before = now;
  }
  EXPECT_EQ(before, 3 * 255);
}

TEST(PanelPictureTest, takes_an_intensity_above_the_highest_for_the_highest) {
  PanelState state = coloured_screens();
  const QImage highest = draw_panel(state);
  state.intensity = 64;
  EXPECT_EQ(draw_panel(state), highest);
}

TEST(PanelPictureTest, is_the_same_for_the_same_state_on_every_thread) {
  const PanelState state = all_lit();
  const QImage here = draw_panel(state);
  QImage there;
  std::thread([&] { there = draw_panel(state); }).join();
  EXPECT_EQ(there, here);
  EXPECT_EQ(draw_panel(state), here);
}

TEST(PanelLayoutTest, keeps_screens_and_lights_apart_and_on_the_plate) {
  std::vector<QRect> places = {layout::intensity_window};
  for (std::size_t screen = 0; screen < 3; ++screen)
    places.push_back(layout::screen(screen));
  for (const Lamp &lamp : all_lamps()) {
    EXPECT_TRUE(lamp.light.contains(lamp.lamp)) << lamp.name;
    places.push_back(lamp.light);
  }
  for (std::size_t one = 0; one < places.size(); ++one) {
    EXPECT_TRUE(layout::plate.contains(places[one])) << one;
    for (std::size_t other = one + 1; other < places.size(); ++other)
      EXPECT_FALSE(places[one].intersects(places[other])) << one << " and " << other;
  }
}

TEST(PanelLayoutTest, puts_eight_keys_in_two_rows_below_each_screen) {
  for (std::size_t id = 0; id < 24; ++id) {
    const QRect screen = layout::bezel(id / 8);
    const QRect key = layout::key(id);
    EXPECT_TRUE(key.left() >= screen.left() && key.right() <= screen.right()) << id;
    EXPECT_GT(key.top(), screen.bottom()) << id;
    EXPECT_EQ(key.top(), layout::key(id % 8 / 4 * 4).top()) << id;
  }
  EXPECT_GT(layout::key(4).top(), layout::key(0).bottom());
}

} // namespace
} // namespace buttondriver::simulator
