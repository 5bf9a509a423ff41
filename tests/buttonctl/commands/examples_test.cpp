// SPDX-License-Identifier: Apache-2.0
#include "buttonctl/arguments/line_splitter.h"
#include "buttonctl/commands/command_line.h"
#include "buttonctl/commands/commands.h"
#include "buttonctl/support/pictures.h"
#include "buttonctl/support/working_folder.h"

#include <QFile>

#include <gtest/gtest.h>

namespace buttondriver::buttonctl {
namespace {

/// A folder with the files that the examples name.
class Examples : public testing::Test {
protected:
  Examples() {
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
      const Outcome<Request> request = parse_command_line(words ? words->mid(1) : QStringList());
      EXPECT_TRUE(request) << line.toStdString() << ": " << (request ? "" : request.failure().text.toStdString());
      ++checked;
    }
    return checked;
  }

  const test::WorkingFolder _folder;
};

TEST_F(Examples, those_of_the_help_are_accepted) {
  for (const Command &command : commands())
    EXPECT_GT(check_lines(QString::fromUtf8(command.examples)), 0) << command.name;
}

TEST_F(Examples, those_of_the_page_are_accepted_and_every_command_has_a_heading) {
  QFile page(QStringLiteral(BUTTONCTL_PAGE));
  ASSERT_TRUE(page.open(QIODevice::ReadOnly));
  const QString text = QString::fromUtf8(page.readAll());
  EXPECT_GT(check_lines(text), 0);
  for (const Command &command : commands()) {
    EXPECT_TRUE(text.contains(QStringLiteral("\n### %1\n").arg(QLatin1String(command.name)))) << command.name;
    for (const CommandOption &option : command.options)
      for (const QString &name : QString::fromLatin1(option.names).split(QLatin1Char(',')))
        EXPECT_TRUE(text.contains(QLatin1String("`--") + name)) << command.name << " --" << name.toStdString();
  }
}

} // namespace
} // namespace buttondriver::buttonctl
