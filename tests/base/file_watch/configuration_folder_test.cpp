// SPDX-License-Identifier: Apache-2.0
// The folders above the configuration are moved and replaced; watches are refused; no descriptor is free.

#include "configuration_watcher_fixture.h"
#include "refused_watches.h"
#include "support/captured_log.h"
#include "used_up_descriptors.h"

#include <QDir>
#include <QFile>
#include <QTimer>

#include <gmock/gmock.h>

#include <cstdio>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

namespace buttondriver {
namespace {

using test::process_events_until;
using test::process_ready_events;
using test::write_file;

class ConfigurationFolderTest : public test::ConfigurationWatcherTest {
protected:
  QString at(const char *path) const { return folder.path() + QLatin1Char('/') + QLatin1String(path); }

  /// In place of what is there, as one step.
  static void move(const QString &from, const QString &to) {
    ASSERT_EQ(std::rename(qPrintable(from), qPrintable(to)), 0) << qPrintable(from);
  }
  static void turn(const QString &link, const QString &target) {
    const QString fresh = link + QStringLiteral(".new");
    ASSERT_EQ(::symlink(qPrintable(target), qPrintable(fresh)), 0);
    move(fresh, link);
  }

  /// What is watched is the file that is there now, and the folder that it is in.
  void expectToFollowTheFile() {
    EXPECT_TRUE(tells([&] { write_file(file, "in place"); }));
    EXPECT_TRUE(tells([&] { QFile::remove(file); }));
    EXPECT_TRUE(tells([&] { write_file(file, "made again"); }));
    EXPECT_EQ(watcher->files(), QStringList(file));
  }

  /// Nothing is left to do: no timer runs.
  bool isQuiet() const {
    for (const QTimer *timer : watcher->findChildren<QTimer *>())
      if (timer->isActive())
        return false;
    return true;
  }

  static void let_time_pass(int ms) {
    bool is_over = false;
    QTimer::singleShot(ms, [&is_over] { is_over = true; });
    EXPECT_TRUE(process_events_until([&is_over] { return is_over; }));
  }
};

TEST_F(ConfigurationFolderTest, is_followed_when_it_is_renamed_away_and_made_again) {
  for (const char *moved : {"deep/er", "deep"}) {
    SCOPED_TRACE(moved);
    const QString away = at("away");
    write_file(file, "one");
    watch();
    EXPECT_TRUE(tells([&] { move(at(moved), away); }));
    EXPECT_TRUE(watcher->files().isEmpty());
    EXPECT_TRUE(tells([&] { write_file(file, "two, longer"); }));
    expectToFollowTheFile();
    QDir(away).removeRecursively();
  }
}

TEST_F(ConfigurationFolderTest, is_followed_when_it_is_replaced_before_anybody_looks) {
  for (const char *moved : {"deep/er", "deep"}) {
    SCOPED_TRACE(moved);
    const QString away = at("away");
    write_file(file, "one");
    watch();
    std::vector<std::string> watched;
    const test::RefusedWatches observed([&watched](const std::string &path) {
      watched.push_back(path);
      return false;
    });
    EXPECT_TRUE(tells([&] {
      move(at(moved), away);
      write_file(file, "two, longer");
    }));
    EXPECT_THAT(watched, testing::Contains(at(moved).toStdString()));
    EXPECT_THAT(watched, testing::Contains(at("deep/er").toStdString()));
    expectToFollowTheFile();
    QDir(away).removeRecursively();
  }
}

TEST_F(ConfigurationFolderTest, is_followed_when_it_is_swapped_with_another) {
  write_file(file, "one");
  write_file(at("other/er/launcher.cfg"), "two, longer");
  watch();
  for (int i = 0; i < 3; ++i) {
    EXPECT_TRUE(tells([&] {
      ASSERT_EQ(::renameat2(AT_FDCWD, qPrintable(at("deep")), AT_FDCWD, qPrintable(at("other")), RENAME_EXCHANGE), 0);
    })) << i;
    expectToFollowTheFile();
  }
}

TEST_F(ConfigurationFolderTest, is_followed_when_it_is_a_symbolic_link_that_is_turned) {
  write_file(at("first/er/launcher.cfg"), "one");
  write_file(at("second/er/launcher.cfg"), "two, longer");
  for (const char *target : {"first", "./first"}) {
    SCOPED_TRACE(target);
    turn(at("deep"), QLatin1String(target));
    watch();
    EXPECT_TRUE(tells([&] { turn(at("deep"), at("second")); }));
    expectToFollowTheFile();
    EXPECT_TRUE(tells([&] { turn(at("deep"), QLatin1String(target)); }));
    expectToFollowTheFile();
  }
}

TEST_F(ConfigurationFolderTest, is_followed_when_what_a_symbolic_link_leads_to_is_replaced) {
  write_file(at("far/real/er/launcher.cfg"), "one");
  turn(at("deep"), at("far/real"));
  watch();
  EXPECT_TRUE(tells([&] { move(at("far/real"), at("far/away")); }));
  EXPECT_TRUE(tells([&] { write_file(at("far/real/er/launcher.cfg"), "two, longer"); }));
  expectToFollowTheFile();
}

TEST_F(ConfigurationFolderTest, is_watched_without_any_timer_once_all_is_well) {
  write_file(file, "one");
  watch();
  EXPECT_TRUE(isQuiet());
  EXPECT_TRUE(tells([&] { write_file(file, "two"); }));
  EXPECT_TRUE(isQuiet());
  EXPECT_TRUE(tells([&] { QDir(at("deep")).removeRecursively(); }));
  EXPECT_TRUE(isQuiet());
}

TEST_F(ConfigurationFolderTest, is_looked_at_once_a_second_while_watches_are_refused) {
  write_file(file, "one");
  int refusals = 0;
  {
    const test::RefusedWatches refused([&refusals](const std::string &) { return ++refusals > 0; });
    watch();
    const int at_first = refusals;
    EXPECT_GT(at_first, 0);
    EXPECT_TRUE(watcher->files().isEmpty());
    EXPECT_TRUE(tells([&] { write_file(file, "two, longer"); }));
    EXPECT_GT(refusals, at_first);
    EXPECT_FALSE(isQuiet());
  }
  EXPECT_TRUE(process_events_until([&] { return watcher->files() == QStringList(file); }));
  EXPECT_TRUE(isQuiet());
  EXPECT_EQ(changes, 1);
  expectToFollowTheFile();
}

TEST_F(ConfigurationFolderTest, is_logged_once_only_when_it_cannot_be_watched) {
  write_file(file, "one");
  const test::RefusedWatches refused([this](const std::string &path) { return path != file.toStdString(); });
  test::CapturedLog log;
  watch();
  EXPECT_EQ(log.take().size(), 1U);
  EXPECT_TRUE(tells([&] {
    move(at("deep"), at("away"));
    write_file(file, "two, longer");
  }));
  EXPECT_EQ(log.take().size(), 0U);
}

TEST_F(ConfigurationFolderTest, is_told_of_once_three_descriptors_are_free) {
  write_file(file, "one");
  const QString fresh = file + QStringLiteral(".new");
  write_file(fresh, "two, longer");
  watch();
  test::UsedUpDescriptors used_up;
  used_up.giveOneBack();
  used_up.giveOneBack();
  move(fresh, file);
  // Longer than a change takes to settle.
  let_time_pass(500);
  EXPECT_EQ(changes, 0);
  used_up.giveOneBack();
  EXPECT_TRUE(process_events_until([&] { return changes == 1; }));
  EXPECT_TRUE(isQuiet());
}

} // namespace
} // namespace buttondriver
