// SPDX-License-Identifier: Apache-2.0
#include "files/owned_descriptor.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <fcntl.h>
#include <type_traits>
#include <utility>

namespace buttondriver {
namespace {

static_assert(!std::is_copy_constructible_v<OwnedDescriptor> && !std::is_copy_assignable_v<OwnedDescriptor>);
static_assert(!std::is_convertible_v<int, OwnedDescriptor>);

int open_anything() { return ::open("/dev/null", O_RDONLY | O_CLOEXEC); }

bool is_open(int descriptor) { return ::fcntl(descriptor, F_GETFD) != -1; }

TEST(OwnedDescriptorTest, is_closed_at_the_end_of_its_owner) {
  const int descriptor = open_anything();
  {
    const OwnedDescriptor owner(descriptor);
    EXPECT_TRUE(owner);
    EXPECT_EQ(owner.get(), descriptor);
    EXPECT_TRUE(is_open(descriptor));
  }
  EXPECT_FALSE(is_open(descriptor));
}

TEST(OwnedDescriptorTest, is_none_by_default_and_when_the_number_is_negative) {
  const OwnedDescriptor owners[] = {OwnedDescriptor(), OwnedDescriptor(-1)};
  for (const OwnedDescriptor &owner : owners) {
    EXPECT_FALSE(owner);
    EXPECT_EQ(owner.get(), -1);
  }
}

TEST(OwnedDescriptorTest, zero_is_a_descriptor_like_any_other) {
  OwnedDescriptor owner(0);
  EXPECT_TRUE(owner);
  EXPECT_EQ(owner.release(), 0);
}

TEST(OwnedDescriptorTest, moves_to_its_new_owner) {
  const int descriptor = open_anything();
  OwnedDescriptor first(descriptor);
  OwnedDescriptor second(std::move(first));
  EXPECT_FALSE(first);
  EXPECT_EQ(second.get(), descriptor);
  const int replaced = open_anything();
  OwnedDescriptor third(replaced);
  third = std::move(second);
  EXPECT_FALSE(second);
  EXPECT_EQ(third.get(), descriptor);
  EXPECT_TRUE(is_open(descriptor));
  EXPECT_FALSE(is_open(replaced));
}

TEST(OwnedDescriptorTest, moved_to_itself_stays_open) {
  const int descriptor = open_anything();
  OwnedDescriptor owner(descriptor);
  OwnedDescriptor &same = owner;
  owner = std::move(same);
  EXPECT_EQ(owner.get(), descriptor);
  EXPECT_TRUE(is_open(descriptor));
}

TEST(OwnedDescriptorTest, released_stays_open_and_has_no_owner) {
  OwnedDescriptor owner(open_anything());
  const OwnedDescriptor other(owner.release());
  EXPECT_FALSE(owner);
  owner.reset();
  EXPECT_TRUE(is_open(other.get()));
}

TEST(OwnedDescriptorTest, reset_closes_the_old_one_and_takes_the_new_one) {
  const int old = open_anything();
  const int fresh = open_anything();
  OwnedDescriptor owner(old);
  owner.reset(fresh);
  EXPECT_FALSE(is_open(old));
  EXPECT_EQ(owner.get(), fresh);
  owner.reset();
  EXPECT_FALSE(is_open(fresh));
  EXPECT_FALSE(owner);
}

TEST(OwnedDescriptorTest, closing_leaves_errno_as_it_is) {
  constexpr int closed = 1'000'000;
  OwnedDescriptor owner(closed);
  errno = ENOENT;
  owner.reset();
  EXPECT_EQ(errno, ENOENT);
}

} // namespace
} // namespace buttondriver
