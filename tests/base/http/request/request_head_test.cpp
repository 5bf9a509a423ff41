// SPDX-License-Identifier: Apache-2.0
#include "http/request/request_head.h"

#include <gtest/gtest.h>

namespace buttondriver {
namespace {

TEST(RequestHeadTest, ends_at_the_empty_line) {
  EXPECT_EQ(head_end(""), -1);
  EXPECT_EQ(head_end("GET / HTTP/1.1\r\nHost: a\r\n"), -1);
  EXPECT_EQ(head_end("GET / HTTP/1.1\r\nHost: a\r\n\r\nbody\r\n\r\n"), 27);
}

TEST(RequestHeadTest, has_what_decides) {
  const auto head = std::get<RequestHead>(
      read_head("POST /reset?x=1 HTTP/1.1\r\nHOST: localhost:8080\r\norigin:http://localhost:8080 \r\n"
                "Content-Length: 12\r\nsec-fetch-site: none\r\nUpgrade: WebSocket\r\nConnection: keep-alive, "
                "Upgrade\r\nX-Empty:\r\n\r\n"));
  EXPECT_EQ(head.method, "POST");
  EXPECT_EQ(head.target, "/reset?x=1");
  EXPECT_EQ(head.host, "localhost:8080");
  EXPECT_EQ(head.origin, QByteArray("http://localhost:8080"));
  EXPECT_EQ(head.fetch_site, QByteArray("none"));
  EXPECT_EQ(head.body_size, 12);
  EXPECT_TRUE(head.is_websocket);
}

TEST(RequestHeadTest, without_the_optional_lines_they_are_absent) {
  const auto head = std::get<RequestHead>(read_head("GET / HTTP/1.0\r\nHost: a\r\n\r\n"));
  EXPECT_FALSE(head.origin.has_value());
  EXPECT_FALSE(head.fetch_site.has_value());
  EXPECT_EQ(head.body_size, 0);
  EXPECT_FALSE(head.is_websocket);
}

TEST(RequestHeadTest, a_path_is_decoded_and_a_query_is_not) {
  struct Row {
    const char *target;
    const char *path;
    const char *query;
  };
  const Row rows[] = {
      {"/", "/", ""},
      {"/state.json?x=1#y", "/state.json", "x=1"},
      {"/state.json?x=1?y%20", "/state.json", "x=1?y%20"},
      {"/state.json#y?x=1", "/state.json", ""},
      {"/state%2ejson", "/state.json", ""},
      {"/a%20b%C3%A4", "/a b\u00e4", ""},
      {"//state.json", "//state.json", ""},
      {"/%2e%2e/etc", "/../etc", ""},
      {"/?", "/", ""},
  };
  for (const Row &row : rows) {
    RequestHead head;
    head.target = row.target;
    EXPECT_EQ(head.path(), QString::fromUtf8(row.path)) << row.target;
    EXPECT_EQ(head.query(), row.query) << row.target;
  }
}

TEST(RequestHeadTest, refuses_what_could_be_read_in_two_ways) {
  struct Row {
    const char *head;
    int status;
  };
  const Row rows[] = {
      {"\r\n\r\n", 400},
      {"GET /live HTTP/1.1\r\nHost: a\r\nUpgrade: websocket\r\n\r\n", 400},
      {"GET /live HTTP/1.1\r\nHost: a\r\nUpgrade: websocket\r\nConnection: close\r\n\r\n", 400},
      {"GET /live HTTP/1.1\r\nHost: a\r\nUpgrade: websocket\r\nUpgrade: websocket\r\nConnection: Upgrade\r\n\r\n", 400},
      {"GET /live HTTP/1.1\r\nHost: a\r\nUpgrade: h2c\r\nUpgrade: websocket\r\nConnection: Upgrade\r\n\r\n", 400},
      {"GET /live HTTP/1.1\r\nHost: a\r\nUpgrade: websocket, h2c\r\nConnection: Upgrade\r\n\r\n", 400},
      {"GET / HTTP/1.1\r\nHost: a\r\nUpgrade: h2c\r\nConnection: Upgrade\r\n\r\n", 400},
      {"GET / HTTP/1.1\r\nHost: a\r\nUpgrade:\r\n\r\n", 400},
      {"GET\r\nHost: a\r\n\r\n", 400},
      {"GET  / HTTP/1.1\r\nHost: a\r\n\r\n", 400},
      {"GET / HTTP/2.0\r\nHost: a\r\n\r\n", 400},
      {"GET / HTTP/1.1 \r\nHost: a\r\n\r\n", 400},
      {"GET http://evil/ HTTP/1.1\r\nHost: a\r\n\r\n", 400},
      {"G\x01T / HTTP/1.1\r\nHost: a\r\n\r\n", 400},
      {"GET / HTTP/1.1\r\n\r\n", 400},
      {"GET / HTTP/1.1\r\nHost: a\r\nhost: b\r\n\r\n", 400},
      {"GET / HTTP/1.1\r\nHost: a\r\nOrigin: b\r\nOrigin: b\r\n\r\n", 400},
      {"GET / HTTP/1.1\r\nHost: a\r\nSec-Fetch-Site: none\r\nSec-Fetch-Site: none\r\n\r\n", 400},
      {"GET / HTTP/1.1\r\nHost: a\r\nno header\r\n\r\n", 400},
      {"GET / HTTP/1.1\r\nHost: a\r\n folded: line\r\n\r\n", 400},
      {"GET / HTTP/1.1\r\nHost: a\r\nHost : b\r\n\r\n", 400},
      {"GET / HTTP/1.1\r\nHost: a\r\nContent-Length: 1\r\nContent-Length: 2\r\n\r\n", 400},
      {"GET / HTTP/1.1\r\nHost: a\r\nContent-Length: -1\r\n\r\n", 400},
      {"GET / HTTP/1.1\r\nHost: a\r\nContent-Length: 1x\r\n\r\n", 400},
      {"GET / HTTP/1.1\r\nHost: a\r\nContent-Length:\r\n\r\n", 400},
      {"GET / HTTP/1.1\r\nHost: a\r\nContent-Length: 99999999999999999999\r\n\r\n", 400},
      {"POST / HTTP/1.1\r\nHost: a\r\nTransfer-Encoding: chunked\r\n\r\n", 411},
  };
  for (const Row &row : rows) {
    const auto content = read_head(row.head);
    const auto *refused = std::get_if<RefusedRequest>(&content);
    ASSERT_NE(refused, nullptr) << row.head;
    EXPECT_EQ(refused->status, row.status) << row.head;
    EXPECT_FALSE(refused->reason.isEmpty()) << row.head;
  }
}

} // namespace
} // namespace buttondriver
