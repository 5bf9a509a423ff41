// SPDX-License-Identifier: Apache-2.0
#include "panel/registers/panel_state.h"

#include "daemon/panel/panel_test.h"

#include <functional>

namespace buttondriver::panel {
namespace {

struct Row {
  const char *name;
  std::function<std::uint32_t()> read;
  std::vector<std::uint16_t> words; // what the registers hold, in the order in which they are read
  std::uint32_t value;
  Lines transfers;
};

void PrintTo(const Row &row, std::ostream *out) { *out << row.name; }

class PanelStateTest : public PanelTest, public testing::WithParamInterface<Row> {};

TEST_P(PanelStateTest, is_read_from_its_registers) {
  std::size_t next = 0;
  device.before_transfer = [&](TransferRecord &record) { record.value = 0xFFFF0000 | GetParam().words.at(next++); };
  EXPECT_EQ(GetParam().read(), GetParam().value);
  EXPECT_EQ(device.takeLines(), GetParam().transfers);
}

TEST_P(PanelStateTest, is_zero_without_an_answer) {
  device.result = -1;
  EXPECT_EQ(GetParam().read(), 0U);
}

INSTANTIATE_TEST_SUITE_P(
    Rows, PanelStateTest,
    testing::Values(
        Row{"state bits, all set", fpga_read_state_bits, {0xFFFF}, 3, {"r 1000 1"}},
        Row{"state bits, others set", fpga_read_state_bits, {0xFFFE}, 2, {"r 1000 1"}},
        Row{"state bits, none set", fpga_read_state_bits, {0xFFFC}, 0, {"r 1000 1"}},
        Row{"state flag, set", fpga_read_state_flag, {0x0100}, 1, {"r 1000 1"}},
        Row{"state flag, others set", fpga_read_state_flag, {0xFEFF}, 0, {"r 1000 1"}},
        Row{"state byte", fpga_read_state_byte, {0xABCD}, 0xCD, {"r 1002 1"}},
        Row{"toggle indicators", led_read_toggle_indicators, {0xAB02}, 0x02, {"r 1003 1"}},
        Row{"toggle indicators, whole byte", led_read_toggle_indicators, {0x12F3}, 0xF3, {"r 1003 1"}},
        Row{"first number", fpga_read_first_number, {0x8123, 0x4567}, 0x81234567, {"r 1004 1", "r 1005 1"}},
        Row{"second number", fpga_read_second_number, {0x89AB, 0xCDEF}, 0x89ABCDEF, {"r 1006 1", "r 1007 1"}}));

} // namespace
} // namespace buttondriver::panel
