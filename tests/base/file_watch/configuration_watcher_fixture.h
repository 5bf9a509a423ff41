// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "file_watch/configuration_watcher.h"
#include "support/event_loop.h"
#include "support/test_root.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <cstdio>
#include <optional>

namespace buttondriver::test {

/// A configuration file in folders of its own, and who watches it.
class ConfigurationWatcherTest : public testing::Test {
protected:
  ConfigurationWatcherTest() : file(folder.path() + QStringLiteral("/deep/er/launcher.cfg")) {}

  void watch() {
    watcher.emplace(file);
    QObject::connect(&*watcher, &ConfigurationWatcher::fileChanged, [this](const QString &path) {
      EXPECT_EQ(path, file);
      ++changes;
    });
  }

  /// Whether the watcher tells of a change after `act`.
  template <class Act> bool tells(Act act) {
    const int before = changes;
    act();
    return process_events_until([&] { return changes > before; });
  }

  void replace() {
    write_file(file + QStringLiteral(".new"), "replaced");
    ASSERT_EQ(std::rename(qPrintable(file + QStringLiteral(".new")), qPrintable(file)), 0);
  }

  QTemporaryDir folder;
  QString file;
  std::optional<ConfigurationWatcher> watcher;
  int changes = 0;
};

} // namespace buttondriver::test
