// SPDX-License-Identifier: Apache-2.0
#include "protocol/field_text.h"

#include <sstream>
#include <string_view>

namespace buttondriver {

namespace {

std::string number_text(const Field &field, std::int64_t number) {
  constexpr std::int64_t largest_decimal = 0xFFFF;
  std::ostringstream text;
  if (field.kind == FieldKind::unsigned_integer && number > largest_decimal)
    text << "0x" << std::hex << std::uppercase;
  text << number;
  return text.str();
}

std::string values_text(const Field &field, std::int64_t first, std::int64_t last) {
  std::string from = number_text(field, first);
  if (first == last)
    return from;
  if (last == first + 1)
    return from + " or " + number_text(field, last);
  if (last == first + 2)
    return from + ", " + number_text(field, first + 1) + " or " + number_text(field, last);
  if (last == field.largestPossible())
    return "from " + from + " on";
  return from + " to " + number_text(field, last);
}

/// Whether each value of the range has a name.
bool is_named_throughout(const Field &field) {
  std::int64_t nameless = field.lowest;
  for (std::size_t tries = 0; tries < field.namedCount(); ++tries)
    for (std::size_t i = 0; i < field.namedCount(); ++i)
      if (field.named[i].first <= nameless && nameless <= field.named[i].last)
        nameless = field.named[i].last + 1;
  return nameless > field.highest;
}

bool is_one_of_the_others(const Field &field, const NamedValue &value) {
  return field.others && std::string_view(field.others) == value.name;
}

bool is_limited(const Field &field) {
  return field.lowest > field.leastPossible() || field.highest < field.largestPossible();
}

} // namespace

std::string field_text(const Field &field) {
  std::string text;
  const auto add = [&text](const std::string &part) {
    if (!text.empty())
      text += "; ";
    text += part;
  };
  if (field.meaning)
    add(field.meaning);
  if (field.is_colour)
    add("0xRRGGBB");
  else if (is_limited(field) && !is_named_throughout(field))
    add((field.lowest == field.highest ? "always " : "") + values_text(field, field.lowest, field.highest));
  for (std::size_t i = 0; i < field.namedCount(); ++i)
    if (!is_one_of_the_others(field, field.named[i]))
      add(values_text(field, field.named[i].first, field.named[i].last) + ": " + field.named[i].name);
  if (field.others)
    add(std::string("else ") + field.others);
  return text;
}

} // namespace buttondriver
