// SPDX-License-Identifier: Apache-2.0
#include "buttonctl/doctor/doctor.h"

#include "buttonctl/doctor/checks/device_check.h"
#include "buttonctl/doctor/shown.h"
#include "buttonctl/support/fake_daemon.h"

#include <QFile>

#include <gtest/gtest.h>

namespace buttondriver::buttonctl {
namespace {

using Kind = FileFacts::Kind;
using test::shown_in;

TEST(DeviceCheckTest, judges_the_node) {
  struct Row {
    FileFacts facts;
    const char *says;
    const char *user = "";
  };
  const std::string in_the_group =
      "FAULT  device: no permission to read and write /r/dev/fpga-reg\n"
      "       fix: groupadd -rf fpga-reg && usermod -aG fpga-reg \"${SUDO_USER:-$USER}\" && chgrp fpga-reg "
      "/r/dev/fpga-reg && chmod 660 /r/dev/fpga-reg    # counts from the next login, or the next start of the service";
  const Row rows[] = {
      {{Kind::character_device, true, true, {}}, "ok     device: /r/dev/fpga-reg"},
      {{Kind::missing, false, false, {}},
       "FAULT  device: there is no device node /r/dev/fpga-reg; the kernel's driver of the panel is not loaded\n"
       "       fix: udevadm trigger --action=add && udevadm settle && ls -l /r/dev/fpga-reg    # without a panel: "
       "buttondriver-sim"},
      {{Kind::regular, true, true, {}},
       "FAULT  device: /r/dev/fpga-reg is no device node\n"
       "       fix: mv -n /r/dev/fpga-reg /r/dev/fpga-reg.old && udevadm trigger --action=add"},
      {{Kind::character_device, true, false, {}}, in_the_group.c_str()},
      {{Kind::character_device, false, true, {}}, in_the_group.c_str()},
      {{Kind::character_device, true, false, {}},
       "FAULT  device: no permission to read and write /r/dev/fpga-reg\n"
       "       fix: groupadd -rf fpga-reg && usermod -aG fpga-reg panel && chgrp fpga-reg /r/dev/fpga-reg && chmod 660 "
       "/r/dev/fpga-reg    # counts from the next login, or the next start of the service",
       "panel"},
      {{Kind::character_device, false, false, QStringLiteral("/r/dev")},
       "FAULT  device: no permission to enter /r/dev, on the way to /r/dev/fpga-reg\n       fix: chmod a+x /r/dev"},
  };
  for (const Row &row : rows) {
    QStringList asked;
    const Finding finding = check_device(QStringLiteral("/r"), QLatin1String(row.user), [&](const QString &path) {
      asked += path;
      return row.facts;
    });
    EXPECT_EQ(shown(finding).toStdString(), row.says);
    EXPECT_EQ(asked, QStringList(QStringLiteral("/r/dev/fpga-reg")));
  }
}

TEST(DoctorTest, checks_what_is_on_this_machine_and_the_daemon) {
  struct Row {
    const char *host;
    bool is_virtual;
    std::vector<const char *> names;
  };
  const test::RefusingPort nobody;
  const Row rows[] = {
      {"127.0.0.1", false, {"configuration", "font", "levels", "device", "service", "program", "daemon"}},
      {"127.0.0.1", true, {"configuration", "font", "levels", "daemon"}},
      {"localhost", true, {"configuration", "font", "levels", "daemon"}},
      {"0.0.0.0", false, {"machine", "daemon"}},
  };
  for (const Row &row : rows) {
    test::TestRoot root;
    root.writeFontSize(8, 16);
    const Examination examination{root.path(), row.is_virtual, {QLatin1String(row.host), nobody.port()}, {}, {}, {}};
    std::vector<std::string> names;
    for (const Finding &finding : examine(examination, look_at_file))
      names.push_back(finding.name.toStdString());
    EXPECT_EQ(names, std::vector<std::string>(row.names.begin(), row.names.end())) << row.host;
  }
}

TEST(DoctorTest, of_another_machine_only_the_daemon_is_asked_and_the_fixes_are_for_that_machine) {
  const test::RefusingPort nobody;
  test::TestRoot root;
  const std::string port = std::to_string(nobody.port());
  // No address of this machine, for the doctor; the system takes it for one.
  const Examination examination{root.path(), false, {QStringLiteral("0.0.0.0"), nobody.port()}, {}, {}, {}};
  EXPECT_EQ(shown_in(root, examine(examination, look_at_file)),
            "note   machine: 0.0.0.0 is another machine, or another name of this one: for its files, its device and "
            "its service, run there: buttonctl doctor --host 127.0.0.1\n"
            "FAULT  daemon: nothing listens on 0.0.0.0 port " +
                port +
                "\n       fix: on that machine: systemctl start buttondriver; journalctl -u buttondriver -n 20\n");
}

TEST(DoctorTest, looks_with_the_eyes_of_the_user_that_is_named) {
  test::TestRoot root;
  root.writeFontSize(8, 16);
  test::write_file(root.path() + QStringLiteral("/etc/passwd"), "panel:x:54321:54322::/:/bin/false\n");
  QFile::setPermissions(root.launcherConfiguration(), QFile::ReadOwner | QFile::WriteOwner);
  QFile::setPermissions(root.path(), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner | QFile::ExeOther);
  Examination examination{root.path(), true, {}, QStringLiteral("panel"), {}, {}};
  const Outcome<FileLook> look = look_of(examination);
  ASSERT_TRUE(look);
  EXPECT_FALSE((*look)(root.launcherConfiguration()).is_readable);
  examination.user.clear();
  EXPECT_TRUE((*look_of(examination))(root.launcherConfiguration()).is_readable);
  examination.user = QStringLiteral("nobody-here");
  ASSERT_FALSE(look_of(examination));
  EXPECT_EQ(QString(look_of(examination).failure().text).replace(root.path(), QStringLiteral("ROOT")).toStdString(),
            "there is no user 'nobody-here' in ROOT/etc/passwd");
}

TEST(ShellWordTest, is_quoted_when_the_shell_would_change_it) {
  struct Row {
    const char *text;
    const char *word;
  };
  const Row rows[] = {
      {"/etc/rv1000e/launcher.cfg", "/etc/rv1000e/launcher.cfg"},
      {"a b", "'a b'"},
      {"$HOME", "'$HOME'"},
      {"it's", "'it'\\''s'"},
      {"", "''"},
  };
  for (const Row &row : rows)
    EXPECT_EQ(shell_word(QLatin1String(row.text)).toStdString(), row.word);
}

} // namespace
} // namespace buttondriver::buttonctl
