// SPDX-License-Identifier: Apache-2.0
#include "event_client/button_cache.h"

#include <algorithm>

namespace buttondriver {

namespace {

bool equal(const ButtonColour &a, const ButtonColour &b) {
  return a.value_1 == b.value_1 && a.value_2 == b.value_2 && a.value_3 == b.value_3;
}

bool equal(const ButtonColourPair &a, const ButtonColourPair &b) {
  return equal(a.first, b.first) && a.first_time == b.first_time && equal(a.second, b.second) &&
         a.second_time == b.second_time;
}

} // namespace

void ButtonCache::Record::keepText(std::string_view new_text) {
  const std::size_t length = new_text.copy(text.data(), text_capacity);
  text[length] = '\0';
}

void ButtonCache::clear() { _records.fill(Record{}); }

bool ButtonCache::takeColour(std::uint32_t button_id, const ButtonColour &colour) {
  const auto note = [&colour](Record &record) {
    record.valid = true;
    record.colours.first = colour;
    record.colours.second_time = 0;
  };
  if (button_id == all_buttons)
    std::for_each(_records.begin(), _records.end(), note);
  if (button_id >= button_count)
    return true;
  Record &record = _records[button_id];
  if (record.valid && equal(record.colours.first, colour) && record.colours.second_time == 0)
    return false;
  note(record);
  return true;
}

bool ButtonCache::takeColourPair(std::uint32_t button_id, const ButtonColourPair &pair) {
  if (button_id == all_buttons) {
    for (Record &record : _records)
      record.colours = pair;
  }
  if (button_id >= button_count)
    return true;
  Record &record = _records[button_id];
  if (record.valid && equal(record.colours, pair))
    return false;
  record.valid = true;
  record.colours = pair;
  return true;
}

bool ButtonCache::takeText(std::uint32_t button_id, std::string_view text, std::uint32_t text_value) {
  const auto note = [text](Record &record) {
    record.keepText(text);
    record.image = unknown_image;
  };
  if (button_id == all_buttons)
    std::for_each(_records.begin(), _records.end(), note);
  if (button_id >= button_count)
    return true;
  Record &record = _records[button_id];
  if (text == record.text.data() && text_value == record.text_value)
    return false;
  note(record);
  record.text_value = text_value;
  return true;
}

bool ButtonCache::takeImage(std::uint32_t button_id, std::int32_t image_id) {
  if (button_id == all_buttons) {
    for (Record &record : _records) {
      record.image = image_id;
      record.keepText({});
    }
  }
  if (button_id >= button_count)
    return true;
  Record &record = _records[button_id];
  if (record.image == image_id)
    return false;
  record.image = image_id;
  return true;
}

void ButtonCache::forgetImage(std::int32_t image_id) {
  for (Record &record : _records) {
    if (record.image == image_id)
      record.image = unknown_image;
  }
}

} // namespace buttondriver
