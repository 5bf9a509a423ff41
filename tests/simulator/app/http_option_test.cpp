// SPDX-License-Identifier: Apache-2.0
#include "simulator/app/options.h"
#include "simulator/http/web_page.h"

#include <gtest/gtest.h>

namespace buttondriver::simulator {
namespace {

Options options_of(const QStringList &arguments) {
  const auto result = read_options(QStringList(QStringLiteral("buttondriver-sim")) + arguments);
  const auto *options = std::get_if<Options>(&result);
  EXPECT_NE(options, nullptr);
  return options ? *options : Options();
}

TEST(HttpOptionTest, without_it_the_page_is_at_8080_where_there_is_one) {
  const Options options = options_of({});
  EXPECT_EQ(options.http.has_value(), WebPage::isAvailable());
  EXPECT_FALSE(options.http_is_asked_for);
  if (options.http) {
    EXPECT_EQ(options.http->address, QHostAddress(QStringLiteral("127.0.0.1")));
    EXPECT_EQ(options.http->port, 8080);
  }
}

TEST(HttpOptionTest, off_is_no_page) {
  const Options options = options_of({QStringLiteral("--http"), QStringLiteral("off")});
  EXPECT_FALSE(options.http.has_value());
  EXPECT_FALSE(options.http_is_asked_for);
}

TEST(HttpOptionTest, what_is_asked_for_must_be_had) {
  const auto result =
      read_options({QStringLiteral("buttondriver-sim"), QStringLiteral("--http"), QStringLiteral("0.0.0.0:0")});
  if (!WebPage::isAvailable()) {
    EXPECT_EQ(std::get<Answer>(result).exit_status, 2);
    EXPECT_EQ(std::get<Answer>(result).text.toStdString(),
              "there is no web page in this build, which has no Qt WebSockets module");
    return;
  }
  EXPECT_TRUE(std::get<Options>(result).http_is_asked_for);
  EXPECT_EQ(std::get<Options>(result).http->port, 0);
}

TEST(HttpOptionTest, anything_else_is_a_bad_command_line) {
  const auto result =
      read_options({QStringLiteral("buttondriver-sim"), QStringLiteral("--http"), QStringLiteral("example.org")});
  EXPECT_EQ(std::get<Answer>(result).exit_status, 2);
  EXPECT_EQ(std::get<Answer>(result).text.toStdString(), "--http takes [ADDRESS:]PORT or off, not 'example.org'");
}

} // namespace
} // namespace buttondriver::simulator
