// SPDX-License-Identifier: Apache-2.0
#include "simulator/device/transfer.h"

#include "transfer_bytes.h"

#include <gtest/gtest.h>

namespace buttondriver::simulator {
namespace {

struct Row {
  const char *condition;
  unsigned long request;
  const char *record; // little-endian
  std::uint32_t address;
  bool is_read;
  std::uint32_t count;
};

const Row accepted[] = {
    {"short write", 0xC0102400, "00000000 0029 0000 01000000 00650000", 0x0900, false, 1},
    {"short read", 0xC0102400, "00000000 0370 0000 01000000 00000000", 0x1003, true, 1},
    {"last short address", 0xC0102400, "00000000 ff3f 0000 01000000 00000000", 0x1FFF, false, 1},
    {"bytes that a short form leaves as they are", 0xC0102400, "00000000 0029 ffff 01000000 0065ffff", 0x0900, false,
     1},
    {"no words", 0xC0102400, "00000000 032a 0000 00000000 ffffffff", 0x0A03, false, 0},
    {"several words", 0xC0102400, "00000000 032a 0000 00400000 ffffffff", 0x0A03, false, 16384},
    {"long write", 0xC0102401, "00000000 00200020 01000000 cdab0000", 0x2000, false, 1},
    {"long read", 0xC0102401, "00000000 ffffff7f 01000000 00000000", 0x1FFFFFFF, true, 1},
    {"long form of a short address", 0xC0102401, "00000000 00090020 01000000 00650000", 0x0900, false, 1}};

TEST(TransferTest, is_read_from_either_form) {
  for (const Row &row : accepted) {
    SCOPED_TRACE(row.condition);
    const panel::TransferRecord record = test::record_of(row.record);
    std::uint16_t words[2] = {};
    const auto content = read_record(row.request, record, words);
    const auto *transfer = std::get_if<Transfer>(&content);
    ASSERT_TRUE(transfer);
    EXPECT_EQ(transfer->address, row.address);
    EXPECT_EQ(transfer->is_read, row.is_read);
    EXPECT_EQ(transfer->count, row.count);
  }
}

TEST(TransferTest, has_the_words_that_go_with_the_record) {
  for (const char *bytes : {"00000000 032a 0000 02000000 3412ffff", "00000000 032a 0000 01000000 3412ffff"}) {
    const panel::TransferRecord record = test::record_of(bytes);
    std::uint16_t words[] = {0xAAAA, 0xBBBB};
    const auto content = read_record(0xC0102400, record, words);
    EXPECT_EQ(std::get<Transfer>(content).words, words);
  }
}

TEST(TransferTest, of_no_words_needs_no_buffer) {
  const panel::TransferRecord record = test::record_of("00000000 0029 0000 00000000 00000000");
  EXPECT_TRUE(std::holds_alternative<Transfer>(read_record(0xC0102400, record, nullptr)));
}

struct RefusedRow {
  unsigned long request;
  const char *record;
  bool has_words;
  const char *reason;
};

const RefusedRow refused[] = {
    {0xC0102400, "01000000 0029 0000 01000000 00650000", true, "the reserved word is not 0"},
    {0xC0102401, "00000080 00200020 01000000 00000000", true, "the reserved word is not 0"},
    {0xC0102400, "00000000 0009 0000 01000000 00650000", true, "a fixed bit of the short address word is wrong"},
    {0xC0102400, "00000000 00a9 0000 01000000 00650000", true, "a fixed bit of the short address word is wrong"},
    {0xC0102400, "00000000 00e9 0000 01000000 00650000", true, "a fixed bit of the short address word is wrong"},
    {0xC0102401, "00000000 00200000 01000000 00000000", true, "a fixed bit of the long address word is wrong"},
    {0xC0102401, "00000000 002000a0 01000000 00000000", true, "a fixed bit of the long address word is wrong"},
    {0xC0102401, "00000000 0029 0000 01000000 00650000", true, "a fixed bit of the long address word is wrong"},
    {0xC0102400, "00000000 032a 0000 01000000 00000000", false, "there is no buffer for the words"},
    {0xC0102400, "00000000 032a 0000 02000000 00000000", false, "there is no buffer for the words"},
    {0xC0102402, "00000000 0029 0000 01000000 00650000", true, "the request is unknown"},
    {0x40102400, "00000000 0029 0000 01000000 00650000", true, "the request is unknown"},
    {0, "00000000 0029 0000 01000000 00650000", true, "the request is unknown"}};

TEST(TransferTest, is_refused_for_each_thing_that_is_fixed) {
  for (const RefusedRow &row : refused) {
    const panel::TransferRecord record = test::record_of(row.record);
    std::uint16_t words[2] = {};
    const auto content = read_record(row.request, record, row.has_words ? words : nullptr);
    const auto *reason = std::get_if<RefusedTransfer>(&content);
    ASSERT_TRUE(reason) << row.record;
    EXPECT_STREQ(reason->reason, row.reason) << row.record;
  }
}

} // namespace
} // namespace buttondriver::simulator
