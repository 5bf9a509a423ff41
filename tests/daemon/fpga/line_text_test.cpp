// SPDX-License-Identifier: Apache-2.0
#include "fpga/line_text.h"

#include "counted_allocations.h"
#include "fpga/tasks.h"

#include <gtest/gtest.h>

#include <string>

namespace buttondriver {
namespace {

TEST(LineTextTest, keeps_any_text_when_the_original_is_gone) {
  for (const std::size_t size : {0, 1, 16, 31, 32, 33, 1000, 100000}) {
    std::string original(size, 'x');
    if (size > 1)
      original[size / 2] = '\0';
    const std::string expected = original;
    const std::size_t before = test::allocations();
    const LineText text(original);
    EXPECT_EQ(test::allocations() - before, size > 32 ? 1U : 0U) << size;
    original.assign(size, 'y');
    EXPECT_EQ(text.view(), expected) << size;
    EXPECT_EQ(text.size(), size);
    EXPECT_EQ(TextLineTask(0, 0, expected, true).keptBytes(), size);
    EXPECT_EQ(SubTextLineTask(0, 0, 0, 0, expected, 0, 0).keptBytes(), size);
  }
}

} // namespace
} // namespace buttondriver
