// SPDX-License-Identifier: Apache-2.0
#include "buttonctl/doctor/checks/daemon_check.h"
#include "buttonctl/doctor/checks/service_check.h"

#include "buttonctl/doctor/shown.h"
#include "buttonctl/support/fake_daemon.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <gtest/gtest.h>

namespace buttondriver::buttonctl {
namespace {

using test::shown_in;

const QByteArray unit = "[Service]\n"
                        "#ExecStart=/not/this\n"
                        "Environment=BUTTONDRIVER_PORT=3003\n"
                        "ExecStart=/usr/bin/buttondriver no-map-file '' ${BUTTONDRIVER_PORT}\n"
                        "ExecStartPost=/usr/libexec/buttondriver/ping-check 127.0.0.1 ${BUTTONDRIVER_PORT} 20\n";

/// All of a literal, zeros included, without the one at its end.
template <std::size_t size> QByteArray bytes(const char (&text)[size]) {
  return QByteArray(text, static_cast<int>(size - 1));
}

class ServiceTest : public testing::Test {
protected:
  void write(const char *path, const QByteArray &content) const { test::write_file(path_of(path), content); }
  QString path_of(const char *path) const { return root.path() + QLatin1String(path); }
  void link(const char *path) const {
    QDir().mkpath(QFileInfo(path_of(path)).path());
    ASSERT_TRUE(QFile::link(QStringLiteral("/nowhere"), path_of(path)));
  }
  void writeProgram(const char *path, const QByteArray &content) const {
    write(path, content);
    QFile::setPermissions(path_of(path), QFile::ReadOwner | QFile::ExeOwner);
  }

  test::TestRoot root;
};

TEST_F(ServiceTest, is_what_the_unit_and_its_drop_ins_say) {
  EXPECT_EQ(find_service(root.path()).unit, QString());
  write("/usr/lib/systemd/system/buttondriver.service", unit);
  ServiceFacts facts = find_service(root.path());
  EXPECT_EQ(facts.unit, path_of("/usr/lib/systemd/system/buttondriver.service"));
  EXPECT_EQ(facts.program.toStdString(), "/usr/bin/buttondriver");
  EXPECT_EQ(facts.port, 3003);
  EXPECT_FALSE(facts.is_enabled);
  EXPECT_FALSE(facts.is_running);
  // Of two with a name, that of the administrator counts; the others in the order of their names.
  write("/usr/lib/systemd/system/buttondriver.service.d/b.conf", "[Service]\nEnvironment=BUTTONDRIVER_PORT=1\n");
  write("/etc/systemd/system/buttondriver.service.d/b.conf",
        "[Service]\nEnvironment=A=1 BUTTONDRIVER_PORT=4000\nExecStart=\nExecStart=-/opt/b/buttondriver x\n");
  write("/usr/lib/systemd/system/buttondriver.service.d/a.conf", "[Service]\nEnvironment=BUTTONDRIVER_PORT=2\n");
  facts = find_service(root.path());
  EXPECT_EQ(facts.program.toStdString(), "/opt/b/buttondriver");
  EXPECT_EQ(facts.port, 4000);
  write("/etc/systemd/system/buttondriver.service", "[Service]\nExecStart=/etc/mine\n");
  EXPECT_EQ(find_service(root.path()).unit, path_of("/etc/systemd/system/buttondriver.service"));
}

TEST_F(ServiceTest, is_enabled_by_its_device_and_running_while_systemd_says_so) {
  write("/usr/lib/systemd/system/buttondriver.service", unit);
  const auto says = [&] { return shown_in(root, {check_service(find_service(root.path()))}); };
  const std::string file = "service: ROOT/usr/lib/systemd/system/buttondriver.service, ";
  EXPECT_EQ(says(), "note   " + file + "not running and not enabled\n");
  link("/etc/systemd/system/dev-fpga\\x2dreg.device.wants/buttondriver.service");
  EXPECT_EQ(says(), "note   " + file + "not running and enabled\n");
  link("/run/systemd/units/invocation:buttondriver.service");
  EXPECT_EQ(says(), "ok     " + file + "running and enabled\n");
}

TEST_F(ServiceTest, names_the_program_and_its_version) {
  struct Row {
    const char *unit_starts; ///< null for no unit
    QByteArray content;      ///< of /usr/bin/buttondriver; empty for none
    const char *says;
  };
  const QByteArray version_text = bytes("\x7f\0buttondriver:x\0buttondriver 0.1.0\0z");
  const QByteArray later_text = bytes("buttondriver 12.3.45\0");
  const Row rows[] = {
      {nullptr, version_text, "ok     program: ROOT/usr/bin/buttondriver is version 0.1.0, as buttonctl is\n"},
      {"/usr/bin/buttondriver", version_text,
       "ok     program: ROOT/usr/bin/buttondriver is version 0.1.0, as buttonctl is\n"},
      {nullptr, later_text, "note   program: ROOT/usr/bin/buttondriver is version 12.3.45, and buttonctl is 0.1.0\n"},
      {nullptr, "buttondriver 0.1", "note   program: ROOT/usr/bin/buttondriver does not tell its version\n"},
      {nullptr, "", "note   program: there is no buttondriver in the folders of PATH\n"},
      {"/opt/none", version_text,
       "FAULT  program: ROOT/opt/none is missing, which the service starts\n"
       "       fix: systemctl cat buttondriver    # ExecStart= names the program\n"},
  };
  for (const Row &row : rows) {
    if (!row.content.isEmpty())
      writeProgram("/usr/bin/buttondriver", row.content);
    ServiceFacts service;
    service.program = QLatin1String(row.unit_starts);
    EXPECT_EQ(shown_in(root, {check_program(service, root.path(), {"bin", "/bin", "/usr/bin"}, "0.1.0")}), row.says);
    QFile::remove(path_of("/usr/bin/buttondriver"));
  }
}

TEST_F(ServiceTest, is_started_where_nothing_listens) {
  struct Row {
    ServiceFacts service;
    const char *fix;
  };
  const test::RefusingPort nobody;
  const int port = nobody.port();
  const int other = port == 4000 ? 4001 : 4000;
  const std::string other_port =
      "buttonctl --port " + std::to_string(other) + " doctor    # the port that the service has";
  const std::string by_hand = "buttondriver map '' " + std::to_string(port) + " &";
  const QString file = QStringLiteral("u");
  const Row rows[] = {
      {{}, by_hand.c_str()},
      {{file, {}, port, true, false},
       "systemctl start buttondriver    # its journal: journalctl -u buttondriver -n 20"},
      {{file, {}, 0, false, false},
       "systemctl enable --now buttondriver    # its journal: journalctl -u buttondriver -n 20"},
      {{file, {}, port, true, true},
       "journalctl -u buttondriver -n 20    # the service runs, and has no server or another port"},
      {{file, {}, other, true, true}, other_port.c_str()},
  };
  for (const Row &row : rows)
    EXPECT_EQ(check_daemon({QStringLiteral("127.0.0.1"), nobody.port()}, row.service).fix.toStdString(), row.fix);
}

TEST(VirtualDaemonTest, is_started_as_a_simulator) {
  const test::RefusingPort nobody;
  const Endpoint endpoint{QStringLiteral("127.0.0.1"), nobody.port()};
  const std::string rest = "map '' " + std::to_string(nobody.port()) + " &";
  EXPECT_EQ(check_virtual_daemon(endpoint, {}).fix.toStdString(), "buttondriver-sim " + rest);
  EXPECT_EQ(check_virtual_daemon(endpoint, QStringLiteral("/a %2")).fix.toStdString(),
            "buttondriver-sim --root '/a %2' " + rest);
}

} // namespace
} // namespace buttondriver::buttonctl
