// SPDX-License-Identifier: Apache-2.0
#include "buttonctl/messages/screen_commands.h"

#include "buttonctl/messages/encoded_messages.h"
#include "buttonctl/messages/sending.h"
#include "dimensions/panel_dimensions.h"
#include "pictures/picture_converter.h"
#include "protocol/encoders.h"

#include <limits>

namespace buttondriver::buttonctl {

namespace {

/// A font is at least one pixel high and wide.
constexpr std::int32_t highest_line = dimensions::screen_height - 1;
constexpr std::int32_t highest_character = dimensions::screen_width - 1;
constexpr std::int32_t most_characters = dimensions::screen_width;
constexpr std::int32_t farthest_corner = std::numeric_limits<std::int16_t>::max();

constexpr std::uint32_t white = 0xFFFFFF;
constexpr std::uint32_t black = 0x000000;

// The numbers in the help below.
static_assert(dimensions::screen_count == 3);
static_assert(dimensions::screen_width == 128 && dimensions::screen_height == 128);

Steps build_text(ArgumentReader &arguments) {
  const std::int32_t screen = arguments.screen();
  const std::int32_t line = arguments.number("LINE", 0, highest_line);
  const QString text = arguments.text();
  const bool white_on_black = arguments.optionPair("white-on-black", "black-on-white", true);
  return send(hton_BMS_TFTTextLine(screen, line, text, white_on_black ? 1 : 0));
}

Steps build_subtext(ArgumentReader &arguments) {
  const std::int32_t screen = arguments.screen();
  const std::int32_t line = arguments.number("LINE", 0, highest_line);
  const std::int32_t offset = arguments.number("OFFSET", 0, highest_character);
  const QString text = arguments.text();
  const auto length = static_cast<std::int32_t>(text.size());
  const std::int32_t count = arguments.optionNumber("count", 1, most_characters, length);
  const std::uint32_t colour = arguments.optionColour("colour", white);
  const std::uint32_t background = arguments.optionColour("background", black);
  if (count < 1 || count > most_characters)
    arguments.fail(QStringLiteral("TEXT must have 1 to %1 characters, not %2; --count says how many to write")
                       .arg(most_characters)
                       .arg(length));
  // The panel writes as many characters as it is told to, so the text must have them.
  return send(hton_BMS_TFTSubTextLine(screen, line, offset, count, text.leftJustified(count), colour, background));
}

QPoint read_corner(ArgumentReader &arguments) {
  if (!arguments.hasOption("at"))
    return {0, 0};
  const QStringList numbers = arguments.option("at").split(QLatin1Char(','));
  if (numbers.size() == 2) {
    const auto x = parse_number(QStringLiteral("X"), numbers.at(0), -farthest_corner, farthest_corner);
    const auto y = parse_number(QStringLiteral("Y"), numbers.at(1), -farthest_corner, farthest_corner);
    if (x && y)
      return {*x, *y};
  }
  arguments.fail(QStringLiteral("--at must be X,Y in pixels, such as 10,20, not '%1'").arg(arguments.option("at")));
  return {0, 0};
}

Steps build_image(ArgumentReader &arguments) {
  const std::int32_t screen = arguments.screen();
  const QPoint corner = read_corner(arguments);
  if (arguments.hasOption("fit") && arguments.hasOption("crop"))
    arguments.fail(QStringLiteral("use only one of --fit and --crop"));
  const NamedFile file = arguments.file();
  if (arguments.hasFailed())
    return {};
  const Oversize oversize = arguments.hasOption("fit")    ? Oversize::fit
                            : arguments.hasOption("crop") ? Oversize::crop
                                                          : Oversize::refuse;
  const Outcome<PlacedPicture> picture = place_picture(file.content, corner, oversize);
  if (!picture) {
    arguments.fail(QStringLiteral("'%1': %2").arg(file.name, picture.failure().text));
    return {};
  }
  return send(draw_image_message(screen, picture->corner.x(), picture->corner.y(), picture->bmp));
}

Steps build_blackout(ArgumentReader &arguments) {
  return send(hton_BMS_BlackoutScreen(arguments.atEnd() ? dimensions::all_screens : arguments.screen()));
}

} // namespace

Command text_command() {
  return {"text",
          "SCREEN LINE TEXT",
          "write a whole text line",
          QStringLiteral(
              "SCREEN is 0, 1, 2 or all. LINE is 0 to 127 and counts from the top; how many lines there are, and\n"
              "how many characters fit, depends on the font. Characters that do not fit are dropped. A line that\n"
              "does not fit is not: it is drawn in another place or is not seen. With a font of 8x16 the last\n"
              "line is 7, lines 8 to 15 are not seen, and 16 stands over 0. TEXT is sent as Latin-1, so it may\n"
              "hold the characters U+0000 to U+00FF; put -- before the arguments when it starts with a dash.\n"),
          "buttonctl text 0 0 'Channel 7'\n"
          "buttonctl text all 3 Alarm --black-on-white\n"
          "buttonctl text -- 1 2 -12°\n",
          {{"white-on-black", nullptr, "the message's flag is 1 (default)"},
           {"black-on-white", nullptr, "the message's flag is 0"}},
          build_text};
}

Command subtext_command() {
  return {"subtext",
          "SCREEN LINE OFFSET TEXT",
          "write some characters of a text line",
          QStringLiteral(
              "SCREEN is 0, 1, 2 or all. LINE is 0 to 127 and counts from the top; OFFSET is 0 to 127, the place\n"
              "of the first character in the line. The rest of the line stays as it is. What lies outside the\n"
              "screen is drawn in another place or is not seen.\n"),
          "buttonctl subtext 0 2 5 12:30\n"
          "buttonctl subtext 0 2 5 Hi --count 8 --colour FFFF00\n"
          "buttonctl subtext all 0 0 '' --count 16\n",
          {{"count", "N",
            "write N characters, 1 to 128: TEXT filled up with blanks, or its first N (default: all of TEXT)"},
           {"colour,color", "RRGGBB", "colour of the characters, hexadecimal (default FFFFFF)"},
           {"background", "RRGGBB", "colour behind the characters (default 000000)"}},
          build_subtext};
}

Command image_command() {
  return {"image",
          "SCREEN FILE",
          "draw a picture",
          QStringLiteral(
              "SCREEN is 0, 1, 2 or all, each of 128 x 128 pixels. The panel takes uncompressed 24-bit BMP files,\n"
              "bottom row first, with a 40-byte information header; such a FILE is sent byte for byte. Other\n"
              "BMPs, PNG, JPEG and the first picture of a GIF are converted, transparent parts to black. The\n"
              "panel does not cut off a picture that sticks out of the screen but shears it; such a\n"
              "picture is refused unless --fit or --crop is given. FILE is - for standard input, though not in a\n"
              "batch.\n"),
          "buttonctl image 1 logo.bmp --at 10,20\n"
          "buttonctl image all photo.png --fit\n"
          "buttonctl image 0 photo.png --crop --at=-40,-8\n",
          {{"at", "X,Y", "where the top left corner goes, in pixels; negative numbers need --crop (default 0,0)"},
           {"fit", nullptr, "scale the picture to the room right of and below its corner, keeping proportions"},
           {"crop", nullptr, "draw only the part that lies on the screen"}},
          build_image};
}

Command blackout_command() {
  return {"blackout",
          "[SCREEN]",
          "clear a screen to black",
          QStringLiteral("SCREEN is 0, 1, 2 or all (default all).\n"),
          "buttonctl blackout\n"
          "buttonctl blackout 2\n",
          {},
          build_blackout};
}

} // namespace buttondriver::buttonctl
