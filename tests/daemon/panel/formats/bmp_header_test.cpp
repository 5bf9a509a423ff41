// SPDX-License-Identifier: Apache-2.0
#include "panel/formats/bmp.h"

#include "bmp_file.h"
#include "daemon/panel/panel_test.h"
#include "support/hex.h"

#include <utility>

namespace buttondriver::panel {
namespace {

using Answer = std::pair<std::string, int>; // what is printed, what is returned

Answer check(const std::string &bytes) {
  int result = 99;
  std::string output = output_of([&] { result = bmp_check_header(view(bytes), nullptr); });
  return {output, result};
}

const std::string golden_header = test::from_hex("424d 36000100 0500 0600 36000000" // to the pixel data offset
                                                 "28000000 0a000000 14000000 0100 1800 01000000"
                                                 "02010000 130b0000 140b0000 07000000 ffffffff");

TEST(BmpHeaderTest, is_refused_for_its_signature_only_when_both_letters_are_wrong) {
  BmpFile file;
  for (const char *good : {"BM", "BA", "AM", "B\xFF"}) {
    file.signature = good;
    EXPECT_EQ(check(file.bytes()), Answer("", 0)) << good;
  }
  file.signature = "AA";
  EXPECT_EQ(check(file.bytes()), Answer("Invalid BMP Signature ('A', 'A')!  Exiting.\n", -1));
  file.signature = "MB";
  EXPECT_EQ(check(file.bytes()), Answer("Invalid BMP Signature ('M', 'B')!  Exiting.\n", -1));
  file.signature = "bm";
  EXPECT_EQ(check(file.bytes()), Answer("Invalid BMP Signature ('b', 'm')!  Exiting.\n", -1));
}

TEST(BmpHeaderTest, shows_control_characters_of_a_wrong_signature_as_numbers) {
  BmpFile file;
  file.signature = "\n\x1b";
  EXPECT_EQ(check(file.bytes()), Answer("Invalid BMP Signature ('\\x0a', '\\x1b')!  Exiting.\n", -1));
  EXPECT_EQ(check("M"), Answer("Invalid BMP Signature ('M', '\\x00')!  Exiting.\n", -1));
}

TEST(BmpHeaderTest, information_size_other_than_40_bytes_is_refused) {
  BmpFile file;
  for (const std::uint32_t size : {0U, 12U, 39U, 41U, 124U, 0x01000028U}) {
    file.header_size = size;
    EXPECT_EQ(check(file.bytes()), Answer("DIB Header Size is invalid. Exiting.", -1)) << size;
  }
}

TEST(BmpHeaderTest, number_of_planes_other_than_one_is_refused) {
  BmpFile file;
  for (const std::uint16_t planes : {std::uint16_t{0}, std::uint16_t{2}, std::uint16_t{0x0101}}) {
    file.planes = planes;
    EXPECT_EQ(check(file.bytes()), Answer("\tInvalid number of colour planes! Exiting.", -1)) << planes;
  }
}

TEST(BmpHeaderTest, faults_are_found_in_order) {
  BmpFile file;
  file.planes = 0;
  file.header_size = 0;
  EXPECT_EQ(check(file.bytes()), Answer("DIB Header Size is invalid. Exiting.", -1));
  file.signature = "AA";
  EXPECT_EQ(check(file.bytes()), Answer("Invalid BMP Signature ('A', 'A')!  Exiting.\n", -1));
}

TEST(BmpHeaderTest, missing_or_short_header_is_refused) {
  int result = 0;
  EXPECT_EQ(output_of([&] { result = bmp_check_header({}, nullptr); }), "BMP Data pointer is NULL! Exiting.");
  EXPECT_EQ(result, -1);
  EXPECT_EQ(check(golden_header.substr(0, 2)), Answer("DIB Header Size is invalid. Exiting.", -1));
  EXPECT_EQ(check(golden_header.substr(0, 26)), Answer("\tInvalid number of colour planes! Exiting.", -1));
  EXPECT_EQ(check(golden_header.substr(0, 27)), Answer("", 0));
}

TEST(BmpHeaderTest, is_copied_when_it_is_good) {
  BmpHeader copy;
  copy.fill(0xEE);
  EXPECT_EQ(bmp_check_header(view(golden_header + "pixels"), &copy), 0);
  EXPECT_EQ(test::to_hex({reinterpret_cast<const char *>(copy.data()), copy.size()}), test::to_hex(golden_header));
  EXPECT_EQ(bmp_check_header(view(golden_header.substr(0, 30)), &copy), 0);
  EXPECT_EQ(test::to_hex({reinterpret_cast<const char *>(copy.data()), copy.size()}),
            test::to_hex(golden_header.substr(0, 30) + std::string(24, '\0')));
}

TEST(BmpHeaderTest, is_not_copied_when_it_is_bad) {
  BmpHeader copy;
  copy.fill(0xEE);
  BmpFile file;
  file.planes = 2;
  output_of([&] { bmp_check_header(view(file.bytes()), &copy); });
  EXPECT_EQ(copy.front(), 0xEE);
  EXPECT_EQ(copy.back(), 0xEE);
}

TEST(BmpHeaderTest, is_printed_field_by_field) {
  EXPECT_EQ(output_of([] { bmp_print_header(view(golden_header)); }), "BMP Magic Signature = BM\n"
                                                                      "Overall BMP File Size = 65590 bytes\n"
                                                                      "Creator 1 = 5\n"
                                                                      "Creator 2 = 6\n"
                                                                      "BMP Offset = 54 (0x36)\n"
                                                                      "DIB Header Data:"
                                                                      "\tHeader Size = 40 bytes\n"
                                                                      "\tBMP Width = 10 pixels\n"
                                                                      "\tBMP Height = 20 pixels\n"
                                                                      "\tNumber of colour planes = 1\n"
                                                                      "\tColour Depth = 24\n"
                                                                      "\tCompression Type = 1\n"
                                                                      "\tBitmap size = 258 bytes\n"
                                                                      "\tHorizontal Resolution = 2835 pixel/m\n"
                                                                      "\tVertical Resolution = 2836 pixel/m\n"
                                                                      "\tNumber of colours = 7\n"
                                                                      "\tNumber of important colours = -1\n");
}

TEST(BmpHeaderTest, bad_header_is_not_printed) {
  EXPECT_EQ(output_of([] { bmp_print_header({}); }), "BMP Data pointer is NULL! Exiting.");
  BmpFile file;
  file.header_size = 12;
  EXPECT_EQ(output_of([&] { bmp_print_header(view(file.bytes())); }), "DIB Header Size is invalid. Exiting.");
}

} // namespace
} // namespace buttondriver::panel
