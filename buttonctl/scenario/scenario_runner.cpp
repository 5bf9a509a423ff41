// SPDX-License-Identifier: Apache-2.0
#include "buttonctl/scenario/scenario_runner.h"

#include "buttonctl/pictures/picture_difference.h"
#include "buttonctl/session/console.h"
#include "buttonctl/session/exit_status.h"

#include <QEventLoop>
#include <QFile>
#include <QSaveFile>
#include <QTimer>

#include <chrono>

namespace buttondriver::buttonctl {

namespace {

/// Between two questions to the panel.
constexpr int poll_interval_ms = 20;

using Clock = std::chrono::steady_clock;

void pause() {
  QEventLoop loop;
  QTimer::singleShot(poll_interval_ms, &loop, &QEventLoop::quit);
  loop.exec();
}

Outcome<Done> write_file(const QString &name, const QByteArray &content) {
  QSaveFile file(name);
  if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size() || !file.commit())
    return Failure{QStringLiteral("cannot write '%1': %2").arg(name, file.errorString())};
  return Done{};
}

/// What happened to the difference picture, as the end of a sentence.
QString write_difference(const PictureTest &test, const QImage &actual) {
  const QString file = difference_file(test.file);
  if (!difference_picture(test.expected, actual).save(file, "PNG"))
    return QStringLiteral("'%1' cannot be written").arg(file);
  return QStringLiteral("see '%1'").arg(file);
}

} // namespace

ScenarioRunner::ScenarioRunner(const ScenarioPlan &plan)
    : _plan(plan), _session(plan.endpoint, plan.dry_run), _panel(plan.panel_url, plan.endpoint.timeout_ms) {}

int ScenarioRunner::run(const std::vector<ScenarioLine> &lines) {
  if (const auto started = _session.start(); !started)
    return report(started.failure(), exit_unreachable);
  int status = exit_done;
  for (const ScenarioLine &line : lines) {
    status = perform(line);
    if (status != exit_done)
      break;
  }
  // What came before a failure has been sent and shall arrive.
  const Outcome<Done> finished = _session.finish();
  if (!finished && status == exit_done)
    return report(finished.failure(), exit_unreachable);
  return status;
}

int ScenarioRunner::perform(const ScenarioLine &line) {
  if (const auto *steps = std::get_if<Steps>(&line.content)) {
    _is_settled = false;
    if (const auto performed = _session.perform(*steps); !performed)
      return report(performed.failure(), exit_unreachable, line.where);
    return exit_done;
  }
  if (_plan.dry_run)
    return exit_done;
  if (const auto settled = settle(); !settled)
    return report(settled.failure(), exit_unreachable, line.where);
  const auto &expectation = std::get<Expectation>(line.content);
  if (const auto *test = std::get_if<StateTest>(&expectation.test))
    return expectState(line.where, expectation, *test);
  const auto &picture = std::get<PictureTest>(expectation.test);
  return _plan.update ? updatePicture(line.where, picture) : expectPicture(line.where, expectation, picture);
}

Outcome<Done> ScenarioRunner::settle() {
  if (_is_settled)
    return Done{};
  Outcome<Done> answered = _session.settle();
  _is_settled = static_cast<bool>(answered);
  return answered;
}

int ScenarioRunner::expectState(const QString &where, const Expectation &expectation, const StateTest &test) {
  const int timeout_ms = timeoutOf(expectation);
  const auto deadline = Clock::now() + std::chrono::milliseconds(timeout_ms);
  for (;;) {
    // Looked at before the question, so that a panel that is slow to answer has been asked at least once in time.
    const bool is_last = Clock::now() >= deadline;
    const Outcome<PanelReport> state = _panel.state();
    if (!state)
      return report(state.failure(), exit_unreachable, where);
    const Outcome<Done> tested = test(*state);
    if (tested)
      return exit_done;
    if (is_last)
      return report(Failure{QStringLiteral("%1: after %2 ms, %3")
                                .arg(expectation.command, QString::number(timeout_ms), tested.failure().text)},
                    exit_timed_out, where);
    pause();
  }
}

int ScenarioRunner::expectPicture(const QString &where, const Expectation &expectation, const PictureTest &test) {
  if (test.expected.isNull())
    return report(Failure{QStringLiteral("%1: there is no '%2'; 'buttonctl run --update' writes what the screen shows")
                              .arg(expectation.command, test.file)},
                  exit_differs, where);
  const int timeout_ms = timeoutOf(expectation);
  const auto deadline = Clock::now() + std::chrono::milliseconds(timeout_ms);
  for (;;) {
    const bool is_last = Clock::now() >= deadline;
    const Outcome<ScreenPicture> screen = _panel.screen(test.screen);
    if (!screen)
      return report(screen.failure(), exit_unreachable, where);
    const int different = count_different_pixels(test.expected, screen->image);
    if (different == 0)
      return exit_done;
    if (is_last)
      return report(Failure{QStringLiteral("%1: after %2 ms, %3 pixels of screen %4 are not those of '%5'; %6")
                                .arg(expectation.command, QString::number(timeout_ms), QString::number(different),
                                     QString::number(test.screen), test.file, write_difference(test, screen->image))},
                    exit_differs, where);
    pause();
  }
}

int ScenarioRunner::updatePicture(const QString &where, const PictureTest &test) {
  const Outcome<ScreenPicture> screen = _panel.screen(test.screen);
  if (!screen)
    return report(screen.failure(), exit_unreachable, where);
  const QImage expected(test.file);
  // A picture that shows the same is left as it is, whoever has written it.
  if (!expected.isNull() && count_different_pixels(expected, screen->image) == 0)
    return exit_done;
  if (const auto written = write_file(test.file, screen->png); !written)
    return report(written.failure(), exit_bad_usage, where);
  QFile::remove(difference_file(test.file));
  print_line(QStringLiteral("wrote %1").arg(test.file));
  return exit_done;
}

int ScenarioRunner::timeoutOf(const Expectation &expectation) const {
  return expectation.timeout_ms.value_or(_plan.endpoint.timeout_ms);
}

} // namespace buttondriver::buttonctl
