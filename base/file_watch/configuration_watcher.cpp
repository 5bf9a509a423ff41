// SPDX-License-Identifier: Apache-2.0
#include "file_watch/configuration_watcher.h"

#include "files/owned_descriptor.h"

#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <array>
#include <cerrno>
#include <fcntl.h>
#include <sys/inotify.h>

namespace buttondriver {

namespace {

/// An editor empties, writes and renames within a few milliseconds; the states in between are not to be read.
constexpr qint64 settling_ms = 50;

/// A file that changes all the time is read all the same, this long after the first change.
constexpr qint64 longest_settling_ms = 250;

/// After this time it is tried again what could not be done: to watch, or to tell of a change.
constexpr int retry_ms = 1000;

/// Folders that do not stop moving are left alone until then, too.
constexpr int most_looks = 10;

bool contains(const std::vector<FolderOnTheWay> &folders, const FolderOnTheWay &folder) {
  return std::find(folders.begin(), folders.end(), folder) != folders.end();
}

QString path_of(const FolderOnTheWay &folder) { return QFile::decodeName(folder.path.c_str()); }

bool can_be_watched(const QString &path) {
  const OwnedDescriptor inotify(::inotify_init1(IN_CLOEXEC));
  return inotify && ::inotify_add_watch(inotify.get(), QFile::encodeName(path).constData(), IN_DELETE_SELF) >= 0;
}

/// Whether who is told of a change could read the file: the file, a copy of it and the copy once more are open then.
bool descriptors_are_free() {
  std::array<OwnedDescriptor, 3> descriptors;
  for (OwnedDescriptor &descriptor : descriptors) {
    descriptor.reset(::open("/", O_PATH | O_CLOEXEC));
    if (!descriptor && (errno == EMFILE || errno == ENFILE))
      return false;
  }
  return true;
}

std::vector<FolderOnTheWay> folders_above(const QString &file) {
  return folders_on_the_way(QFile::encodeName(QFileInfo(file).absoluteFilePath()).toStdString());
}

} // namespace

ConfigurationWatcher::ConfigurationWatcher(const QString &file) : _file(file) {
  _settling.setSingleShot(true);
  _retry.setInterval(retry_ms);
  connect(&_settling, &QTimer::timeout, this, &ConfigurationWatcher::tell);
  connect(&_retry, &QTimer::timeout, this, &ConfigurationWatcher::followFolders);
  connect(&_watcher, &QFileSystemWatcher::fileChanged, this, &ConfigurationWatcher::followFile);
  connect(&_watcher, &QFileSystemWatcher::directoryChanged, this, &ConfigurationWatcher::followFolders);
  // The folders first: a file that appears in between is then not missed.
  watchFolders();
  watchAgain();
}

QStringList ConfigurationWatcher::files() const { return _watcher.files(); }

void ConfigurationWatcher::followFile() {
  watchAgain();
  settle();
}

void ConfigurationWatcher::followFolders() {
  watchFolders();
  const bool has_changed = !(identity() == _seen);
  if (has_changed || _lacks_file)
    watchAgain();
  if (has_changed)
    settle();
}

void ConfigurationWatcher::settle() {
  if (!_settling.isActive())
    _first_change.start();
  const qint64 left = longest_settling_ms - _first_change.elapsed();
  _settling.start(static_cast<int>(std::clamp<qint64>(left, 0, settling_ms)));
}

void ConfigurationWatcher::tell() {
  // Nobody would ask for this change again.
  if (descriptors_are_free())
    emit fileChanged(_file);
  else
    _settling.start(retry_ms);
}

/// A watch follows a file, not its name: it may still be on an earlier file that another link or an open descriptor
/// keeps alive.
void ConfigurationWatcher::watchAgain() {
  _seen = identity();
  if (!_watcher.files().isEmpty())
    _watcher.removePath(_file);
  _lacks_file = _seen.exists && !_seen.is_folder && !watch(_file);
  setRetry();
}

void ConfigurationWatcher::watchFolders() {
  // Folders may be made and moved while this looks for them.
  _lacks_folders = true;
  std::vector<FolderOnTheWay> folders = folders_above(_file);
  for (int look = 0; look < most_looks; ++look) {
    const bool are_watched = takeFolders(folders);
    folders = folders_above(_file);
    if (folders == _folders) {
      _lacks_folders = !are_watched;
      break;
    }
  }
  setRetry();
}

/// A watch follows a folder, too, not its path. True when all of them are watched.
bool ConfigurationWatcher::takeFolders(const std::vector<FolderOnTheWay> &folders) {
  const QStringList watched = _watcher.directories();
  for (const FolderOnTheWay &former : _folders)
    if (!contains(folders, former) && watched.contains(path_of(former)))
      _watcher.removePath(path_of(former));
  bool are_watched = true;
  for (const FolderOnTheWay &folder : folders) {
    const QString path = path_of(folder);
    if ((!contains(_folders, folder) || !watched.contains(path)) && !watch(path))
      are_watched = false;
  }
  _folders = folders;
  return are_watched;
}

/// Qt logs each watch that is refused; so after the first one only those are asked for that would be granted.
bool ConfigurationWatcher::watch(const QString &path) {
  if (_retry.isActive() && !can_be_watched(path))
    return false;
  if (_watcher.addPath(path))
    return true;
  _retry.start();
  return false;
}

void ConfigurationWatcher::setRetry() {
  if (!_lacks_file && !_lacks_folders)
    _retry.stop();
  else if (!_retry.isActive()) // folders that do not stop moving
    _retry.start();
}

ConfigurationWatcher::Identity ConfigurationWatcher::identity() const {
  struct stat status {};
  if (::stat(QFile::encodeName(_file).constData(), &status) != 0)
    return {};
  return {true, S_ISDIR(status.st_mode), status.st_dev, status.st_ino, status.st_mtim, status.st_size};
}

bool ConfigurationWatcher::Identity::operator==(const Identity &other) const {
  return exists == other.exists && is_folder == other.is_folder && device == other.device && inode == other.inode &&
         modified.tv_sec == other.modified.tv_sec && modified.tv_nsec == other.modified.tv_nsec && size == other.size;
}

} // namespace buttondriver
