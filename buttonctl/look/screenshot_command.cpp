// SPDX-License-Identifier: Apache-2.0
#include "buttonctl/look/screenshot_command.h"

#include "buttonctl/panel/panel_state_reader.h"
#include "buttonctl/session/console.h"
#include "buttonctl/session/exit_status.h"
#include "dimensions/panel_dimensions.h"

#include <QSaveFile>

namespace buttondriver::buttonctl {

namespace {

// The numbers in the help below.
static_assert(dimensions::screen_count == 3 && dimensions::screen_width == 128 && dimensions::screen_height == 128);

int take_screenshot(const ScreenshotPlan &plan) {
  PanelStateReader panel(plan.panel_url, plan.timeout_ms);
  const Outcome<ScreenPicture> picture = plan.screen ? panel.screen(*plan.screen) : panel.wholePanel();
  if (!picture)
    return report(picture.failure(), exit_unreachable);
  if (plan.file == QLatin1String("-")) {
    print_bytes(picture->png);
    return exit_done;
  }
  QSaveFile file(plan.file);
  if (!file.open(QIODevice::WriteOnly) || file.write(picture->png) != picture->png.size() || !file.commit())
    return report(Failure{QStringLiteral("cannot write '%1': %2").arg(plan.file, file.errorString())},
                  exit_unreachable);
  print_line(QStringLiteral("wrote %1").arg(as_one_line(plan.file)));
  return exit_done;
}

Action build_screenshot(ArgumentReader &arguments, const CommandContext &context) {
  return [plan = read_screenshot_plan(arguments, context)] { return take_screenshot(plan); };
}

} // namespace

ScreenshotPlan read_screenshot_plan(ArgumentReader &arguments, const CommandContext &context) {
  refuse_dry_run(arguments, context);
  ScreenshotPlan plan{QStringLiteral("panel.png"), std::nullopt, panel_of(arguments, context),
                      context.endpoint.timeout_ms};
  if (arguments.hasOption("screen")) {
    plan.screen = arguments.optionNumber("screen", 0, dimensions::screen_count - 1, 0);
    plan.file = QStringLiteral("screen-%1.png").arg(*plan.screen);
  }
  if (!arguments.atEnd())
    plan.file = arguments.word("FILE");
  if (plan.file.isEmpty())
    arguments.fail(QStringLiteral("FILE must not be empty"));
  return plan;
}

Command screenshot_command() {
  return {"screenshot",
          "[FILE]",
          "save a picture of the virtual panel",
          QStringLiteral(
              "FILE becomes a PNG file of the whole panel, or of the 128 x 128 pixels of one screen; without FILE\n"
              "panel.png, or screen-0.png to screen-2.png. It is replaced when it is there. With - the picture\n"
              "goes to standard output. All that the daemon has read before is in the picture.\n"),
          "buttonctl screenshot\n"
          "buttonctl screenshot ready.png --screen 0\n"
          "buttonctl screenshot - --panel http://127.0.0.1:8081\n",
          {{"screen", "N", "only this screen, 0, 1 or 2"}},
          build_screenshot};
}

} // namespace buttondriver::buttonctl
