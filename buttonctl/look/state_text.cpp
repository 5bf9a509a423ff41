// SPDX-License-Identifier: Apache-2.0
#include "buttonctl/look/state_text.h"

#include "buttonctl/session/console.h"

#include <QStringList>

namespace buttondriver::buttonctl {

namespace {

const QString unknown = QStringLiteral("not known, because another program drives the panel");

template <std::size_t Count> QString lit_lamps(const std::array<bool, Count> &lamps) {
  QStringList numbers;
  for (std::size_t i = 0; i < Count; ++i)
    if (lamps[i])
      numbers += QString::number(i);
  return (numbers.isEmpty() ? QStringLiteral("none") : numbers.join(QLatin1Char(' '))) + QLatin1String(" on");
}

QString blinking_lamps(const PanelReport &report) {
  if (!report.blinking)
    return QLatin1String("; blinking ") + unknown;
  QString text;
  for (const auto &[button, time] : *report.blinking)
    text += QStringLiteral(", %1 blinking (%2 ms)").arg(button).arg(time);
  return text;
}

/// Those that are on without blinking.
std::array<bool, dimensions::led_count> steady_lamps(const PanelReport &report) {
  auto lamps = report.button_leds;
  if (report.blinking)
    for (const auto &[button, time] : *report.blinking)
      if (static_cast<std::size_t>(button) < lamps.size())
        lamps[static_cast<std::size_t>(button)] = false;
  return lamps;
}

QString without_trailing_blanks(QString text) {
  while (text.endsWith(QLatin1Char(' ')))
    text.chop(1);
  return text;
}

using Lines = std::map<int, QString>;

/// Without the blanks at its end; empty when it is not there.
QString line_of(const Lines &lines, int line) {
  const auto found = lines.find(line);
  return found == lines.end() ? QString() : as_one_line(without_trailing_blanks(found->second));
}

/// Each line that is there, and what was sent for it where that is something else.
QString lines_text(const Lines &there, const Lines &sent) {
  Lines all = there;
  all.insert(sent.begin(), sent.end());
  QString text;
  for (const auto &[line, content] : all) {
    const QString is = line_of(there, line);
    const QString was_sent = line_of(sent, line);
    if (is.isEmpty() && was_sent.isEmpty())
      continue;
    text += QStringLiteral("  %1: ").arg(line) + is;
    if (was_sent != is)
      text += QLatin1String(is.isEmpty() ? "(sent: " : "  (sent: ") + was_sent + QLatin1Char(')');
    text += QLatin1Char('\n');
  }
  return text;
}

QString screen_text(const PanelReport &report, std::size_t screen) {
  const Lines sent = report.sent ? (*report.sent)[screen] : Lines();
  const QString title = QStringLiteral("screen %1").arg(screen);
  if (report.drawn)
    return title + QLatin1Char('\n') +
           lines_text((*report.drawn)[screen], report.sent ? sent : (*report.drawn)[screen]);
  return title + QLatin1String(": cannot be read: ") + as_one_line(report.drawn_fault) + QLatin1Char('\n') +
         lines_text({}, sent);
}

} // namespace

QString lamps_text(const PanelReport &report) {
  return QLatin1String("LEDs: ") + lit_lamps(steady_lamps(report)) + blinking_lamps(report) +
         QLatin1String("\nstatus LEDs: ") + lit_lamps(report.status_leds) + QLatin1String("\ntoggle indicators: ") +
         lit_lamps(report.toggles) +
         QStringLiteral("\nbrightness: %1 of %2\n").arg(report.intensity).arg(dimensions::highest_intensity_level);
}

QString state_text(const PanelReport &report) {
  QString text;
  for (std::size_t screen = 0; screen < dimensions::screen_count; ++screen)
    text += screen_text(report, screen);
  return text + lamps_text(report);
}

} // namespace buttondriver::buttonctl
