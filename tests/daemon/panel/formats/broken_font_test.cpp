// SPDX-License-Identifier: Apache-2.0
#include "panel/formats/font.h"

#include "daemon/panel/tft/text_test.h"
#include "files/owned_descriptor.h"
#include "panel/tft/text.h"
#include "support/temporary_folder.h"

#include <algorithm>
#include <functional>
#include <sys/socket.h>
#include <sys/un.h>
#include <zlib.h>

namespace buttondriver::panel {
namespace {

/// What FT_New_Face itself says of a file.
FT_Error number_of_freetype(const std::string &file) {
  FT_Library library = nullptr;
  FT_Init_FreeType(&library);
  FT_Face face = nullptr;
  const FT_Error error = FT_New_Face(library, file.c_str(), 0, &face);
  FT_Done_FreeType(library);
  return error;
}

/// What font_load prints for a file of which FT_New_Face says `error`.
std::string expected_output(FT_Error error) {
  return error == 0 ? "" : "Error calling FT_New_Face(): error = " + std::to_string(error) + "\n";
}

void expect_what_freetype_says(const std::string &file, const std::string &condition) {
  const FT_Error error = number_of_freetype(file);
  int result = 99;
  EXPECT_EQ(output_of([&] { result = font_load(file.c_str()); }), expected_output(error)) << condition;
  EXPECT_TRUE(error == 0 || result == -1) << condition;
}

std::string little_endian(std::uint32_t number) {
  std::string bytes;
  for (int i = 0; i < 4; ++i)
    bytes += static_cast<char>(number >> 8 * i);
  return bytes;
}

struct Row {
  const char *condition;
  std::function<std::string(std::string)> damage; // the bytes of 10x20.pcf.gz, 8x16.pcf.gz or 8x16.bdf
  FT_Error error;
};

void PrintTo(const Row &row, std::ostream *out) { *out << row.condition; }

class BrokenFontTest : public TextTest, public testing::WithParamInterface<Row> {
protected:
  const test::TemporaryFolder folder;
};

/// Large: FreeType unpacks it piece by piece. The small one is unpacked at once.
const char *const packed_fonts[] = {PANEL_ROOT_FONTS "/10x20.pcf.gz", BUTTONDRIVER_TEST_FONTS "/8x16.pcf.gz"};

TEST_P(BrokenFontTest, gives_the_number_that_ft_new_face_gives) {
  for (const char *font : packed_fonts) {
    const std::string file = folder.write("font", GetParam().damage(test::read_file(font)));
    EXPECT_EQ(number_of_freetype(file), GetParam().error) << font;
    expect_what_freetype_says(file, font);
  }
}

/// Replaces the last eight bytes, the check sum and the length of what is packed, from `offset` of them on.
std::function<std::string(std::string)> with_trailer(std::size_t offset, const std::string &bytes) {
  return [=](std::string file) { return file.replace(file.size() - 8 + offset, bytes.size(), bytes); };
}

std::function<std::string(std::string)> without_last(std::size_t count) {
  return [=](std::string file) { return file.substr(0, file.size() - count); };
}

std::string in_front(const std::string &file) { return file.substr(0, file.size() / 2); }

INSTANTIATE_TEST_SUITE_P(
    Rows, BrokenFontTest,
    testing::Values(Row{"nothing wrong", [](std::string file) { return file; }, 0},
                    Row{"empty", [](const std::string &) { return std::string(); }, 2},
                    Row{"one byte", [](const std::string &file) { return file.substr(0, 1); }, 2},
                    Row{"five bytes", [](const std::string &file) { return file.substr(0, 5); }, 2},
                    Row{"head of gzip only", [](const std::string &file) { return file.substr(0, 10); }, 2},
                    Row{"cut in the middle", in_front, 2}, Row{"cut before the check sum", without_last(9), 2},
                    Row{"wrong check sum", with_trailer(0, "XXXX"), 0},
                    Row{"length of 0", with_trailer(4, little_endian(0)), 0},
                    Row{"length of 100", with_trailer(4, little_endian(100)), 2},
                    Row{"length of 2 GiB", with_trailer(4, little_endian(0x80000000)), 0},
                    Row{"another method", [](std::string file) { return file.replace(2, 1, "\x07"); }, 2},
                    Row{"unknown flags", [](std::string file) { return file.replace(3, 1, "\xE0"); }, 2},
                    Row{"more after it", [](const std::string &file) { return file + "more" + file; }, 0},
                    Row{"no font", [](const std::string &) { return std::string("this is no font"); }, 2}));

class FontNumbersTest : public TextTest {
protected:
  const test::TemporaryFolder folder;
};

TEST_F(FontNumbersTest, are_those_of_ft_new_face_wherever_a_packed_font_is_cut) {
  const std::string font = test::read_file(BUTTONDRIVER_TEST_FONTS "/8x16.pcf.gz");
  for (std::size_t size = 0; size < font.size(); size += 3)
    expect_what_freetype_says(folder.write("font", font.substr(0, size)), std::to_string(size));
}

TEST_F(FontNumbersTest, are_those_of_ft_new_face_for_a_packed_font_with_a_wrong_byte) {
  const std::string font = test::read_file(BUTTONDRIVER_TEST_FONTS "/8x16.pcf.gz");
  for (std::size_t at = 0; at < font.size(); at += 3) {
    std::string broken = font;
    broken[at] = static_cast<char>(broken[at] ^ 0x10);
    expect_what_freetype_says(folder.write("font", broken), std::to_string(at));
  }
}

TEST_F(FontNumbersTest, are_those_of_ft_new_face_for_a_font_in_another_format) {
  const std::string font = test::read_file(BUTTONDRIVER_TEST_FONT_SOURCES "/8x16.bdf");
  for (std::size_t size = 0; size < font.size(); size += 7)
    expect_what_freetype_says(folder.write("font", font.substr(0, size)), std::to_string(size));
  EXPECT_EQ(number_of_freetype(folder.write("font", font)), 0);
  expect_what_freetype_says(folder.path("font"), "whole");
  // Packed, only PCF fonts are known.
  const gzFile packed = gzopen(folder.path("packed").c_str(), "wb9");
  ASSERT_EQ(gzwrite(packed, font.data(), static_cast<unsigned>(font.size())), static_cast<int>(font.size()));
  ASSERT_EQ(gzclose(packed), Z_OK);
  EXPECT_EQ(number_of_freetype(folder.path("packed")), 2);
  expect_what_freetype_says(folder.path("packed"), "packed");
}

std::uint32_t little_endian_at(const std::string &bytes, std::size_t at) {
  std::uint32_t number = 0;
  for (std::size_t i = 0; i < 4; ++i)
    number |= std::uint32_t{static_cast<unsigned char>(bytes.at(at + i))} << 8 * i;
  return number;
}

/// Makes the last table of a PCF font one that nobody knows, a mebibyte past the end.
std::string with_table_past_the_end(std::string font) {
  std::size_t last = 0;
  std::uint32_t highest_offset = 0;
  for (std::uint32_t i = 0; i < little_endian_at(font, 4); ++i) {
    const std::size_t entry = 8 + i * 16; // type, format, size, offset
    if (const std::uint32_t offset = little_endian_at(font, entry + 12); offset > highest_offset) {
      highest_offset = offset;
      last = entry;
    }
  }
  constexpr std::uint32_t unknown_type = 1U << 20;
  return font.replace(last, 4, little_endian(unknown_type))
      .replace(last + 12, 4, little_endian(highest_offset + (1U << 20)));
}

TEST_F(FontNumbersTest, font_that_is_good_only_while_it_is_packed_is_used_so) {
  const gzFile original = gzopen(BUTTONDRIVER_TEST_FONTS "/8x16.pcf.gz", "rb");
  std::string font(1 << 20, '\0');
  font.resize(static_cast<std::size_t>(gzread(original, font.data(), static_cast<unsigned>(font.size()))));
  ASSERT_EQ(gzclose(original), Z_OK);
  font = with_table_past_the_end(font);
  EXPECT_NE(number_of_freetype(folder.write("unpacked", font)), 0);
  const gzFile packed = gzopen(folder.path("font").c_str(), "wb9");
  ASSERT_EQ(gzwrite(packed, font.data(), static_cast<unsigned>(font.size())), static_cast<int>(font.size()));
  ASSERT_EQ(gzclose(packed), Z_OK);
  // With this length FreeType unpacks piece by piece, and does not know where the font ends.
  const std::string bytes = with_trailer(4, little_endian(0x80000000))(test::read_file(folder.path("font")));
  EXPECT_EQ(number_of_freetype(folder.write("font", bytes)), 0);
  expect_what_freetype_says(folder.path("font"), "packed");
  EXPECT_EQ(tft_text_line(1, 0, "A", red, green), 0);
  EXPECT_EQ(picture_of(sentPixels(), 128), beside({letter_a, bare(120)}));
}

TEST_F(FontNumbersTest, folder_has_that_of_ft_new_face) {
  EXPECT_EQ(number_of_freetype(folder.path("")), 2);
  expect_what_freetype_says(folder.path(""), "folder");
  expect_what_freetype_says("/dev/null", "device");
}

TEST_F(FontNumbersTest, socket_has_that_of_ft_new_face) {
  sockaddr_un address = {};
  address.sun_family = AF_UNIX;
  folder.path("s").copy(address.sun_path, sizeof address.sun_path - 1);
  const OwnedDescriptor socket(::socket(AF_UNIX, SOCK_STREAM, 0));
  ASSERT_EQ(::bind(socket.get(), reinterpret_cast<const sockaddr *>(&address), sizeof address), 0);
  EXPECT_EQ(number_of_freetype(folder.path("s")), 1);
  expect_what_freetype_says(folder.path("s"), "socket");
}

} // namespace
} // namespace buttondriver::panel
