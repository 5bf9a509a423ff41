// SPDX-License-Identifier: Apache-2.0
// The pages about the configuration have the keys that there are, each in its section, and no others.

#include "bridge/configuration/configuration_reader.h"

#include <QFile>
#include <QRegularExpression>

#include <gtest/gtest.h>

#include <set>
#include <string>

namespace buttondriver::bridge {
namespace {

using Keys = std::set<std::string>;

Keys known_keys() {
  Keys keys;
  for (const ConfigurationReader::Key &key : ConfigurationReader::keys())
    if (key.key)
      keys.insert(std::string(key.section) + '.' + key.key);
  return keys;
}

/// The words that `words` finds in the lines that `line` fits, below the headings that `heading` fits.
Keys keys_in(const char *file_name, const char *heading, const char *line, const char *words) {
  QFile file(QString::fromLatin1(file_name));
  EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << file_name;
  const QRegularExpression is_heading(QString::fromLatin1(heading));
  const QRegularExpression is_line(QString::fromLatin1(line));
  const QRegularExpression is_word(QString::fromLatin1(words));
  Keys keys;
  QString section;
  for (const QString &text : QString::fromUtf8(file.readAll()).split(QLatin1Char('\n'))) {
    if (const auto match = is_heading.match(text); match.hasMatch())
      section = match.captured(1);
    const auto match = is_line.match(text);
    if (section.isEmpty() || !match.hasMatch())
      continue;
    for (auto word = is_word.globalMatch(match.captured(1)); word.hasNext();)
      keys.insert((section + QLatin1Char('.') + word.next().captured(1)).toStdString());
  }
  return keys;
}

TEST(ConfigurationDocuments, the_page_has_the_keys_that_there_are) {
  EXPECT_EQ(known_keys(),
            keys_in(BUTTONDRIVER_CONFIGURATION_PAGE, "^## \\[(\\w+)\\]$", "^\\| (`[^|]*) \\|", "`(\\w+)`"));
}

TEST(ConfigurationDocuments, the_manual_page_has_the_keys_that_there_are) {
  EXPECT_EQ(known_keys(), keys_in(BUTTONDRIVER_CONFIGURATION_MANUAL, "^\\.S[HS] (?:\\[(\\w+)\\])?",
                                  "^\\.BR? ([a-z].*)$", "([a-z_]{3,})"));
}

} // namespace
} // namespace buttondriver::bridge
