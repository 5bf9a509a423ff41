// SPDX-License-Identifier: Apache-2.0
#include "http/request/access_rule.h"

#include <gtest/gtest.h>

namespace buttondriver {
namespace {

/// 0 when the request is taken.
int refusal(const char *listening, const RequestHead &head) {
  const auto refused = AccessRule(QHostAddress(QString::fromLatin1(listening)), "/live").refusal(head);
  return refused ? refused->status : 0;
}

RequestHead get(const char *host) {
  RequestHead head;
  head.method = "GET";
  head.target = "/state.json";
  head.host = host;
  return head;
}

TEST(AccessRuleTest, a_host_is_this_machine_or_the_address_that_is_listened_on) {
  struct Row {
    const char *listening;
    const char *host;
    int status;
  };
  const Row rows[] = {
      {"127.0.0.1", "127.0.0.1", 0},
      {"127.0.0.1", "127.0.0.1:8080", 0},
      {"127.0.0.1", "localhost:9", 0},
      {"127.0.0.1", "LocalHost", 0},
      {"127.0.0.1", "[::1]:8080", 0},
      {"127.0.0.1", "192.168.1.5:8080", 403},
      {"127.0.0.1", "evil.example", 403},
      {"127.0.0.1", "evil.example:8080", 403},
      {"127.0.0.1", "127.0.0.1.evil.example", 403},
      {"127.0.0.1", "localhost.evil.example", 403},
      {"127.0.0.1", "localhost:80:80", 403},
      {"127.0.0.1", "localhost:evil", 403},
      {"127.0.0.1", "user@localhost", 403},
      {"127.0.0.1", "", 403},
      {"127.0.0.1", ":8080", 403},
      {"127.0.0.1", "[::1", 403},
      {"127.0.0.1", "2130706433", 403},
      {"192.168.1.5", "192.168.1.5:8080", 0},
      {"192.168.1.5", "192.168.1.6:8080", 403},
      {"fe80::1", "[fe80::1]:80", 0},
      {"0.0.0.0", "192.168.1.6:8080", 0},
      {"0.0.0.0", "evil.example:8080", 403},
      {"::", "[2001:db8::7]:8080", 0},
      {"::", "10.0.0.1", 0},
      {"::", "evil.example", 403},
      {"::", "[fe80::1%;script-src *]", 403},
      {"::", "10.0.0.1;script-src *", 403},
      {"::", "[::1]evil.example", 403},
  };
  for (const Row &row : rows)
    EXPECT_EQ(refusal(row.listening, get(row.host)), row.status) << row.listening << " " << row.host;
}

TEST(AccessRuleTest, an_origin_is_that_of_the_very_host) {
  struct Row {
    const char *origin;
    int status;
  };
  const Row rows[] = {
      {"http://127.0.0.1:8080", 0},
      {"http://127.0.0.1:8081", 403},
      {"https://127.0.0.1:8080", 403},
      {"http://localhost:8080", 403},
      {"http://evil.example", 403},
      {"null", 403},
      {"http://127.0.0.1:8080.evil.com", 403},
      {"", 403},
  };
  for (const Row &row : rows) {
    RequestHead head = get("127.0.0.1:8080");
    head.origin = row.origin;
    EXPECT_EQ(refusal("127.0.0.1", head), row.status) << row.origin;
  }
}

TEST(AccessRuleTest, a_browser_s_request_comes_from_this_page_or_from_nowhere) {
  struct Row {
    const char *fetch_site;
    int status;
  };
  const Row rows[] = {{"same-origin", 0}, {"none", 0}, {"cross-site", 403}, {"same-site", 403}, {"", 403}};
  for (const Row &row : rows) {
    RequestHead head = get("127.0.0.1:8080");
    head.fetch_site = row.fetch_site;
    EXPECT_EQ(refusal("127.0.0.1", head), row.status) << row.fetch_site;
    head.origin = "http://127.0.0.1:8080";
    EXPECT_EQ(refusal("127.0.0.1", head), row.status) << row.fetch_site;
  }
}

TEST(AccessRuleTest, methods_sizes_and_places_are_limited) {
  RequestHead head = get("localhost");
  for (const char *method : {"GET", "HEAD", "POST"}) {
    head.method = method;
    EXPECT_EQ(refusal("127.0.0.1", head), 0) << method;
  }
  for (const char *method : {"OPTIONS", "PUT", "DELETE", "CONNECT", "get"}) {
    head.method = method;
    EXPECT_EQ(refusal("127.0.0.1", head), 405) << method;
  }
  head.method = "POST";
  head.body_size = 1024;
  EXPECT_EQ(refusal("127.0.0.1", head), 0);
  head.body_size = 1025;
  EXPECT_EQ(refusal("127.0.0.1", head), 413);

  RequestHead live = get("localhost");
  live.is_websocket = true;
  EXPECT_EQ(refusal("127.0.0.1", live), 404);
  live.target = "/live";
  EXPECT_EQ(refusal("127.0.0.1", live), 0);
  live.method = "POST";
  EXPECT_EQ(refusal("127.0.0.1", live), 404);
}

TEST(AccessRuleTest, without_a_path_for_it_nothing_becomes_a_websocket) {
  RequestHead request = get("localhost");
  request.is_websocket = true;
  for (const char *target : {"/live", "/", ""}) {
    request.target = target;
    EXPECT_TRUE(AccessRule(QHostAddress(QHostAddress::LocalHost)).refusal(request)) << target;
  }
}

} // namespace
} // namespace buttondriver
