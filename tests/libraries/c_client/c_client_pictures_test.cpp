// SPDX-License-Identifier: Apache-2.0
// Which files are pictures.

#include "bmp_file.h"
#include "c_client/messages.h"

#include <gtest/gtest.h>

#include <string>

namespace buttondriver::test {
namespace {

struct PictureRow {
  const char *name;
  std::size_t offset;
  const char *hex; ///< what stands in place of the file's bytes from there on
  buttondriver_result result;
};

void PrintTo(const PictureRow &row, std::ostream *stream) { *stream << row.name; }

buttondriver_result encode(const std::string &file) {
  std::string room(20 + file.size(), '#');
  buttondriver_message message{room.data(), room.size(), 0};
  return buttondriver_encode_picture(&message, 0, 0, 0, file.data(), file.size());
}

class CClientPicturesTest : public testing::TestWithParam<PictureRow> {};

TEST_P(CClientPicturesTest, are_known_by_their_headers) {
  const std::string replacement = from_hex(GetParam().hex);
  EXPECT_EQ(encode(bmp_file().replace(GetParam().offset, replacement.size(), replacement)), GetParam().result);
}

INSTANTIATE_TEST_SUITE_P(Pictures, CClientPicturesTest,
                         testing::Values(PictureRow{"as_it_is", 0, "", BUTTONDRIVER_OK},
                                         PictureRow{"upside_down", 22, "feffffff", BUTTONDRIVER_OK},
                                         PictureRow{"another_first_letter", 0, "43", BUTTONDRIVER_NOT_A_PICTURE},
                                         PictureRow{"another_second_letter", 1, "4e", BUTTONDRIVER_NOT_A_PICTURE},
                                         PictureRow{"header_of_41", 14, "29", BUTTONDRIVER_NOT_A_PICTURE},
                                         PictureRow{"two_planes", 26, "02", BUTTONDRIVER_NOT_A_PICTURE},
                                         PictureRow{"32_bits", 28, "20", BUTTONDRIVER_NOT_A_PICTURE},
                                         PictureRow{"compressed", 30, "01", BUTTONDRIVER_NOT_A_PICTURE},
                                         PictureRow{"no_columns", 18, "00", BUTTONDRIVER_NOT_A_PICTURE},
                                         PictureRow{"minus_2_columns", 18, "feffffff", BUTTONDRIVER_NOT_A_PICTURE},
                                         PictureRow{"3_columns", 18, "03", BUTTONDRIVER_NOT_A_PICTURE},
                                         PictureRow{"very_many_columns", 18, "ffffff7f", BUTTONDRIVER_NOT_A_PICTURE},
                                         PictureRow{"no_rows", 22, "00", BUTTONDRIVER_NOT_A_PICTURE},
                                         PictureRow{"3_rows", 22, "03", BUTTONDRIVER_NOT_A_PICTURE},
                                         PictureRow{"3_rows_upside_down", 22, "fdffffff", BUTTONDRIVER_NOT_A_PICTURE},
                                         PictureRow{"very_many_rows", 22, "00000080", BUTTONDRIVER_NOT_A_PICTURE},
                                         PictureRow{"pixels_in_the_header", 10, "35", BUTTONDRIVER_NOT_A_PICTURE},
                                         PictureRow{"pixels_two_later", 10, "38", BUTTONDRIVER_OK},
                                         PictureRow{"pixels_three_later", 10, "39", BUTTONDRIVER_NOT_A_PICTURE},
                                         PictureRow{"pixels_far_away", 10, "ffffffff", BUTTONDRIVER_NOT_A_PICTURE}),
                         [](const auto &row) { return row.param.name; });

TEST(CClientPictureSizeTest, may_lack_the_padding_of_the_last_row_and_no_more) {
  EXPECT_EQ(encode(bmp_file().substr(0, 68)), BUTTONDRIVER_OK);
  EXPECT_EQ(encode(bmp_file().substr(0, 67)), BUTTONDRIVER_NOT_A_PICTURE);
  for (const std::size_t size : {0, 1, 53, 54})
    EXPECT_EQ(encode(bmp_file().substr(0, size)), BUTTONDRIVER_NOT_A_PICTURE) << size;
}

TEST(CClientPictureSizeTest, may_make_the_longest_message_that_the_daemon_takes_and_no_more) {
  std::string file = bmp_file();
  file.resize(16777216 - 20);
  EXPECT_EQ(encode(file), BUTTONDRIVER_OK);
  file.resize(16777216 - 19);
  EXPECT_EQ(encode(file), BUTTONDRIVER_PICTURE_TOO_LARGE);
}

} // namespace
} // namespace buttondriver::test
