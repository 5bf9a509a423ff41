// SPDX-License-Identifier: Apache-2.0
#include "simulator/device/virtual_panel.h"

#include "panel/leds.h"
#include "panel/registers/register_access.h"
#include "panel/tft/tft.h"
#include "support/captured_log.h"
#include "transfer_bytes.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cerrno>
#include <string>
#include <thread>
#include <utility>
#include <vector>

namespace buttondriver::simulator {
namespace {

using testing::Each;
using testing::ElementsAre;

using Words = std::vector<std::uint16_t>;

class VirtualPanelTest : public testing::Test {
protected:
  VirtualPanelTest() { panel::use_register_device(&virtual_panel); }
  ~VirtualPanelTest() override { panel::use_register_device(nullptr); }

  static void write(std::uint32_t address, Words words) {
    panel::fpga_reg_write(0, address, words.data(), static_cast<std::uint32_t>(words.size()));
  }
  static Words read(std::uint32_t address, std::size_t count) {
    Words words(count, 0xEEEE);
    panel::fpga_spi_transfer(0, address, 1, words.data(), static_cast<std::uint32_t>(count));
    return words;
  }
  /// Opens a window of `columns` and `rows` on the controllers of `mask` and fills in `pixels`.
  static void draw(unsigned mask, std::uint16_t columns, std::uint16_t rows, Words pixels) {
    panel::tft_write_register(mask, 0x44, columns);
    panel::tft_write_register(mask, 0x45, rows);
    panel::tft_start_pixels(mask);
    panel::tft_write_pixels(mask, pixels.data(), static_cast<std::uint32_t>(pixels.size()));
  }

  VirtualPanel virtual_panel;
};

/// The numbers of those that are on.
template <std::size_t size> std::vector<std::size_t> lit(const std::array<bool, size> &lights) {
  std::vector<std::size_t> numbers;
  for (std::size_t i = 0; i < size; ++i)
    if (lights[i])
      numbers.push_back(i);
  return numbers;
}

TEST_F(VirtualPanelTest, starts_dark_with_full_intensity) {
  const PanelState state = virtual_panel.state();
  EXPECT_THAT(state.button_leds, Each(false));
  EXPECT_THAT(state.status_leds, Each(false));
  EXPECT_THAT(state.toggles, Each(false));
  EXPECT_EQ(state.intensity, 63);
  for (const ScreenPixels &screen : state.screens)
    EXPECT_THAT(screen, Each(0));
  EXPECT_EQ(virtual_panel.counters().transfers, 0U);
  EXPECT_EQ(virtual_panel.counters().refused, 0U);
}

TEST_F(VirtualPanelTest, opens_whatever_the_path) { EXPECT_GE(panel::fpga_reg_open(nullptr), 0); }

TEST_F(VirtualPanelTest, shows_button_leds_and_status_leds_apart) {
  write(0x900, {0x6500}); // button LED 5 on
  write(0x900, {0x7F00}); // button LED 31 on
  write(0x900, {0xA100}); // status indicator 1 on
  EXPECT_THAT(lit(virtual_panel.state().button_leds), ElementsAre(5, 31));
  EXPECT_THAT(lit(virtual_panel.state().status_leds), ElementsAre(1));
  write(0x900, {0x4500}); // button LED 5 off
  write(0x900, {0x8200}); // status indicator 2 off
  EXPECT_THAT(lit(virtual_panel.state().button_leds), ElementsAre(31));
  EXPECT_THAT(lit(virtual_panel.state().status_leds), ElementsAre(1));
}

TEST_F(VirtualPanelTest, ignores_led_commands_of_no_kind_or_both) {
  write(0x900, {0x2500});
  write(0x900, {0xE500});
  write(0x900, {0x0065}); // in the low byte
  EXPECT_THAT(virtual_panel.state().button_leds, Each(false));
  EXPECT_THAT(virtual_panel.state().status_leds, Each(false));
}

TEST_F(VirtualPanelTest, shows_an_led_id_above_31_as_the_hardware_gets_it) {
  panel::led_set_button_state(33, 0); // 33 + 64: button LED 1 on
  panel::led_set_button_state(35, 1); // 35 + 64 + 32: status indicator 3 off
  panel::led_set_button_state(67, 1); // 67 + 64 + 32: status indicator 3 on
  EXPECT_THAT(lit(virtual_panel.state().button_leds), ElementsAre(1));
  EXPECT_THAT(lit(virtual_panel.state().status_leds), ElementsAre(3));
}

TEST_F(VirtualPanelTest, shows_the_two_toggle_indicators) {
  write(0x1003, {0x0001});
  EXPECT_THAT(virtual_panel.state().toggles, ElementsAre(true, false));
  write(0x1003, {0xFFFE});
  EXPECT_THAT(virtual_panel.state().toggles, ElementsAre(false, true));
  write(0x1003, {0x0300});
  EXPECT_THAT(virtual_panel.state().toggles, ElementsAre(false, false));
}

TEST_F(VirtualPanelTest, takes_the_intensity_with_both_enable_bits_only) {
  const std::pair<std::uint16_t, unsigned> rows[] = {{0xC000, 0}, {0xDF00, 31}, {0xFF00, 63}, {0xC1FF, 1},
                                                     {0x0000, 1}, {0x8000, 1},  {0x7F00, 1},  {0xBF00, 1},
                                                     {0x00FF, 1}, {0xE000, 32}};
  for (const auto &[word, level] : rows) {
    write(0x800, {word});
    EXPECT_EQ(virtual_panel.state().intensity, level) << std::hex << word;
  }
}

TEST_F(VirtualPanelTest, draws_on_the_controllers_of_the_mask_alone) {
  for (const unsigned mask : {1U, 2U, 4U, 3U, 5U, 6U, 7U, 0U}) {
    draw(7, 0x0404, 0x0101, {0x1111});
    draw(mask, 0x0404, 0x0101, {0xFFFF});
    const PanelState state = virtual_panel.state();
    for (std::size_t screen = 0; screen < 3; ++screen)
      EXPECT_EQ(state.screens[screen][0], (mask & 1U << screen) != 0 ? 0xFFFF : 0x1111) << mask << ", " << screen;
  }
}

TEST_F(VirtualPanelTest, keeps_a_window_for_each_controller) {
  panel::tft_write_register(1, 0x44, 0x0505);
  panel::tft_write_register(1, 0x45, 0x0202);
  panel::tft_start_pixels(7);
  Words pixels = {0xFFFF};
  panel::tft_write_pixels(7, pixels.data(), 1);
  const PanelState state = virtual_panel.state();
  EXPECT_EQ(state.screens[0][128 + 1], 0xFFFF);
  EXPECT_EQ(state.screens[0][0], 0);
  EXPECT_EQ(state.screens[1][0], 0xFFFF);
  EXPECT_EQ(state.screens[2][0], 0xFFFF);
}

TEST_F(VirtualPanelTest, blackout_clears_its_own_screen) {
  draw(7, 0x8304, 0x8001, Words(16384, 0x1234));
  panel::tft_blackout(1);
  const PanelState state = virtual_panel.state();
  EXPECT_THAT(state.screens[0], Each(0x1234));
  EXPECT_THAT(state.screens[1], Each(0));
  EXPECT_THAT(state.screens[2], Each(0x1234));
}

TEST_F(VirtualPanelTest, stays_in_its_memory_whatever_is_drawn_where) {
  draw(7, 0xFF00, 0xFF00, Words(65535, 0xFFFF));
  draw(7, 0x8384, 0x80C9, Words(65535, 0xFFFF));
  EXPECT_EQ(virtual_panel.counters().refused, 0U);
  EXPECT_THAT(virtual_panel.state().screens[2], Each(0xFFFF));
}

TEST_F(VirtualPanelTest, ports_outside_of_the_controllers_are_plain_registers) {
  write(0xA10, {0x2200});
  write(0x9FF, {0x2200});
  EXPECT_THAT(read(0xA10, 1), ElementsAre(0x2200));
  EXPECT_THAT(read(0x9FF, 1), ElementsAre(0x2200));
}

TEST_F(VirtualPanelTest, reads_what_was_last_written) {
  EXPECT_THAT(read(0x1000, 1), ElementsAre(0));
  write(0x1003, {0x0001});
  write(0x1003, {0x0003});
  write(0x2345678, {0xABCD});
  EXPECT_THAT(read(0x1003, 1), ElementsAre(0x0003));
  EXPECT_THAT(read(0x1003, 3), ElementsAre(0x0003, 0x0003, 0x0003));
  EXPECT_THAT(read(0x2345678, 1), ElementsAre(0xABCD));
  EXPECT_EQ(panel::fpga_reg_read(0, 0x1003), 3);
}

TEST_F(VirtualPanelTest, a_read_changes_nothing_but_the_word) {
  panel::TransferRecord record = test::record_of("00000000 0069 0000 01000000 0065ffff");
  EXPECT_EQ(virtual_panel.transfer(0, 0xC0102400, record, nullptr), 0);
  EXPECT_EQ(test::bytes_of(record), "0000000000690000010000000000ffff");
  EXPECT_THAT(virtual_panel.state().button_leds, Each(false));
}

TEST_F(VirtualPanelTest, a_single_word_is_that_of_the_record_whatever_the_caller_s_are) {
  panel::TransferRecord record = test::record_of("00000000 0029 0000 01000000 0065ffff");
  std::uint16_t words[] = {0x6100};
  EXPECT_EQ(virtual_panel.transfer(0, 0xC0102400, record, words), 0);
  EXPECT_THAT(lit(virtual_panel.state().button_leds), ElementsAre(5));
  EXPECT_EQ(test::bytes_of(record), "0000000000290000010000000065ffff");
  EXPECT_EQ(words[0], 0x6100);
}

TEST_F(VirtualPanelTest, several_words_for_one_register_are_written_one_after_the_other) {
  write(0x900, {0x6100, 0x6200, 0x4100});
  EXPECT_THAT(lit(virtual_panel.state().button_leds), ElementsAre(2));
}

TEST_F(VirtualPanelTest, no_words_are_accepted_and_change_nothing) {
  EXPECT_EQ(panel::fpga_reg_write(0, 0x1003, nullptr, 0), 0);
  EXPECT_EQ(panel::fpga_spi_transfer(0, 0x1003, 1, nullptr, 0), 0);
  EXPECT_THAT(virtual_panel.state().toggles, Each(false));
  EXPECT_EQ(virtual_panel.counters().transfers, 2U);
}

TEST_F(VirtualPanelTest, refused_transfers_are_counted_and_the_first_is_printed) {
  panel::TransferRecord wrong = test::record_of("00000000 0009 0000 01000000 00650000");
  panel::TransferRecord good = test::record_of("00000000 0029 0000 01000000 00610000");
  panel::TransferRecord reserved = test::record_of("000000ff 0029 0000 01000000 00650000");
  int results[3] = {};
  int error = 0;
  std::string first;
  std::string later;
  {
    test::CapturedOutput output;
    errno = 0;
    results[0] = virtual_panel.transfer(0, 0xC0102400, wrong, nullptr);
    error = errno;
    first = output.take();
    results[1] = virtual_panel.transfer(0, 0xC0102400, good, nullptr);
    results[2] = virtual_panel.transfer(0, 0xC0102400, reserved, nullptr);
    later = output.take();
  }
  EXPECT_THAT(results, ElementsAre(-1, 0, -1));
  EXPECT_EQ(error, EINVAL);
  EXPECT_EQ(first, "buttondriver-sim: no device would accept this transfer, a fixed bit of the short address word is "
                   "wrong: request 0xc0102400, record 00000000000900000100000000650000\n");
  EXPECT_EQ(later, "");
  EXPECT_EQ(virtual_panel.counters().transfers, 3U);
  EXPECT_EQ(virtual_panel.counters().refused, 2U);
  EXPECT_THAT(lit(virtual_panel.state().button_leds), ElementsAre(1));
}

TEST_F(VirtualPanelTest, state_is_never_that_of_half_a_transfer) {
  std::atomic<bool> stop{false};
  std::atomic<unsigned> rounds{0};
  std::thread writer([&] {
    while (!stop) {
      const auto pixel = static_cast<std::uint16_t>(rounds + 1);
      draw(7, 0x8304, 0x8001, Words(16384, pixel));
      ++rounds;
    }
  });
  std::size_t torn = 0;
  // The writer is seen at work: states are looked at until it has drawn often enough.
  for (unsigned looks = 0; looks < 100 || rounds < 100; ++looks) {
    const PanelState state = virtual_panel.state();
    for (const ScreenPixels &screen : state.screens) {
      const bool alike =
          std::all_of(screen.begin(), screen.end(), [&](std::uint16_t pixel) { return pixel == state.screens[0][0]; });
      torn += alike ? 0 : 1;
    }
  }
  stop = true;
  writer.join();
  EXPECT_EQ(torn, 0U);
  EXPECT_EQ(virtual_panel.counters().refused, 0U);
}

} // namespace
} // namespace buttondriver::simulator
