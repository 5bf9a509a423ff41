// SPDX-License-Identifier: Apache-2.0
#include "simulator/device_link/socket_file.h"

#include "support/temporary_folder.h"

#include <gtest/gtest.h>

#include <cstring>
#include <optional>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

namespace buttondriver::simulator {
namespace {

sockaddr_un address_of(const std::string &path) {
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  std::strncpy(address.sun_path, path.c_str(), sizeof address.sun_path - 1);
  return address;
}

/// Whether somebody listens at `path`.
bool can_connect(const std::string &path) {
  const int descriptor = ::socket(AF_UNIX, SOCK_STREAM, 0);
  const sockaddr_un address = address_of(path);
  const bool connected = ::connect(descriptor, reinterpret_cast<const sockaddr *>(&address), sizeof address) == 0;
  ::close(descriptor);
  return connected;
}

bool exists(const std::string &path) { return ::access(path.c_str(), F_OK) == 0; }

/// What a program leaves behind that was killed.
void leave_stale_socket(const std::string &path) {
  const int descriptor = ::socket(AF_UNIX, SOCK_STREAM, 0);
  const sockaddr_un address = address_of(path);
  ASSERT_EQ(::bind(descriptor, reinterpret_cast<const sockaddr *>(&address), sizeof address), 0);
  ::close(descriptor);
}

class SocketFileTest : public testing::Test {
protected:
  std::string failureAt(const std::string &at) const {
    SocketFile file;
    const auto listening = file.listen(QByteArray::fromStdString(at));
    return listening ? "" : listening.failure().text.toStdString();
  }

  const test::TemporaryFolder folder;
  const std::string path = folder.path("device");
};

TEST_F(SocketFileTest, is_for_this_user_only_and_goes_with_the_object) {
  {
    SocketFile file;
    ASSERT_TRUE(file.listen(QByteArray::fromStdString(path)));
    struct stat status {};
    ASSERT_EQ(::stat(path.c_str(), &status), 0);
    EXPECT_TRUE(S_ISSOCK(status.st_mode));
    EXPECT_EQ(status.st_mode & 0777U, 0600U);
    EXPECT_TRUE(can_connect(path));
  }
  EXPECT_FALSE(exists(path));
}

TEST_F(SocketFileTest, replaces_a_socket_that_nobody_listens_on) {
  leave_stale_socket(path);
  ASSERT_FALSE(can_connect(path));
  SocketFile file;
  EXPECT_TRUE(file.listen(QByteArray::fromStdString(path)));
  EXPECT_TRUE(can_connect(path));
}

TEST_F(SocketFileTest, leaves_a_socket_alone_that_another_program_listens_on) {
  SocketFile first;
  ASSERT_TRUE(first.listen(QByteArray::fromStdString(path)));
  EXPECT_EQ(failureAt(path), "another program listens there");
  EXPECT_TRUE(can_connect(path));
}

TEST_F(SocketFileTest, leaves_other_files_alone) {
  folder.write("file", "content");
  EXPECT_EQ(failureAt(folder.path("file")), "another file is there that is no socket");
  EXPECT_EQ(test::read_file(folder.path("file")), "content");
}

TEST_F(SocketFileTest, says_how_long_a_path_may_be) {
  const std::string longest = folder.path(std::string(107 - folder.path("").size(), 'x'));
  EXPECT_EQ(failureAt(longest), "");
  EXPECT_EQ(failureAt(longest + 'x'), "the path has 108 bytes, and a socket's has 107 at most");
  EXPECT_EQ(failureAt(folder.path("nowhere/device")), "No such file or directory");
}

TEST_F(SocketFileTest, does_not_remove_what_another_program_has_put_there_since) {
  std::optional<SocketFile> first(std::in_place);
  ASSERT_TRUE(first->listen(QByteArray::fromStdString(path)));
  ::unlink(path.c_str());
  SocketFile second;
  ASSERT_TRUE(second.listen(QByteArray::fromStdString(path)));
  first.reset();
  EXPECT_TRUE(can_connect(path));
}

} // namespace
} // namespace buttondriver::simulator
