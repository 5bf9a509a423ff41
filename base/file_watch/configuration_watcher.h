// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "file_watch/folders_on_the_way.h"

#include <QElapsedTimer>
#include <QFileSystemWatcher>
#include <QObject>
#include <QString>
#include <QStringList>
#include <QTimer>

#include <sys/stat.h>
#include <vector>

namespace buttondriver {

/// Reports each change of one file: also after an editor has replaced the file, after it was deleted and written again,
/// when the file, or its folder, appears only later, and when its path leads to another file because a symbolic link is
/// turned, or because a folder on the way is renamed, replaced or swapped. Changes in quick succession are reported
/// once, when none has come for 50 ms, and no later than 250 ms after the first one; while no descriptor is free to
/// read the file, once some are.
///
/// Waits for the kernel to tell of changes. As long as it refuses to watch the file or a folder on the way, this looks
/// once a second for itself. Needs the event loop of its thread.
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
    bool is_folder = false;
    dev_t device = 0;
    ino_t inode = 0;
    timespec modified{};
    off_t size = 0;
    bool operator==(const Identity &other) const;
  };

  void followFile();
  void followFolders();
  void settle();
  void tell();
  void watchAgain();
  void watchFolders();
  bool takeFolders(const std::vector<FolderOnTheWay> &folders);
  bool watch(const QString &path);
  void setRetry();
  Identity identity() const;

  QString _file;
  QFileSystemWatcher _watcher;
  QTimer _settling{this};
  QElapsedTimer _first_change; // of those that settle
  Identity _seen;
  std::vector<FolderOnTheWay> _folders; // watched, but for those that were refused
  bool _lacks_file = false;             // it exists, but is not watched
  bool _lacks_folders = false;          // not all of them are watched
  QTimer _retry{this};                  // runs while something is lacking
};

} // namespace buttondriver
