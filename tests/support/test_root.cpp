// SPDX-License-Identifier: Apache-2.0
#include "support/test_root.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <gtest/gtest.h>

namespace buttondriver::test {

TestRoot::TestRoot() {
  QDir(_folder.path()).mkpath(QStringLiteral("etc/rv1000e"));
  QDir(_folder.path()).mkpath(QStringLiteral("opt/rv1000e"));
  EXPECT_TRUE(
      QFile::link(QStringLiteral(BUTTONDRIVER_TEST_FONTS), _folder.path() + QStringLiteral("/opt/rv1000e/fonts")));
}

SystemPaths TestRoot::paths() const { return SystemPaths::under(_folder.path().toStdString()); }

QString TestRoot::launcherConfiguration() const { return QString::fromStdString(paths().launcher_configuration); }

void TestRoot::writeFontSize(int width, int height) const {
  writeLauncherConfiguration(QStringLiteral("[font]\nwidth=%1\nheight=%2\n").arg(width).arg(height).toLatin1());
}

void TestRoot::writeLauncherConfiguration(const QByteArray &text) const { write_file(launcherConfiguration(), text); }

void TestRoot::writeLevels(const QByteArray &text) const {
  write_file(QString::fromStdString(paths().button_level_file), text);
}

void write_file(const QString &file, const QByteArray &content) {
  QDir().mkpath(QFileInfo(file).absolutePath());
  QFile output(file);
  ASSERT_TRUE(output.open(QIODevice::WriteOnly)) << file.toStdString();
  ASSERT_EQ(output.write(content), content.size());
}

QByteArray read_file(const QString &file) {
  QFile input(file);
  EXPECT_TRUE(input.open(QIODevice::ReadOnly)) << file.toStdString();
  return input.readAll();
}

} // namespace buttondriver::test
