// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QElapsedTimer>
#include <QFileSystemWatcher>
#include <QObject>
#include <QString>
#include <QStringList>
#include <QTimer>

#include <sys/stat.h>

namespace buttondriver {

/// Reports each change of one file: also after an editor has replaced the file, after it was deleted and written again,
/// when a symbolic link is turned to another file, and when the file, or its folder, appears only later. Changes in
/// quick succession are reported once, when none has come for 50 ms, and no later than 250 ms after the first one.
/// Needs the event loop of its thread.
class ConfigurationWatcher : public QObject {
  Q_OBJECT

public:
  explicit ConfigurationWatcher(const QString &file);

  /// The files that are watched at this moment: the one, or none while it does not exist.
  QStringList files() const;

signals:
  void fileChanged(const QString &path);

private:
  /// Differs between two files, and between two states of one file.
  struct Identity {
    bool exists = false;
    dev_t device = 0;
    ino_t inode = 0;
    timespec modified{};
    off_t size = 0;
    bool operator==(const Identity &other) const;
  };

  void followFile();
  void followFolder();
  void settle();
  void watchAgain();
  void watchNearestFolder();
  Identity identity() const;

  QString _file;
  QFileSystemWatcher _watcher;
  QTimer _settling;
  QElapsedTimer _first_change; // of those that settle
  Identity _seen;
};

} // namespace buttondriver
