// SPDX-License-Identifier: Apache-2.0
#include "panel/registers/low_memory.h"

#include "daemon/panel/system_calls.h"

#include <gmock/gmock.h>

#include <sys/mman.h>
#include <vector>

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

/// What is asked of the kernel where it has no memory of its own choice below 4 GiB.
class LowMemoryPlacesTest : public testing::Test {
protected:
  static constexpr std::size_t count = 5000;
  static constexpr std::uint64_t step = std::uint64_t{1} << 28;

  /// Has `answer` called for each wish, and fails the requests that name none.
  template <typename Answer> void answerWishes(Answer answer) {
    system_calls::mmap = [this, answer](void *wish, std::size_t bytes, int) -> void * {
      if (bytes != count * sizeof(std::uint16_t))
        return nullptr;
      if (!wish)
        return MAP_FAILED;
      wishes.push_back(reinterpret_cast<std::uintptr_t>(wish));
      return answer(bytes);
    };
  }

  const system_calls::Restore restore;
  std::vector<std::uint64_t> wishes;
};

TEST_F(LowMemoryPlacesTest, are_asked_for_one_after_the_other) {
  LowMemory memory;
  answerWishes([this](std::size_t) { return wishes.size() < 3 ? MAP_FAILED : nullptr; });
  std::uint16_t *const words = memory.words(count);
  ASSERT_NE(words, nullptr);
  EXPECT_TRUE(has_low_address(words + count - 1));
  EXPECT_THAT(wishes, testing::ElementsAre(step, 2 * step, 3 * step));
}

TEST_F(LowMemoryPlacesTest, memory_above_4_GiB_is_given_back) {
  if (sizeof(void *) == 4)
    GTEST_SKIP() << "there is none";
  LowMemory memory;
  void *high = nullptr;
  answerWishes([&](std::size_t bytes) -> void * {
    if (high)
      return nullptr;
    high = ::mmap(nullptr, bytes + 1, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    return high;
  });
  std::uint16_t *const words = memory.words(count);
  ASSERT_NE(words, nullptr);
  EXPECT_TRUE(has_low_address(words + count - 1));
  EXPECT_EQ(wishes.size(), 2U);
  ASSERT_FALSE(has_low_address(high));
  EXPECT_EQ(::msync(high, 1, MS_ASYNC), -1) << "it is still mapped";
}

TEST_F(LowMemoryPlacesTest, are_asked_for_again_after_there_was_none) {
  LowMemory memory;
  answerWishes([](std::size_t) { return MAP_FAILED; });
  EXPECT_EQ(memory.words(count), nullptr);
  EXPECT_EQ(wishes.size(), 15U);
  EXPECT_LT(wishes.back(), std::uint64_t{1} << 32);
  EXPECT_EQ(memory.words(count), nullptr);
  system_calls::mmap = nullptr;
  EXPECT_NE(memory.words(count), nullptr);
}

} // namespace
} // namespace buttondriver::panel
