// SPDX-License-Identifier: Apache-2.0
#include "buttonctl/arguments/numbers.h"

#include <QStringList>

namespace buttondriver::buttonctl {

namespace {

/// QString's own conversion lets blanks and a plus sign pass.
bool is_decimal(const QString &text) {
  const QString digits = text.startsWith(QLatin1Char('-')) ? text.mid(1) : text;
  if (digits.isEmpty())
    return false;
  for (const QChar character : digits)
    if (character < QLatin1Char('0') || character > QLatin1Char('9'))
      return false;
  return true;
}

} // namespace

Outcome<std::int32_t> parse_number(const QString &name, const QString &text, std::int32_t lowest,
                                   std::int32_t highest) {
  bool converted = is_decimal(text);
  const qlonglong number = converted ? text.toLongLong(&converted) : 0;
  if (!converted || number < lowest || number > highest)
    return Failure{QStringLiteral("%1 must be a number from %2 to %3, not '%4'")
                       .arg(name, QString::number(lowest), QString::number(highest), text)};
  return static_cast<std::int32_t>(number);
}

Outcome<std::vector<std::int32_t>> parse_number_list(const QString &text, std::int32_t lowest, std::int32_t highest) {
  std::vector<std::int32_t> numbers;
  for (const QString &part : text.split(QLatin1Char(','))) {
    const QStringList ends = part.split(QLatin1Char('-'));
    const Outcome<std::int32_t> first = parse_number(QString(), ends.first(), lowest, highest);
    const Outcome<std::int32_t> last = parse_number(QString(), ends.last(), lowest, highest);
    if (!first || !last || ends.size() > 2 || *first > *last)
      return Failure{};
    for (std::int32_t number = *first; number <= *last; ++number)
      numbers.push_back(number);
  }
  return numbers;
}

} // namespace buttondriver::buttonctl
