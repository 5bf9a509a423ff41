// SPDX-License-Identifier: Apache-2.0
#include "files/regular_file.h"

#include "support/temporary_folder.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <filesystem>
#include <string>

namespace buttondriver {
namespace {

TEST(RegularFileTest, opens_a_regular_file_also_through_a_link) {
  const test::TemporaryFolder folder;
  const std::string path = folder.write("file", "content");
  const std::string link = folder.path("link");
  std::filesystem::create_symlink(path, link);
  for (const std::string &name : {path, link}) {
    const OwnedDescriptor descriptor = open_regular_file(name.c_str());
    ASSERT_TRUE(descriptor) << name;
    char content[16];
    EXPECT_EQ(::read(descriptor.get(), content, sizeof content), 7) << name;
    EXPECT_EQ(::fcntl(descriptor.get(), F_GETFD) & FD_CLOEXEC, FD_CLOEXEC) << name;
  }
}

TEST(RegularFileTest, makes_a_missing_file_when_asked_to) {
  const test::TemporaryFolder folder;
  const std::string path = folder.path("file");
  const mode_t umask_before = ::umask(0);
  const OwnedDescriptor descriptor = open_regular_file(path.c_str(), O_WRONLY | O_CREAT);
  ::umask(umask_before);
  ASSERT_TRUE(descriptor);
  struct stat status = {};
  ASSERT_EQ(::fstat(descriptor.get(), &status), 0);
  EXPECT_EQ(status.st_mode & 0777, mode_t{0666});
}

TEST(RegularFileTest, refuses_what_is_missing_or_not_regular_and_leaves_nothing_open) {
  const test::TemporaryFolder folder;
  const std::string pipe = folder.path("pipe");
  ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
  struct Row {
    std::string path;
    int reason;
  };
  const Row rows[] = {
      {folder.path("missing"), ENOENT}, {folder.path("."), EINVAL}, {pipe, EINVAL}, {"/dev/null", EINVAL}};
  const int lowest_free = OwnedDescriptor(::open("/dev/null", O_RDONLY | O_CLOEXEC)).get();
  for (const Row &row : rows) {
    EXPECT_FALSE(open_regular_file(row.path.c_str())) << row.path;
    EXPECT_EQ(errno, row.reason) << row.path;
  }
  EXPECT_EQ(OwnedDescriptor(::open("/dev/null", O_RDONLY | O_CLOEXEC)).get(), lowest_free);
}

} // namespace
} // namespace buttondriver
