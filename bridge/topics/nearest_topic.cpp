// SPDX-License-Identifier: Apache-2.0
#include "bridge/topics/nearest_topic.h"

#include "bridge/topics/payloads/shown.h"
#include "bridge/topics/topic_levels.h"

#include <algorithm>
#include <array>
#include <string>

namespace buttondriver::bridge {

namespace {

/// Slips in one word; more, and something else was meant.
constexpr std::size_t most_slips = 2;
constexpr std::size_t longest_word = 16;

char lower(char letter) { return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter; }

/// Letters that are too many, too few or wrong; capitals are not. Both are words of `longest_word` at most.
std::size_t slips_between(std::string_view typed, std::string_view meant) {
  std::array<std::size_t, longest_word + 1> slips{};
  for (std::size_t column = 0; column <= meant.size(); ++column)
    slips[column] = column;
  for (std::size_t row = 1; row <= typed.size(); ++row) {
    std::size_t diagonal = slips[0];
    slips[0] = row;
    for (std::size_t column = 1; column <= meant.size(); ++column) {
      const std::size_t changed = diagonal + (lower(typed[row - 1]) != meant[column - 1] ? 1 : 0);
      diagonal = slips[column];
      slips[column] = std::min({changed, slips[column] + 1, slips[column - 1] + 1});
    }
  }
  return slips[meant.size()];
}

bool is_near(std::string_view typed, std::string_view meant) {
  // Of a short word, little would be left.
  return typed.size() <= longest_word && slips_between(typed, meant) <= std::min(most_slips, meant.size() / 2);
}

/// Nobody means a level without letters.
TopicLevels without_empty_levels(const TopicLevels &levels) {
  TopicLevels result;
  for (std::size_t i = 0; i < std::min(levels.count, TopicLevels::most); ++i)
    if (!levels.level[i].empty())
      result.level[result.count++] = levels.level[i];
  return result;
}

bool is_near(const TopicLevels &typed, const TopicLevels &pattern) {
  if (typed.count != pattern.count)
    return false;
  for (std::size_t i = 0; i < pattern.count; ++i)
    if (!is_placeholder(pattern.level[i]) && !is_near(typed.level[i], pattern.level[i]))
      return false;
  return true;
}

/// `pattern` with what was typed in the place of what stands for others.
QString filled_in(const TopicLevels &pattern, const TopicLevels &typed) {
  std::string text;
  for (std::size_t i = 0; i < pattern.count; ++i) {
    if (i > 0)
      text += '/';
    text += is_placeholder(pattern.level[i]) ? typed.level[i] : pattern.level[i];
  }
  return shown(text);
}

/// All topics whose first level was typed, or nearly; all that there are when it fits none.
QString those_that_there_are(std::string_view first_level) {
  QString fitting;
  QString all;
  for (std::size_t i = 0; i < topic_patterns.size(); ++i) {
    const QLatin1String pattern(topic_table[i].pattern);
    all += (all.isEmpty() ? QLatin1String("") : QLatin1String(", ")) + pattern;
    if (is_near(first_level, topic_patterns[i].levels.level[0]))
      fitting += (fitting.isEmpty() ? QLatin1String("") : QLatin1String(", ")) + pattern;
  }
  return fitting.isEmpty() ? all : fitting;
}

} // namespace

QString no_such_topic(std::string_view tail) {
  const TopicLevels typed = TopicLevels::of(tail);
  const TopicLevels levels = without_empty_levels(typed);
  const QString text = QStringLiteral("there is no topic '%1'; ").arg(shown(tail));
  for (const TopicPattern &pattern : topic_patterns)
    if (typed.count <= TopicLevels::most && is_near(levels, pattern.levels))
      return text + QStringLiteral("did you mean '%1'?").arg(filled_in(pattern.levels, levels));
  return text + QStringLiteral("there is %1").arg(those_that_there_are(levels.level[0]));
}

} // namespace buttondriver::bridge
