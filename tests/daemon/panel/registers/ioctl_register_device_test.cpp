// SPDX-License-Identifier: Apache-2.0
#include "panel/registers/ioctl_register_device.h"

#include "daemon/panel/formats/bmp_file.h"
#include "daemon/panel/panel_test.h"
#include "daemon/panel/system_calls.h"
#include "files/owned_descriptor.h"
#include "panel/formats/font.h"
#include "panel/tft/image.h"
#include "panel/tft/text.h"
#include "panel/tft/tft.h"
#include "support/hex.h"
#include "support/temporary_folder.h"

#include <cerrno>
#include <cstring>
#include <fcntl.h>

namespace buttondriver::panel {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// The device as a driver in the kernel sees it: it has no more than the bytes of the record.
class Driver {
public:
  struct Call {
    int descriptor;
    unsigned long request;
    std::string record; ///< in hexadecimal
  };

  Driver() {
    system_calls::ioctl = [this](int descriptor, unsigned long request, void *argument) {
      std::string bytes(16, '\0');
      std::memcpy(bytes.data(), argument, bytes.size());
      calls.push_back({descriptor, request, test::to_hex(bytes)});
      if (act)
        act(static_cast<char *>(argument));
      if (result < 0)
        errno = ENXIO;
      return result;
    };
  }

  /// The words that a record points to.
  static std::uint16_t *wordsOf(const char *record) {
    std::uint32_t address = 0;
    std::memcpy(&address, record + 12, sizeof address);
    return reinterpret_cast<std::uint16_t *>(static_cast<std::uintptr_t>(address));
  }

  std::vector<Call> calls;
  std::function<void(char *record)> act;
  int result = 0;

private:
  system_calls::Restore _restore;
};

class IoctlRegisterDeviceTest : public testing::Test {
protected:
  IoctlRegisterDeviceTest() { use_register_device(&device); }
  ~IoctlRegisterDeviceTest() override {
    use_register_device(nullptr);
    fpga_reg_fd = -1;
  }

  IoctlRegisterDevice device;
};

std::string record(const char *hex) { return test::to_hex(test::from_hex(hex)); }

TEST_F(IoctlRegisterDeviceTest, hands_the_record_to_the_descriptor_with_the_request_of_its_form) {
  Driver driver;
  std::uint16_t word = 0x6500;
  EXPECT_EQ(fpga_spi_transfer(9, 0x0900, 0, &word, 1), 0);
  EXPECT_EQ(fpga_spi_transfer(10, 0x2000, 1, &word, 1), 0);
  ASSERT_EQ(driver.calls.size(), 2U);
  EXPECT_EQ(driver.calls[0].descriptor, 9);
  EXPECT_EQ(driver.calls[0].request, 0xC0102400UL);
  EXPECT_EQ(driver.calls[0].record, record("00000000 0029 0000 01000000 00650000"));
  EXPECT_EQ(driver.calls[1].descriptor, 10);
  EXPECT_EQ(driver.calls[1].request, 0xC0102401UL);
  EXPECT_EQ(driver.calls[1].record, record("00000000 00200060 01000000 00650000"));
}

TEST_F(IoctlRegisterDeviceTest, brings_back_what_the_driver_put_into_the_record) {
  Driver driver;
  driver.act = [](char *bytes) { std::memcpy(bytes + 12, "\x34\x12\xFF\xFF", 4); };
  EXPECT_EQ(fpga_reg_read(9, 0x1003), 0x1234);
}

TEST_F(IoctlRegisterDeviceTest, returns_what_the_driver_returns) {
  Driver driver;
  std::uint16_t words[] = {1, 2};
  for (const int result : {0, 5, -1}) {
    driver.result = result;
    const std::uint32_t failures = spi_failure_count;
    errno = 0;
    EXPECT_EQ(fpga_spi_transfer(9, 0x0900, 0, words, 1), result);
    EXPECT_EQ(fpga_spi_transfer(9, 0x0A03, 0, words, 2), result);
    EXPECT_EQ(errno, result < 0 ? ENXIO : 0);
    EXPECT_EQ(spi_failure_count - failures, result < 0 ? 2U : 0U);
  }
}

TEST_F(IoctlRegisterDeviceTest, gives_the_driver_an_address_of_the_words_that_has_32_bits) {
  Driver driver;
  for (const std::size_t count : {std::size_t{2}, std::size_t{16384}, std::size_t{3}, std::size_t{65535}}) {
    std::vector<std::uint16_t> words(count);
    for (std::size_t i = 0; i < count; ++i)
      words[i] = static_cast<std::uint16_t>(i * 7 + count);
    const std::vector<std::uint16_t> before = words;
    std::vector<std::uint16_t> seen;
    driver.act = [&](char *bytes) { seen.assign(Driver::wordsOf(bytes), Driver::wordsOf(bytes) + count); };
    EXPECT_EQ(fpga_reg_write(9, 0x0A03, words.data(), static_cast<std::uint32_t>(count)), 0);
    EXPECT_EQ(seen, before) << count;
    EXPECT_EQ(words, before) << count;
  }
}

TEST_F(IoctlRegisterDeviceTest, brings_back_the_words_that_the_driver_put_there) {
  Driver driver;
  for (const int result : {0, -1}) {
    std::vector<std::uint16_t> words = {1, 2, 3, 4};
    driver.result = result;
    driver.act = [](char *bytes) {
      Driver::wordsOf(bytes)[0] = 0xABCD;
      Driver::wordsOf(bytes)[2] = 0x1234;
      std::memset(bytes, 0xFF, 16); // the record is the driver's
    };
    EXPECT_EQ(fpga_spi_transfer(9, 0x0A03, 1, words.data(), 3), result);
    EXPECT_THAT(words, ElementsAre(0xABCD, 2, 0x1234, 4)) << result;
  }
}

TEST_F(IoctlRegisterDeviceTest, gives_words_that_have_such_an_address_themselves) {
  Driver driver;
  LowMemory memory;
  std::uint16_t *const words = memory.words(2);
  ASSERT_NE(words, nullptr);
  std::uint16_t *seen = nullptr;
  driver.act = [&](char *bytes) { seen = Driver::wordsOf(bytes); };
  fpga_reg_write(9, 0x0A03, words, 2);
  EXPECT_EQ(seen, words);
}

TEST_F(IoctlRegisterDeviceTest, words_for_which_there_is_no_memory_are_not_sent_and_printed_once) {
  std::vector<std::uint16_t> words(LowMemory::most_words + 1);
  if (has_low_address(words.data()))
    GTEST_SKIP() << "on this machine no words are moved";
  Driver driver;
  int result = 0;
  const auto send = [&] { result = fpga_reg_write(9, 0x0A03, words.data(), static_cast<std::uint32_t>(words.size())); };
  EXPECT_EQ(output_of(send), "buttondriver: no memory below 4 GiB for a transfer of 1048577 words\n");
  EXPECT_EQ(result, -1);
  EXPECT_EQ(output_of(send), "");
  EXPECT_EQ(result, -1);
  EXPECT_THAT(driver.calls, IsEmpty());
  EXPECT_EQ(fpga_reg_write(9, 0x0A03, words.data(), 1048576), 0);
  EXPECT_EQ(driver.calls.size(), 1U);
}

TEST_F(IoctlRegisterDeviceTest, opens_for_reading_and_writing) {
  const test::TemporaryFolder folder;
  const std::string file = folder.write("node", "");
  const OwnedDescriptor descriptor(fpga_reg_open(file.c_str()));
  ASSERT_TRUE(descriptor);
  EXPECT_EQ(::fcntl(descriptor.get(), F_GETFL) & O_ACCMODE, O_RDWR);
  EXPECT_EQ(fpga_reg_open(folder.path("missing").c_str()), -1);
}

TEST_F(IoctlRegisterDeviceTest, failed_transfers_are_quiet_counted_and_leave_the_word) {
  int result = 0;
  std::uint16_t word = 0x1234;
  EXPECT_EQ(output_of([&] { result = fpga_spi_transfer(-1, 0x1003, 1, &word, 1); }), "");
  EXPECT_EQ(result, -1);
  EXPECT_EQ(word, 0x1234);
  EXPECT_EQ(fpga_reg_read(-1, 0x1003), 0);
}

struct Operation {
  const char *name;
  std::function<int()> run;
  int result;
  std::uint32_t transfers;
};

void PrintTo(const Operation &operation, std::ostream *out) { *out << operation.name; }

class WithoutDeviceTest : public IoctlRegisterDeviceTest, public testing::WithParamInterface<Operation> {
protected:
  WithoutDeviceTest() {
    freetype_start();
    font_load(BUTTONDRIVER_TEST_FONTS "/8x16.pcf.gz");
    fpga_reg_fd = -1;
  }
  ~WithoutDeviceTest() override { freetype_end(); }
};

TEST_P(WithoutDeviceTest, operation_runs_to_its_end_quietly_and_each_transfer_is_counted) {
  const std::uint32_t calls = spi_call_count;
  const std::uint32_t failures = spi_failure_count;
  int result = 99;
  EXPECT_EQ(output_of([&] { result = GetParam().run(); }), "");
  EXPECT_EQ(result, GetParam().result);
  EXPECT_EQ(spi_call_count - calls, GetParam().transfers);
  EXPECT_EQ(spi_failure_count - failures, GetParam().transfers);
}

int draw_picture() {
  BmpFile picture;
  picture.width = 40;
  picture.height = 24;
  const std::string bytes = picture.bytes();
  return tft_draw_image(1, 0, 0, view(bytes));
}

// To open the whole window takes six transfers, to start the pixels five, any other register of a controller three.
INSTANTIATE_TEST_SUITE_P(
    Rows, WithoutDeviceTest,
    testing::Values(
        Operation{"blackout", [] { return tft_blackout(0); }, -1, 6 + 5 + 1},
        Operation{"text line", [] { return tft_text_line(0, 0, "AB", 0, 0); }, 0, 3 + 5 + 1 + 6},
        Operation{"default text line", [] { return tft_text_line_default(0, 0, "AB"); }, 0, 3 + 5 + 1 + 6 + 6},
        Operation{"sub-text line", [] { return tft_sub_text_line(0, 0, 1, "AB", 2, 0, 0); }, 0, 6 + 5 + 1 + 6},
        Operation{"picture", draw_picture, 0, 6 + 5 + 1 + 6},
        Operation{"intensity", [] { return tft_set_intensity(50); }, 0, 1},
        Operation{"button LED", [] { return led_set_button_state(1, 1); }, 0, 1},
        Operation{"status indicator", [] { return led_set_status_indicator(1, 1); }, -1, 1},
        Operation{"toggle indicator", [] { return led_set_toggle_indicator(0, 1); }, 0, 1}));

} // namespace
} // namespace buttondriver::panel
