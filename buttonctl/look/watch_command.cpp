// SPDX-License-Identifier: Apache-2.0
#include "buttonctl/look/watch_command.h"

#include "buttonctl/look/frame.h"
#include "buttonctl/look/state_text.h"
#include "buttonctl/look/terminal.h"
#include "buttonctl/panel/panel_state_reader.h"
#include "buttonctl/session/console.h"
#include "buttonctl/session/exit_status.h"
#include "unixsignalhandler/unix_signal_handler.h"

#include <QCoreApplication>
#include <QEventLoop>
#include <QTimer>

#include <csignal>
#include <map>
#include <memory>

namespace buttondriver::buttonctl {

namespace {

/// Between two questions to the panel: four frames a second at most.
constexpr int watch_interval_ms = 250;

struct WatchPlan {
  bool once;
  std::optional<std::int32_t> screen; ///< all when there is none
  std::optional<Colours> colours;     ///< what the terminal can show when there is none
  QString panel_url;
  int timeout_ms;
};

bool has_been_ended = false;

void end_watching() {
  has_been_ended = true;
  // Ends whatever loop waits now.
  QCoreApplication::exit();
}

void wait_for_next_frame() {
  QEventLoop loop;
  QTimer::singleShot(watch_interval_ms, &loop, &QEventLoop::quit);
  loop.exec();
}

/// Shows one frame after the other.
class Watcher {
public:
  explicit Watcher(const WatchPlan &plan)
      : _plan(plan), _colours(plan.colours.value_or(colours_of(terminal_facts()))),
        _panel(plan.panel_url, plan.timeout_ms) {}

  /// Shows what has changed since the last time, if anything has.
  Outcome<Done> look() {
    const Outcome<QByteArray> json = _panel.stateJson();
    if (!json)
      return json.failure();
    const QSize size = terminal_size();
    // The state counts the transfers to the panel, so that no pixel changes without it.
    if (*json == _json && size == _size)
      return Done{};
    const Outcome<PanelReport> report = _panel.reportIn(*json);
    if (!report)
      return report.failure();
    const Outcome<Done> shown = _colours == Colours::none ? showText(*report) : showPicture(*report, size);
    if (shown) {
      _json = *json;
      _size = size;
    }
    return shown;
  }

private:
  Outcome<Done> showText(const PanelReport &report) {
    const QString text = state_text(report);
    if (text == _text)
      return Done{};
    print(_text.isEmpty() ? text : QLatin1Char('\n') + text);
    flush_output();
    _text = text;
    return Done{};
  }

  Outcome<Done> showPicture(const PanelReport &report, QSize size) {
    std::vector<Picture> screens;
    for (int screen = 0; screen < dimensions::screen_count; ++screen) {
      if (_plan.screen && screen != *_plan.screen)
        continue;
      const Outcome<ScreenPicture> picture = _panel.screen(screen);
      if (!picture)
        return picture.failure();
      screens.push_back(picture->picture);
    }
    const QStringList lines = frame(screens, report, _colours, size);
    if (_plan.once) {
      print(lines.join(QLatin1Char('\n')) + QLatin1Char('\n'));
      return Done{};
    }
    if (!_full_screen)
      _full_screen = std::make_unique<FullScreen>();
    _full_screen->show(lines);
    return Done{};
  }

  const WatchPlan _plan;
  const Colours _colours;
  PanelStateReader _panel;
  QByteArray _json; ///< what is shown
  QSize _size;
  QString _text;
  std::unique_ptr<FullScreen> _full_screen; ///< from the first frame on
};

int watch(const WatchPlan &plan) {
  const unixsignalhandler::UnixSignalHandler signal_bridge;
  for (const int signal : {SIGINT, SIGTERM, SIGHUP})
    unixsignalhandler::UnixSignalHandler::installSignalHandler(signal, end_watching);
  Outcome<Done> looked = Done{};
  {
    // Gives the terminal back before anything is said about a failure.
    Watcher watcher(plan);
    while (!has_been_ended) {
      looked = watcher.look();
      if (!looked || plan.once)
        break;
      wait_for_next_frame();
    }
  }
  return looked || has_been_ended ? exit_done : report(looked.failure(), exit_unreachable);
}

std::optional<Colours> read_colours(ArgumentReader &arguments) {
  static const std::map<QString, std::optional<Colours>> names = {{QStringLiteral("auto"), std::nullopt},
                                                                  {QStringLiteral("none"), Colours::none},
                                                                  {QStringLiteral("256"), Colours::few},
                                                                  {QStringLiteral("24bit"), Colours::all}};
  if (!arguments.hasOption("colours"))
    return std::nullopt;
  const auto found = names.find(arguments.option("colours"));
  if (found != names.end())
    return found->second;
  arguments.fail(
      QStringLiteral("--colours must be auto, none, 256 or 24bit, not '%1'").arg(arguments.option("colours")));
  return std::nullopt;
}

Action build_watch(ArgumentReader &arguments, const CommandContext &context) {
  refuse_dry_run(arguments, context);
  WatchPlan plan{arguments.hasOption("once"), std::nullopt, read_colours(arguments), panel_of(arguments, context),
                 context.endpoint.timeout_ms};
  if (arguments.hasOption("screen"))
    plan.screen = arguments.optionNumber("screen", 0, dimensions::screen_count - 1, 0);
  return [plan] { return watch(plan); };
}

} // namespace

Command watch_command() {
  return {"watch",
          "",
          "show the virtual panel in the terminal",
          QStringLiteral(
              "Shows the screens as coloured blocks, two pixels in a character, and the LEDs, the indicators and\n"
              "the brightness below, until ctrl-C. The picture is as large as the terminal has room for, and is\n"
              "drawn again when something has changed, four times a second at most. It takes a terminal with\n"
              "UTF-8. Where it promises 24-bit colours (COLORTERM=truecolor) they are used, otherwise 256. Without\n"
              "a terminal, with NO_COLOR or TERM=dumb there is the text of 'state' each time that it changes.\n"),
          "buttonctl watch\n"
          "buttonctl watch --screen 1 --panel http://127.0.0.1:8081\n"
          "buttonctl watch --once --colours 24bit\n",
          {{"once", nullptr, "print what is there now, and end"},
           {"screen", "N", "only this screen, 0, 1 or 2, as large as there is room for"},
           {"colours,colors", "WHICH", "auto, none, 256 or 24bit (default auto: as the terminal is)"}},
          build_watch};
}

} // namespace buttondriver::buttonctl
