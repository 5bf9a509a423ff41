// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "files/system_paths.h"

#include <QByteArray>
#include <QString>
#include <QTemporaryDir>

namespace buttondriver::test {

/// A folder of its own for the files that the daemon reads, deleted when it goes. The screens' fonts are there; the
/// configuration and the level file are not, until they are written.
class TestRoot {
public:
  TestRoot();

  SystemPaths paths() const;
  QString path() const { return _folder.path(); }
  QString launcherConfiguration() const;

  /// Writes the launcher configuration in place, the font's group only.
  void writeFontSize(int width, int height) const;
  void writeLauncherConfiguration(const QByteArray &text) const;
  void writeLevels(const QByteArray &text) const;

private:
  QTemporaryDir _folder;
};

/// Replaces the content of `file`, which is made with its folders where missing.
void write_file(const QString &file, const QByteArray &content);
/// What is in `file`; fails the test when it cannot be read.
QByteArray read_file(const QString &file);

} // namespace buttondriver::test
