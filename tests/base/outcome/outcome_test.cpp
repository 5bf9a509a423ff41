// SPDX-License-Identifier: Apache-2.0
#include "outcome/outcome.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>

namespace buttondriver {
namespace {

Outcome<int> half(int number) {
  if (number % 2 != 0)
    return Failure{QStringLiteral("%1 is odd").arg(number)};
  return number / 2;
}

TEST(OutcomeTest, holds_a_value_or_the_reason_why_there_is_none) {
  const Outcome<int> good = half(6);
  ASSERT_TRUE(good);
  EXPECT_EQ(*good, 3);
  const Outcome<int> bad = half(7);
  ASSERT_FALSE(bad);
  EXPECT_EQ(bad.failure().text.toStdString(), "7 is odd");
}

TEST(OutcomeTest, of_something_that_yields_nothing_is_done_or_a_failure) {
  EXPECT_TRUE(Outcome<Done>(Done{}));
  EXPECT_FALSE(Outcome<Done>(Failure{QString()}));
}

TEST(OutcomeTest, gives_away_a_value_that_cannot_be_copied) {
  Outcome<std::unique_ptr<std::string>> outcome(std::make_unique<std::string>("text"));
  ASSERT_TRUE(outcome);
  EXPECT_EQ((*outcome)->size(), 4U);
  const std::unique_ptr<std::string> taken = std::move(*outcome);
  EXPECT_EQ(*taken, "text");
}

} // namespace
} // namespace buttondriver
