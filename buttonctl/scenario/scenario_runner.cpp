// SPDX-License-Identifier: Apache-2.0
#include "buttonctl/scenario/scenario_runner.h"

#include "buttonctl/difference/picture_difference.h"
#include "buttonctl/session/console.h"
#include "buttonctl/session/exit_status.h"
#include "pictures/picture_file.h"

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

Picture shown_part(const ScreenPicture &screen, const PictureTest &test) {
  // A panel of another kind may have smaller screens.
  const QRect whole(QPoint(0, 0), screen.picture.size());
  return test.region ? screen.picture.cut(test.region->intersected(whole)) : screen.picture;
}

QString name_of_part(const PictureTest &test) {
  return QLatin1String(test.region ? "the region of screen " : "screen ") + QString::number(test.screen);
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
  if (std::holds_alternative<Reset>(line.content))
    return reset(line.where);
  const auto &expectation = std::get<Expectation>(line.content);
  if (const auto *questions = std::get_if<std::vector<Question>>(&expectation.test))
    return expectAnswers(line.where, expectation, *questions);
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

int ScenarioRunner::reset(const QString &where) {
  if (const auto done = _panel.reset(); !done)
    return report(done.failure(), exit_unreachable, where + QLatin1String("reset: "));
  for (const auto kind : {PanelFeed::Kind::messages, PanelFeed::Kind::log}) {
    const Outcome<PanelFeed> feed = _panel.feed(kind, 0);
    if (!feed)
      return report(feed.failure(), exit_unreachable, where);
    // What has come since the reset counts.
    _since[kind] = feed->last - static_cast<qint64>(feed->entries.size());
  }
  return exit_done;
}

Outcome<Outcome<Done>> ScenarioRunner::ask(const Question &question) {
  if (const auto *test = std::get_if<StateTest>(&question)) {
    const Outcome<PanelReport> state = _panel.state();
    if (!state)
      return state.failure();
    return (*test)(*state);
  }
  if (const auto *pixel = std::get_if<PixelTest>(&question)) {
    const Outcome<ScreenPicture> screen = _panel.screen(pixel->screen);
    if (!screen)
      return screen.failure();
    return pixel->test(screen->picture);
  }
  const auto &test = std::get<FeedTest>(question);
  const Outcome<PanelFeed> feed = _panel.feed(test.kind, _since[test.kind]);
  if (!feed)
    return feed.failure();
  return test.test(*feed);
}

int ScenarioRunner::expectAnswers(const QString &where, const Expectation &expectation,
                                  const std::vector<Question> &questions) {
  const int timeout_ms = timeoutOf(expectation);
  const auto deadline = Clock::now() + std::chrono::milliseconds(timeout_ms);
  for (;;) {
    // Looked at before the questions, so that a panel that is slow to answer has been asked at least once in time.
    const bool is_last = Clock::now() >= deadline;
    Outcome<Done> all = Done{};
    bool is_of_pixels = false;
    for (const Question &question : questions) {
      const Outcome<Outcome<Done>> asked = ask(question);
      if (!asked)
        return report(asked.failure(), exit_unreachable, where);
      is_of_pixels = std::holds_alternative<PixelTest>(question);
      all = *asked;
      if (!all)
        break;
    }
    if (all)
      return exit_done;
    if (!expectation.can_still_come)
      return report(Failure{QStringLiteral("%1: %2").arg(expectation.command, all.failure().text)}, exit_timed_out,
                    where);
    if (is_last)
      return report(Failure{QStringLiteral("%1: after %2 ms, %3")
                                .arg(expectation.command, QString::number(timeout_ms), all.failure().text)},
                    is_of_pixels ? exit_differs : exit_timed_out, where);
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
    const Picture shown = shown_part(*screen, test);
    if (test.expected.size() != shown.size()) {
      QFile::remove(differences);
      return report(Failure{QStringLiteral("%1: '%2' is %3 pixels, %4 is %5")
                                .arg(expectation.command, test.file, extent(test.expected.size()), name_of_part(test),
                                     extent(shown.size()))},
                    exit_differs, where);
    }
    const int different = count_different_pixels(test.expected, shown, test.tolerance);
    if (different == 0) {
      QFile::remove(differences);
      return exit_done;
    }
    if (is_last)
      return report(
          Failure{QStringLiteral("%1: after %2 ms, %3 pixels of %4 are not those of '%5'; %6")
                      .arg(expectation.command, QString::number(timeout_ms), QString::number(different),
                           name_of_part(test), test.file, write_difference(differences, test.expected, shown))},
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
  const Picture shown = shown_part(*screen, test);
  if (expected && expected->size() == shown.size() && count_different_pixels(*expected, shown, test.tolerance) == 0)
    return exit_done;
  if (const auto written = write_file(test.file, test.region ? write_png(shown) : screen->png); !written)
    return report(written.failure(), exit_bad_usage, where);
  print_line(QStringLiteral("wrote %1").arg(test.file));
  return exit_done;
}

int ScenarioRunner::timeoutOf(const Expectation &expectation) const {
  return expectation.timeout_ms.value_or(_plan.endpoint.timeout_ms);
}

} // namespace buttondriver::buttonctl
