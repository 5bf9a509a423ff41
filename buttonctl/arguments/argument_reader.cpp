// SPDX-License-Identifier: Apache-2.0
#include "buttonctl/arguments/argument_reader.h"

#include "dimensions/panel_dimensions.h"

#include <QDir>
#include <QFile>

#include <utility>

namespace buttondriver::buttonctl {

namespace {

constexpr std::uint32_t highest_latin1_character = 0xFF;
constexpr int most_shown_characters = 40;
/// What the panel takes for all of its screens, or of its buttons.
constexpr std::int32_t all = -1;
static_assert(dimensions::all_screens == all && dimensions::all_buttons == all);
/// More than any picture needs; a file may have no end, as a device or a pipe has none.
constexpr int largest_file_mib = 64;

bool is_digit(QChar character) { return character >= QLatin1Char('0') && character <= QLatin1Char('9'); }

bool is_hexadecimal_digit(QChar character) {
  const QChar lower = character.toLower();
  return is_digit(character) || (lower >= QLatin1Char('a') && lower <= QLatin1Char('f'));
}

/// For messages: enough of a long text to recognise it.
QString shortened(const QString &text) {
  return text.size() > most_shown_characters ? text.left(most_shown_characters) + QLatin1String("...") : text;
}

} // namespace

ArgumentReader::ArgumentReader(QString command, const QCommandLineParser &parser, QString folder, QString help)
    : _command(std::move(command)), _parser(parser), _folder(std::move(folder)),
      _help(help.isEmpty() ? _command : help), _arguments(parser.positionalArguments()) {}

void ArgumentReader::fail(const QString &text) {
  if (_outcome)
    _outcome = Failure{_command + QLatin1String(": ") + text};
}

void ArgumentReader::expectEnd() {
  if (!atEnd())
    fail(QStringLiteral("'%1' is one argument too many; see 'buttonctl %2 --help'").arg(_arguments.at(_next), _help));
}

QString ArgumentReader::word(const char *name) {
  if (atEnd()) {
    fail(QStringLiteral("%1 is missing; see 'buttonctl %2 --help'").arg(QLatin1String(name), _help));
    return {};
  }
  return _arguments.at(_next++);
}

std::int32_t ArgumentReader::number(const char *name, std::int32_t lowest, std::int32_t highest) {
  const QString text = word(name);
  return checked(parse_number(QLatin1String(name), text, lowest, highest));
}

std::int32_t ArgumentReader::screen() { return numberOrAll("SCREEN", 0, dimensions::screen_count - 1); }

std::int32_t ArgumentReader::numberOrAll(const char *name, std::int32_t lowest, std::int32_t highest) {
  const QString text = word(name);
  if (text == QLatin1String("all"))
    return all;
  const Outcome<std::int32_t> outcome = parse_number(QLatin1String(name), text, lowest, highest);
  if (!outcome)
    fail(QStringLiteral("%1 must be a number from %2 to %3, or 'all', not '%4'")
             .arg(QLatin1String(name), QString::number(lowest), QString::number(highest), text));
  return outcome ? *outcome : 0;
}

std::optional<std::vector<std::int32_t>> ArgumentReader::numbersOrAll(const char *name, std::int32_t lowest,
                                                                      std::int32_t highest) {
  const QString text = word(name);
  if (text == QLatin1String("all"))
    return std::nullopt;
  const Outcome<std::vector<std::int32_t>> numbers = parse_number_list(text, lowest, highest);
  if (numbers)
    return *numbers;
  fail(QStringLiteral("%1 must be a number from %2 to %3, a list such as %2-%3 or %2,%3, or 'all', not '%4'")
           .arg(QLatin1String(name), QString::number(lowest), QString::number(highest), text));
  return std::vector<std::int32_t>();
}

std::int32_t ArgumentReader::onOrOff() {
  const QString text = word("STATE");
  if (text == QLatin1String("on"))
    return 1;
  if (text != QLatin1String("off"))
    fail(QStringLiteral("STATE must be 'on' or 'off', not '%1'").arg(text));
  return 0;
}

QString ArgumentReader::text() { return text(word("TEXT"), QStringLiteral("TEXT")); }

QString ArgumentReader::text(const QString &text, const QString &name) {
  // By code points, so that a character outside the basic plane is named as what it is.
  for (const uint character : text.toUcs4()) {
    if (character <= highest_latin1_character)
      continue;
    const auto code_point = static_cast<char32_t>(character);
    fail(QStringLiteral("%1 must be Latin-1 (U+0000 to U+00FF); '%2' (U+%3) is not")
             .arg(name, QString::fromUcs4(&code_point, 1),
                  QString::number(character, 16).toUpper().rightJustified(4, QLatin1Char('0'))));
    break;
  }
  return text;
}

QByteArray ArgumentReader::hexadecimal() {
  QByteArray bytes;
  while (!atEnd()) {
    for (const QString &group : word("HEX").split(QLatin1Char(' '))) {
      for (const QChar character : group)
        if (!is_hexadecimal_digit(character))
          fail(QStringLiteral("HEX must be hexadecimal digits, two for each byte; '%1' is not").arg(shortened(group)));
      if (group.size() % 2 != 0)
        fail(QStringLiteral("HEX must be two digits for each byte; '%1' has an odd number").arg(shortened(group)));
      bytes += QByteArray::fromHex(group.toLatin1());
    }
  }
  return bytes;
}

QString ArgumentReader::pathOf(const QString &name) const {
  return _folder.isEmpty() ? name : QDir::cleanPath(QDir(_folder).filePath(name));
}

NamedFile ArgumentReader::file() {
  const QString name = word("FILE");
  if (name != QLatin1String("-") || !_allows_standard_input)
    return {name, contentOf(name)};
  const QString input = QStringLiteral("standard input");
  QFile source;
  if (!source.open(stdin, QIODevice::ReadOnly)) {
    fail(QStringLiteral("cannot read %1: %2").arg(input, source.errorString()));
    return {};
  }
  return {input, bounded(source, input)};
}

QByteArray ArgumentReader::contentOf(const QString &name) {
  if (hasFailed())
    return {};
  QFile source(pathOf(name));
  if (!source.open(QIODevice::ReadOnly)) {
    fail(QStringLiteral("cannot read '%1': %2").arg(name, source.errorString()));
    return {};
  }
  return bounded(source, name);
}

QByteArray ArgumentReader::bounded(QIODevice &source, const QString &name) {
  constexpr qint64 largest_file = qint64{largest_file_mib} * 1024 * 1024;
  QByteArray content = source.read(largest_file + 1);
  if (content.size() > largest_file)
    fail(QStringLiteral("'%1' has more than %2 MiB").arg(name, QString::number(largest_file_mib)));
  return content;
}

std::int32_t ArgumentReader::optionNumber(const char *name, std::int32_t lowest, std::int32_t highest,
                                          std::int32_t fallback) {
  if (!hasOption(name))
    return fallback;
  return checked(parse_number(QLatin1String("--") + QLatin1String(name), option(name), lowest, highest));
}

double ArgumentReader::optionFactor(const char *name, double lowest, double highest, double fallback) {
  if (!hasOption(name))
    return fallback;
  bool good = false;
  const double factor = option(name).toDouble(&good);
  // In this form, a value that is no number fails too.
  if (!good || !(factor >= lowest && factor <= highest))
    fail(QStringLiteral("--%1 must be a number from %2 to %3, not '%4'")
             .arg(QLatin1String(name), QString::number(lowest), QString::number(highest, 'f', 0), option(name)));
  return factor;
}

std::uint32_t ArgumentReader::optionColour(const char *name, std::uint32_t fallback) {
  if (!hasOption(name))
    return fallback;
  return colour(QLatin1String("--") + QLatin1String(name), option(name));
}

std::uint32_t ArgumentReader::colour(const char *name) { return colour(QLatin1String(name), word(name)); }

std::uint32_t ArgumentReader::colour(const QString &name, const QString &text) {
  QString digits = text;
  if (digits.startsWith(QLatin1Char('#')))
    digits.remove(0, 1);
  bool good = digits.size() == 6;
  for (const QChar character : digits)
    good = good && is_hexadecimal_digit(character);
  if (!good)
    fail(QStringLiteral("%1 must be six hexadecimal digits RRGGBB, not '%2'").arg(name, text));
  return digits.toUInt(nullptr, 16);
}

bool ArgumentReader::optionPair(const char *yes, const char *no, bool fallback) {
  if (hasOption(yes) && hasOption(no))
    fail(QStringLiteral("use only one of --%1 and --%2").arg(QLatin1String(yes), QLatin1String(no)));
  return hasOption(yes) || (fallback && !hasOption(no));
}

std::int32_t ArgumentReader::checked(const Outcome<std::int32_t> &outcome) {
  if (outcome)
    return *outcome;
  fail(outcome.failure().text);
  return 0;
}

} // namespace buttondriver::buttonctl
