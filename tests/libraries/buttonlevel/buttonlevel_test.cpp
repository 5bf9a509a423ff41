// SPDX-License-Identifier: Apache-2.0
#include "buttonlevel/buttonlevel.h"

#include "files/owned_descriptor.h"
#include "support/captured_log.h"

#include <QFile>
#include <QTemporaryDir>

#include <gmock/gmock.h>

#include <fcntl.h>
#include <ostream>
#include <sys/stat.h>
#include <unistd.h>

namespace buttondriver {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

class ButtonlevelFileTest : public testing::Test {
protected:
  std::string in_folder(const char *name) const { return _folder.filePath(QLatin1String(name)).toStdString(); }

  void write(const QByteArray &content) const {
    QFile file(QString::fromStdString(_path));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    ASSERT_EQ(file.write(content), content.size());
  }

  std::string content() const {
    QFile file(QString::fromStdString(_path));
    return file.open(QIODevice::ReadOnly) ? file.readAll().toStdString() : "no file";
  }

  QTemporaryDir _folder;
  std::string _path = in_folder("buttonlevel");
  test::CapturedLog _log;
};

TEST_F(ButtonlevelFileTest, lies_under_etc_whoever_asks) {
  const std::string &path = buttonlevel_path();
  EXPECT_EQ(path, "/etc/rv1000e/buttonlevel");
  EXPECT_EQ(&buttonlevel_path(), &path);
}

struct WriteRow {
  QStringList levels;
  const char *content;
};

TEST_F(ButtonlevelFileTest, holds_what_was_written_and_nothing_older) {
  const WriteRow rows[] = {
      {{"80", "40"}, "lcd 80\nscr 40\n"},
      {{"80", "40", "7"}, "lcd 80\nscr 40\n"},
      {{"-1", "no number"}, "lcd -1\nscr no number\n"},
      {{"", ""}, "lcd \nscr \n"},
      {{"%2", "40"}, "lcd 40\nscr 40\n"},
      {{QString(QChar(0xE9)), QString(QChar(0x20AC))}, "lcd \xE9\nscr ?\n"},
      {{"80"}, "lcd 80\nscr 100\n"},
      {{}, "lcd 100\nscr 100\n"},
  };
  for (const WriteRow &row : rows) {
    write("an older and much longer content\nof two lines\n");
    writeButtonlevelFile(row.levels, _path);
    EXPECT_EQ(content(), row.content);
  }
  EXPECT_THAT(_log.take(), IsEmpty());
}

TEST_F(ButtonlevelFileTest, is_made_with_the_defaults_of_100) {
  writeDefaultButtonlevelFile(_path);
  EXPECT_EQ(content(), "lcd 100\nscr 100\n");
}

TEST_F(ButtonlevelFileTest, reading_a_missing_file_makes_it) {
  QStringList levels;
  EXPECT_TRUE(readButtonlevelFile(levels, _path));
  EXPECT_EQ(content(), "lcd 100\nscr 100\n");
  EXPECT_EQ(levels, QStringList({"100", "100"}));
  EXPECT_THAT(_log.take(), ElementsAre("debug: line =  \"lcd 100\" \n", "debug: line =  \"scr 100\" \n"));
}

struct ReadRow {
  const char *what;
  QByteArray content;
  QStringList before;
  QStringList after;
  bool result;
};

std::ostream &operator<<(std::ostream &stream, const ReadRow &row) { return stream << row.what; }

class ButtonlevelReadTest : public ButtonlevelFileTest, public testing::WithParamInterface<ReadRow> {};

TEST_P(ButtonlevelReadTest, gives_the_levels_of_the_row) {
  const ReadRow &row = GetParam();
  write(row.content);
  QStringList levels = row.before;
  EXPECT_EQ(readButtonlevelFile(levels, _path), row.result);
  EXPECT_EQ(levels, row.after);
  EXPECT_EQ(content(), row.content.toStdString());
}

const ReadRow read_rows[] = {
    {"both", "lcd 80\nscr 40\n", {"1", "2"}, {"80", "40"}, true},
    {"other_order", "scr 40\nlcd 80\n", {"1", "2"}, {"80", "40"}, true},
    {"further_elements_stay", "lcd 80\nscr 40\n", {"1", "2", "3"}, {"80", "40", "3"}, true},
    {"extra_blanks", "  lcd  80  \nscr   40 \n", {"1", "2"}, {"80", "40"}, true},
    {"tabs_around_the_parts", "\tlcd \t80\t\n", {"1", "2"}, {"80", "2"}, true},
    {"tabs_around_the_other_parts", "\tscr \t40\t\n", {"1", "2"}, {"1", "40"}, true},
    {"a_tab_does_not_separate", "lcd\t80\n", {"1", "2"}, {"1", "2"}, true},
    {"more_than_a_value", "lcd 80 90\n", {"1", "2"}, {"80", "2"}, true},
    {"led_is_ignored", "led 5\nlcd 80\nscr 40\n", {"1", "2"}, {"80", "40"}, true},
    {"only_scr", "scr 30\n", {"1", "2"}, {"1", "30"}, true},
    {"only_scr_into_nothing", "scr 30\n", {}, {"", "30"}, true},
    {"only_lcd_into_nothing", "lcd 30\n", {}, {"30", ""}, true},
    {"scr_into_one_element", "scr 30\n", {"1"}, {"1", "30"}, true},
    {"the_last_line_counts", "lcd 1\nlcd 2\nlcd 3\n", {"1", "2"}, {"3", "2"}, true},
    {"no_last_line_feed", "lcd 80\nscr 40", {"1", "2"}, {"80", "40"}, true},
    {"carriage_returns", "lcd 80\r\nscr 40\r\n", {"1", "2"}, {"80", "40"}, true},
    {"no_number", "lcd bright\n", {"1", "2"}, {"bright", "2"}, true},
    {"capital_key", "LCD 80\nScr 40\n", {"1", "2"}, {"1", "2"}, true},
    {"key_without_value", "lcd\nscr \nlcd", {"1", "2"}, {"1", "2"}, true},
    {"empty_lines", "\n\n   \nlcd 80\n\n", {"1", "2"}, {"80", "2"}, true},
    {"empty_file", "", {"1"}, {"1"}, true},
    {"empty_file_into_nothing", "", {}, {}, false},
    {"no_key_into_nothing", "led 5\nlcd\n", {}, {}, false},
    {"nul_in_the_key", QByteArray("lcd\0 5\nscr 40\n", 14), {"1", "2"}, {"1", "40"}, true},
    {"nul_in_front", QByteArray("\0\0\0\nscr 40\n", 11), {"1", "2"}, {"1", "40"}, true},
    {"broken_utf8", "\xff\xfe 5\nlcd \xc3\nscr 40\n", {"1", "2"}, {QString(QChar(0xFFFD)), "40"}, true},
    {"past_64_kib", QByteArray("lcd 80\n") + QByteArray(65536, '\n') + "scr 40\n", {"1", "2"}, {"80", "2"}, true},
    {"cut_at_64_kib", QByteArray(65536 - 6, '\n') + "lcd 100\n", {"1", "2"}, {"1", "2"}, true},
    {"up_to_64_kib", QByteArray(65536 - 8, '\n') + "lcd 100\n", {"1", "2"}, {"100", "2"}, true},
    {"one_huge_line", "lcd 80\nlcd " + QByteArray(1000000, '9') + "\nscr 40\n", {"1", "2"}, {"80", "2"}, true},
};

INSTANTIATE_TEST_SUITE_P(Rows, ButtonlevelReadTest, testing::ValuesIn(read_rows),
                         [](const testing::TestParamInfo<ReadRow> &row) { return std::string(row.param.what); });

TEST_F(ButtonlevelFileTest, logs_each_line_in_quotes) {
  write(QByteArray("led  5\n\n\x1b[2J\"\0", 14));
  QStringList levels;
  readButtonlevelFile(levels, _path);
  EXPECT_THAT(_log.take(), ElementsAre("debug: line =  \"led  5\" \n", "debug: line =  \"\" \n",
                                       "debug: line =  \"\\u001B[2J\\\"\\u0000\" \n"));
}

TEST_F(ButtonlevelFileTest, missing_folder_gives_one_line_for_each_attempt) {
  const std::string path = in_folder("no folder/buttonlevel");
  QStringList levels{"1"};
  EXPECT_FALSE(readButtonlevelFile(levels, path));
  EXPECT_EQ(levels, QStringList{"1"});
  EXPECT_THAT(_log.take(), ElementsAre("debug: writeButtonlevelFile : Unable to open  " + path + " ",
                                       "debug: readButtonlevelFile: Unable to open file  " + path + " \n"));
}

TEST_F(ButtonlevelFileTest, folder_in_its_place_is_not_opened) {
  ASSERT_EQ(::mkdir(_path.c_str(), 0700), 0);
  QStringList levels{"1", "2"};
  EXPECT_FALSE(readButtonlevelFile(levels, _path));
  writeButtonlevelFile(levels, _path);
  EXPECT_EQ(levels, QStringList({"1", "2"}));
  EXPECT_THAT(_log.take(), ElementsAre("debug: readButtonlevelFile: Unable to open file  " + _path + " \n",
                                       "debug: writeButtonlevelFile : Unable to open  " + _path + " "));
}

TEST_F(ButtonlevelFileTest, pipe_in_its_place_is_not_waited_for) {
  ASSERT_EQ(::mkfifo(_path.c_str(), 0600), 0);
  QStringList levels{"1", "2"};
  EXPECT_FALSE(readButtonlevelFile(levels, _path));
  writeButtonlevelFile(levels, _path);
  // The same with somebody at the other end.
  const OwnedDescriptor other_end(::open(_path.c_str(), O_RDWR | O_CLOEXEC));
  EXPECT_FALSE(readButtonlevelFile(levels, _path));
  writeButtonlevelFile(levels, _path);
  EXPECT_EQ(::fcntl(other_end.get(), F_SETFL, O_NONBLOCK), 0);
  char byte = 0;
  EXPECT_EQ(::read(other_end.get(), &byte, 1), -1) << "nothing was written";
  EXPECT_THAT(_log.take(), SizeIs(4));
}

TEST_F(ButtonlevelFileTest, leaves_no_descriptor_open) {
  const int before = OwnedDescriptor(::open("/dev/null", O_RDONLY | O_CLOEXEC)).get();
  QStringList levels;
  readButtonlevelFile(levels, _path);
  readButtonlevelFile(levels, in_folder("."));
  writeButtonlevelFile(levels, _path);
  const int after = OwnedDescriptor(::open("/dev/null", O_RDONLY | O_CLOEXEC)).get();
  EXPECT_EQ(after, before);
}

} // namespace
} // namespace buttondriver
