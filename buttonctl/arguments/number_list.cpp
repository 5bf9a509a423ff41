// SPDX-License-Identifier: Apache-2.0
#include "buttonctl/arguments/number_list.h"

#include "buttonctl/arguments/argument_reader.h"

#include <QStringList>

namespace buttondriver::buttonctl {

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
