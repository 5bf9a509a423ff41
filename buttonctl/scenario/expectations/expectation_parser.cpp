// SPDX-License-Identifier: Apache-2.0
#include "buttonctl/scenario/expectations/expectation_parser.h"

#include "buttonctl/arguments/option_parser.h"
#include "buttonctl/scenario/expectations/feed_tests.h"
#include "buttonctl/scenario/expectations/picture_tests.h"
#include "buttonctl/scenario/expectations/state_tests.h"

#include <utility>

namespace buttondriver::buttonctl {

namespace {

constexpr std::int32_t longest_timeout_ms = 600000;
constexpr QLatin1String wait_command("wait-until");
constexpr QLatin1String time_word("within");
constexpr QLatin1String and_word("and");

bool has_prefix(const QString &word) { return word.startsWith(QLatin1String("expect-")); }

Outcome<Expectation> parse_single(const QStringList &words, const QString &folder, bool replaces_pictures) {
  const QString &name = words.first();
  QCommandLineParser parser;
  add_options(parser, {{"timeout", "MS", nullptr}});
  if (const auto parsed = parse_options(parser, words.mid(1), QStringLiteral("buttonctl run --help")); !parsed)
    return Failure{name + QLatin1String(": ") + parsed.failure().text};
  ArgumentReader reader(name, parser, folder, QStringLiteral("run"));
  Expectation expectation;
  expectation.command = name;
  if (reader.hasOption("timeout"))
    expectation.timeout_ms = reader.optionNumber("timeout", 1, longest_timeout_ms, 0);
  if (auto state = state_test(name, reader)) {
    expectation.test = std::vector<Question>{*std::move(state)};
  } else if (auto pixel = pixel_test(name, reader)) {
    expectation.test = std::vector<Question>{*std::move(pixel)};
  } else if (auto feed = feed_test(name, reader)) {
    expectation.test = std::vector<Question>{*std::move(feed)};
    expectation.can_still_come = !is_about_faults(name);
  } else if (auto picture = picture_test(name, reader, replaces_pictures)) {
    expectation.test = *std::move(picture);
  } else {
    return Failure{QStringLiteral("unknown expectation '%1'; see 'buttonctl run --help'").arg(name)};
  }
  reader.expectEnd();
  if (reader.hasFailed())
    return reader.outcome().failure();
  return expectation;
}

Failure wrong_wait(const QString &text) { return Failure{wait_command + QLatin1String(": ") + text}; }

/// "wait-until expect-led 5 on and expect-text 0 0 Ready within 5000"
Outcome<Expectation> parse_wait(QStringList words, const QString &folder) {
  Expectation wait;
  wait.command = wait_command;
  words.removeFirst();
  if (words.size() >= 2 && words[words.size() - 2] == time_word) {
    const Outcome<std::int32_t> time = parse_number(QStringLiteral("MS"), words.last(), 1, longest_timeout_ms);
    if (!time)
      return wrong_wait(time.failure().text);
    wait.timeout_ms = *time;
    words.erase(words.end() - 2, words.end());
  }
  std::vector<Question> questions;
  while (!words.isEmpty()) {
    if (!has_prefix(words.first()))
      break;
    // "and" may be a word of a text, but then no expectation follows.
    int count = 1;
    while (count < words.size() &&
           !(words[count] == and_word && count + 1 < words.size() && has_prefix(words[count + 1])))
      ++count;
    const Outcome<Expectation> single = parse_single(words.mid(0, count), folder, false);
    if (!single)
      return single.failure();
    const auto *asked = std::get_if<std::vector<Question>>(&single->test);
    if (!asked || single->timeout_ms || !single->can_still_come)
      return wrong_wait(
          QStringLiteral("'%1' cannot be waited for like this").arg(words.mid(0, count).join(QLatin1Char(' '))));
    questions.insert(questions.end(), asked->begin(), asked->end());
    words = words.mid(count + 1);
    if (words.isEmpty()) {
      wait.test = questions;
      return wait;
    }
  }
  return wrong_wait(words.isEmpty() ? QStringLiteral("an expectation is missing, such as 'expect-led 5 on'")
                                    : QStringLiteral("'%1' is no expectation").arg(words.first()));
}

} // namespace

bool is_expectation(const QString &word) { return has_prefix(word) || word == wait_command; }

Outcome<Expectation> parse_expectation(const QStringList &words, const QString &folder, bool replaces_pictures) {
  if (words.first() == wait_command)
    return parse_wait(words, folder);
  return parse_single(words, folder, replaces_pictures);
}

} // namespace buttondriver::buttonctl
