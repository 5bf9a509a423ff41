// SPDX-License-Identifier: Apache-2.0
#include "model/commands/message_generator.h"

#include "model/commands/message_bytes.h"

#include <gtest/gtest.h>

#include <vector>

namespace buttondriver::test {
namespace {

constexpr int messages_of_a_type = 200;

std::int64_t value_of(const Field &field, const std::string &message) {
  if (field.width == 1)
    return byte_at(message, field.offset);
  return field.kind == FieldKind::signed_integer ? std::int64_t{signed_network_word(message, field.offset)}
                                                 : std::int64_t{network_word(message, field.offset)};
}

bool is_sensible(const Field &field, std::int64_t value) {
  bool is_sensible = field.lowest <= value && value <= field.highest;
  for (std::size_t i = 0; i < field.namedCount(); ++i)
    is_sensible |= field.named[i].first <= value && value <= field.named[i].last;
  return is_sensible;
}

class RandomMessageTest : public testing::TestWithParam<std::uint32_t> {
protected:
  const MessageType &_type = *find_message_type(GetParam());
};

TEST_P(RandomMessageTest, has_its_opcode_and_is_as_long_as_its_head_at_least) {
  Dice dice(1);
  for (int i = 0; i < messages_of_a_type; ++i) {
    const std::string message = random_message(dice, _type);
    EXPECT_EQ(network_word(message, 0), _type.opcode);
    EXPECT_GE(message.size(), _type.head_size);
    if (_type.counted == Counted::nothing) {
      EXPECT_EQ(message.size(), _type.head_size);
    }
  }
}

TEST_P(RandomMessageTest, has_mostly_values_of_the_range_and_some_others) {
  Dice dice(1);
  std::size_t sensible = 0;
  std::size_t others = 0;
  bool has_limits = false;
  for (int i = 0; i < messages_of_a_type; ++i) {
    const std::string message = random_message(dice, _type);
    for (std::size_t place = 1; place < _type.fieldCount(); ++place) {
      const Field &field = _type.fields[place];
      if (field.kind == FieldKind::bytes || field.is_colour)
        continue;
      has_limits |= field.lowest > field.leastPossible() || field.highest < field.largestPossible();
      ++(is_sensible(field, value_of(field, message)) ? sensible : others);
    }
  }
  EXPECT_GE(sensible, 3 * others);
  EXPECT_EQ(others > 0, has_limits);
}

std::vector<std::uint32_t> all_opcodes() {
  std::vector<std::uint32_t> opcodes;
  for (const MessageType &type : catalogue)
    opcodes.push_back(type.opcode);
  return opcodes;
}

INSTANTIATE_TEST_SUITE_P(Of, RandomMessageTest, testing::ValuesIn(all_opcodes()),
                         [](const auto &row) { return std::string(find_message_type(row.param)->name); });

} // namespace
} // namespace buttondriver::test
