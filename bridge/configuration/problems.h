// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QString>

#include <algorithm>
#include <utility>
#include <vector>

namespace buttondriver::bridge {

/// All that is wrong with a file, to be told at once.
class Problems {
public:
  /// A file may have more wrong lines than anybody reads.
  static constexpr std::size_t most_told = 50;
  static constexpr std::size_t most_kept = 1000;

  /// `line` 0: of the file as a whole.
  void add(int line, const QString &text) {
    if (_problems.size() < most_kept)
      _problems.emplace_back(line, text);
    else
      ++_more;
  }
  bool areNone() const { return _problems.empty(); }

  /// "FILE:LINE: what is wrong", or "FILE: what is wrong", a line each, in the order of the lines.
  QString text(const QString &file) {
    std::stable_sort(_problems.begin(), _problems.end(),
                     [](const auto &one, const auto &other) { return one.first < other.first; });
    QString result;
    for (std::size_t i = 0; i < std::min(_problems.size(), most_told); ++i)
      result += QStringLiteral("%1%2%3: %4")
                    .arg(result.isEmpty() ? QString() : QStringLiteral("\n"), file,
                         _problems[i].first == 0 ? QString() : QStringLiteral(":%1").arg(_problems[i].first),
                         _problems[i].second);
    if (_problems.size() > most_told)
      result += QStringLiteral("\n%1: and %2 more").arg(file, QString::number(_problems.size() - most_told + _more));
    return result;
  }

private:
  std::vector<std::pair<int, QString>> _problems;
  std::size_t _more = 0;
};

} // namespace buttondriver::bridge
