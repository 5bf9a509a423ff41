#pragma once

#include <QFileSystemWatcher>
#include <QObject>
#include <QString>
#include <QStringList>

namespace buttondriver {

/// Tells of changes of one file, for as long as it lives: also after an editor has replaced the file, after it was
/// deleted and written anew, and when it, or its folder, appears only later. Works by the event loop of its thread.
class ConfigurationWatcher : public QObject {
  Q_OBJECT

public:
  explicit ConfigurationWatcher(const QString &file);

  /// The files that are watched at this moment: the one, or none while it does not exist.
  QStringList files() const;

signals:
  void fileChanged(const QString &path);

private:
  void followFile();
  void followFolder();
  bool watchFile();
  void watchNearestFolder();

  QString _file;
  QFileSystemWatcher _watcher;
};

} // namespace buttondriver
