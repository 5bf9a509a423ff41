// SPDX-License-Identifier: Apache-2.0
#include "bridge/topics/topic_match.h"

#include "bridge/topics/nearest_topic.h"
#include "bridge/topics/payloads/shown.h"
#include "bridge/topics/topic_levels.h"

#include <algorithm>
#include <iterator>

namespace buttondriver::bridge {

namespace {

bool fits(const TopicLevels &pattern, const TopicLevels &levels) {
  if (pattern.count != levels.count)
    return false;
  for (std::size_t i = 0; i < pattern.count; ++i)
    if (!is_placeholder(pattern.level[i]) && pattern.level[i] != levels.level[i])
      return false;
  return true;
}

bool is_letter_of_a_name(char letter) {
  return (letter >= 'a' && letter <= 'z') || (letter >= 'A' && letter <= 'Z') || (letter >= '0' && letter <= '9') ||
         letter == '-' || letter == '_' || letter == '.';
}

bool is_name(std::string_view name) {
  return !name.empty() && name.size() <= longest_name && std::all_of(name.begin(), name.end(), is_letter_of_a_name);
}

Failure no_number(std::string_view placeholder, const LevelRange &range, std::string_view level) {
  return Failure{QStringLiteral("the %1 must be a number from %2 to %3%4, not '%5'")
                     .arg(latin1(placeholder.substr(1, placeholder.size() - 2)))
                     .arg(range.lowest)
                     .arg(range.highest)
                     .arg(QLatin1String(range.takes_all ? ", or 'all'" : ""), shown(level))};
}

Outcome<TopicMatch> with_numbers(const TopicRow &row, const TopicPattern &pattern, const TopicLevels &levels) {
  TopicMatch match{&row, row.fields};
  std::size_t count = 0;
  for (std::size_t i = 0; i < levels.count; ++i) {
    const std::string_view placeholder = pattern.levels.level[i];
    const std::string_view level = levels.level[i];
    if (!is_placeholder(placeholder))
      continue;
    if (placeholder == name_placeholder) {
      if (!is_name(level))
        return Failure{QStringLiteral("a name has 1 to %1 letters, digits, '-', '_' and '.', not '%2'")
                           .arg(longest_name)
                           .arg(shown(level))};
      continue;
    }
    const LevelRange &range = pattern.ranges[i];
    std::int64_t number = -1;
    if (!(range.takes_all && level == "all") && !read_number(level, range.lowest, range.highest, &number))
      return no_number(placeholder, range, level);
    match.fields[count++] = static_cast<std::int16_t>(number);
  }
  return match;
}

} // namespace

bool read_number(std::string_view text, std::int64_t lowest, std::int64_t highest, std::int64_t *number) {
  constexpr std::size_t most_digits = 10;
  if (text.empty() || text.size() > most_digits || (text.size() > 1 && text.front() == '0'))
    return false;
  std::int64_t value = 0;
  for (const char digit : text) {
    if (digit < '0' || digit > '9')
      return false;
    value = value * 10 + (digit - '0');
  }
  if (value < lowest || value > highest)
    return false;
  *number = value;
  return true;
}

Outcome<TopicMatch> match_topic(std::string_view tail) {
  const TopicLevels levels = TopicLevels::of(tail);
  for (std::size_t i = 0; i < topic_patterns.size(); ++i)
    if (fits(topic_patterns[i].levels, levels))
      return with_numbers(topic_table[i], topic_patterns[i], levels);
  return Failure{no_such_topic(tail)};
}

} // namespace buttondriver::bridge
