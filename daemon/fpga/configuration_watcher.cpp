// SPDX-License-Identifier: Apache-2.0
#include "fpga/configuration_watcher.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <algorithm>

namespace buttondriver {

namespace {

/// An editor empties, writes and renames within a few milliseconds; the states in between are not to be read.
constexpr qint64 settling_ms = 50;

/// A file that changes all the time is read all the same, this long after the first change.
constexpr qint64 longest_settling_ms = 250;

QString nearest_folder(const QString &file) {
  QString folder = QFileInfo(file).absolutePath();
  while (!QFileInfo(folder).isDir() && !QDir(folder).isRoot())
    folder = QFileInfo(folder).absolutePath();
  return folder;
}

} // namespace

ConfigurationWatcher::ConfigurationWatcher(const QString &file) : _file(file) {
  _settling.setSingleShot(true);
  connect(&_settling, &QTimer::timeout, this, [this] { emit fileChanged(_file); });
  connect(&_watcher, &QFileSystemWatcher::fileChanged, this, &ConfigurationWatcher::followFile);
  connect(&_watcher, &QFileSystemWatcher::directoryChanged, this, &ConfigurationWatcher::followFolder);
  // The folder first: a file that appears in between is then not missed.
  watchNearestFolder();
  watchAgain();
}

QStringList ConfigurationWatcher::files() const { return _watcher.files(); }

void ConfigurationWatcher::followFile() {
  watchAgain();
  settle();
}

void ConfigurationWatcher::followFolder() {
  watchNearestFolder();
  if (identity() == _seen)
    return;
  watchAgain();
  settle();
}

void ConfigurationWatcher::settle() {
  if (!_settling.isActive())
    _first_change.start();
  const qint64 left = longest_settling_ms - _first_change.elapsed();
  _settling.start(static_cast<int>(std::clamp<qint64>(left, 0, settling_ms)));
}

/// A watch follows a file, not its name: it may still be on an earlier file that another link or an open descriptor
/// keeps alive.
void ConfigurationWatcher::watchAgain() {
  _seen = identity();
  if (!_watcher.files().isEmpty())
    _watcher.removePath(_file);
  if (_seen.exists)
    _watcher.addPath(_file);
}

void ConfigurationWatcher::watchNearestFolder() {
  // Folders may be made while this looks for them.
  for (QString folder = nearest_folder(_file); _watcher.directories() != QStringList(folder);
       folder = nearest_folder(_file)) {
    if (!_watcher.directories().isEmpty())
      _watcher.removePaths(_watcher.directories());
    if (!_watcher.addPath(folder))
      return;
  }
}

ConfigurationWatcher::Identity ConfigurationWatcher::identity() const {
  struct stat status {};
  if (::stat(QFile::encodeName(_file).constData(), &status) != 0)
    return {};
  return {true, status.st_dev, status.st_ino, status.st_mtim, status.st_size};
}

bool ConfigurationWatcher::Identity::operator==(const Identity &other) const {
  return exists == other.exists && device == other.device && inode == other.inode &&
         modified.tv_sec == other.modified.tv_sec && modified.tv_nsec == other.modified.tv_nsec && size == other.size;
}

} // namespace buttondriver
