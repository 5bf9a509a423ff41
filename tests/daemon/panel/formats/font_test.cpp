// SPDX-License-Identifier: Apache-2.0
#include "panel/formats/font.h"
#include "panel/formats/font_file.h"

#include "daemon/panel/tft/text_test.h"
#include "panel/panel_lib.h"
#include "support/temporary_folder.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <utility>
#include <zlib.h>

namespace buttondriver::panel {
namespace {

using Size = std::pair<int, int>;

/// The cell size with the font in use, or -1, -1.
Size cell_size() {
  Size size(-1, -1);
  return glyph_cell_size(&size.first, &size.second) == 0 ? size : Size(-1, -1);
}

/// What font_load prints for `file` and what it returns.
std::pair<std::string, int> load_result(const std::string &file) {
  int result = 99;
  std::string output = output_of([&] { result = font_load(file.c_str()); });
  return {output, result};
}

std::pair<std::string, int> quiet(int result) { return {"", result}; }

class FontTest : public TextTest {
protected:
  const test::TemporaryFolder folder;
};

TEST_F(FontTest, sets_the_cell_size_by_its_letter_a) {
  EXPECT_EQ(load_result(BUTTONDRIVER_TEST_FONTS "/5x4.pcf.gz"), quiet(0));
  EXPECT_EQ(cell_size(), Size(5, 4));
  EXPECT_EQ(load_result(BUTTONDRIVER_TEST_FONTS "/8x16-in-two-bytes.pcf.gz"), quiet(0));
  EXPECT_EQ(cell_size(), Size(8, 16));
  EXPECT_EQ(load_result(BUTTONDRIVER_TEST_FONTS "/33x2.pcf.gz"), quiet(0));
  EXPECT_EQ(cell_size(), Size(33, 2));
}

TEST_F(FontTest, missing_letter_a_gives_the_cells_of_the_default_character) {
  EXPECT_EQ(load_result(BUTTONDRIVER_TEST_FONTS "/without-a.pcf.gz"), quiet(0));
  EXPECT_EQ(cell_size(), Size(8, 16));
}

TEST_F(FontTest, no_glyph_for_a_gives_no_cells) {
  EXPECT_EQ(load_result(BUTTONDRIVER_TEST_FONTS "/unencoded.pcf.gz"), quiet(0));
  Size size(7, 7);
  EXPECT_EQ(glyph_cell_size(&size.first, &size.second), -1);
  EXPECT_EQ(size, Size(7, 7));
}

TEST_F(FontTest, cell_size_wants_both_places) {
  int size = 7;
  EXPECT_EQ(glyph_cell_size(nullptr, &size), -1);
  EXPECT_EQ(glyph_cell_size(&size, nullptr), -1);
  EXPECT_EQ(size, 7);
}

TEST_F(FontTest, missing_file_leaves_the_old_font) {
  const std::string file = folder.path("9x99.pcf.gz");
  EXPECT_EQ(load_result(file), std::make_pair("Font file '" + file + "' doesn't exist.\n", -1));
  EXPECT_EQ(load_result(""), std::make_pair(std::string("Font file '' doesn't exist.\n"), -1));
  EXPECT_EQ(cell_size(), Size(8, 16));
}

TEST_F(FontTest, unreachable_file_leaves_the_old_font) {
  const std::string file = folder.write("file", "") + "/8x16.pcf.gz";
  EXPECT_EQ(load_result(file), std::make_pair("stat('" + file + "') returned error 20.\n", -1));
  const std::string name = folder.path(std::string(300, 'x'));
  EXPECT_EQ(load_result(name), std::make_pair("stat('" + name + "') returned error 36.\n", -1));
  EXPECT_EQ(cell_size(), Size(8, 16));
}

TEST_F(FontTest, file_that_cannot_be_read_leaves_none) {
  // A regular file whose first byte is at an address that nothing has.
  EXPECT_EQ(load_result("/proc/self/mem"), std::make_pair(std::string("Error calling FT_New_Face(): error = 1\n"), -1));
  EXPECT_EQ(cell_size(), Size(-1, -1));
}

TEST_F(FontTest, null_file_name_leaves_the_old_font) {
  int result = 0;
  EXPECT_EQ(output_of([&] { result = font_load(nullptr); }), "");
  EXPECT_EQ(result, -1);
  EXPECT_EQ(cell_size(), Size(8, 16));
}

TEST_F(FontTest, file_that_is_no_font_leaves_none_until_the_next_one) {
  const std::string file = folder.write("8x16.pcf.gz", "this is no font");
  EXPECT_EQ(load_result(file), std::make_pair(std::string("Error calling FT_New_Face(): error = 2\n"), -1));
  EXPECT_EQ(cell_size(), Size(-1, -1));
  EXPECT_EQ(load_result(file), std::make_pair(std::string("Error calling FT_New_Face(): error = 2\n"), -1));
  EXPECT_EQ(load_result(BUTTONDRIVER_TEST_FONTS "/5x4.pcf.gz"), quiet(0));
  EXPECT_EQ(cell_size(), Size(5, 4));
}

TEST_F(FontTest, font_in_use_outlives_its_file) {
  // Large enough that its glyphs are read when they are wanted.
  const std::string file = folder.path("10x20.pcf.gz");
  std::filesystem::copy_file(PANEL_ROOT_FONTS "/10x20.pcf.gz", file);
  EXPECT_EQ(load_result(file), quiet(0));
  std::filesystem::resize_file(file, 0);
  EXPECT_EQ(cell_size(), Size(10, 20));
  std::filesystem::remove(file);
  EXPECT_EQ(cell_size(), Size(10, 20));
}

TEST_F(FontTest, file_that_would_take_too_much_memory_is_refused) {
  const std::string bomb = folder.path("bomb.pcf.gz");
  const gzFile packed = gzopen(bomb.c_str(), "wb9");
  const std::string zeros(1024 * 1024, '\0');
  for (int i = 0; i < 17; ++i)
    ASSERT_EQ(gzwrite(packed, zeros.data(), static_cast<unsigned>(zeros.size())), static_cast<int>(zeros.size()));
  ASSERT_EQ(gzclose(packed), Z_OK);
  struct Row {
    std::string file;
    int error;
  };
  const Row rows[] = {
      {bomb, 10},
      {folder.write("large.pcf", std::string(4 * 1024 * 1024 + 1, 'x')), 1},
      {folder.write("packed-otherwise.pcf.Z", "\x1f\x9d more"), 2},
      {folder.write("web-font.woff", "wOFF more"), 2},
      {folder.write("packed-by-bzip2.pcf.bz2", "BZh9 more"), 2},
  };
  for (const Row &row : rows)
    EXPECT_EQ(load_result(row.file),
              std::make_pair("Error calling FT_New_Face(): error = " + std::to_string(row.error) + "\n", -1))
        << row.file;
}

TEST_F(FontTest, size_that_cannot_be_selected_fails_quietly) {
  EXPECT_EQ(load_result(BUTTONDRIVER_TEST_FONTS "/unsized.pcf.gz"), quiet(-1));
}

TEST_F(FontTest, is_not_loaded_without_freetype) {
  panel_lib_done();
  EXPECT_FALSE(freetype_ready());
  EXPECT_EQ(load_result(BUTTONDRIVER_TEST_FONTS "/8x16.pcf.gz"), quiet(-1));
  EXPECT_EQ(cell_size(), Size(-1, -1));
  const std::string missing = folder.path("missing");
  EXPECT_EQ(load_result(missing), std::make_pair("Font file '" + missing + "' doesn't exist.\n", -1));
}

TEST_F(FontTest, is_gone_when_the_layer_has_ended) {
  panel_lib_done();
  panel_lib_init();
  EXPECT_TRUE(freetype_ready());
  EXPECT_EQ(cell_size(), Size(-1, -1));
}

class FontFileTest : public testing::Test {
protected:
  const test::TemporaryFolder folder;
  const std::string path = folder.path("font");

  void write(const std::string &bytes) const { std::ofstream(path, std::ios::binary) << bytes; }
};

TEST_F(FontFileTest, of_4_MiB_is_read_and_of_one_byte_more_is_not) {
  FontFile file;
  write(std::string(4 * 1024 * 1024, 'x'));
  EXPECT_EQ(read_font_file(path.c_str(), file), FT_Err_Ok);
  EXPECT_EQ(file.content.size(), 4U * 1024 * 1024);
  write(std::string(4 * 1024 * 1024 + 1, 'x'));
  EXPECT_EQ(read_font_file(path.c_str(), file), FT_Err_Cannot_Open_Resource);
}

TEST_F(FontFileTest, packed_by_gzip_is_unpacked_byte_by_byte_however_long_it_is) {
  std::string bytes;
  for (unsigned i = 0; i < 300'000; ++i)
    bytes += static_cast<char>(i * i >> 7 & 0xFF);
  gzFile packed = gzopen(path.c_str(), "wb");
  gzwrite(packed, bytes.data(), static_cast<unsigned>(bytes.size()));
  gzclose(packed);
  FontFile file;
  ASSERT_EQ(read_font_file(path.c_str(), file), FT_Err_Ok);
  EXPECT_TRUE(
      std::equal(bytes.begin(), bytes.end(), file.unpacked.begin(), file.unpacked.end(),
                 [](char expected, unsigned char byte) { return static_cast<unsigned char>(expected) == byte; }));
}

} // namespace
} // namespace buttondriver::panel
