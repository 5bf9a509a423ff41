// SPDX-License-Identifier: Apache-2.0
#include "buttonctl/messages/daemon_commands.h"

#include "buttonctl/messages/sending.h"
#include "buttonctl/session/framed_ping.h"
#include "dimensions/panel_dimensions.h"
#include "pictures/picture_converter.h"
#include "protocol/encoders.h"

#include <limits>

namespace buttondriver::buttonctl {

namespace {

constexpr std::int32_t highest_image_id = std::numeric_limits<std::int32_t>::max();
constexpr std::int32_t longest_sleep_ms = 600000;
constexpr std::int32_t most_pings = 1000000;

// The numbers in the help below.
static_assert(dimensions::built_in_image_count == 23 && dimensions::button_image_bytes == 120);
static_assert(dimensions::button_image_width == 40 && dimensions::button_image_height == 24);

Steps build_upload(ArgumentReader &arguments) {
  const std::int32_t image_id = arguments.number("IMAGE_ID", 0, highest_image_id);
  const NamedFile file = arguments.file();
  if (arguments.hasFailed())
    return {};
  const Outcome<QByteArray> image =
      convert_button_image(file.content, {arguments.hasOption("invert"), arguments.hasOption("fit")});
  if (!image) {
    arguments.fail(QStringLiteral("'%1': %2").arg(file.name, image.failure().text));
    return {};
  }
  return send(hton_BMS_UploadImage(image_id, image->constData(), static_cast<std::int32_t>(image->size())));
}

Steps build_sleep(ArgumentReader &arguments) {
  Step step{Step::Kind::wait, QByteArray()};
  step.wait_ms = arguments.number("MS", 0, longest_sleep_ms);
  return {step};
}

Steps build_reconfig(ArgumentReader &) { return send(hton_BMS_Reconfig()); }

Steps build_ping(ArgumentReader &arguments) {
  const std::int32_t count = arguments.optionNumber("count", 1, most_pings, 1);
  const auto kind = arguments.hasOption("json") ? Step::Kind::ping_for_json : Step::Kind::ping;
  return Steps(static_cast<std::size_t>(count), Step{kind, framed_ping()});
}

} // namespace

Command sleep_command() {
  return {"sleep",
          "MS",
          "wait a moment",
          QStringLiteral("For batches and scenarios: waits so many milliseconds, 0 to 600000, before the next line.\n"),
          "buttonctl sleep 500\n",
          {},
          build_sleep};
}

Command upload_command() {
  return {"upload",
          "IMAGE_ID FILE",
          "store a button image in the daemon",
          QStringLiteral(
              "The ids 0 to 22 are shared by all connections; those above, up to 2147483647, are the connection's\n"
              "own. FILE holds 120 raw bytes (24 rows of 5, most significant bit leftmost), or a picture of\n"
              "40 x 24 pixels, in which pixels of a grey above 127 become 1 and the others 0. FILE is - for\n"
              "standard input, though not in a batch.\n"),
          "buttonctl upload 4 arrow.png\n"
          "buttonctl upload 4 arrow.raw --invert\n"
          "buttonctl upload 4 photo.png --fit\n",
          {{"invert", nullptr, "turn every bit"},
           {"fit", nullptr, "scale a picture of another size, keeping proportions, into the middle of black"}},
          build_upload};
}

Command reconfig_command() {
  return {"reconfig",    "", "have the daemon read its level file again", QString(), "buttonctl reconfig\n", {},
          build_reconfig};
}

Command ping_command() {
  return {"ping",
          "",
          "ask for an answer and print the round trip",
          QStringLiteral(
              "The daemon answers in the order in which it takes messages, so in a batch the answer also means\n"
              "that it has read everything before the ping.\n"
              "\n"
              "  answer from 127.0.0.1 port 3003: 0.093 ms\n"
              "\n"
              "With --json there is one line instead, also when an answer is missing in the end, though not\n"
              "without a connection. Here it is folded:\n"
              "\n"
              "  {\"answered\":2,\"average_ms\":0.102,\"host\":\"127.0.0.1\",\"longest_ms\":0.11,\"port\":3003,\n"
              "   \"round_trips_ms\":[0.093,0.11],\"sent\":2,\"shortest_ms\":0.093}\n"),
          "buttonctl ping\n"
          "buttonctl ping --count 10\n"
          "buttonctl ping --count 10 --json\n",
          {{"count", "N", "ask N times, 1 to 1000000, each after the answer to the one before; a summary follows"},
           {"json", nullptr, "print one line of JSON in the end, all times in milliseconds"}},
          build_ping};
}

} // namespace buttondriver::buttonctl
