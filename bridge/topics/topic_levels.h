// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "bridge/topics/topic_table.h"

#include <array>
#include <cstddef>
#include <iterator>
#include <limits>
#include <string_view>

/// The levels of topics, and what stands for what in the patterns of the table.
namespace buttondriver::bridge {

/// A topic, or a pattern, cut at its slashes. Borrows from the text that it was cut from.
struct TopicLevels {
  static constexpr std::size_t most = 5;

  std::array<std::string_view, most> level{};
  std::size_t count = 0; ///< one more than `most` when there are more

  static constexpr TopicLevels of(std::string_view text) {
    TopicLevels levels;
    for (;;) {
      const std::size_t slash = text.find('/');
      if (levels.count == most) {
        ++levels.count;
        return levels;
      }
      levels.level[levels.count++] = text.substr(0, slash);
      if (slash == std::string_view::npos)
        return levels;
      text.remove_prefix(slash + 1);
    }
  }
};

/// Whether a level of a pattern stands for others.
constexpr bool is_placeholder(std::string_view level) { return !level.empty() && level.front() == '<'; }
inline constexpr std::string_view name_placeholder = "<name>";

/// Bytes that a name may have.
inline constexpr std::size_t longest_name = 64;

/// The numbers that a level takes.
struct LevelRange {
  std::int64_t lowest;
  std::int64_t highest;
  bool takes_all; ///< the word "all" as well, for -1
};

namespace topic_levels_detail {

/// Where the catalogue has no bound: the largest number that can mean a place on a screen. A font is at least one pixel
/// high.
constexpr std::int64_t highest_on_screen(std::string_view placeholder) {
  if (placeholder == "<line>" || placeholder == "<y>")
    return dimensions::screen_height - 1;
  if (placeholder == "<x>")
    return dimensions::screen_width - 1;
  return std::numeric_limits<std::int64_t>::max();
}

static_assert(dimensions::all_screens == -1 && dimensions::all_buttons == -1, "what \"all\" stands for");

constexpr bool has_a_name_for_all(const Field &field) {
  for (std::size_t i = 0; i < field.namedCount(); ++i)
    if (field.named[i].first == -1 && field.lowest > -1)
      return true;
  return false;
}

} // namespace topic_levels_detail

constexpr LevelRange range_of(const Field &field, std::string_view placeholder) {
  const std::int64_t most = topic_levels_detail::highest_on_screen(placeholder);
  return {field.lowest < 0 ? 0 : field.lowest, field.highest < most ? field.highest : most,
          topic_levels_detail::has_a_name_for_all(field)};
}

/// A row of the table with its pattern cut.
struct TopicPattern {
  TopicLevels levels;
  /// Of the levels that are numbers.
  std::array<LevelRange, TopicLevels::most> ranges{};
};

namespace topic_levels_detail {

constexpr TopicPattern pattern_of(const TopicRow &row) {
  TopicPattern pattern{TopicLevels::of(row.pattern)};
  std::size_t field = 1;
  for (const MessageType &type : catalogue)
    if (type.opcode == row.opcode)
      for (std::size_t i = 0; i < pattern.levels.count; ++i)
        if (is_placeholder(pattern.levels.level[i]) && pattern.levels.level[i] != name_placeholder)
          pattern.ranges[i] = range_of(type.fields[field++], pattern.levels.level[i]);
  return pattern;
}

constexpr auto all_patterns() {
  std::array<TopicPattern, std::size(topic_table)> patterns{};
  for (std::size_t i = 0; i < patterns.size(); ++i)
    patterns[i] = pattern_of(topic_table[i]);
  return patterns;
}

} // namespace topic_levels_detail

/// In the order of the table.
inline constexpr std::array<TopicPattern, std::size(topic_table)> topic_patterns = topic_levels_detail::all_patterns();

namespace topic_levels_detail {

/// A Target holds 16 bits of each.
constexpr bool patterns_are_possible() {
  for (const TopicPattern &pattern : topic_patterns) {
    if (pattern.levels.count > TopicLevels::most)
      return false;
    for (const LevelRange &range : pattern.ranges)
      if (range.lowest < 0 || range.highest < range.lowest || range.highest > std::numeric_limits<std::int16_t>::max())
        return false;
  }
  return true;
}

static_assert(patterns_are_possible(), "few levels, and numbers with bounds");

} // namespace topic_levels_detail

} // namespace buttondriver::bridge
