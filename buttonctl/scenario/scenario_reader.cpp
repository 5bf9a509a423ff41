// SPDX-License-Identifier: Apache-2.0
#include "buttonctl/scenario/scenario_reader.h"

#include "buttonctl/arguments/line_place.h"
#include "buttonctl/arguments/line_splitter.h"
#include "buttonctl/commands/command_line.h"
#include "buttonctl/scenario/expectations/expectation_parser.h"

#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <cstdio>

namespace buttondriver::buttonctl {

namespace {

Outcome<ScenarioContent> parse_line(const CommandTable &commands, const QByteArray &line, const QString &folder,
                                    bool replaces_pictures) {
  const Outcome<QStringList> words = split_line(QString::fromUtf8(line));
  if (!words)
    return words.failure();
  if (!words->isEmpty() && is_expectation(words->first())) {
    const Outcome<Expectation> expectation = parse_expectation(*words, folder, replaces_pictures);
    if (!expectation)
      return expectation.failure();
    return ScenarioContent(*expectation);
  }
  if (!words->isEmpty() && words->first() == QLatin1String("reset")) {
    if (words->size() > 1)
      return Failure{QStringLiteral("reset: '%1' is too much").arg(words->at(1))};
    return ScenarioContent(Reset{});
  }
  const Outcome<Steps> steps = parse_batch_line(commands, line, folder);
  if (!steps)
    return steps.failure();
  return ScenarioContent(*steps);
}

bool is_empty(const ScenarioContent &content) {
  const auto *steps = std::get_if<Steps>(&content);
  return steps && steps->empty();
}

} // namespace

Outcome<std::vector<ScenarioLine>> parse_scenario(const CommandTable &commands, const QString &file,
                                                  const QByteArray &content, bool replaces_pictures) {
  const QString folder = folder_of_scenario(file);
  std::vector<ScenarioLine> lines;
  int number = 0;
  for (const QByteArray &line : content.split('\n')) {
    ++number;
    const auto parsed = parse_line(commands, line, folder, replaces_pictures);
    if (!parsed)
      return Failure{line_place(file, number) + parsed.failure().text};
    if (!is_empty(*parsed))
      lines.push_back({line_place(file, number), *parsed});
  }
  return lines;
}

QString folder_of_scenario(const QString &file) { return QFileInfo(file).path(); }

int count_expectations(const std::vector<ScenarioLine> &lines) {
  return static_cast<int>(std::count_if(lines.begin(), lines.end(), [](const ScenarioLine &line) {
    return std::holds_alternative<Expectation>(line.content);
  }));
}

Outcome<std::vector<ScenarioLine>> read_scenario(const CommandTable &commands, const QString &file,
                                                 bool replaces_pictures) {
  QFile source(file);
  if (file == standard_input_name) {
    if (!source.open(stdin, QIODevice::ReadOnly))
      return Failure{QStringLiteral("run: cannot read standard input: %1").arg(source.errorString())};
    return parse_scenario(commands, QStringLiteral("standard input"), source.readAll(), replaces_pictures);
  }
  if (!source.open(QIODevice::ReadOnly))
    return Failure{QStringLiteral("run: cannot read '%1': %2").arg(file, source.errorString())};
  return parse_scenario(commands, file, source.readAll(), replaces_pictures);
}

} // namespace buttondriver::buttonctl
