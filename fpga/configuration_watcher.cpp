#include "fpga/configuration_watcher.h"

#include <QDir>
#include <QFileInfo>

namespace buttondriver {

ConfigurationWatcher::ConfigurationWatcher(const QString &file) : _file(file) {
  watchFile();
  watchNearestFolder();
  connect(&_watcher, &QFileSystemWatcher::fileChanged, this, &ConfigurationWatcher::followFile);
  connect(&_watcher, &QFileSystemWatcher::directoryChanged, this, &ConfigurationWatcher::followFolder);
}

QStringList ConfigurationWatcher::files() const { return _watcher.files(); }

void ConfigurationWatcher::followFile() {
  // A replaced file is watched no more; its successor is.
  watchFile();
  emit fileChanged(_file);
}

void ConfigurationWatcher::followFolder() {
  watchNearestFolder();
  if (watchFile())
    emit fileChanged(_file);
}

/// True when the file is watched from now on and was not before.
bool ConfigurationWatcher::watchFile() {
  return !_watcher.files().contains(_file) && QFileInfo::exists(_file) && _watcher.addPath(_file);
}

void ConfigurationWatcher::watchNearestFolder() {
  QString folder = QFileInfo(_file).absolutePath();
  while (!QFileInfo(folder).isDir() && !QDir(folder).isRoot())
    folder = QFileInfo(folder).absolutePath();
  const QStringList watched = _watcher.directories();
  if (watched == QStringList(folder))
    return;
  if (!watched.isEmpty())
    _watcher.removePaths(watched);
  _watcher.addPath(folder);
}

} // namespace buttondriver
