// SPDX-License-Identifier: Apache-2.0
#include "fpga/fpga.h"

#include "support/captured_log.h"
#include "support/device/facade_fixture.h"
#include "support/event_loop.h"

#include <QDir>
#include <QFile>

#include <gmock/gmock.h>

#include <algorithm>
#include <csignal>
#include <fcntl.h>
#include <sys/resource.h>
#include <sys/stat.h>

namespace buttondriver {
namespace {

using testing::ElementsAre;

class FontSettingsTest : public test::FacadeFixture {
protected:
  std::string configuration() const { return root.launcherConfiguration().toStdString(); }
  std::string change() const { return "debug: File change in  \"" + configuration() + "\"  occurred. "; }
  std::string font(const std::string &size) const { return root.paths().font_directory + "/" + size + ".pcf.gz"; }
  std::string loading(const std::string &size) const {
    return "debug: buttondriver: Loading font ' \"" + font(size) + "\" ' from configuration file. ";
  }
  std::string loaded(const std::string &size) const {
    return "debug: buttondriver: Successfully changed to font  \"" + font(size) + "\" ";
  }
  std::string failed(const std::string &size) const {
    return "debug: Error loading font ' \"" + font(size) + "\" ' from configuration file. ";
  }

  std::string inaccessible() const { return "debug: Error accessing ' \"" + configuration() + "\" ' for reading "; }

  /// The lines of the log after a call of the slot, as the watcher makes it.
  std::vector<std::string> check() {
    test::CapturedLog log;
    fpga->check_font_settings(root.launcherConfiguration());
    return log.take();
  }
};

TEST_F(FontSettingsTest, start_loads_the_configured_font_and_names_the_watched_file) {
  root.writeFontSize(8, 16);
  test::CapturedLog log;
  fpga.emplace(root.paths());
  EXPECT_THAT(log.take(), ElementsAre(change(), loading("8x16"), loaded("8x16"),
                                      "debug: Files being watched:  (\"" + configuration() + "\") "));
}

TEST_F(FontSettingsTest, start_without_a_configuration_watches_no_file_and_loads_nothing) {
  test::CapturedLog log;
  fpga.emplace(root.paths());
  EXPECT_THAT(log.take(), ElementsAre(change(), "debug: Files being watched:  () "));
}

TEST_F(FontSettingsTest, start_with_a_configuration_without_a_font_loads_nothing) {
  root.writeLauncherConfiguration("[other]\nkey=value\n");
  test::CapturedLog log;
  fpga.emplace(root.paths());
  EXPECT_THAT(log.take(), ElementsAre(change(), "debug: Files being watched:  (\"" + configuration() + "\") "));
}

TEST_F(FontSettingsTest, the_same_size_again_loads_nothing) {
  root.writeFontSize(8, 16);
  startFacade();
  root.writeLauncherConfiguration("[other]\ncolour=blue\n[font]\nwidth=8\nheight=16\n");
  EXPECT_THAT(check(), ElementsAre(change()));
}

TEST_F(FontSettingsTest, size_without_a_file_is_printed_once_and_not_tried_again) {
  root.writeFontSize(8, 16);
  startFacade();
  root.writeFontSize(99, 7);
  test::CapturedOutput output;
  EXPECT_THAT(check(), ElementsAre(change(), loading("99x7"), failed("99x7")));
  EXPECT_EQ(output.take(), "Font file '" + font("99x7") + "' doesn't exist.\n");
  EXPECT_THAT(check(), ElementsAre(change()));
}

TEST_F(FontSettingsTest, a_missing_file_keeps_the_font_in_use_a_broken_one_does_not) {
  root.writeFontSize(8, 16);
  startFacade();
  root.writeFontSize(99, 7);
  check();
  test::CapturedOutput output;
  fpga->textLine(0, 0, "A", true);
  EXPECT_EQ(finishedTransfers().at(8), "w 0a03 2048 ...");
  EXPECT_EQ(output.take(), "");

  // The fonts are a link to a folder shared with other tests: give this one a folder of its own.
  const QString fonts = QString::fromStdString(root.paths().font_directory);
  ASSERT_TRUE(QFile::remove(fonts));
  test::write_file(fonts + QStringLiteral("/5x5.pcf.gz"), "no font at all");
  root.writeFontSize(5, 5);
  EXPECT_THAT(check(), ElementsAre(change(), loading("5x5"), failed("5x5")));
  EXPECT_EQ(output.take(), "Error calling FT_New_Face(): error = 2\n");
  fpga->textLine(0, 0, "A", true);
  finishedTransfers();
  EXPECT_EQ(output.take(), "Error generating line bitmap using FreeType.\n");
}

TEST_F(FontSettingsTest, an_unreadable_configuration_changes_nothing) {
  ASSERT_TRUE(QDir().mkpath(root.launcherConfiguration()));
  startFacade();
  EXPECT_THAT(check(), ElementsAre(change(), inaccessible()));
}

TEST_F(FontSettingsTest, a_configuration_of_64_KiB_is_read_and_a_longer_one_changes_nothing) {
  startFacade();
  QByteArray text = "[font]\nwidth=8\nheight=16\n[other]\nname=";
  text += QByteArray(64 * 1024 - text.size(), 'x');
  root.writeLauncherConfiguration(text);
  EXPECT_THAT(check(), ElementsAre(change(), loading("8x16"), loaded("8x16")));
  root.writeLauncherConfiguration(text.replace("width=8", "width=5") + 'x');
  EXPECT_THAT(check(), ElementsAre(change(), inaccessible()));
}

TEST_F(FontSettingsTest, a_configuration_of_lists_in_lists_changes_nothing) {
  startFacade();
  QByteArray text = "[font]\nwidth=@Variant(";
  for (int i = 0; i < 100000; ++i)
    text += "\\0\\0\\0\\x9\\0\\0\\0\\x1";
  root.writeLauncherConfiguration(text + ")\n");
  EXPECT_THAT(check(), ElementsAre(change(), inaccessible()));
}

TEST_F(FontSettingsTest, a_configuration_that_never_ends_changes_nothing) {
  startFacade();
  ASSERT_EQ(::mkfifo(configuration().c_str(), 0600), 0);
  EXPECT_THAT(check(), ElementsAre(change(), inaccessible()));
}

TEST_F(FontSettingsTest, a_configuration_with_a_broken_group_changes_nothing) {
  startFacade();
  root.writeLauncherConfiguration("[font]\nwidth=8\nheight=16\n[other\ncolour=blue\n");
  EXPECT_THAT(check(), ElementsAre(change(), inaccessible()));
}

/// The folder for temporary files is another one while this lives.
class TemporaryFiles {
public:
  explicit TemporaryFiles(const QString &folder) : _before(qgetenv("TMPDIR")) {
    qputenv("TMPDIR", QFile::encodeName(folder));
  }
  ~TemporaryFiles() { _before.isNull() ? qunsetenv("TMPDIR") : qputenv("TMPDIR", _before); }
  TemporaryFiles(const TemporaryFiles &) = delete;
  TemporaryFiles &operator=(const TemporaryFiles &) = delete;

private:
  const QByteArray _before;
};

/// No file can get longer than this while this lives.
class LongestFile {
public:
  explicit LongestFile(rlim_t bytes) : _signal_before(std::signal(SIGXFSZ, SIG_IGN)) {
    ::getrlimit(RLIMIT_FSIZE, &_before);
    const rlimit limit = {bytes, _before.rlim_max};
    ::setrlimit(RLIMIT_FSIZE, &limit);
  }
  ~LongestFile() {
    ::setrlimit(RLIMIT_FSIZE, &_before);
    std::signal(SIGXFSZ, _signal_before);
  }
  LongestFile(const LongestFile &) = delete;
  LongestFile &operator=(const LongestFile &) = delete;

private:
  rlimit _before{};
  void (*_signal_before)(int);
};

TEST_F(FontSettingsTest, a_configuration_is_read_itself_where_no_copy_can_be_made) {
  startFacade();
  root.writeFontSize(8, 16);
  {
    const TemporaryFiles unusable(QStringLiteral("/proc"));
    EXPECT_THAT(check(), ElementsAre(change(), loading("8x16"), loaded("8x16")));
  }
  // A short copy fails when it is flushed, a long one when it is written.
  for (const int length : {100, 60000}) {
    const std::string size = length == 100 ? "8x13" : "12x24";
    QByteArray text =
        length == 100 ? "[font]\nwidth=8\nheight=13\n[other]\nname=" : "[font]\nwidth=12\nheight=24\n[other]\nname=";
    root.writeLauncherConfiguration(text + QByteArray(length - text.size(), 'x'));
    const LongestFile longest(10);
    EXPECT_THAT(check(), ElementsAre(change(), loading(size), loaded(size))) << length;
  }
}

TEST_F(FontSettingsTest, reads_another_file_of_the_same_length_and_time) {
  root.writeLauncherConfiguration("[font]\nwidth=8\nheight=16\n");
  startFacade();
  struct stat status {};
  const QByteArray name = QFile::encodeName(root.launcherConfiguration());
  ASSERT_EQ(::stat(name.constData(), &status), 0);
  root.writeLauncherConfiguration("[font]\nwidth=8\nheight=13\n");
  const timespec times[] = {status.st_atim, status.st_mtim};
  ASSERT_EQ(::utimensat(AT_FDCWD, name.constData(), times, 0), 0);
  EXPECT_THAT(check(), ElementsAre(change(), loading("8x13"), loaded("8x13")));
}

TEST_F(FontSettingsTest, a_font_that_is_a_pipe_is_not_waited_for) {
  startFacade();
  const QString fonts = QString::fromStdString(root.paths().font_directory);
  ASSERT_TRUE(QFile::remove(fonts));
  ASSERT_TRUE(QDir().mkpath(fonts));
  ASSERT_EQ(::mkfifo(font("5x5").c_str(), 0600), 0);
  root.writeFontSize(5, 5);
  test::CapturedOutput output;
  EXPECT_THAT(check(), ElementsAre(change(), loading("5x5"), failed("5x5")));
  EXPECT_EQ(output.take(), "Error calling FT_New_Face(): error = 2\n");
}

TEST_F(FontSettingsTest, the_font_follows_the_file_while_the_daemon_runs) {
  startFacade();
  test::CapturedLog log;
  std::vector<std::string> lines;
  const auto logged = [&](const std::string &line) {
    for (std::string &text : log.take())
      lines.push_back(std::move(text));
    return std::find(lines.begin(), lines.end(), line) != lines.end();
  };
  root.writeFontSize(8, 16);
  EXPECT_TRUE(test::process_events_until([&] { return logged(loaded("8x16")); }));
  root.writeFontSize(12, 24);
  EXPECT_TRUE(test::process_events_until([&] { return logged(loaded("12x24")); }));
}

} // namespace
} // namespace buttondriver
