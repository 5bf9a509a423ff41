// SPDX-License-Identifier: Apache-2.0
#include "buttonctl/arguments/line_splitter.h"
#include "buttonctl/command_table.h"
#include "buttonctl/commands/command_help.h"
#include "buttonctl/commands/command_line.h"
#include "buttonctl/support/pictures.h"
#include "buttonctl/support/working_folder.h"

#include <QFile>

#include <gtest/gtest.h>

namespace buttondriver::buttonctl {
namespace {

/// A folder with the files that the examples name.
class ExamplesTest : public testing::Test {
protected:
  ExamplesTest() {
    _folder.write("logo.bmp", test::encoded(test::filled(40, 24, qRgb(1, 2, 3)), "BMP"));
    _folder.write("photo.png", test::encoded(test::filled(200, 150, qRgb(1, 2, 3)), "PNG"));
    _folder.write("arrow.png", test::encoded(test::filled(40, 24, qRgb(1, 2, 3)), "PNG"));
    _folder.write("arrow.raw", QByteArray(120, '\x5A'));
  }

  /// Counts the lines of `text` that call the tool, each of which must be accepted.
  static int check_lines(const QString &text) {
    int checked = 0;
    for (const QString &line : text.split(QLatin1Char('\n'))) {
      if (!line.startsWith(QLatin1String("buttonctl ")))
        continue;
      const Outcome<QStringList> words = split_line(line);
      EXPECT_TRUE(words) << line.toStdString();
      const auto action = parse_command_line(command_table(), words ? words->mid(1) : QStringList());
      EXPECT_TRUE(action) << line.toStdString() << ": " << (action ? "" : action.failure().text.toStdString());
      ++checked;
    }
    return checked;
  }

  const test::WorkingFolder _folder;
};

TEST_F(ExamplesTest, those_of_the_help_are_accepted) {
  for (const Command &command : command_table())
    EXPECT_GT(check_lines(QString::fromUtf8(command.examples)), 0) << command.name;
}

TEST_F(ExamplesTest, those_of_the_page_are_accepted_and_it_has_the_general_options) {
  QFile page(QStringLiteral(BUTTONCTL_PAGE));
  ASSERT_TRUE(page.open(QIODevice::ReadOnly));
  const QString text = QString::fromUtf8(page.readAll());
  EXPECT_GT(check_lines(text), 0);
  std::vector<CommandOption> options = general_options();
  options.push_back(version_option());
  for (const CommandOption &option : options)
    for (const QString &name : QString::fromLatin1(option.names).split(QLatin1Char(',')))
      EXPECT_TRUE(text.contains(QLatin1Char('`') + dashed(name))) << name.toStdString();
}

} // namespace
} // namespace buttondriver::buttonctl
