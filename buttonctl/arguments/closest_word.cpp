// SPDX-License-Identifier: Apache-2.0
#include "buttonctl/arguments/closest_word.h"

#include <algorithm>
#include <vector>

namespace buttondriver::buttonctl {

namespace {

constexpr int most_slips = 2;

/// The slips that make `typed` out of `meant`; one exchange of neighbours counts as one.
int slips_between(const QString &typed, const QString &meant) {
  const int rows = static_cast<int>(typed.size()) + 1;
  const int columns = static_cast<int>(meant.size()) + 1;
  // Slips between the first so many characters of both.
  std::vector<int> slips(static_cast<std::size_t>(rows) * static_cast<std::size_t>(columns));
  const auto at = [&](int row, int column) -> int & { return slips[static_cast<std::size_t>(row * columns + column)]; };
  for (int row = 0; row < rows; ++row) {
    for (int column = 0; column < columns; ++column) {
      if (row == 0 || column == 0) {
        at(row, column) = row + column;
        continue;
      }
      const bool is_wrong = typed.at(row - 1) != meant.at(column - 1);
      at(row, column) =
          std::min({at(row - 1, column) + 1, at(row, column - 1) + 1, at(row - 1, column - 1) + (is_wrong ? 1 : 0)});
      if (row > 1 && column > 1 && typed.at(row - 1) == meant.at(column - 2) &&
          typed.at(row - 2) == meant.at(column - 1))
        at(row, column) = std::min(at(row, column), at(row - 2, column - 2) + 1);
    }
  }
  return at(rows - 1, columns - 1);
}

} // namespace

QString closest_word(const QString &typed, const QStringList &words) {
  QString closest;
  int fewest = std::min(most_slips, static_cast<int>(typed.size()) / 3) + 1;
  for (const QString &word : words) {
    // Nobody means a word that is much shorter or longer; and what was typed may be as long as a file.
    if (qAbs(static_cast<int>(typed.size()) - static_cast<int>(word.size())) > most_slips)
      continue;
    const int slips = slips_between(typed, word);
    if (slips < fewest) {
      closest = word;
      fewest = slips;
    }
  }
  return closest;
}

} // namespace buttondriver::buttonctl
