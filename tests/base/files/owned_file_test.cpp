// SPDX-License-Identifier: Apache-2.0
#include "files/owned_file.h"

#include "support/temporary_folder.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <fcntl.h>

namespace buttondriver {
namespace {

bool is_open(int descriptor) { return ::fcntl(descriptor, F_GETFD) != -1; }

TEST(OwnedFileTest, is_written_out_and_closed_at_its_end) {
  const test::TemporaryFolder folder;
  const std::string path = folder.path("text");
  int descriptor = -1;
  {
    const OwnedFile file(std::fopen(path.c_str(), "we"));
    ASSERT_TRUE(file);
    descriptor = ::fileno(file.get());
    std::fputs("text", file.get());
    EXPECT_EQ(test::read_file(path), "");
  }
  EXPECT_EQ(test::read_file(path), "text");
  EXPECT_FALSE(is_open(descriptor));
}

TEST(OwnedFileTest, made_of_a_descriptor_owns_it) {
  const test::TemporaryFolder folder;
  const std::string path = folder.write("text", "one line\n");
  OwnedDescriptor descriptor(::open(path.c_str(), O_RDONLY | O_CLOEXEC));
  const int number = descriptor.get();
  {
    const OwnedFile file = file_of(std::move(descriptor), "r");
    ASSERT_TRUE(file);
    char line[16];
    EXPECT_STREQ(std::fgets(line, sizeof line, file.get()), "one line\n");
  }
  EXPECT_FALSE(is_open(number));
}

TEST(OwnedFileTest, made_of_no_descriptor_is_null) {
  EXPECT_EQ(file_of(OwnedDescriptor(), "r"), nullptr);
  EXPECT_EQ(errno, EBADF);
}

TEST(OwnedFileTest, refused_mode_closes_the_descriptor_and_keeps_the_reason) {
  const int number = ::open("/dev/null", O_RDONLY | O_CLOEXEC);
  EXPECT_EQ(file_of(OwnedDescriptor(number), "w"), nullptr);
  EXPECT_EQ(errno, EINVAL);
  EXPECT_FALSE(is_open(number));
}

} // namespace
} // namespace buttondriver
