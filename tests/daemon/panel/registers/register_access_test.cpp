// SPDX-License-Identifier: Apache-2.0
#include "panel/registers/register_access.h"

#include "daemon/panel/panel_test.h"
#include "support/hex.h"

#include <cstring>

/// What a program that looks at the daemon from outside declares.
extern "C" std::uint32_t spi_call_count;

namespace buttondriver::panel {
namespace {

using testing::ElementsAre;

std::string bytes_of(const TransferRecord &record) {
  std::string bytes(sizeof record, '\0');
  std::memcpy(bytes.data(), &record, sizeof record);
  return test::to_hex(bytes);
}

struct Row {
  const char *condition;
  std::uint32_t address;
  int read;
  std::uint32_t count;
  std::uint16_t word;
  unsigned long request;
  const char *record; // little-endian
};

void PrintTo(const Row &row, std::ostream *out) { *out << row.condition; }

class TransferRecordTest : public PanelTest, public testing::WithParamInterface<Row> {};

TEST_P(TransferRecordTest, has_the_bytes_of_its_form) {
  const Row &row = GetParam();
  std::uint16_t word = row.word;
  fpga_spi_transfer(9, row.address, row.read, &word, row.count);
  const auto transfers = device.take();
  ASSERT_EQ(transfers.size(), 1U);
  EXPECT_EQ(transfers[0].request, row.request);
  EXPECT_EQ(bytes_of(transfers[0].record), test::to_hex(test::from_hex(row.record)));
}

INSTANTIATE_TEST_SUITE_P(
    Rows, TransferRecordTest,
    testing::Values(
        Row{"short write", 0x0900, 0, 1, 0x6500, 0xC0102400, "00000000 0029 0000 01000000 00650000"},
        Row{"short read", 0x1003, 1, 1, 0xBEEF, 0xC0102400, "00000000 0370 0000 01000000 efbe0000"},
        Row{"any other read flag", 0x1003, -8, 1, 0, 0xC0102400, "00000000 0370 0000 01000000 00000000"},
        Row{"lowest address", 0x0000, 0, 1, 0x0001, 0xC0102400, "00000000 0020 0000 01000000 01000000"},
        Row{"last short address", 0x1FFF, 0, 1, 0xABCD, 0xC0102400, "00000000 ff3f 0000 01000000 cdab0000"},
        Row{"first long address", 0x2000, 0, 1, 0xABCD, 0xC0102401, "00000000 00200020 01000000 cdab0000"},
        Row{"long read", 0x2000, 1, 1, 0x1234, 0xC0102401, "00000000 00200060 01000000 34120000"},
        Row{"long address with all its bits", 0x1FFFFFFF, 1, 1, 0, 0xC0102401, "00000000 ffffff7f 01000000 00000000"},
        Row{"address above 29 bits", 0xF2345678, 0, 1, 0, 0xC0102401, "00000000 78563432 01000000 00000000"},
        Row{"no words", 0x0900, 0, 0, 0xFFFF, 0xC0102400, "00000000 0029 0000 00000000 00000000"}));

class RegisterAccessTest : public PanelTest {};

TEST_F(RegisterAccessTest, gives_the_address_of_more_than_one_word) {
  std::uint16_t words[] = {0x0102, 0x0304, 0xFFFF};
  fpga_spi_transfer(9, 0x0A03, 0, words, 3);
  const auto transfers = device.take();
  ASSERT_EQ(transfers.size(), 1U);
  EXPECT_THAT(transfers[0].words, ElementsAre(0x0102, 0x0304, 0xFFFF));
  EXPECT_EQ(transfers[0].record.count, 3U);
  EXPECT_EQ(transfers[0].record.value, static_cast<std::uint32_t>(reinterpret_cast<std::uintptr_t>(words)));
  EXPECT_THAT(words, ElementsAre(0x0102, 0x0304, 0xFFFF));
}

TEST_F(RegisterAccessTest, stores_a_count_above_16_bits_as_given) {
  std::vector<std::uint16_t> words(0x12345);
  fpga_spi_transfer(9, 0x0A03, 0, words.data(), 0x12345);
  EXPECT_EQ(device.take().at(0).record.count, 0x12345U);
}

TEST_F(RegisterAccessTest, copies_a_single_word_back_whatever_the_direction_and_the_result) {
  for (const int read : {0, 1}) {
    for (const int result : {0, -1}) {
      device.result = result;
      device.before_transfer = [](TransferRecord &record) { record.value = 0xAAAA7654; };
      std::uint16_t words[] = {0x1111, 0x2222};
      EXPECT_EQ(fpga_spi_transfer(9, 0x1000, read, words, 1), result);
      EXPECT_THAT(words, ElementsAre(0x7654, 0x2222)) << read << result;
    }
  }
}

TEST_F(RegisterAccessTest, copies_nothing_back_for_other_counts) {
  device.before_transfer = [](TransferRecord &record) { record.value = 0xAAAA7654; };
  std::uint16_t words[] = {0x1111, 0x2222};
  fpga_spi_transfer(9, 0x1000, 1, words, 2);
  fpga_spi_transfer(9, 0x1000, 1, words, 0);
  EXPECT_THAT(words, ElementsAre(0x1111, 0x2222));
}

TEST_F(RegisterAccessTest, counts_every_transfer_before_it_is_made) {
  std::vector<std::uint32_t> seen;
  device.before_transfer = [&](TransferRecord &) { seen.push_back(spi_call_count); };
  device.result = -1;
  spi_call_count = 0xFFFFFFFE;
  fpga_reg_write16(0x1003, 1);
  fpga_reg_read(9, 0x1003);
  fpga_spi_transfer(9, 0x1003, 0, nullptr, 0);
  EXPECT_THAT(seen, ElementsAre(0xFFFFFFFF, 0U, 1U));
}

TEST_F(RegisterAccessTest, counter_of_transfers_has_its_plain_name) {
  ::spi_call_count = 41;
  fpga_reg_write16(0x1003, 1);
  EXPECT_EQ(::spi_call_count, 42U);
}

TEST_F(RegisterAccessTest, returns_the_device_s_result) {
  device.result = 17;
  std::uint16_t word = 0;
  EXPECT_EQ(fpga_spi_transfer(9, 0x1003, 1, &word, 1), 17);
  EXPECT_EQ(fpga_reg_write(9, 0x1003, &word, 1), 17);
  EXPECT_EQ(fpga_reg_write16(0x1003, 0), 17);
  EXPECT_EQ(fpga_reg_write8(0x0900, 0), 17);
}

TEST_F(RegisterAccessTest, reads_one_word) {
  device.before_transfer = [](TransferRecord &record) { record.value = 0xFFFF8001; };
  EXPECT_EQ(fpga_reg_read(9, 0x1004), 0x8001);
  EXPECT_THAT(device.takeLines(), ElementsAre("r 1004 1"));
}

TEST_F(RegisterAccessTest, writes_the_low_16_bits_or_a_high_byte) {
  fpga_reg_write16(0x1003, 0xABCD1234);
  fpga_reg_write8(0x0900, 0x65);
  fpga_reg_write8(0x0900, 0xFF);
  EXPECT_THAT(device.takeLines(), ElementsAre("w 1003 1 1234", "w 0900 1 6500", "w 0900 1 ff00"));
}

TEST(PanelLibTest, is_initialised_by_its_start_whatever_that_finds) {
  test::RecordingDevice device;
  panel_lib_initialised = false;
  panel_lib_init();
  EXPECT_TRUE(panel_lib_initialised);
  panel_lib_done();
}

TEST_F(RegisterAccessTest, start_opens_the_panel_s_own_device_node) {
  EXPECT_THAT(device.opened_paths, ElementsAre("/dev/fpga-reg"));
  EXPECT_EQ(fpga_reg_fd, 42);
  EXPECT_EQ(fpga_reg_open("/somewhere/else"), 42);
  EXPECT_EQ(device.opened_paths.back(), "/somewhere/else");
}

} // namespace
} // namespace buttondriver::panel
