// SPDX-License-Identifier: Apache-2.0
#include "logging/channels/text_queue.h"

#include <gtest/gtest.h>

#include <random>
#include <string>

namespace buttondriver {
namespace {

TEST(TextQueueTest, gives_bytes_back_in_their_order_whatever_the_sizes) {
  std::mt19937 random(7);
  TextQueue queue;
  std::string expected;
  for (int i = 0; i < 2000; ++i) {
    std::uniform_int_distribution<std::size_t> size(0, i % 50 == 0 ? 200'000 : 2000);
    std::string text(size(random), '\0');
    for (char &character : text)
      character = static_cast<char>(random());
    queue.append(text);
    expected += text;
    for (std::size_t left = size(random); left > 0 && !queue.isEmpty();) {
      const std::string_view front = queue.front().substr(0, left);
      ASSERT_FALSE(front.empty());
      ASSERT_TRUE(expected.compare(0, front.size(), front) == 0);
      expected.erase(0, front.size());
      left -= front.size();
      queue.removeFront(front.size());
    }
    ASSERT_EQ(queue.size(), expected.size());
  }
  queue.clear();
  EXPECT_TRUE(queue.isEmpty());
  EXPECT_EQ(queue.front(), "");
  queue.append("again");
  EXPECT_EQ(queue.front(), "again");
}

TEST(TextQueueTest, stays_in_one_place_as_long_as_little_waits) {
  TextQueue queue;
  queue.append("first");
  const char *const place = queue.front().data();
  for (int i = 0; i < 100'000; ++i) {
    queue.removeFront(queue.size());
    queue.append("another");
    ASSERT_EQ(queue.front().data(), place);
  }
}

} // namespace
} // namespace buttondriver
