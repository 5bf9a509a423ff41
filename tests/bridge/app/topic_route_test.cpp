// SPDX-License-Identifier: Apache-2.0
#include "bridge/app/topic_route.h"

#include <gtest/gtest.h>

namespace buttondriver::bridge {
namespace {

using Kind = TopicRoute::Kind;

struct Row {
  const char *topic;
  Kind kind;
  const char *name;
  const char *tail;
  bool is_kept;
};

const Row rows[] = {
    {"site/a/hall/led/5", Kind::panel, "hall", "led/5", true},
    {"site/a/hall/do/led/5", Kind::panel, "hall", "led/5", false},
    {"site/a/hall/do", Kind::panel, "hall", "do", true},
    {"site/a/hall/do/", Kind::panel, "hall", "", false},
    {"site/a/hall/do/do/led/5", Kind::panel, "hall", "do/led/5", false},
    {"site/a/hall/reconfig", Kind::panel, "hall", "reconfig", true},
    {"site/a/hall/screen/0/part/a b", Kind::panel, "hall", "screen/0/part/a b", true},
    {"site/a/group/doors/led/5", Kind::group, "doors", "led/5", true},
    {"site/a/group/doors/do/led/5", Kind::group, "doors", "led/5", false},
    {"site/a/group/doors/order", Kind::group, "doors", "order", true},
    {"site/a/hall/order", Kind::order, "hall", "", true},
    {"site/a/hall/order/1", Kind::panel, "hall", "order/1", true},
    // What the bridge itself publishes, and what is nobody's.
    {"site/a/hall/availability", Kind::none, "", "", true},
    {"site/a/hall/error", Kind::none, "", "", true},
    {"site/a/hall/statistics/ping_ms", Kind::none, "", "", true},
    {"site/a/group/doors/error", Kind::none, "", "", true},
    {"site/a/bridge/1/sync", Kind::none, "", "", true},
    {"site/a/hall", Kind::none, "", "", true},
    {"site/a/hall/", Kind::none, "", "", true},
    {"site/a//led/5", Kind::none, "", "", true},
    {"site/a/group", Kind::none, "", "", true},
    {"site/a/group/doors", Kind::none, "", "", true},
    {"site/a/group//led/5", Kind::none, "", "", true},
    {"site/a/", Kind::none, "", "", true},
    {"site/a", Kind::none, "", "", true},
    {"site/abc/hall/led/5", Kind::none, "", "", true},
    {"site/b/hall/led/5", Kind::none, "", "", true},
    {"/site/a/hall/led/5", Kind::none, "", "", true},
    {"", Kind::none, "", "", true},
};

TEST(TopicRoute, leads_each_topic_to_its_panel_or_group_or_nowhere) {
  for (const Row &row : rows) {
    SCOPED_TRACE(row.topic);
    const QByteArray topic(row.topic);
    const TopicRoute route = route_of("site/a", topic);
    EXPECT_EQ(row.kind, route.kind);
    if (row.kind == Kind::none)
      continue;
    EXPECT_EQ(QByteArray(row.name), route.name);
    EXPECT_EQ(QByteArray(row.tail), route.tail);
    EXPECT_EQ(row.is_kept, route.is_kept);
  }
}

} // namespace
} // namespace buttondriver::bridge
