// SPDX-License-Identifier: Apache-2.0
#include "panel/formats/glyph_cache.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <vector>

namespace buttondriver::panel {
namespace {

class GlyphCacheTest : public testing::Test {
protected:
  /// A glyph of so many rows, whose bits are `bits` and last until the next one is made.
  TextGlyph glyph(unsigned rows, unsigned char bits = 0x5A) {
    _bits.assign(rows * std::size_t{4}, bits);
    return {8, rows, 9, -1, true, _bits.data()};
  }

  const std::unique_ptr<GlyphCache> cache = std::make_unique<GlyphCache>();

private:
  std::vector<unsigned char> _bits;
};

TEST_F(GlyphCacheTest, has_nothing_at_first) {
  for (int character = 0; character < 256; ++character)
    EXPECT_EQ(cache->find(static_cast<unsigned char>(character)), nullptr) << character;
}

TEST_F(GlyphCacheTest, keeps_a_glyph_with_bits_of_its_own) {
  const TextGlyph *const first = cache->keep('A', glyph(3, 0x11));
  const TextGlyph *const second = cache->keep(0xFF, glyph(2, 0x22));
  glyph(3, 0x33);
  EXPECT_EQ(cache->find('A'), first);
  EXPECT_EQ(cache->find(0xFF), second);
  EXPECT_EQ(cache->find('B'), nullptr);
  ASSERT_NE(first, nullptr);
  EXPECT_EQ(first->width, 8U);
  EXPECT_EQ(first->rows, 3U);
  EXPECT_EQ(first->advance_x, 9);
  EXPECT_EQ(first->advance_y, -1);
  EXPECT_TRUE(first->is_drawable);
  EXPECT_EQ(std::vector(first->bits, first->bits + 12), std::vector<unsigned char>(12, 0x11));
  ASSERT_NE(second, nullptr);
  EXPECT_EQ(std::vector(second->bits, second->bits + 8), std::vector<unsigned char>(8, 0x22));
}

TEST_F(GlyphCacheTest, keeps_8192_rows_and_not_one_more) {
  ASSERT_NE(cache->keep('A', glyph(8191)), nullptr);
  EXPECT_EQ(cache->keep('B', glyph(2)), nullptr);
  EXPECT_EQ(cache->find('B'), nullptr);
  EXPECT_NE(cache->keep('C', glyph(1)), nullptr);
  EXPECT_EQ(cache->keep('D', glyph(1)), nullptr);
  EXPECT_NE(cache->keep('E', glyph(0)), nullptr);
}

TEST_F(GlyphCacheTest, keeps_no_bits_of_a_glyph_that_cannot_be_drawn) {
  TextGlyph wide = glyph(8192);
  wide.is_drawable = false;
  const TextGlyph *const kept = cache->keep('A', wide);
  ASSERT_NE(kept, nullptr);
  EXPECT_EQ(kept->rows, 8192U);
  EXPECT_FALSE(kept->is_drawable);
  EXPECT_EQ(kept->bits, nullptr);
  EXPECT_NE(cache->keep('B', glyph(8192)), nullptr);
}

TEST_F(GlyphCacheTest, has_all_its_room_again_when_it_is_cleared) {
  ASSERT_NE(cache->keep('A', glyph(8192)), nullptr);
  cache->clear();
  EXPECT_EQ(cache->find('A'), nullptr);
  EXPECT_NE(cache->keep('B', glyph(8192)), nullptr);
}

} // namespace
} // namespace buttondriver::panel
