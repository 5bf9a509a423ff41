// SPDX-License-Identifier: Apache-2.0
#include "simulator/simulation/listening_program.h"

#include "support/temporary_folder.h"

#include <QTcpServer>

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <unistd.h>

namespace buttondriver::simulator {
namespace {

/// What the system tells of three programs: two listen, on IPv4 and on IPv6, and one is connected.
class ListeningProgramTest : public testing::Test {
protected:
  ListeningProgramTest() {
    const std::string head = "  sl  local_address rem_address   st tx_queue rx_queue tr tm->when retrnsmt   uid  "
                             "timeout inode\n";
    addFolder("net");
    folder.write("net/tcp",
                 head +
                     "   0: 0100007F:0BBB 00000000:0000 0A 00000000:00000000 00:00000000 00000000  1000        0 501 1 "
                     "000000000d751f8b 100 0 0 10 0\n"
                     "   1: 0100007F:1F90 0100007F:9C40 01 00000000:00000000 00:00000000 00000000  1000        0 502 1 "
                     "000000000d751f8b 100 0 0 10 0\n"
                     "   2: 00000000:0016 00000000:0000 0A 00000000:00000000 00:00000000 00000000     0        0 504 1 "
                     "000000000d751f8b 100 0 0 10 0\n");
    folder.write("net/tcp6",
                 head + "   0: 00000000000000000000000000000000:0BBC 00000000000000000000000000000000:0000 0A "
                        "00000000:00000000 00:00000000 00000000  1000        0 503 1 000000000d751f8b 100 0 0 10 0\n"
                        "   1: 00000000000000000000000000000000:0BBE 00000000000000000000000000000000:0000 0A "
                        "00000000:00000000 00:00000000 00000000  1000        0 505 1 000000000d751f8b 100 0 0 10 0\n"
                        "   2: 00000000000000000000000000000000:0BBF 00000000000000000000000000000000:0000 0A "
                        "00000000:00000000 00:00000000 00000000  1000        0 506 1 000000000d751f8b 100 0 0 10 0\n");
    addProcess("41", "other", {"502"});
    addProcess("123", "buttondriver", {"7", "501"});
    addProcess("124", "panel", {"503"});
    // The system tells 15 characters of a name.
    addProcess("125", "buttondriver-si", {"505"});
    folder.write("125/cmdline", std::string("build/bin/buttondriver-sim\0--root\0/x", 36));
    addProcess("126", "fifteen-letters", {"506"});
    folder.write("126/cmdline", std::string("python3\0fifteen-letters-or-more", 31));
    addProcess("self", "buttondriver", {"504"}); // a link to one of the others
    folder.write("version", "no process");
  }

  void addFolder(const std::string &name) { std::filesystem::create_directories(folder.path(name)); }
  void addProcess(const std::string &id, const std::string &name, const std::vector<std::string> &sockets) {
    addFolder(id + "/fd");
    folder.write(id + "/comm", name + "\n");
    for (const std::string &socket : sockets)
      std::filesystem::create_symlink("socket:[" + socket + "]", folder.path(id + "/fd/" + socket));
  }
  std::string program(std::uint16_t port) const { return listening_program(port, folder.path("")).value_or("nobody"); }

  const test::TemporaryFolder folder;
};

TEST_F(ListeningProgramTest, is_named_with_its_number) {
  EXPECT_EQ(program(3003), "buttondriver (pid 123)");
  EXPECT_EQ(program(3004), "panel (pid 124)");
}

TEST_F(ListeningProgramTest, has_a_long_name_whole_where_its_command_line_begins_with_it) {
  EXPECT_EQ(program(3006), "buttondriver-sim (pid 125)");
  EXPECT_EQ(program(3007), "fifteen-letters (pid 126)");
}

TEST_F(ListeningProgramTest, is_another_program_where_its_sockets_are_not_told) {
  EXPECT_EQ(program(22), "another program");
}

TEST_F(ListeningProgramTest, is_nobody_on_a_port_that_is_free_or_only_connected) {
  EXPECT_EQ(program(3005), "nobody");
  EXPECT_EQ(program(8080), "nobody");
  EXPECT_EQ(listening_program(3003, folder.path("nowhere")), std::nullopt);
}

TEST(ListeningProgramOfThisMachineTest, is_this_test) {
  QTcpServer server;
  ASSERT_TRUE(server.listen(QHostAddress(QHostAddress::LocalHost)));
  EXPECT_EQ(listening_program(server.serverPort()), "simulation_test (pid " + std::to_string(::getpid()) + ")");
  const std::uint16_t port = server.serverPort();
  server.close();
  EXPECT_EQ(listening_program(port), std::nullopt);
}

} // namespace
} // namespace buttondriver::simulator
