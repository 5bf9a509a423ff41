// SPDX-License-Identifier: Apache-2.0
#include "buttonctl/doctor/facts/account.h"
#include "buttonctl/doctor/facts/file_facts.h"
#include "buttonctl/doctor/facts/font_sizes.h"

#include "support/test_root.h"

#include <QFile>

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

namespace buttondriver::buttonctl {
namespace {

using Kind = FileFacts::Kind;

TEST(FileFactsTest, are_what_the_system_says) {
  test::TestRoot root;
  root.writeFontSize(8, 16);
  EXPECT_EQ(look_at_file(root.launcherConfiguration()).kind, Kind::regular);
  EXPECT_TRUE(look_at_file(root.launcherConfiguration()).is_readable);
  EXPECT_TRUE(look_at_file(root.launcherConfiguration()).is_writable);
  EXPECT_EQ(look_at_file(root.path()).kind, Kind::folder);
  EXPECT_EQ(look_at_file(root.path() + QStringLiteral("/no")).kind, Kind::missing);
  EXPECT_EQ(look_at_file(QStringLiteral("/dev/null")).kind, Kind::character_device);
}

TEST(FileFactsTest, of_an_account_come_from_owner_group_and_mode) {
  struct Row {
    mode_t mode;
    const char *owner, *member, *other; ///< what each of them may do
  };
  const Row rows[] = {
      {0640, "rw", "r", ""},  {0660, "rw", "rw", ""}, {0604, "rw", "", "r"},
      {0066, "", "rw", "rw"}, {0006, "", "", "rw"},   {0222, "w", "w", "w"},
  };
  constexpr uid_t owner = 54321;
  constexpr gid_t group = 54322;
  const Account accounts[] = {
      {QStringLiteral("owner"), owner, {1, group}},
      {QStringLiteral("member"), 2, {1, group}},
      {QStringLiteral("other"), 3, {1}},
      {QStringLiteral("root"), 0, {0}},
  };
  const auto allowed = [&](const Account &account, mode_t mode) {
    std::string text;
    text += may(account, {owner, group, mode}, R_OK) ? "r" : "";
    return text + (may(account, {owner, group, mode}, W_OK) ? "w" : "");
  };
  for (const Row &row : rows) {
    EXPECT_EQ(allowed(accounts[0], row.mode), row.owner) << row.mode;
    EXPECT_EQ(allowed(accounts[1], row.mode), row.member) << row.mode;
    EXPECT_EQ(allowed(accounts[2], row.mode), row.other) << row.mode;
    EXPECT_EQ(allowed(accounts[3], row.mode), "rw") << row.mode;
  }
}

TEST(FileFactsTest, of_an_account_name_the_folder_that_keeps_it_out_also_behind_a_link) {
  const test::TestRoot root;
  const QString real = root.path() + QStringLiteral("/real");
  const QString link = root.path() + QStringLiteral("/link");
  test::write_file(real + QStringLiteral("/folder/file"), "x");
  ASSERT_TRUE(QFile::link(real + QStringLiteral("/folder"), link));
  const Account account{QStringLiteral("panel"), 54321, {54321}};
  const auto open = [](const QString &path, mode_t mode) { ::chmod(QFile::encodeName(path).constData(), mode); };
  open(root.path(), 0711);
  open(real, 0711);
  open(real + QStringLiteral("/folder"), 0711);
  open(real + QStringLiteral("/folder/file"), 0644);
  const QString file = link + QStringLiteral("/file");
  const QString above = look_at_file_as(account, root.path()).barrier;
  if (!above.isEmpty())
    GTEST_SKIP() << "needs a folder for temporary files that everybody may enter, unlike " << above.toStdString();
  EXPECT_TRUE(look_at_file_as(account, file).is_readable);
  EXPECT_FALSE(look_at_file_as(account, file).is_writable);
  EXPECT_EQ(look_at_file_as(account, file).kind, Kind::regular);
  open(real, 0700);
  EXPECT_FALSE(look_at_file_as(account, file).is_readable);
  EXPECT_EQ(look_at_file_as(account, file).barrier.toStdString(), real.toStdString());
  open(root.path(), 0700);
  EXPECT_EQ(look_at_file_as(account, file).barrier.toStdString(), root.path().toStdString());
  EXPECT_EQ(look_at_file_as(account, root.path() + QStringLiteral("/no")).kind, Kind::missing);
}

TEST(AccountTest, has_the_groups_that_name_it_and_its_own_one) {
  const test::TestRoot root;
  test::write_file(root.path() + QStringLiteral("/etc/passwd"), "root:x:0:0:root:/root:/bin/bash\n"
                                                                "broken\n"
                                                                "panel:x:12a:13::/:/bin/false\n"
                                                                "panel:x:990:991:Panel:/:/usr/sbin/nologin\n"
                                                                "panel:x:5:6:Second:/:/bin/false\n");
  test::write_file(root.path() + QStringLiteral("/etc/group"), "root:x:0:\npanel:x:991:\nfpga-reg:x:40:tester,panel\n"
                                                               "others:x:41:panels,tester\nlone:x:42:panel");
  const Outcome<Account> account = find_account(root.path(), QStringLiteral("panel"));
  ASSERT_TRUE(account);
  EXPECT_EQ(account->user, 990u);
  EXPECT_EQ(account->groups, (std::vector<gid_t>{991, 40, 42}));
}

TEST(FontSizesTest, are_those_of_files_with_such_names_the_smallest_first) {
  const test::TestRoot root;
  for (const char *name : {"9x15.pcf.gz", "10x20.pcf.gz", "9x15B.pcf.gz", "6x13O.pcf.gz", "x.pcf.gz", "7x14.pcf",
                           "6x9.pcf.gz", "06x9.pcf.gz", "6x0.pcf.gz"})
    test::write_file(root.path() + QStringLiteral("/f/") + QLatin1String(name), "x");
  EXPECT_EQ(font_sizes_in(root.path() + QStringLiteral("/f")), (QStringList{"6x9", "9x15", "10x20"}));
  EXPECT_EQ(font_sizes_in(root.path() + QStringLiteral("/none")), QStringList());
}

} // namespace
} // namespace buttondriver::buttonctl
