// SPDX-License-Identifier: Apache-2.0
#include "tools/manual/folding.h"

namespace buttondriver::manual {

std::string folded(const std::string &line, std::size_t width) {
  if (line.size() <= width)
    return line;
  const std::size_t gap = line.rfind("  ");
  const std::size_t column = gap == std::string::npos ? 0 : line.find_first_not_of(' ', gap);
  const std::size_t blank = line.rfind(' ', width);
  if (blank == std::string::npos || blank <= column) {
    const std::size_t comma = line.rfind(',', width - 1);
    return comma == std::string::npos ? line
                                      : line.substr(0, comma + 1) + "\n " + folded(line.substr(comma + 1), width - 1);
  }
  return line.substr(0, blank) + '\n' +
         folded(std::string(column > 0 ? column : 4, ' ') + line.substr(blank + 1), width);
}

std::string folded_commands(std::string_view lines) {
  std::string text;
  std::size_t column = 0;
  std::size_t blank = 0; // where the line can be parted
  char quote = 0;
  for (const char character : lines) {
    if (character == ' ' && quote == 0 && column + 2 <= example_width)
      blank = text.size();
    if (character == '\'' || character == '"')
      quote = quote == 0 ? character : quote == character ? '\0' : quote;
    text += character;
    ++column;
    if (character == '\n') {
      column = blank = 0;
    } else if (column > example_width && blank > 0) {
      text.replace(blank, 1, " \\\n    ");
      column = text.size() - blank - 3;
      blank = 0;
    }
  }
  return text;
}

} // namespace buttondriver::manual
