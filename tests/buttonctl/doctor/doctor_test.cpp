// SPDX-License-Identifier: Apache-2.0
#include "buttonctl/doctor/doctor.h"

#include "buttonctl/doctor/checks/device_check.h"
#include "buttonctl/doctor/checks/font_check.h"
#include "buttonctl/doctor/checks/level_check.h"
#include "buttonctl/support/fake_daemon.h"
#include "support/test_root.h"

#include <QDir>

#include <gtest/gtest.h>

namespace buttondriver::buttonctl {
namespace {

using Kind = FileFacts::Kind;

/// The findings as the program prints them, the folder of the test as ROOT.
std::string shown_in(const test::TestRoot &root, const std::vector<Finding> &findings) {
  QString text;
  for (const Finding &finding : findings)
    text += shown(finding) + QLatin1Char('\n');
  return text.replace(root.path(), QStringLiteral("ROOT")).toStdString();
}

/// Looks at files as the system does, but for one.
FileLook all_but(const QString &path, const FileFacts &facts) {
  return [path, facts](const QString &asked) { return asked == path ? facts : look_at_file(asked); };
}

const std::string rewritten_configuration =
    "       fix: mkdir -p ROOT/etc/rv1000e && printf '[font]\\nwidth=8\\nheight=16\\n' > "
    "ROOT/etc/rv1000e/launcher.cfg\n";

TEST(FontCheckTest, judges_the_configuration) {
  struct Row {
    const char *content;
    std::string says;
  };
  const std::string fine = "ok     configuration: ROOT/etc/rv1000e/launcher.cfg asks for a font of 8x16\n"
                           "ok     font: ROOT/opt/rv1000e/fonts/8x16.pcf.gz\n";
  const std::string no_size = "FAULT  configuration: ROOT/etc/rv1000e/launcher.cfg names no size of the font: 'width' "
                              "and 'height' in '[font]' must be above 0\n" +
                              rewritten_configuration;
  const Row rows[] = {
      {"[font]\nwidth=8\nheight=16\n", fine},
      {"[other]\nx=1\n[font]\nheight=16\nwidth = 8 ; wide\n", fine},
      {"", no_size},
      {"[font]\nwidth=8\n", no_size},
      {"[font]\nwidth=8\nheight=0\n", no_size},
      {"[font]\nwidth=-8\nheight=16\n", no_size},
      {"width=8\nheight=16\n", no_size},
      {"[font\nwidth",
       "FAULT  configuration: ROOT/etc/rv1000e/launcher.cfg is no INI file\n" + rewritten_configuration},
  };
  for (const Row &row : rows) {
    const test::TestRoot root;
    root.writeLauncherConfiguration(row.content);
    EXPECT_EQ(shown_in(root, check_configuration_and_font(root.paths(), look_at_file)), row.says) << row.content;
  }
}

TEST(FontCheckTest, a_missing_configuration_is_a_fault) {
  const test::TestRoot root;
  EXPECT_EQ(shown_in(root, check_configuration_and_font(root.paths(), look_at_file)),
            "FAULT  configuration: ROOT/etc/rv1000e/launcher.cfg is missing, so that no font is loaded\n" +
                rewritten_configuration);
}

TEST(FontCheckTest, a_folder_in_place_of_the_configuration_is_a_fault) {
  const test::TestRoot root;
  QDir().mkpath(root.launcherConfiguration());
  EXPECT_EQ(shown_in(root, check_configuration_and_font(root.paths(), look_at_file)),
            "FAULT  configuration: ROOT/etc/rv1000e/launcher.cfg is no file\n"
            "       fix: mv ROOT/etc/rv1000e/launcher.cfg ROOT/etc/rv1000e/launcher.cfg.old && mkdir -p "
            "ROOT/etc/rv1000e && printf '[font]\\nwidth=8\\nheight=16\\n' > ROOT/etc/rv1000e/launcher.cfg\n");
}

TEST(FontCheckTest, a_configuration_that_must_not_be_read_is_a_fault) {
  test::TestRoot root;
  root.writeFontSize(8, 16);
  const FileLook look = all_but(root.launcherConfiguration(), {Kind::regular, false, true});
  EXPECT_EQ(shown_in(root, check_configuration_and_font(root.paths(), look)),
            "FAULT  configuration: no permission to read ROOT/etc/rv1000e/launcher.cfg\n"
            "       fix: chmod a+r ROOT/etc/rv1000e/launcher.cfg\n");
}

TEST(FontCheckTest, a_size_without_a_font_is_a_fault_and_the_usual_size_mends_it) {
  test::TestRoot root;
  root.writeFontSize(9, 16);
  EXPECT_EQ(shown_in(root, check_configuration_and_font(root.paths(), look_at_file)),
            "ok     configuration: ROOT/etc/rv1000e/launcher.cfg asks for a font of 9x16\n"
            "FAULT  font: there is no font of 9x16 in ROOT/opt/rv1000e/fonts\n" +
                rewritten_configuration);
}

TEST(FontCheckTest, no_fonts_at_all_are_a_fault) {
  test::TestRoot root;
  root.writeFontSize(8, 16);
  SystemPaths paths = root.paths();
  paths.font_directory = root.path().toStdString() + "/my fonts";
  EXPECT_EQ(shown_in(root, {check_configuration_and_font(paths, look_at_file).back()}),
            "FAULT  font: there is no font at all in ROOT/my fonts\n"
            "       fix: apt-get install xfonts-base && mkdir -p 'ROOT/my fonts' && cp "
            "/usr/share/fonts/X11/misc/[0-9]*x*.pcf.gz 'ROOT/my fonts'\n");
}

TEST(FontCheckTest, another_size_mends_it_where_the_usual_one_is_missing) {
  test::TestRoot root;
  root.writeFontSize(8, 16);
  SystemPaths paths = root.paths();
  paths.font_directory = root.path().toStdString() + "/fonts";
  test::write_file(root.path() + QStringLiteral("/fonts/6x10.pcf.gz"), "x");
  EXPECT_EQ(shown_in(root, {check_configuration_and_font(paths, look_at_file).back()}),
            "FAULT  font: there is no font of 8x16 in ROOT/fonts\n"
            "       fix: mkdir -p ROOT/etc/rv1000e && printf '[font]\\nwidth=6\\nheight=10\\n' > "
            "ROOT/etc/rv1000e/launcher.cfg\n");
}

TEST(FontCheckTest, a_font_that_must_not_be_read_or_is_no_file_is_a_fault) {
  struct Row {
    FileFacts facts;
    const char *says;
  };
  const Row rows[] = {
      {{Kind::regular, false, false},
       "FAULT  font: no permission to read ROOT/opt/rv1000e/fonts/8x16.pcf.gz\n"
       "       fix: chmod a+r ROOT/opt/rv1000e/fonts/8x16.pcf.gz\n"},
      {{Kind::folder, true, true},
       "FAULT  font: ROOT/opt/rv1000e/fonts/8x16.pcf.gz is no file\n"
       "       fix: mv ROOT/opt/rv1000e/fonts/8x16.pcf.gz ROOT/opt/rv1000e/fonts/8x16.pcf.gz.old && cp "
       "/usr/share/fonts/X11/misc/8x16.pcf.gz ROOT/opt/rv1000e/fonts/8x16.pcf.gz\n"},
  };
  for (const Row &row : rows) {
    test::TestRoot root;
    root.writeFontSize(8, 16);
    const FileLook look = all_but(root.path() + QStringLiteral("/opt/rv1000e/fonts/8x16.pcf.gz"), row.facts);
    EXPECT_EQ(shown_in(root, {check_configuration_and_font(root.paths(), look).back()}), row.says);
  }
}

TEST(LevelCheckTest, judges_each_line) {
  struct Row {
    const char *content;
    const char *fault; ///< null: all is well
  };
  const Row rows[] = {
      {"led 100\nlcd 0\nscr 70\n", nullptr},
      {"", nullptr},
      {"scr 50", nullptr},
      {"\n  scr   50  \n\n", nullptr},
      {"led 100\nbel 5\n", "2: 'bel' is none of 'led', 'lcd' and 'scr'"},
      {"scr\n", "1: the level of 'scr' must be 0 to 100"},
      {"scr 101\n", "1: the level of 'scr' must be 0 to 100"},
      {"led 1\n\nlcd -1\n", "3: the level of 'lcd' must be 0 to 100"},
      {"scr high\n", "1: the level of 'scr' must be 0 to 100"},
      {"a\x1b[2J 5\n", "1: 'a\\x1b[2J' is none of 'led', 'lcd' and 'scr'"},
  };
  for (const Row &row : rows) {
    const test::TestRoot root;
    root.writeLevels(row.content);
    const std::string expected =
        row.fault ? "FAULT  levels: ROOT/etc/rv1000e/buttonlevel:" + std::string(row.fault) +
                        "\n       fix: mkdir -p ROOT/etc/rv1000e && printf 'led 100\\nlcd 100\\nscr 100\\n' > "
                        "ROOT/etc/rv1000e/buttonlevel\n"
                  : "ok     levels: ROOT/etc/rv1000e/buttonlevel\n";
    EXPECT_EQ(shown_in(root, {check_levels(root.paths(), look_at_file)}), expected) << row.content;
  }
}

TEST(LevelCheckTest, a_file_that_is_missing_or_cannot_be_read_is_a_fault) {
  const std::string rewrite = "printf 'led 100\\nlcd 100\\nscr 100\\n' > ROOT/etc/rv1000e/buttonlevel\n";
  const std::string file = "ROOT/etc/rv1000e/buttonlevel";
  const std::pair<FileFacts, std::string> rows[] = {
      {{Kind::missing, false, false},
       "FAULT  levels: " + file + " is missing, so that 'reconfig' changes nothing\n       fix: mkdir -p " +
           "ROOT/etc/rv1000e && " + rewrite},
      {{Kind::folder, true, true},
       "FAULT  levels: " + file + " is no file\n       fix: mv " + file + " " + file + ".old && " + rewrite},
      {{Kind::other, true, true},
       "FAULT  levels: " + file + " is no file\n       fix: mv " + file + " " + file + ".old && " + rewrite},
      {{Kind::regular, false, true},
       "FAULT  levels: no permission to read " + file + "\n       fix: chmod a+r " + file + "\n"},
  };
  for (const auto &[facts, says] : rows) {
    const test::TestRoot root;
    root.writeLevels("scr 50\n");
    const FileLook look = all_but(root.path() + QStringLiteral("/etc/rv1000e/buttonlevel"), facts);
    EXPECT_EQ(shown_in(root, {check_levels(root.paths(), look)}), says);
  }
}

TEST(DeviceCheckTest, judges_the_node) {
  struct Row {
    FileFacts facts;
    const char *says;
  };
  const Row rows[] = {
      {{Kind::character_device, true, true}, "ok     device: /r/dev/fpga-reg"},
      {{Kind::missing, false, false},
       "FAULT  device: there is no device node /r/dev/fpga-reg; the kernel's driver of the panel is not loaded\n"
       "       fix: udevadm trigger --action=add && udevadm settle && ls -l /r/dev/fpga-reg || buttondriver-sim"},
      {{Kind::regular, true, true},
       "FAULT  device: /r/dev/fpga-reg is no device node\n"
       "       fix: mv /r/dev/fpga-reg /r/dev/fpga-reg.old && udevadm trigger --action=add"},
      {{Kind::character_device, true, false},
       "FAULT  device: no permission to read and write /r/dev/fpga-reg\n       fix: chmod a+rw /r/dev/fpga-reg"},
      {{Kind::character_device, false, true},
       "FAULT  device: no permission to read and write /r/dev/fpga-reg\n       fix: chmod a+rw /r/dev/fpga-reg"},
  };
  for (const Row &row : rows) {
    QStringList asked;
    const Finding finding = check_device(QStringLiteral("/r"), [&](const QString &path) {
      asked += path;
      return row.facts;
    });
    EXPECT_EQ(shown(finding).toStdString(), row.says);
    EXPECT_EQ(asked, QStringList(QStringLiteral("/r/dev/fpga-reg")));
  }
}

TEST(FileFactsTest, are_what_the_system_says) {
  test::TestRoot root;
  root.writeFontSize(8, 16);
  EXPECT_EQ(look_at_file(root.launcherConfiguration()).kind, Kind::regular);
  EXPECT_TRUE(look_at_file(root.launcherConfiguration()).is_readable);
  EXPECT_TRUE(look_at_file(root.launcherConfiguration()).is_writable);
  EXPECT_EQ(look_at_file(root.path()).kind, Kind::folder);
  EXPECT_EQ(look_at_file(root.path() + QStringLiteral("/no")).kind, Kind::missing);
  EXPECT_EQ(look_at_file(QStringLiteral("/dev/null")).kind, Kind::character_device);
}

TEST(DoctorTest, checks_what_is_on_this_machine_and_the_daemon) {
  struct Row {
    const char *host;
    bool skip_device;
    std::vector<const char *> names;
  };
  const test::RefusingPort nobody;
  const Row rows[] = {
      {"127.0.0.1", false, {"configuration", "font", "levels", "device", "daemon"}},
      {"127.0.0.1", true, {"configuration", "font", "levels", "daemon"}},
      {"localhost", true, {"configuration", "font", "levels", "daemon"}},
      {"0.0.0.0", false, {"daemon"}},
  };
  for (const Row &row : rows) {
    test::TestRoot root;
    root.writeFontSize(8, 16);
    const Examination examination{root.path(), row.skip_device, {QLatin1String(row.host), nobody.port()}};
    std::vector<std::string> names;
    for (const Finding &finding : examine(examination, look_at_file))
      names.push_back(finding.name.toStdString());
    EXPECT_EQ(names, std::vector<std::string>(row.names.begin(), row.names.end())) << row.host;
  }
}

TEST(ShellWordTest, is_quoted_when_the_shell_would_change_it) {
  struct Row {
    const char *text;
    const char *word;
  };
  const Row rows[] = {
      {"/etc/rv1000e/launcher.cfg", "/etc/rv1000e/launcher.cfg"},
      {"a b", "'a b'"},
      {"$HOME", "'$HOME'"},
      {"it's", "'it'\\''s'"},
      {"", "''"},
  };
  for (const Row &row : rows)
    EXPECT_EQ(shell_word(QLatin1String(row.text)).toStdString(), row.word);
}

} // namespace
} // namespace buttondriver::buttonctl
