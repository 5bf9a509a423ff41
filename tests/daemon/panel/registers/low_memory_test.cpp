// SPDX-License-Identifier: Apache-2.0
#include "panel/registers/low_memory.h"

#include <gtest/gtest.h>

namespace buttondriver::panel {
namespace {

TEST(LowMemoryTest, lies_below_4_GiB_to_its_end_and_can_be_written) {
  LowMemory memory;
  for (const std::size_t count : {std::size_t{1}, std::size_t{65535}, LowMemory::most_words}) {
    std::uint16_t *const words = memory.words(count);
    ASSERT_NE(words, nullptr) << count;
    EXPECT_TRUE(has_low_address(words + count - 1)) << count;
    words[0] = 1;
    words[count - 1] = 2;
  }
}

TEST(LowMemoryTest, is_kept_until_more_is_wanted) {
  LowMemory memory;
  std::uint16_t *const words = memory.words(1000);
  ASSERT_NE(words, nullptr);
  words[999] = 7;
  EXPECT_EQ(memory.words(2), words);
  EXPECT_EQ(memory.words(1000), words);
  EXPECT_EQ(words[999], 7);
}

TEST(LowMemoryTest, is_bounded) {
  LowMemory memory;
  EXPECT_EQ(memory.words(LowMemory::most_words + 1), nullptr);
  EXPECT_NE(memory.words(LowMemory::most_words), nullptr);
  EXPECT_EQ(memory.words(LowMemory::most_words + 1), nullptr);
  EXPECT_NE(memory.words(1), nullptr);
}

TEST(LowMemoryTest, addresses_are_told_apart_at_4_GiB) {
  const auto address = [](std::uint64_t number) {
    return reinterpret_cast<const void *>(static_cast<std::uintptr_t>(number));
  };
  EXPECT_TRUE(has_low_address(address(0)));
  EXPECT_TRUE(has_low_address(address(0xFFFFFFFF)));
  EXPECT_EQ(has_low_address(address(0x100000000)), sizeof(void *) == 4);
}

} // namespace
} // namespace buttondriver::panel
