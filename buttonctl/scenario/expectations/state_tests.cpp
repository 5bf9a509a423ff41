// SPDX-License-Identifier: Apache-2.0
#include "buttonctl/scenario/expectations/state_tests.h"

#include "buttonctl/arguments/argument_reader.h"
#include "dimensions/panel_dimensions.h"

#include <limits>

namespace buttondriver::buttonctl {

namespace {

constexpr std::int32_t highest_led = dimensions::led_count - 1;
constexpr std::int32_t highest_toggle = dimensions::toggle_indicator_count - 1;
constexpr std::int32_t highest_screen = dimensions::screen_count - 1;
/// A font is at least one pixel high.
constexpr std::int32_t highest_line = dimensions::screen_height - 1;
constexpr std::int32_t longest_phase_ms = std::numeric_limits<std::int32_t>::max();

QString on_off(bool lit) { return QLatin1String(lit ? "on" : "off"); }

/// "blinking 500", "on" or "off"
QString shown_state(const PanelReport &report, std::int32_t button) {
  if (report.blinking && report.blinking->count(button) > 0)
    return QStringLiteral("blinking %1").arg(report.blinking->at(button));
  return on_off(report.button_leds[static_cast<std::size_t>(button)]);
}

Failure not_known(const QString &what) {
  return Failure{QStringLiteral("%1 is not known, because another program drives the panel").arg(what)};
}

Outcome<Done> compare(const QString &what, const QString &is, const QString &should) {
  if (is == should)
    return Done{};
  return Failure{QStringLiteral("%1 is %2, not %3").arg(what, is, should)};
}

StateTest led_test(ArgumentReader &arguments) {
  const std::int32_t button = arguments.number("BUTTON", 0, highest_led);
  const QString state = arguments.word("STATE");
  const QString what = QStringLiteral("LED %1").arg(button);
  if (state == QLatin1String("blinking")) {
    const bool any_time = arguments.atEnd();
    const QString should =
        any_time ? state : QStringLiteral("blinking %1").arg(arguments.number("MS", 1, longest_phase_ms));
    return [=](const PanelReport &report) -> Outcome<Done> {
      if (!report.blinking)
        return not_known(QStringLiteral("whether %1 blinks").arg(what));
      if (any_time && report.blinking->count(button) > 0)
        return Done{};
      return compare(what, shown_state(report, button), should);
    };
  }
  if (state != QLatin1String("on") && state != QLatin1String("off"))
    arguments.fail(QStringLiteral("STATE must be 'on', 'off' or 'blinking', not '%1'").arg(state));
  return [=](const PanelReport &report) { return compare(what, shown_state(report, button), state); };
}

StateTest status_test(ArgumentReader &arguments) {
  const std::int32_t indicator = arguments.number("ID", 0, highest_led);
  const bool lit = arguments.onOrOff() != 0;
  return [=](const PanelReport &report) {
    return compare(QStringLiteral("status LED %1").arg(indicator),
                   on_off(report.status_leds[static_cast<std::size_t>(indicator)]), on_off(lit));
  };
}

StateTest toggle_test(ArgumentReader &arguments) {
  const std::int32_t indicator = arguments.number("ID", 0, highest_toggle);
  const bool lit = arguments.onOrOff() != 0;
  return [=](const PanelReport &report) {
    return compare(QStringLiteral("toggle indicator %1").arg(indicator),
                   on_off(report.toggles[static_cast<std::size_t>(indicator)]), on_off(lit));
  };
}

StateTest intensity_test(ArgumentReader &arguments) {
  const std::int32_t level = arguments.number("LEVEL", 0, dimensions::highest_intensity_level);
  return [=](const PanelReport &report) {
    return compare(QStringLiteral("the intensity"), QString::number(report.intensity), QString::number(level));
  };
}

/// Blanks at the end of a line cannot be seen.
QString without_trailing_blanks(QString text) {
  while (text.endsWith(QLatin1Char(' ')))
    text.chop(1);
  return text;
}

/// The line without the blanks at its end; empty when it is not there.
QString line_of(const PanelReport::Text &screens, std::int32_t screen, std::int32_t line) {
  const auto &lines = screens[static_cast<std::size_t>(screen)];
  const auto found = lines.find(line);
  return found == lines.end() ? QString() : without_trailing_blanks(found->second);
}

QString quoted(const QString &text) { return QLatin1Char('\'') + text + QLatin1Char('\''); }

/// "; 'Ready' was sent", where that is known and is not what stands there.
QString what_was_sent(const PanelReport &report, std::int32_t screen, std::int32_t line,
                      const std::optional<QString> &drawn) {
  const QString sent = report.sent ? line_of(*report.sent, screen, line) : QString();
  if (!report.sent || sent == drawn.value_or(QString()))
    return {};
  return QStringLiteral("; %1 was sent").arg(quoted(sent));
}

StateTest text_test(ArgumentReader &arguments) {
  const std::int32_t screen = arguments.number("SCREEN", 0, highest_screen);
  const std::int32_t line = arguments.number("LINE", 0, highest_line);
  const QString should = without_trailing_blanks(arguments.text());
  return [=](const PanelReport &report) -> Outcome<Done> {
    const QString what = QStringLiteral("line %1 of screen %2").arg(line).arg(screen);
    if (!report.drawn)
      return Failure{QStringLiteral("%1 cannot be read: %2").arg(what, report.drawn_fault) +
                     what_was_sent(report, screen, line, std::nullopt)};
    const QString is = line_of(*report.drawn, screen, line);
    Outcome<Done> compared = compare(what, quoted(is), quoted(should));
    if (compared)
      return compared;
    return Failure{compared.failure().text + what_was_sent(report, screen, line, is)};
  };
}

struct NamedStateTest {
  const char *name;
  StateTest (*build)(ArgumentReader &arguments);
};

constexpr NamedStateTest state_tests[] = {
    {"expect-led", led_test},       {"expect-status", status_test},
    {"expect-toggle", toggle_test}, {"expect-intensity", intensity_test},
    {"expect-text", text_test},
};

} // namespace

std::optional<StateTest> state_test(const QString &name, ArgumentReader &arguments) {
  for (const NamedStateTest &test : state_tests)
    if (name == QLatin1String(test.name))
      return test.build(arguments);
  return std::nullopt;
}

} // namespace buttondriver::buttonctl
