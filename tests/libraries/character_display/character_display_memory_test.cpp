// SPDX-License-Identifier: Apache-2.0
#include "libraries/character_display/character_display_memory.h"

#include <gtest/gtest.h>

namespace buttondriver::simulator {
namespace {

const std::string blank_line(20, ' ');

class CharacterDisplayMemoryTest : public testing::Test {
protected:
  void store(std::ptrdiff_t offset, std::uint32_t word) {
    const auto address = reinterpret_cast<std::intptr_t>(_memory.registerBase()) + offset;
    _memory.store(reinterpret_cast<volatile std::uint32_t *>(address), word);
  }

  CharacterDisplayMemory _memory;
};

TEST_F(CharacterDisplayMemoryTest, is_blank_at_first) {
  for (std::size_t display = 0; display < 2; ++display)
    for (std::size_t line = 0; line < 2; ++line)
      EXPECT_EQ(_memory.line(display, line), blank_line);
}

TEST_F(CharacterDisplayMemoryTest, takes_a_character_when_its_own_strobe_rises) {
  store(0x8054, 0x01000041);
  EXPECT_EQ(_memory.line(0, 0), blank_line);
  store(0x8054, 0x01000141);
  store(0x8054, 0x01000142);
  EXPECT_EQ(_memory.line(0, 0), "A" + std::string(19, ' '));
  EXPECT_EQ(_memory.line(1, 0), blank_line);
  store(0x8054, 0x00430142);
  store(0x8054, 0x01430142);
  EXPECT_EQ(_memory.line(0, 0), "A" + std::string(19, ' '));
  EXPECT_EQ(_memory.line(1, 0), "C" + std::string(19, ' '));
}

TEST_F(CharacterDisplayMemoryTest, goes_on_in_the_second_line_and_back_with_home) {
  for (int i = 0; i < 21; ++i) {
    store(0x8054, 0x01000058);
    store(0x8054, 0x01000158);
  }
  EXPECT_EQ(_memory.line(0, 0), std::string(20, 'X'));
  EXPECT_EQ(_memory.line(0, 1), "X" + std::string(19, ' '));
  for (const std::uint32_t character : {0x0BU, 0x59U}) {
    store(0x8054, 0x01000000 | character);
    store(0x8054, 0x01000100 | character);
  }
  EXPECT_EQ(_memory.line(0, 0), "Y" + std::string(19, 'X'));
}

TEST_F(CharacterDisplayMemoryTest, records_each_store_and_keeps_the_last_in_its_block) {
  store(0x8054, 0x01000041);
  store(0x8054, 0x01000141);
  store(0, 5);
  store(0x8058, 6);
  store(-4, 7);
  const auto stores = _memory.stores();
  const std::ptrdiff_t offsets[] = {0x8054, 0x8054, 0, 0x8058, -4};
  const std::uint32_t words[] = {0x01000041, 0x01000141, 5, 6, 7};
  ASSERT_EQ(stores.size(), 5U);
  for (std::size_t i = 0; i < stores.size(); ++i) {
    EXPECT_EQ(stores[i].offset, offsets[i]);
    EXPECT_EQ(stores[i].word, words[i]);
  }
  EXPECT_EQ(_memory.wordAt(0x8054), 0x01000141U);
  EXPECT_EQ(_memory.wordAt(0), 5U);
}

TEST_F(CharacterDisplayMemoryTest, waits_no_longer_than_asked_for) {
  store(0x8054, 0);
  EXPECT_TRUE(_memory.waitForStores(1, std::chrono::milliseconds(0)));
  EXPECT_FALSE(_memory.waitForStores(2, std::chrono::milliseconds(1)));
}

} // namespace
} // namespace buttondriver::simulator
