// SPDX-License-Identifier: Apache-2.0
#include "simulator/http/http_endpoint.h"
#include "simulator/http/web_page.h"
#include "simulator/options.h"

#include <gtest/gtest.h>

namespace buttondriver::simulator {
namespace {

struct Row {
  const char *text;
  const char *address; ///< null: refused
  quint16 port;
};

TEST(HttpEndpointTest, reads_addresses_and_ports) {
  const Row rows[] = {
      {"8080", "127.0.0.1", 8080},
      {"0", "127.0.0.1", 0},
      {"65535", "127.0.0.1", 65535},
      {"0.0.0.0:80", "0.0.0.0", 80},
      {"localhost:1", "127.0.0.1", 1},
      {"[::1]:8081", "::1", 8081},
      {"", nullptr, 0},
      {"65536", nullptr, 0},
      {"-1", nullptr, 0},
      {"+80", nullptr, 0},
      {" 80", nullptr, 0},
      {"80x", nullptr, 0},
      {"0x50", nullptr, 0},
      {":80", nullptr, 0},
      {"1:80", nullptr, 0},
      {"example.org:80", nullptr, 0},
      {"::1:80", nullptr, 0},
      {"[127.0.0.1]:80", nullptr, 0},
      {"[::1]", nullptr, 0},
      {"127.0.0.1:", nullptr, 0},
      {"256.0.0.1:80", nullptr, 0},
  };
  for (const Row &row : rows) {
    const auto endpoint = read_endpoint(QString::fromLatin1(row.text));
    ASSERT_EQ(endpoint.has_value(), row.address != nullptr) << row.text;
    if (!endpoint)
      continue;
    EXPECT_EQ(endpoint->address, QHostAddress(QString::fromLatin1(row.address))) << row.text;
    EXPECT_EQ(endpoint->port, row.port) << row.text;
  }
}

TEST(HttpEndpointTest, says_where_the_page_is) {
  EXPECT_EQ(page_address(QHostAddress(QStringLiteral("127.0.0.1")), 8080).toStdString(), "http://127.0.0.1:8080/");
  EXPECT_EQ(page_address(QHostAddress(QStringLiteral("::1")), 80).toStdString(), "http://[::1]:80/");
}

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
              "there is no web page in this build, which has no Qt HTTP server and WebSockets modules");
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
