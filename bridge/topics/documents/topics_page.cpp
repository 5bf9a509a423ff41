// SPDX-License-Identifier: Apache-2.0
#include "bridge/topics/documents/topics_page.h"

#include "bridge/topics/documents/prose.h"
#include "bridge/topics/payloads/line_text.h"
#include "bridge/topics/topic_commands.h"
#include "bridge/topics/topic_levels.h"
#include "bridge/topics/topic_table.h"
#include "bridge/topics/usual_font.h"
#include "dimensions/panel_dimensions.h"

#include <iterator>
#include <limits>
#include <sstream>
#include <vector>

namespace buttondriver::bridge {

namespace {

using namespace dimensions;

// The numbers in the prose.
static_assert(usual_font::lines == 8 && usual_font::characters == 16 && longest_name == 64);

constexpr const char *panel = "buttondriver/hall/";

std::string numbers(const LevelRange &range) {
  const std::string text = range.highest == range.lowest + 1
                               ? std::to_string(range.lowest) + " or " + std::to_string(range.highest)
                               : std::to_string(range.lowest) + " to " + std::to_string(range.highest);
  return range.takes_all ? text + ", or `all`" : text;
}

/// What may stand for the levels in angle brackets: "`<button>` 0 to 23, or `all`".
std::string ranges(const TopicPattern &pattern) {
  std::string text;
  for (std::size_t i = 0; i < pattern.levels.count; ++i) {
    const std::string_view level = pattern.levels.level[i];
    if (!is_placeholder(level))
      continue;
    text += (text.empty() ? "`" : "; `") + std::string(level) + "` ";
    text += level == name_placeholder ? "any name" : numbers(pattern.ranges[i]);
  }
  return text;
}

const char *payload_in_words(PayloadForm form) {
  switch (form) {
  case PayloadForm::led:
    return "`on`, `off` or `blink MS`";
  case PayloadForm::on_or_off:
    return "`on` or `off`";
  case PayloadForm::line:
    return "a text";
  case PayloadForm::part:
    return "a JSON object";
  case PayloadForm::picture:
    return "the bytes of a BMP or PNG file";
  case PayloadForm::now:
    return "`now`";
  }
  return "";
}

std::string panel_in_words() {
  std::ostringstream text;
  text << "A panel has " << button_count << " buttons with an LED each, " << led_count << " status LEDs, "
       << toggle_indicator_count << " toggle indicators, and " << screen_count << " screens of " << screen_width
       << " x " << screen_height << " pixels,\nwhich show lines of text and pictures.\n";
  return text.str();
}

std::string table_of_topics() {
  std::ostringstream text;
  text << "| TAIL | Numbers | Payload | Sets |\n|---|---|---|---|\n";
  for (std::size_t i = 0; i < topic_patterns.size(); ++i) {
    const TopicRow &row = topic_table[i];
    text << "| `" << row.pattern << "` | " << ranges(topic_patterns[i]) << " | " << payload_in_words(row.form) << " | "
         << row.meaning << " |\n";
  }
  text << "\nNumbers are written without a sign and without zeros before them, so each thing has one topic.\n";
  return text.str();
}

std::string keys_of_a_part() {
  std::ostringstream text;
  text << "| Key | Value |\n|---|---|\n"
       << "| `line` | 0 to " << screen_height - 1 << "; 0 is the topmost |\n"
       << "| `offset` | 0 to " << screen_width - 1 << ": the place of the first character in the line |\n"
       << "| `text` | the characters; `\\u00e9` is understood |\n"
       << "| `chars` | may be left out: how many characters to write, 1 to " << most_line_characters
       << ". A shorter text is filled up with blanks, a longer one cut; without it, all of the text is written |\n"
       << "| `colour` | may be left out: of the characters, `\"#rrggbb\"`; white without it |\n"
       << "| `background` | may be left out: the colour behind them; black without it |\n";
  return text.str();
}

/// Nothing that happens once is worth keeping.
bool is_done_once(const TopicRow &row) { return row.form == PayloadForm::now; }

std::string example_of(const TopicRow &row) {
  std::string text = std::string("mosquitto_pub ") + (is_done_once(row) ? "-t " : "-r -t ") + panel +
                     (is_done_once(row) ? "do/" : "") + row.example;
  if (row.form == PayloadForm::picture)
    return text + " -f " + row.payload + '\n';
  const std::string payload = row.payload;
  const bool needs_quotes = payload.find_first_of(" {\"#") != std::string::npos;
  return text + " -m " + (needs_quotes ? '\'' + payload + '\'' : payload) + '\n';
}

std::string examples() {
  std::string text = "## Examples\n\n```sh\n";
  for (const TopicRow &row : topic_table)
    text += example_of(row);
  text += "mosquitto_pub -r -t buttondriver/group/doors/led/all -m off\n"
          "mosquitto_pub -t buttondriver/group/doors/do/screen/all/line/0 -m 'Fire drill'\n"
          "```\n";
  return text;
}

std::string limits() {
  std::ostringstream text;
  text << "## Limits\n\n"
          "Nothing that is published can make the bridge or a panel hold more than this. What is beyond it is refused "
          "with an\nerror.\n\n"
          "| What | How much |\n|---|---|\n"
       << "| payload of a lamp, a blackout, `reconfig` | " << largest_word_payload << " bytes |\n"
       << "| a text, a part | " << largest_text_payload / 1024 << " KiB; of a text, the first " << most_line_characters
       << " characters go to the panel, which is more than any line shows |\n"
       << "| a picture file | " << largest_picture_payload / 1024 << " KiB, and " << screen_width << " x "
       << screen_height
       << " pixels |\n"
          "| what is kept for one panel | 1000 topics, 8 MiB |\n"
          "| what waits for a slow panel | 1000 commands, 8 MiB. Kept topics are not lost beyond that: the panel is "
          "brought to its state when it has taken what waits |\n";
  return text.str();
}

std::string what_has_no_topic() {
  std::ostringstream text;
  text << "\n## What has no topic\n\n"
          "Each message of the [protocol](protocol.md) that the daemon handles has a topic above, but for these:\n\n"
          "| Message | Why |\n|---|---|\n";
  for (const NotOffered &left_out : not_offered)
    text << "| `" << find_message_type(left_out.opcode)->name << "` | " << left_out.reason << " |\n";
  return text.str();
}

} // namespace

std::string topics_page() {
  return prose::beginning + panel_in_words() + prose::first_steps + table_of_topics() + "\n## Payloads\n" +
         prose::payloads + prose::text_rules + keys_of_a_part() + prose::picture_rules + examples() +
         prose::taking_back + limits() + what_has_no_topic();
}

} // namespace buttondriver::bridge
