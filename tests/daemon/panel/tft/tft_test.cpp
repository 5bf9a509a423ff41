// SPDX-License-Identifier: Apache-2.0
#include "panel/tft/tft.h"

#include "daemon/panel/panel_test.h"

#include <chrono>

namespace buttondriver::panel {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;

class TftTest : public PanelTest {};

TEST_F(TftTest, screens_have_one_controller_each_and_minus_one_has_all) {
  EXPECT_EQ(tft_select_mask(0), 1U);
  EXPECT_EQ(tft_select_mask(1), 2U);
  EXPECT_EQ(tft_select_mask(2), 4U);
  EXPECT_EQ(tft_select_mask(-1), 7U);
  for (const int id : {3, 4, 7, -2, 2147483647, -2147483647 - 1})
    EXPECT_EQ(tft_select_mask(id), std::nullopt) << id;
}

TEST_F(TftTest, ports_lie_two_registers_a_mask_apart) {
  std::uint16_t pixels[] = {1, 2};
  for (const unsigned mask : {1U, 2U, 4U, 7U}) {
    tft_write_index(mask, 0x44);
    tft_write_data(mask, 0xFFFF8304);
    tft_write_pixels(mask, pixels, 2);
  }
  EXPECT_THAT(device.takeLines(),
              ElementsAre("w 0a02 1 4400", "w 0a03 1 8304", "w 0a03 2 0001 0002", "w 0a04 1 4400", "w 0a05 1 8304",
                          "w 0a05 2 0001 0002", "w 0a08 1 4400", "w 0a09 1 8304", "w 0a09 2 0001 0002", "w 0a0e 1 4400",
                          "w 0a0f 1 8304", "w 0a0f 2 0001 0002"));
}

TEST_F(TftTest, pixel_count_is_cut_to_16_bits) {
  std::vector<std::uint16_t> pixels(0x10002, 0x0003);
  tft_write_pixels(1, pixels.data(), 0x10002);
  tft_write_pixels(1, pixels.data(), 0x10000);
  tft_write_pixels(1, pixels.data(), 0xFFFF);
  EXPECT_THAT(device.takeLines(), ElementsAre("w 0a03 2 0003 0003", "w 0a03 0", "w 0a03 65535 0003 * 65535"));
}

TEST_F(TftTest, functions_return_the_device_s_result) {
  device.result = -1;
  std::uint16_t pixel = 0;
  EXPECT_EQ(tft_write_index(1, 0), -1);
  EXPECT_EQ(tft_write_data(1, 0), -1);
  EXPECT_EQ(tft_write_pixels(1, &pixel, 1), -1);
  EXPECT_EQ(tft_blackout(0), -1);
  EXPECT_EQ(tft_set_intensity(0), 0);
}

TEST_F(TftTest, window_reset_opens_the_whole_screen_on_all_controllers) {
  tft_reset_window();
  EXPECT_EQ(device.takeLines(), whole_window);
}

/// Three transfers each: index 0, the register's index, its value.
Lines all_controllers_registers(const std::vector<std::pair<const char *, const char *>> &steps) {
  Lines lines;
  for (const auto &[index, value] : steps)
    lines = lines + Lines{"w 0a0e 1 0000", std::string("w 0a0e 1 ") + index + "00", std::string("w 0a0f 1 ") + value};
  return lines;
}

TEST_F(TftTest, power_on_sequence_is_complete_in_order_and_waits) {
  std::vector<std::chrono::steady_clock::time_point> times;
  device.before_transfer = [&](TransferRecord &) { times.push_back(std::chrono::steady_clock::now()); };
  tft_controller_init();
  EXPECT_EQ(device.takeLines(),
            (Lines{"w 0800 1 0000", "w 0800 1 8000"} +
             all_controllers_registers(
                 {{"00", "0013"}, {"11", "7447"}, {"12", "0012"}, {"11", "4477"}, {"10", "2020"}, {"04", "0002"},
                  {"10", "2120"}, {"11", "3307"}, {"04", "0000"}, {"0b", "5101"}, {"08", "0100"}, {"13", "3f20"},
                  {"42", "8300"}, {"43", "0000"}, {"44", "8304"}, {"45", "8001"}, {"03", "7030"}, {"02", "0600"},
                  {"01", "011d"}, {"30", "0000"}, {"31", "0306"}, {"32", "0001"}, {"33", "0000"}, {"34", "0404"},
                  {"35", "0000"}, {"36", "0707"}, {"37", "0000"}, {"38", "0101"}, {"39", "0207"}, {"07", "0037"}}) +
             Lines{"w 0800 1 ff00"}));
  ASSERT_EQ(times.size(), 93U);
  // The last transfer before each wait: 2 and 5 registers, then 2, 2 and 21 more.
  EXPECT_GE(times[17] - times[16], 3ms);
  EXPECT_GE(times[23] - times[22], 3ms);
  EXPECT_GE(times[29] - times[28], 3ms);
  EXPECT_GE(times[92] - times[91], 100ms);
}

TEST_F(TftTest, intensity_is_a_level_of_0_to_63_with_both_enable_bits) {
  const std::pair<unsigned, const char *> rows[] = {{0, "w 0800 1 c000"},  {1, "w 0800 1 c000"},
                                                    {2, "w 0800 1 c100"},  {50, "w 0800 1 df00"},
                                                    {99, "w 0800 1 fe00"}, {100, "w 0800 1 ff00"}};
  for (const auto &[percent, line] : rows) {
    EXPECT_EQ(tft_set_intensity(percent), 0);
    EXPECT_THAT(device.takeLines(), ElementsAre(line)) << percent;
  }
}

TEST_F(TftTest, intensity_outside_0_to_100_is_refused) {
  for (const int percent : {101, 163, 256, -1, -2147483647 - 1}) {
    int result = 0;
    EXPECT_EQ(output_of([&] { result = tft_set_intensity(static_cast<unsigned>(percent)); }),
              "TFT Intensity is out of range: Must be between 0 and 100 %.\n");
    EXPECT_EQ(result, -1) << percent;
  }
  EXPECT_THAT(device.takeLines(), IsEmpty());
}

TEST_F(TftTest, blackout_resets_the_window_everywhere_and_clears_its_own_screen) {
  struct {
    int screen;
    const char *index_port;
    const char *data_port;
  } const rows[] = {
      {0, "w 0a02", "w 0a03"}, {1, "w 0a04", "w 0a05"}, {2, "w 0a08", "w 0a09"}, {-1, "w 0a0e", "w 0a0f"}};
  for (const auto &row : rows) {
    const std::string index = row.index_port;
    const std::string data = row.data_port;
    EXPECT_EQ(tft_blackout(row.screen), 0);
    EXPECT_EQ(device.takeLines(),
              (whole_window + Lines{index + " 1 0000", index + " 1 2100", data + " 1 0000", index + " 1 0000",
                                    index + " 1 2200", data + " 16384 0000 * 16384"}));
  }
}

TEST_F(TftTest, blackout_of_a_wrong_screen_writes_nothing_and_returns_the_length_of_its_line) {
  int result = 0;
  EXPECT_EQ(output_of([&] { result = tft_blackout(3); }), "Invalid screen ID 3.\n");
  EXPECT_EQ(result, 21);
  EXPECT_EQ(output_of([&] { result = tft_blackout(-2147483647 - 1); }), "Invalid screen ID -2147483648.\n");
  EXPECT_EQ(result, 31);
  EXPECT_THAT(device.takeLines(), IsEmpty());
}

} // namespace
} // namespace buttondriver::panel
