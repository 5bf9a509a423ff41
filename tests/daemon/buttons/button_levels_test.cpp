// SPDX-License-Identifier: Apache-2.0
#include "buttons/button_levels.h"

#include "buttonlevel/buttonlevel.h"
#include "support/captured_log.h"
#include "support/test_root.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <cstring>
#include <sys/stat.h>
#include <vector>

namespace buttondriver {
namespace {

struct Reading {
  ButtonLevels levels;
  std::vector<std::int32_t> sent;
  std::string printed;
};

Reading read(const QString &file) {
  Reading reading;
  test::CapturedOutput output;
  reading.levels.read(file.toStdString(), [&](std::int32_t level) { reading.sent.push_back(level); });
  reading.printed = output.take();
  return reading;
}

TEST(ButtonLevelsTest, lines_set_levels_and_send_the_screen_level) {
  struct Row {
    const char *name;
    QByteArray text;
    int led;
    int lcd;
    int scr;
    std::vector<std::int32_t> sent;
    const char *printed;
  };
  const Row rows[] = {
      {"lcd and scr", "lcd 40\nscr 70\n", 100, 40, 70, {70}, ""},
      {"all three", "led 1\nlcd 2\nscr 3\n", 1, 2, 3, {3}, ""},
      {"bare word", "scr\n", 100, 100, 100, {100}, ""},
      {"no number", "scr bright\nlcd dark\n", 100, 100, 100, {100}, ""},
      {"last one wins", "scr 10\nscr 20\n", 100, 100, 20, {10, 20}, ""},
      {"unknown word", "brightness 5\n", 100, 100, 100, {}, "buttondriver:unknown type brightness\n"},
      {"other case", "SCR 5\n", 100, 100, 100, {}, "buttondriver:unknown type SCR\n"},
      {"empty line repeats its predecessor's word", "scr 70\n\n", 100, 100, 70, {70, 70}, ""},
      {"empty first line", "\n", 100, 100, 100, {}, "buttondriver:unknown type \n"},
      {"empty file", "", 100, 100, 100, {}, ""},
      {"no line end", "scr 30", 100, 100, 30, {30}, ""},
      {"blanks and tabs", "  scr\t 30  \n", 100, 100, 30, {30}, ""},
      {"out of any range", "scr -5\nlcd 100000\n", 100, 100000, -5, {-5}, ""},
      {"number with a tail", "scr 12abc\n", 100, 100, 12, {12}, ""},
      {"control bytes", QByteArray("\x1b[2J 1\n"), 100, 100, 100, {}, "buttondriver:unknown type \\x1b[2J\n"},
      {"a line of 255 characters is read as it is, its rest as another",
       "scr" + QByteArray(252, ' ') + "55\n",
       100,
       100,
       100,
       {100},
       "buttondriver:unknown type 55\n"},
  };
  const QTemporaryDir folder;
  const QString file = folder.filePath(QStringLiteral("buttonlevel"));
  for (const Row &row : rows) {
    test::write_file(file, row.text);
    const Reading reading = read(file);
    EXPECT_EQ(reading.levels.led, row.led) << row.name;
    EXPECT_EQ(reading.levels.lcd, row.lcd) << row.name;
    EXPECT_EQ(reading.levels.scr, row.scr) << row.name;
    EXPECT_EQ(reading.sent, row.sent) << row.name;
    EXPECT_EQ(reading.printed, row.printed) << row.name;
  }
}

TEST(ButtonLevelsTest, takes_over_what_the_library_has_written) {
  struct Row {
    QStringList written;
    int lcd;
    int scr;
  };
  const QString blanks(5000, QLatin1Char(' '));
  const Row rows[] = {
      {{"80", "40"}, 80, 40},
      {{"0", "-1"}, 0, -1},
      {{"80" + blanks, "40"}, 80, 40},
  };
  const QTemporaryDir folder;
  const QString file = folder.filePath(QStringLiteral("buttonlevel"));
  for (const Row &row : rows) {
    writeButtonlevelFile(row.written, file.toStdString());
    const Reading reading = read(file);
    EXPECT_EQ(reading.levels.lcd, row.lcd);
    EXPECT_EQ(reading.levels.scr, row.scr);
    EXPECT_EQ(reading.sent, std::vector<std::int32_t>{row.scr});
    EXPECT_EQ(reading.printed, "");
  }
}

TEST(ButtonLevelsTest, lines_that_end_beyond_64_KiB_are_not_read_here_and_in_the_library_and_that_is_logged) {
  const QTemporaryDir folder;
  const QString file = folder.filePath(QStringLiteral("buttonlevel"));
  const auto other_bytes = static_cast<int>(std::strlen("lcd 80\nscr 40\n"));
  for (const bool fits : {true, false}) {
    const QString blanks(65536 - other_bytes + (fits ? 0 : 1), QLatin1Char(' '));
    writeButtonlevelFile({"80" + blanks, "40"}, file.toStdString());
    const Reading reading = read(file);
    EXPECT_EQ(reading.levels.lcd, 80);
    EXPECT_EQ(reading.levels.scr, fits ? 40 : 100);
    EXPECT_EQ(reading.sent.size(), fits ? 1U : 0U);
    EXPECT_EQ(reading.printed, fits ? "" : "buttondriver: the level file is too long, not read beyond byte 65536\n");

    test::CapturedLog log;
    QStringList levels{"1", "2"};
    EXPECT_TRUE(readButtonlevelFile(levels, file.toStdString()));
    EXPECT_EQ(levels, QStringList({"80", fits ? "40" : "2"}));
    EXPECT_EQ(log.take().back(), fits ? "debug: line =  \"scr 40\" \n"
                                      : "debug: readButtonlevelFile: File too long, not read beyond byte 65536 ");
  }
}

TEST(ButtonLevelsTest, what_is_no_regular_file_changes_nothing_and_does_not_wait) {
  const QTemporaryDir folder;
  const QString pipe = folder.filePath(QStringLiteral("pipe"));
  ASSERT_EQ(::mkfifo(qPrintable(pipe), 0600), 0);
  for (const QString &file :
       {folder.filePath(QStringLiteral("missing")), folder.path(), pipe, QStringLiteral("/dev/zero")}) {
    const Reading reading = read(file);
    EXPECT_EQ(reading.levels.scr, 100) << file.toStdString();
    EXPECT_TRUE(reading.sent.empty()) << file.toStdString();
    EXPECT_EQ(reading.printed, "") << file.toStdString();
  }
}

TEST(ButtonLevelsTest, a_file_that_opens_and_cannot_be_read_changes_nothing_and_is_not_read_for_ever) {
  // A regular file for the system, whose first byte is in no memory of the process.
  const Reading reading = read(QStringLiteral("/proc/self/mem"));
  EXPECT_EQ(reading.levels.scr, 100);
  EXPECT_TRUE(reading.sent.empty());
  EXPECT_EQ(reading.printed, "");
}

} // namespace
} // namespace buttondriver
