// SPDX-License-Identifier: Apache-2.0
#include "bridge/panels/answer_count.h"

#include <gtest/gtest.h>

#include <string>

namespace buttondriver::bridge::test {

namespace {

const std::string answer("\0\0\0\4\0\0\0\1", 8);

int take(AnswerCount &count, const std::string &bytes) { return count.take(bytes.data(), bytes.size()); }

} // namespace

TEST(AnswerCountTest, counts_answers_however_they_are_cut) {
  for (std::size_t cut = 0; cut <= 24; ++cut) {
    AnswerCount count;
    const std::string three = answer + answer + answer;
    EXPECT_EQ(take(count, three.substr(0, cut)), static_cast<int>(cut / 8));
    EXPECT_EQ(take(count, three.substr(cut)), 3 - static_cast<int>(cut / 8));
  }
}

TEST(AnswerCountTest, is_lost_for_good_when_a_byte_is_wrong) {
  for (std::size_t place = 0; place < 8; ++place) {
    std::string wrong = answer;
    wrong[place] = '\x7f';
    AnswerCount count;
    EXPECT_EQ(take(count, answer + wrong), -1);
    EXPECT_EQ(take(count, answer), -1);
  }
}

} // namespace buttondriver::bridge::test
