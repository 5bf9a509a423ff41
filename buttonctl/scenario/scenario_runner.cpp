// SPDX-License-Identifier: Apache-2.0
#include "buttonctl/scenario/scenario_runner.h"

#include "buttonctl/pictures/difference/picture_difference.h"
#include "buttonctl/pictures/picture_file.h"
#include "buttonctl/session/console.h"
#include "buttonctl/session/exit_status.h"

#include <QDir>
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

/// What happened to the difference picture in `file`, as the end of a sentence.
QString write_difference(const QString &file, const Picture &expected, const Picture &actual) {
  QDir().mkpath(QFileInfo(file).path());
  if (!write_file(file, write_png(difference_picture(expected, actual))))
    return QStringLiteral("'%1' cannot be written").arg(file);
  return QStringLiteral("see '%1'").arg(file);
}

QString extent(QSize size) { return QStringLiteral("%1 x %2").arg(size.width()).arg(size.height()); }

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
  const QString differences = difference_file(_plan.output, test.file);
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
    if (test.expected.size() != screen->picture.size()) {
      QFile::remove(differences);
      return report(Failure{QStringLiteral("%1: '%2' is %3 pixels, screen %4 is %5")
                                .arg(expectation.command, test.file, extent(test.expected.size()),
                                     QString::number(test.screen), extent(screen->picture.size()))},
                    exit_differs, where);
    }
    const int different = count_different_pixels(test.expected, screen->picture);
    if (different == 0) {
      QFile::remove(differences);
      return exit_done;
    }
    if (is_last)
      return report(Failure{QStringLiteral("%1: after %2 ms, %3 pixels of screen %4 are not those of '%5'; %6")
                                .arg(expectation.command, QString::number(timeout_ms), QString::number(different),
                                     QString::number(test.screen), test.file,
                                     write_difference(differences, test.expected, screen->picture))},
                    exit_differs, where);
    pause();
  }
}

int ScenarioRunner::updatePicture(const QString &where, const PictureTest &test) {
  const Outcome<ScreenPicture> screen = _panel.screen(test.screen);
  if (!screen)
    return report(screen.failure(), exit_unreachable, where);
  QFile::remove(difference_file(_plan.output, test.file));
  const Outcome<Picture> expected = read_picture_file(test.file);
  // A picture that shows the same is left as it is, whoever has written it.
  if (expected && expected->size() == screen->picture.size() && count_different_pixels(*expected, screen->picture) == 0)
    return exit_done;
  if (const auto written = write_file(test.file, screen->png); !written)
    return report(written.failure(), exit_bad_usage, where);
  print_line(QStringLiteral("wrote %1").arg(test.file));
  return exit_done;
}

int ScenarioRunner::timeoutOf(const Expectation &expectation) const {
  return expectation.timeout_ms.value_or(_plan.endpoint.timeout_ms);
}

} // namespace buttondriver::buttonctl
