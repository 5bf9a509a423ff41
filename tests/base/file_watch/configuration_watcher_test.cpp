// SPDX-License-Identifier: Apache-2.0
#include "configuration_watcher_fixture.h"
#include "refused_watches.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QTimer>

#include <cstdio>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace buttondriver {
namespace {

using test::ConfigurationWatcherTest;
using test::process_events_until;
using test::process_ready_events;
using test::write_file;

TEST_F(ConfigurationWatcherTest, reports_a_rewrite_in_place) {
  write_file(file, "one");
  watch();
  EXPECT_EQ(watcher->files(), QStringList(file));
  EXPECT_TRUE(tells([&] { write_file(file, "two"); }));
  EXPECT_TRUE(tells([&] { write_file(file, "three"); }));
}

TEST_F(ConfigurationWatcherTest, follows_a_file_that_is_replaced_again_and_again) {
  write_file(file, "one");
  watch();
  for (int i = 0; i < 5; ++i) {
    EXPECT_TRUE(tells([&] { replace(); })) << i;
    EXPECT_EQ(watcher->files(), QStringList(file)) << i;
  }
}

TEST_F(ConfigurationWatcherTest, follows_a_replaced_file_whose_predecessor_lives_on_under_another_name) {
  write_file(file, "one");
  watch();
  ASSERT_EQ(::link(qPrintable(file), qPrintable(file + QStringLiteral("~"))), 0);
  EXPECT_TRUE(tells([&] { replace(); }));
  EXPECT_TRUE(tells([&] { write_file(file, "in place"); }));
  EXPECT_TRUE(tells([&] { replace(); }));
}

TEST_F(ConfigurationWatcherTest, follows_a_symbolic_link_that_is_turned_to_another_file) {
  const QString first = folder.path() + QStringLiteral("/deep/er/first");
  const QString second = folder.path() + QStringLiteral("/deep/er/second");
  write_file(first, "one");
  write_file(second, "two, longer");
  ASSERT_TRUE(QFile::link(first, file));
  watch();
  EXPECT_TRUE(tells([&] { write_file(first, "one again"); }));
  EXPECT_TRUE(tells([&] {
    ASSERT_TRUE(QFile::link(second, file + QStringLiteral(".new")));
    ASSERT_EQ(std::rename(qPrintable(file + QStringLiteral(".new")), qPrintable(file)), 0);
  }));
  EXPECT_TRUE(tells([&] { write_file(second, "two again"); }));
}

TEST_F(ConfigurationWatcherTest, reports_an_editor_s_way_to_save_once) {
  write_file(file, "one");
  watch();
  EXPECT_TRUE(tells([&] {
    QFile::remove(file);
    write_file(file, "");
    write_file(file, "two");
    replace();
  }));
  EXPECT_EQ(changes, 1);
}

TEST_F(ConfigurationWatcherTest, reports_changes_in_quick_succession_together) {
  constexpr int rewrites = 20;
  write_file(file, "one");
  watch();
  EXPECT_TRUE(tells([&] {
    for (int i = 0; i < rewrites; ++i) {
      write_file(file, QByteArray::number(i));
      process_ready_events();
    }
  }));
  // Once, but for a machine so busy that two of them are far apart.
  EXPECT_LT(changes, rewrites);
}

TEST_F(ConfigurationWatcherTest, reports_a_file_that_never_stops_changing) {
  write_file(file, "one");
  watch();
  QTimer writer;
  int written = 0;
  QObject::connect(&writer, &QTimer::timeout, [&] { write_file(file, QByteArray::number(++written)); });
  writer.start(2);
  QElapsedTimer time;
  time.start();
  EXPECT_TRUE(process_events_until([&] { return changes == 1; }));
  EXPECT_GE(time.elapsed(), 50);
  EXPECT_TRUE(process_events_until([&] { return changes == 3; }));
}

TEST_F(ConfigurationWatcherTest, finds_a_file_that_is_deleted_and_written_again) {
  write_file(file, "one");
  watch();
  EXPECT_TRUE(tells([&] { QFile::remove(file); }));
  EXPECT_TRUE(watcher->files().isEmpty());
  EXPECT_TRUE(tells([&] { write_file(file, "two"); }));
  EXPECT_TRUE(tells([&] { write_file(file, "three"); }));
}

TEST_F(ConfigurationWatcherTest, finds_a_file_that_appears_with_its_folders) {
  watch();
  EXPECT_TRUE(watcher->files().isEmpty());
  EXPECT_TRUE(tells([&] { write_file(file, "one"); }));
  EXPECT_EQ(watcher->files(), QStringList(file));
  EXPECT_TRUE(tells([&] { write_file(file, "two"); }));
}

TEST_F(ConfigurationWatcherTest, finds_a_file_whose_folder_was_deleted_in_between) {
  write_file(file, "one");
  watch();
  EXPECT_TRUE(tells([&] { QDir(folder.path() + QStringLiteral("/deep")).removeRecursively(); }));
  EXPECT_TRUE(tells([&] { write_file(file, "two"); }));
}

TEST_F(ConfigurationWatcherTest, follows_a_file_whose_folder_cannot_be_watched) {
  write_file(file, "one");
  const test::RefusedWatches refused([this](const std::string &path) { return path != file.toStdString(); });
  watch();
  EXPECT_EQ(watcher->files(), QStringList(file));
  EXPECT_TRUE(tells([&] { write_file(file, "two"); }));
}

TEST_F(ConfigurationWatcherTest, compares_a_file_that_cannot_be_watched_whenever_its_folder_changes) {
  const std::string name = file.toStdString();
  const auto set_modified = [&](timespec modified) {
    const timespec times[] = {modified, modified};
    ASSERT_EQ(::utimensat(AT_FDCWD, name.c_str(), times, 0), 0);
  };
  // In a step, these are all that differs.
  struct Step {
    const char *name;
    QByteArray content;
    timespec modified;
  };
  const Step steps[] = {
      {"seconds", "one", {1001, 500}}, {"nanoseconds", "one", {1001, 501}}, {"size", "three", {1001, 501}}};
  write_file(file, "one");
  set_modified({1000, 500});
  const test::RefusedWatches refused([name](const std::string &path) { return path == name; });
  watch();
  EXPECT_TRUE(watcher->files().isEmpty());
  const auto touch_folder = [&] {
    const QString other = folder.path() + QStringLiteral("/deep/er/other");
    write_file(other, "");
    QFile::remove(other);
  };
  for (const Step &step : steps) {
    EXPECT_TRUE(tells([&] {
      write_file(file, step.content);
      set_modified(step.modified);
      touch_folder();
    })) << step.name;
  }
  touch_folder();
  process_ready_events();
  // What would be told of this comes before this timer.
  bool is_time_over = false;
  QTimer::singleShot(100, [&is_time_over] { is_time_over = true; });
  EXPECT_TRUE(process_events_until([&is_time_over] { return is_time_over; }));
  EXPECT_EQ(changes, 3);
}

TEST_F(ConfigurationWatcherTest, follows_a_symbolic_link_that_is_turned_to_another_file_system) {
  const QString first = folder.path() + QStringLiteral("/deep/er/first");
  write_file(first, "one");
  ASSERT_TRUE(QFile::link(first, file));
  watch();
  const auto turn_to = [&](const QString &target) {
    ASSERT_TRUE(QFile::link(target, file + QStringLiteral(".new")));
    ASSERT_EQ(std::rename(qPrintable(file + QStringLiteral(".new")), qPrintable(file)), 0);
  };
  EXPECT_TRUE(tells([&] { turn_to(QStringLiteral("/proc/self/status")); }));
  EXPECT_TRUE(tells([&] { turn_to(first); }));
  EXPECT_TRUE(tells([&] { write_file(first, "one again"); }));
}

} // namespace
} // namespace buttondriver
