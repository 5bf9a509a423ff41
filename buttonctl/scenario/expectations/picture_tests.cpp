// SPDX-License-Identifier: Apache-2.0
#include "buttonctl/scenario/expectations/picture_tests.h"

#include "buttonctl/difference/picture_difference.h"
#include "dimensions/panel_dimensions.h"
#include "pictures/picture_file.h"

#include <QFileInfo>

namespace buttondriver::buttonctl {

namespace {

constexpr std::int32_t last_screen = dimensions::screen_count - 1;
constexpr std::int32_t most_tolerance = 255;

QString digits_of(Colour colour) {
  return QStringLiteral("%1")
      .arg((colour.red << 16) | (colour.green << 8) | colour.blue, 6, 16, QLatin1Char('0'))
      .toUpper();
}

/// A screen has 5 bits of red and blue, and 6 of green: colours that become the same there are the same.
bool are_alike_on_a_screen(Colour one, Colour other) {
  return one.red >> 3 == other.red >> 3 && one.green >> 2 == other.green >> 2 && one.blue >> 3 == other.blue >> 3;
}

/// Where a region lies; it is on the screen as a whole.
QRect region_of(ArgumentReader &arguments) {
  const std::int32_t x = arguments.number("X", 0, dimensions::screen_width - 1);
  const std::int32_t y = arguments.number("Y", 0, dimensions::screen_height - 1);
  const std::int32_t width = arguments.number("W", 1, dimensions::screen_width - x);
  const std::int32_t height = arguments.number("H", 1, dimensions::screen_height - y);
  return {x, y, width, height};
}

void read_expected(PictureTest &test, const QString &name, ArgumentReader &arguments) {
  // It would be removed when the screen is as expected.
  if (name.endsWith(difference_ending))
    arguments.fail(QStringLiteral("'%1' has the name of a difference picture").arg(name));
  if (arguments.hasFailed() || !QFileInfo::exists(test.file))
    return;
  const Outcome<Picture> expected = read_picture_file(test.file);
  if (!expected)
    arguments.fail(QStringLiteral("'%1': %2").arg(name, expected.failure().text));
  else
    test.expected = *expected;
}

} // namespace

std::optional<PixelTest> pixel_test(const QString &name, ArgumentReader &arguments) {
  if (name != QLatin1String("expect-pixel"))
    return std::nullopt;
  const std::int32_t screen = arguments.number("SCREEN", 0, last_screen);
  const std::int32_t x = arguments.number("X", 0, dimensions::screen_width - 1);
  const std::int32_t y = arguments.number("Y", 0, dimensions::screen_height - 1);
  const std::uint32_t rgb = arguments.colour("RRGGBB");
  const Colour should{static_cast<std::uint8_t>(rgb >> 16), static_cast<std::uint8_t>(rgb >> 8),
                      static_cast<std::uint8_t>(rgb)};
  return PixelTest{screen, [=](const Picture &picture) -> Outcome<Done> {
                     if (!picture.contains(x, y))
                       return Failure{QStringLiteral("screen %1 has no pixel %2, %3").arg(screen).arg(x).arg(y)};
                     const Colour is = picture.at(x, y);
                     if (are_alike_on_a_screen(is, should))
                       return Done{};
                     return Failure{QStringLiteral("pixel %1, %2 of screen %3 is %4, not %5")
                                        .arg(x)
                                        .arg(y)
                                        .arg(screen)
                                        .arg(digits_of(is), digits_of(should))};
                   }};
}

std::optional<PictureTest> picture_test(const QString &name, ArgumentReader &arguments, bool replaces_pictures) {
  const bool is_region = name == QLatin1String("expect-region");
  if (!is_region && name != QLatin1String("expect-screen"))
    return std::nullopt;
  PictureTest test{arguments.number("SCREEN", 0, last_screen), QString(), Picture(), std::nullopt, 0};
  if (is_region)
    test.region = region_of(arguments);
  const QString file = arguments.word("FILE");
  test.file = arguments.pathOf(file);
  if (is_region && !arguments.atEnd())
    test.tolerance = arguments.number("TOLERANCE", 0, most_tolerance);
  if (replaces_pictures && !file.endsWith(difference_ending))
    return test;
  read_expected(test, file, arguments);
  return test;
}

} // namespace buttondriver::buttonctl
