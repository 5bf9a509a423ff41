// SPDX-License-Identifier: Apache-2.0
#include "simulator/app/ports_file.h"

#include "support/test_root.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace buttondriver::simulator {
namespace {

TEST(PortsFileTest, has_a_line_for_each_port_that_is_there) {
  const QTemporaryDir folder;
  const QString file = folder.filePath(QStringLiteral("ports"));
  struct Row {
    std::optional<quint16> daemon;
    std::optional<quint16> http;
    QByteArray content;
  };
  const Row rows[] = {
      {3003, 8080, "daemon=3003\nhttp=8080\n"},
      {65535, std::nullopt, "daemon=65535\n"},
      {std::nullopt, 8081, "http=8081\n"},
      {std::nullopt, std::nullopt, ""},
  };
  for (const Row &row : rows) {
    EXPECT_TRUE(write_ports(file, row.daemon, row.http));
    EXPECT_EQ(test::read_file(file), row.content);
  }
  EXPECT_EQ(QDir(folder.path()).entryList(QDir::Files), QStringList(QStringLiteral("ports")));
}

TEST(PortsFileTest, that_cannot_be_written_is_a_failure_that_names_it) {
  const auto written = write_ports(QStringLiteral("/nowhere/at/all"), 1, 2);
  ASSERT_FALSE(written);
  EXPECT_TRUE(written.failure().text.startsWith(QStringLiteral("cannot write /nowhere/at/all: ")))
      << written.failure().text.toStdString();
}

TEST(PortsFileTest, an_old_one_is_removed_and_what_is_no_file_stays) {
  const QTemporaryDir folder;
  const QString file = folder.filePath(QStringLiteral("ports"));
  const QString link = folder.filePath(QStringLiteral("link"));
  ASSERT_TRUE(write_ports(file, 1, 2));
  ASSERT_TRUE(QFile::link(file, link));
  remove_ports(link);
  EXPECT_TRUE(QFile::exists(link)) << "/dev/stdout may be one";
  remove_ports(folder.path());
  EXPECT_TRUE(QDir(folder.path()).exists());
  remove_ports(file);
  EXPECT_FALSE(QFile::exists(file));
  remove_ports(file); // which is not there
}

} // namespace
} // namespace buttondriver::simulator
