// SPDX-License-Identifier: Apache-2.0
#include "buttonctl/commands/commands.h"

#include "buttonctl/commands/messages.h"
#include "buttonctl/commands/tool_commands.h"
#include "buttonctl/pictures/picture_converter.h"
#include "protocol/encoders.h"

#include <limits>

namespace buttondriver::buttonctl {

namespace {

constexpr std::int32_t highest_button = 23;
constexpr std::int32_t highest_status_indicator = 31;
constexpr std::int32_t highest_toggle_indicator = 1;
/// A font is at least one pixel high and wide.
constexpr std::int32_t highest_line = screen_side - 1;
constexpr std::int32_t highest_character = screen_side - 1;
constexpr std::int32_t most_characters = screen_side;
constexpr std::int32_t farthest_corner = 32767;
constexpr std::int32_t most_pings = 1000000;
constexpr std::int32_t largest = std::numeric_limits<std::int32_t>::max();

constexpr std::int32_t led_on = 1;
constexpr std::int32_t led_off = 0;
constexpr std::int32_t led_blinks = -1;

constexpr std::uint32_t white = 0xFFFFFF;
constexpr std::uint32_t black = 0x000000;

Steps send(const QByteArray &message) { return {{Step::Kind::send, framed(message)}}; }

Steps build_text(ArgumentReader &arguments) {
  const std::int32_t screen = arguments.screen();
  const std::int32_t line = arguments.number("LINE", 0, highest_line);
  const QString text = arguments.text();
  const bool white_on_black = arguments.option_pair("white-on-black", "black-on-white", true);
  return send(hton_BMS_TFTTextLine(screen, line, text, white_on_black ? 1 : 0));
}

Steps build_subtext(ArgumentReader &arguments) {
  const std::int32_t screen = arguments.screen();
  const std::int32_t line = arguments.number("LINE", 0, highest_line);
  const std::int32_t offset = arguments.number("OFFSET", 0, highest_character);
  const QString text = arguments.text();
  const auto length = static_cast<std::int32_t>(text.size());
  const std::int32_t count = arguments.option_number("count", 1, most_characters, length);
  const std::uint32_t colour = arguments.option_colour("colour", white);
  const std::uint32_t background = arguments.option_colour("background", black);
  if (count < 1 || count > most_characters)
    arguments.fail(QStringLiteral("TEXT must have 1 to %1 characters, not %2; --count says how many to write")
                       .arg(most_characters)
                       .arg(length));
  // The panel writes as many characters as it is told to, so the text must have them.
  return send(hton_BMS_TFTSubTextLine(screen, line, offset, count, text.leftJustified(count), colour, background));
}

QPoint read_corner(ArgumentReader &arguments) {
  if (!arguments.has_option("at"))
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
  if (arguments.has_option("fit") && arguments.has_option("crop"))
    arguments.fail(QStringLiteral("use only one of --fit and --crop"));
  QString file;
  const QByteArray content = arguments.file_content(file);
  if (arguments.failure())
    return {};
  const Oversize oversize = arguments.has_option("fit")    ? Oversize::fit
                            : arguments.has_option("crop") ? Oversize::crop
                                                           : Oversize::refuse;
  const Outcome<PlacedPicture> picture = place_picture(content, corner, oversize);
  if (!picture) {
    arguments.fail(QStringLiteral("'%1': %2").arg(file, picture.failure().text));
    return {};
  }
  return send(draw_image_message(screen, picture->corner.x(), picture->corner.y(), picture->bmp));
}

Steps build_blackout(ArgumentReader &arguments) {
  return send(hton_BMS_BlackoutScreen(arguments.at_end() ? -1 : arguments.screen()));
}

Steps build_led(ArgumentReader &arguments) {
  const std::int32_t button = arguments.number_or_all("BUTTON", 0, highest_button);
  const QString state = arguments.word("STATE");
  if (state == QLatin1String("on"))
    return send(hton_BMS_SetLEDState(button, led_on, 0));
  if (state == QLatin1String("off"))
    return send(hton_BMS_SetLEDState(button, led_off, 0));
  if (state == QLatin1String("blink"))
    return send(hton_BMS_SetLEDState(button, led_blinks, arguments.number("MS", 1, largest)));
  arguments.fail(QStringLiteral("STATE must be 'on', 'off' or 'blink', not '%1'").arg(state));
  return {};
}

Steps build_status(ArgumentReader &arguments) {
  const std::int32_t indicator = arguments.number("ID", 0, highest_status_indicator);
  return send(hton_BMS_SetLEDStatusIndicator(indicator, arguments.on_or_off()));
}

Steps build_toggle(ArgumentReader &arguments) {
  const std::int32_t indicator = arguments.number("ID", 0, highest_toggle_indicator);
  return send(hton_BMS_SetLEDToggleIndicator(indicator, arguments.on_or_off()));
}

Steps build_upload(ArgumentReader &arguments) {
  const std::int32_t image_id = arguments.number("IMAGE_ID", 0, largest);
  QString file;
  const QByteArray content = arguments.file_content(file);
  if (arguments.failure())
    return {};
  const Outcome<QByteArray> image = convert_button_image(content, arguments.has_option("invert"));
  if (!image) {
    arguments.fail(QStringLiteral("'%1': %2").arg(file, image.failure().text));
    return {};
  }
  return send(hton_BMS_UploadImage(image_id, image->constData(), static_cast<std::int32_t>(image->size())));
}

Steps build_reconfig(ArgumentReader &) { return send(hton_BMS_Reconfig()); }

Steps build_ping(ArgumentReader &arguments) {
  const std::int32_t count = arguments.option_number("count", 1, most_pings, 1);
  return Steps(static_cast<std::size_t>(count), Step{Step::Kind::ping, framed(hton_BMS_Ping())});
}

Steps build_null(ArgumentReader &arguments) { return send(null_message(arguments.hexadecimal())); }

Steps build_raw(ArgumentReader &arguments) {
  if (arguments.at_end())
    arguments.word("HEX");
  const QByteArray bytes = arguments.hexadecimal();
  if (!arguments.has_option("unframed"))
    return send(bytes);
  if (bytes.isEmpty())
    arguments.fail(QStringLiteral("HEX is empty, so there is nothing to send"));
  return {{Step::Kind::send, bytes}};
}

} // namespace

const std::vector<Command> &commands() {
  static const std::vector<Command> message_commands = {
      {"text",
       "SCREEN LINE TEXT",
       "write a whole text line",
       "SCREEN is 0, 1, 2 or all; LINE counts from 0, the topmost. What does not fit the line is\n"
       "dropped. TEXT is Latin-1; put -- before the arguments when it starts with a dash.\n",
       "buttonctl text 0 0 'Channel 7'\n"
       "buttonctl text all 3 Alarm --black-on-white\n"
       "buttonctl text -- 1 2 -12°\n",
       {{"white-on-black", nullptr, "the message's flag is 1 (default)"},
        {"black-on-white", nullptr, "the message's flag is 0"}},
       build_text},
      {"subtext",
       "SCREEN LINE OFFSET TEXT",
       "write a few characters of a text line",
       "SCREEN is 0, 1, 2 or all; LINE counts from 0, the topmost; OFFSET is the first character's\n"
       "place in the line, from 0. The rest of the line stays as it is.\n",
       "buttonctl subtext 0 2 5 12:30\n"
       "buttonctl subtext 0 2 5 Hi --count 8 --colour FFFF00\n"
       "buttonctl subtext all 0 0 '' --count 16\n",
       {{"count", "N", "write N characters (1 to 128), filled up with blanks (default: as many as TEXT has)"},
        {"colour,color", "RRGGBB", "colour of the characters (default FFFFFF)"},
        {"background", "RRGGBB", "colour behind them (default 000000)"}},
       build_subtext},
      {"image",
       "SCREEN FILE",
       "draw a picture",
       "SCREEN is 0, 1, 2 or all, each 128 x 128 pixels. An uncompressed 24-bit BMP is sent as it is;\n"
       "other BMPs, PNG, JPEG and what else Qt reads are converted, transparent parts to black. A\n"
       "picture that sticks out of the screen is refused unless --fit or --crop is given.\n",
       "buttonctl image 1 logo.bmp --at 10,20\n"
       "buttonctl image all photo.png --fit\n"
       "buttonctl image 0 photo.png --crop --at=-40,-8\n",
       {{"at", "X,Y", "where the top left corner goes, in pixels (default 0,0)"},
        {"fit", nullptr, "scale the picture to the room right of and below its corner, keeping proportions"},
        {"crop", nullptr, "leave the part that lies on the screen"}},
       build_image},
      {"blackout",
       "[SCREEN]",
       "clear a screen to black",
       "SCREEN is 0, 1, 2 or all (default all).\n",
       "buttonctl blackout\n"
       "buttonctl blackout 2\n",
       {},
       build_blackout},
      {"led",
       "BUTTON on|off|blink MS",
       "set a button's LED",
       "BUTTON is 0 to 23, or all. MS is the length of each phase, lit and dark, in milliseconds; the\n"
       "panel works in steps of 20.\n",
       "buttonctl led 5 on\n"
       "buttonctl led 5 blink 500\n"
       "buttonctl led all off\n",
       {},
       build_led},
      {"status", "ID on|off", "set a status LED", "ID is 0 to 31.\n", "buttonctl status 3 on\n", {}, build_status},
      {"toggle",
       "ID on|off",
       "set a toggle indicator",
       "ID is 0 or 1.\n",
       "buttonctl toggle 1 off\n",
       {},
       build_toggle},
      {"upload",
       "IMAGE_ID FILE",
       "keep a button image in the daemon",
       "The ids 0 to 22 are shared by all connections, those above are the connection's own.\n"
       "FILE holds 120 raw bytes (24 rows of 5, most significant bit leftmost), or a picture of\n"
       "40 x 24 pixels, in which light pixels become 1.\n",
       "buttonctl upload 4 arrow.png\n"
       "buttonctl upload 4 arrow.raw --invert\n",
       {{"invert", nullptr, "turn every bit"}},
       build_upload},
      {"reconfig", "", "have the daemon read its level file again", "", "buttonctl reconfig\n", {}, build_reconfig},
      {"ping",
       "",
       "ask for an answer and print the round trip",
       "",
       "buttonctl ping\n"
       "buttonctl ping --count 10\n",
       {{"count", "N", "ask N times, each after the answer to the one before"}},
       build_ping},
      {"null",
       "[HEX]...",
       "send a message that the daemon only logs",
       "HEX is what stands behind the opcode, two hexadecimal digits for each byte.\n",
       "buttonctl null\n"
       "buttonctl null 01 02 ff\n",
       {},
       build_null},
      {"raw",
       "HEX...",
       "send any message",
       "HEX is the message from its opcode on, in network order, two hexadecimal digits for each byte.\n"
       "The 4-byte length is put before it. Nothing else is checked.\n",
       "buttonctl raw 00000010 00000001\n"
       "buttonctl raw --unframed 00000004 0000000c\n",
       {{"unframed", nullptr, "send the bytes as they are, without a length before them"}},
       build_raw},
  };
  static const std::vector<Command> table = [] {
    std::vector<Command> all = message_commands;
    all.insert(all.end(), tool_commands().begin(), tool_commands().end());
    return all;
  }();
  return table;
}

const Command *find_command(const QString &name) {
  for (const Command &command : commands())
    if (name == QLatin1String(command.name))
      return &command;
  return nullptr;
}

} // namespace buttondriver::buttonctl
