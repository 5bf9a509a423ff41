// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QByteArray>
#include <QDir>
#include <QFile>
#include <QString>
#include <QTemporaryDir>

#include <stdexcept>

namespace buttondriver::test {

/// An empty folder that is the current one while this lives; it goes with everything in it.
class WorkingFolder {
public:
  WorkingFolder() : _previous(QDir::currentPath()) {
    if (!_folder.isValid() || !QDir::setCurrent(_folder.path()))
      throw std::runtime_error("no temporary folder");
  }
  ~WorkingFolder() { QDir::setCurrent(_previous); }
  WorkingFolder(const WorkingFolder &) = delete;
  WorkingFolder &operator=(const WorkingFolder &) = delete;

  void write(const char *name, const QByteArray &content) const {
    QFile file(QString::fromLatin1(name));
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
      throw std::runtime_error("a file of the test cannot be written");
  }

private:
  const QString _previous;
  QTemporaryDir _folder;
};

} // namespace buttondriver::test
