// SPDX-License-Identifier: Apache-2.0
// Scenarios, as `buttonctl run` reads them. The pictures that they name lie in a folder with one good and one bad
// picture.
//
// Input, from the end: whether pictures are going to be replaced (one byte, its lowest bit). In front of it: the file.
#include "buttonctl/command_table.h"
#include "buttonctl/scenario/scenario_reader.h"
#include "fuzz/fuzz_target.h"
#include "fuzz/support/input.h"
#include "fuzz/support/require.h"
#include "pictures/picture_file.h"
#include "tests/support/temporary_folder.h"

#include <QByteArray>
#include <QCoreApplication>
#include <QJsonObject>
#include <QString>

namespace buttondriver::fuzz {

namespace {

using namespace buttonctl;

/// The parser of options wants an application, and the lines want files.
class Rig {
public:
  Rig() : _application(_argument_count, nullptr) {
    _folder.write("good.png", write_png(Picture({128, 128}, {0, 128, 0})).toStdString());
    _folder.write("bad.png", "no picture");
  }

  QString scenario() const { return QString::fromStdString(_folder.path("a.scenario")); }

private:
  int _argument_count = 0;
  QCoreApplication _application;
  test::TemporaryFolder _folder;
};

void require_performable(const Steps &steps) {
  require(!steps.empty(), "a line that does nothing is left out");
  for (const Step &step : steps)
    if (step.kind == Step::Kind::wait)
      require(step.bytes.isEmpty() && step.wait_ms >= 0, "a wait sends nothing, and ends");
    else
      require(!step.bytes.isEmpty(), "a step has something to send");
}

void require_told(const Outcome<Done> &tested) {
  require(tested || !tested.failure().text.isEmpty(), "a difference is told");
}

/// Whatever number a line names, the panel has it; and not every panel knows all of it.
void require_answer(const StateTest &test) {
  PanelReport report;
  require_told(test(report));
  report.blinking.emplace();
  report.sent.emplace();
  report.drawn.emplace();
  require_told(test(report));
  report.blinking->emplace(0, 1);
  report.sent->front().emplace(0, QStringLiteral("text"));
  report.drawn->front().emplace(0, QStringLiteral("drawn"));
  require_told(test(report));
}

void require_answer(const PixelTest &test) {
  require(test.screen >= 0 && test.screen < dimensions::screen_count, "a pixel is of a screen");
  require_told(test.test(Picture({dimensions::screen_width, dimensions::screen_height})));
}

void require_answer(const FeedTest &test) {
  PanelFeed feed;
  require_told(test.test(feed));
  // A member that is missing is one, too.
  feed.entries = {QJsonObject(), QJsonObject{{QStringLiteral("text"), QStringLiteral("text")}}};
  feed.dropped = 1;
  require_told(test.test(feed));
  feed.is_known = false;
  require_told(test.test(feed));
}

void require_testable(const Expectation &expectation, bool replaces_pictures) {
  require(!expectation.timeout_ms || *expectation.timeout_ms > 0, "a wait has an end and a length");
  if (const auto *questions = std::get_if<std::vector<Question>>(&expectation.test)) {
    require(!questions->empty(), "an expectation asks something");
    for (const Question &question : *questions)
      std::visit([](const auto &test) { require_answer(test); }, question);
    return;
  }
  const auto &picture = std::get<PictureTest>(expectation.test);
  require(picture.screen >= 0 && picture.screen < dimensions::screen_count, "a picture is of a screen");
  require(!replaces_pictures || picture.expected.isNull(), "a picture that will be replaced is not read");
}

} // namespace

} // namespace buttondriver::fuzz

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
  using namespace buttondriver::fuzz;
  static const Rig rig;
  Input input(data, size);
  const bool replaces_pictures = (input.number<std::uint8_t>() & 1) != 0;
  const std::vector<std::uint8_t> content = input.rest();
  const auto lines = parse_scenario(
      command_table(), rig.scenario(),
      QByteArray(reinterpret_cast<const char *>(content.data()), static_cast<int>(content.size())), replaces_pictures);
  if (!lines) {
    require(lines.failure().text.startsWith(rig.scenario() + QLatin1Char(':')), "a message names the place");
    require(!lines.failure().text.contains(QLatin1Char('\n')), "a message is one line");
    return 0;
  }
  for (const auto &line : *lines) {
    require(line.where.startsWith(rig.scenario() + QLatin1Char(':')), "a line knows its place");
    if (const auto *steps = std::get_if<Steps>(&line.content))
      require_performable(*steps);
    else if (const auto *expectation = std::get_if<Expectation>(&line.content))
      require_testable(*expectation, replaces_pictures);
  }
  return 0;
}
