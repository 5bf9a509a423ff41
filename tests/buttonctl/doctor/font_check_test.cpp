// SPDX-License-Identifier: Apache-2.0
#include "buttonctl/doctor/checks/font_check.h"

#include "buttonctl/doctor/shown.h"

#include <QDir>
#include <QFile>

#include <gtest/gtest.h>
#include <tuple>

namespace buttondriver::buttonctl {
namespace {

using Kind = FileFacts::Kind;
using test::all_but;
using test::shown_in;

const std::string added_lines = "       fix: mkdir -p ROOT/etc/rv1000e && printf '[font]\\nwidth=8\\nheight=16\\n' >> "
                                "ROOT/etc/rv1000e/launcher.cfg\n";
/// How to write other lines into the configuration, by hand.
std::string changed_lines(const std::string &width, const std::string &height) {
  return "       fix: ${EDITOR:-vi} ROOT/etc/rv1000e/launcher.cfg    # in the group [font]: width=" + width +
         " and height=" + height + "\n";
}
const std::string usual_lines = changed_lines("8", "16");
/// The sizes that a root of the test has.
const std::string all_sizes = "4x6 5x7 5x8 6x9 6x10 6x12 6x13 7x13 7x14 8x13 8x16 9x15 9x18 10x20 12x24";
const FileFacts no_permission{Kind::regular, false, true, {}};

TEST(FontCheckTest, judges_the_configuration) {
  struct Row {
    const char *content;
    std::string says;
  };
  const std::string fine = std::string("ok     configuration: ROOT/etc/rv1000e/launcher.cfg asks for a font of 8x16\n"
                                       "ok     font: ROOT/opt/rv1000e/fonts/8x16.pcf.gz; sizes there: ") +
                           all_sizes + "\n";
  const std::string no_size = "FAULT  configuration: ROOT/etc/rv1000e/launcher.cfg names no size of the font: 'width' "
                              "and 'height' in '[font]' must be above 0\n" +
                              usual_lines;
  const Row rows[] = {
      {"[font]\nwidth=8\nheight=16\n", fine},
      {"[other]\nx=1\n[font]\nheight=16\nwidth = 8 ; wide\n", fine},
      {"", no_size},
      {"[font]\nwidth=8\n", no_size},
      {"[font]\nwidth=8\nheight=0\n", no_size},
      {"[font]\nwidth=-8\nheight=16\n", no_size},
      {"width=8\nheight=16\n", no_size},
      {"[font\nwidth", "FAULT  configuration: ROOT/etc/rv1000e/launcher.cfg is no INI file\n" + usual_lines},
  };
  for (const Row &row : rows) {
    const test::TestRoot root;
    root.writeLauncherConfiguration(row.content);
    EXPECT_EQ(shown_in(root, check_configuration_and_font(root.paths(), root.path(), look_at_file)), row.says)
        << row.content;
  }
}

TEST(FontCheckTest, a_missing_configuration_is_a_fault) {
  const test::TestRoot root;
  EXPECT_EQ(shown_in(root, check_configuration_and_font(root.paths(), root.path(), look_at_file)),
            "FAULT  configuration: ROOT/etc/rv1000e/launcher.cfg is missing, so that no font is loaded\n" +
                added_lines);
}

TEST(FontCheckTest, a_folder_in_place_of_the_configuration_is_a_fault) {
  const test::TestRoot root;
  QDir().mkpath(root.launcherConfiguration());
  EXPECT_EQ(shown_in(root, check_configuration_and_font(root.paths(), root.path(), look_at_file)),
            "FAULT  configuration: ROOT/etc/rv1000e/launcher.cfg is no file\n"
            "       fix: mv -n ROOT/etc/rv1000e/launcher.cfg ROOT/etc/rv1000e/launcher.cfg.old\n");
}

TEST(FontCheckTest, a_configuration_that_must_not_be_read_is_a_fault) {
  test::TestRoot root;
  root.writeFontSize(8, 16);
  const FileLook look = all_but(root.launcherConfiguration(), no_permission);
  EXPECT_EQ(shown_in(root, check_configuration_and_font(root.paths(), root.path(), look)),
            "FAULT  configuration: no permission to read ROOT/etc/rv1000e/launcher.cfg\n"
            "       fix: chmod a+r ROOT/etc/rv1000e/launcher.cfg\n");
}

TEST(FontCheckTest, a_size_without_a_font_is_a_fault_and_the_usual_size_mends_it) {
  test::TestRoot root;
  root.writeFontSize(9, 16);
  EXPECT_EQ(shown_in(root, check_configuration_and_font(root.paths(), root.path(), look_at_file)),
            "ok     configuration: ROOT/etc/rv1000e/launcher.cfg asks for a font of 9x16\n"
            "FAULT  font: there is no font of 9x16 in ROOT/opt/rv1000e/fonts; sizes there: " +
                all_sizes + "\n" + usual_lines);
}

TEST(FontCheckTest, where_there_is_no_font_the_package_or_its_folder_is_named) {
  struct Row {
    bool has_package;
    const char *place; ///< what is there in place of the fonts: "folder", "link", or nothing
    const char *says;
  };
  const char *missing = "FAULT  font: there is no font at all in ROOT/my fonts\n       fix: ";
  const char *at_hand = "FAULT  font: there is no font at all in ROOT/my fonts; sizes in "
                        "ROOT/usr/share/fonts/X11/misc: 6x10 8x16 10x20\n       fix: ";
  const std::tuple<Row, const char *> rows[] = {
      {{false, "",
        "apt-get install xfonts-base && mkdir -p ROOT && ln -sT ROOT/usr/share/fonts/X11/misc "
        "'ROOT/my fonts'\n"},
       missing},
      {{false, "folder",
        "apt-get install xfonts-base && ln -s ROOT/usr/share/fonts/X11/misc/[0-9]*x*.pcf.gz "
        "'ROOT/my fonts'\n"},
       missing},
      {{false, "link", "apt-get install xfonts-base    # ROOT/my fonts is a link to ROOT/nowhere\n"}, missing},
      {{true, "", "mkdir -p ROOT && ln -sT ROOT/usr/share/fonts/X11/misc 'ROOT/my fonts'\n"}, at_hand},
      {{true, "folder", "ln -s ROOT/usr/share/fonts/X11/misc/[0-9]*x*.pcf.gz 'ROOT/my fonts'\n"}, at_hand},
      {{true, "link", "rm 'ROOT/my fonts' && ln -sT ROOT/usr/share/fonts/X11/misc 'ROOT/my fonts'\n"}, at_hand},
  };
  for (const auto &[row, begins] : rows) {
    test::TestRoot root;
    root.writeFontSize(8, 16);
    SystemPaths paths = root.paths();
    const QString folder = root.path() + QStringLiteral("/my fonts");
    paths.font_directory = folder.toStdString();
    if (row.has_package)
      for (const char *file : {"10x20.pcf.gz", "8x16.pcf.gz", "6x10.pcf.gz", "8x13B.pcf.gz", "0x5.pcf.gz", "a.pcf.gz"})
        test::write_file(root.path() + QLatin1String("/usr/share/fonts/X11/misc/") + QLatin1String(file), "x");
    if (row.place == std::string("folder"))
      QDir().mkpath(folder);
    if (row.place == std::string("link"))
      QFile::link(root.path() + QLatin1String("/nowhere"), folder);
    EXPECT_EQ(shown_in(root, {check_configuration_and_font(paths, root.path(), look_at_file).back()}),
              std::string(begins) + row.says);
  }
}

TEST(FontCheckTest, another_size_mends_it_where_the_usual_one_is_missing) {
  test::TestRoot root;
  root.writeFontSize(8, 16);
  SystemPaths paths = root.paths();
  paths.font_directory = root.path().toStdString() + "/fonts";
  test::write_file(root.path() + QStringLiteral("/fonts/10x20.pcf.gz"), "x");
  test::write_file(root.path() + QStringLiteral("/fonts/6x10.pcf.gz"), "x");
  EXPECT_EQ(shown_in(root, {check_configuration_and_font(paths, root.path(), look_at_file).back()}),
            "FAULT  font: there is no font of 8x16 in ROOT/fonts; sizes there: 6x10 10x20\n" +
                changed_lines("6", "10"));
}

TEST(FontCheckTest, a_font_that_must_not_be_read_or_is_no_file_is_a_fault) {
  struct Row {
    FileFacts facts;
    const char *says;
  };
  const Row rows[] = {
      {{Kind::regular, false, false, {}},
       "FAULT  font: no permission to read ROOT/opt/rv1000e/fonts/8x16.pcf.gz\n"
       "       fix: chmod a+r ROOT/opt/rv1000e/fonts/8x16.pcf.gz\n"},
      {{Kind::folder, true, true, {}},
       "FAULT  font: ROOT/opt/rv1000e/fonts/8x16.pcf.gz is no file\n"
       "       fix: mv -n ROOT/opt/rv1000e/fonts/8x16.pcf.gz ROOT/opt/rv1000e/fonts/8x16.pcf.gz.old\n"},
      {{Kind::regular, false, false, QStringLiteral("/opt/rv1000e")},
       "FAULT  font: no permission to enter /opt/rv1000e, on the way to ROOT/opt/rv1000e/fonts/8x16.pcf.gz\n"
       "       fix: chmod a+x /opt/rv1000e\n"},
      {{Kind::hidden, false, false, {}},
       "FAULT  font: no permission to look for ROOT/opt/rv1000e/fonts/8x16.pcf.gz\n"
       "       fix: namei -m ROOT/opt/rv1000e/fonts/8x16.pcf.gz    # shows the folder that keeps you out\n"},
  };
  for (const Row &row : rows) {
    test::TestRoot root;
    root.writeFontSize(8, 16);
    const FileLook look = all_but(root.path() + QStringLiteral("/opt/rv1000e/fonts/8x16.pcf.gz"), row.facts);
    EXPECT_EQ(shown_in(root, {check_configuration_and_font(root.paths(), root.path(), look).back()}), row.says);
  }
}

} // namespace
} // namespace buttondriver::buttonctl
