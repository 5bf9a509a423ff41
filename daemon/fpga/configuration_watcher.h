// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QFileSystemWatcher>
#include <QObject>
#include <QString>
#include <QStringList>
#include <QTimer>

#include <sys/stat.h>

namespace buttondriver {

/// Tells of changes of one file, for as long as it lives: also after an editor has replaced the file, after it was
/// deleted and written anew, when a symbolic link is turned to another file, and when the file, or its folder, appears
/// only later. Changes in quick succession are told once, when they have settled. Works by its thread's event loop.
class ConfigurationWatcher : public QObject {
  Q_OBJECT

public:
  explicit ConfigurationWatcher(const QString &file);

  /// The files that are watched at this moment: the one, or none while it does not exist.
  QStringList files() const;

signals:
  void fileChanged(const QString &path);

private:
  /// What tells one file, and one state of it, from another.
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
  void watchAgain();
  void watchNearestFolder();
  Identity identity() const;

  QString _file;
  QFileSystemWatcher _watcher;
  QTimer _settling;
  Identity _seen;
};

} // namespace buttondriver
