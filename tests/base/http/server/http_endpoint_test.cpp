// SPDX-License-Identifier: Apache-2.0
#include "http/server/http_endpoint.h"

#include <gtest/gtest.h>

namespace buttondriver {
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

} // namespace
} // namespace buttondriver
