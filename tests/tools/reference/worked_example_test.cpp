// SPDX-License-Identifier: Apache-2.0
#include "tools/reference/contents/worked_example.h"

#include <gtest/gtest.h>

namespace buttondriver::documents {
namespace {

struct Row {
  std::uint32_t opcode;
  const char *frame;
  bool consistent;
  const char *why;
};

constexpr Row rows[] = {
    {12, "00 00 00 04 00 00 00 0c", true, "a whole frame"},
    {12, "00 00 00 05 00 00 00 0c", false, "the length is not that of the message"},
    {12, "00 00 00 04 00 00 00 0d", false, "the opcode is another message's"},
    {12, "00 00 00 08 00 00 00 0c 00 00 00 00", false, "the message is longer than its layout"},
    {12, "00 00 00 04 00 00 00 0C", false, "a capital"},
    {12, "00 00 00 04 00 00 00 c", false, "half a byte"},
    {12, "00 00 00 04  00 00 00 0c", false, "two blanks"},
    {12, "00 00 00 04 00 00 00 0c ", false, "a blank at the end"},
    {12, "0000 00 04 00 00 00 0c", false, "no blank"},
    {12, "", false, "nothing"},
    {16, "00 00 00 04 00 00 00 10", false, "a field is missing"},
    {15, "00 00 00 16 00 00 00 0f 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 02 41 00", true, "a text"},
    {15, "00 00 00 16 00 00 00 0f 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 03 41 00", false, "the count is wrong"},
    {15, "00 00 00 16 00 00 00 0f 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 02 41 42", false, "the NUL is missing"},
    {15, "00 00 00 16 00 00 00 0f 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 02 00 00", false, "a NUL too many"},
    {15, "00 00 00 14 00 00 00 0f 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00", false, "a text without its NUL"},
    {13, "00 00 00 20 00 00 00 0d 00 00 00 01 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 02 00 00 00 05 00 00 00 06",
     true, "two ids"},
    {13, "00 00 00 1c 00 00 00 0d 00 00 00 01 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 02 00 00 00 05", false,
     "one id of two"},
};

TEST(WorkedExampleTest, is_consistent_only_when_length_opcode_size_and_counts_fit_its_row) {
  for (const Row &row : rows) {
    const MessageType *type = find_message_type(row.opcode);
    ASSERT_NE(type, nullptr) << row.opcode;
    EXPECT_EQ(is_consistent({row.opcode, "", row.frame, ""}, *type), row.consistent) << row.frame << ": " << row.why;
  }
}

TEST(WorkedExampleTest, belongs_to_one_message_type_only) {
  const WorkedExample ping{12, "", "00 00 00 04 00 00 00 0c", ""};
  EXPECT_FALSE(is_consistent(ping, *find_message_type(1)));
}

} // namespace
} // namespace buttondriver::documents
