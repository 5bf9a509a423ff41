// SPDX-License-Identifier: Apache-2.0
#include "bridge/app/fleet.h"

#include "bridge/topics/topic_commands.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace buttondriver::bridge {
namespace {

using Names = QVector<QByteArray>;

/// A port at which nobody is: what panels do is tested elsewhere.
constexpr quint16 nobodys_port = 1;

Configuration configuration_of(const Names &panels, const QMap<QByteArray, Names> &groups = {}) {
  Configuration configuration;
  for (const QByteArray &name : panels)
    configuration.panels.insert(name, PanelAddress{QStringLiteral("127.0.0.1"), nobodys_port});
  configuration.groups = groups;
  return configuration;
}

Names sorted(Names names) {
  std::sort(names.begin(), names.end());
  return names;
}

Names names_of(const QVector<Panel *> &panels) {
  Names names;
  for (const Panel *panel : panels)
    names.append(panel->name());
  return sorted(names);
}

Names reached(const Fleet &fleet, const char *topic) {
  const QByteArray text(topic);
  Names names;
  fleet.visit(route_of("p", text), [&](Panel &panel) { names.append(panel.name()); });
  return sorted(names);
}

TEST(Fleet, needs_a_filter_for_each_panel_and_for_each_group) {
  Fleet fleet(PanelLink::Times{});
  const auto difference = fleet.apply(configuration_of({"a", "b", "c"}, {{"doors", {"a", "b"}}}));
  const Names filters{"a/#", "b/#", "c/#", "group/doors/#"};
  EXPECT_EQ(filters, sorted(fleet.filters()));
  EXPECT_EQ(filters, sorted(difference.filters_to_make));
  EXPECT_EQ((Names{"a", "b", "c"}), names_of(difference.panels_to_sync));
  EXPECT_TRUE(difference.went.isEmpty());
  EXPECT_TRUE(difference.filters_to_end.isEmpty());
}

TEST(Fleet, leads_topics_to_panels) {
  Fleet fleet(PanelLink::Times{});
  fleet.apply(configuration_of({"a", "b", "c"}, {{"doors", {"a", "b"}}}));
  EXPECT_EQ((Names{"c"}), reached(fleet, "p/c/led/1"));
  EXPECT_EQ((Names{"a", "b"}), reached(fleet, "p/group/doors/led/1"));
  EXPECT_EQ(Names(), reached(fleet, "p/x/led/1"));
  EXPECT_EQ(Names(), reached(fleet, "p/group/x/led/1"));
  EXPECT_EQ(Names(), reached(fleet, "p/doors/led/1"));
  EXPECT_TRUE(fleet.knows(route_of("p", "p/group/doors/led/1")));
  EXPECT_FALSE(fleet.knows(route_of("p", "p/group/a/led/1")));
}

TEST(Fleet, of_a_bridge_has_its_share_alone) {
  Names names;
  for (int i = 0; i < 40; ++i)
    names.append("panel-" + QByteArray::number(i));
  Names together;
  for (int share = 1; share <= 3; ++share) {
    Configuration configuration = configuration_of(names, {{"all", names}});
    configuration.share = share;
    configuration.shares = 3;
    Fleet fleet(PanelLink::Times{});
    fleet.apply(configuration);
    const Names here = reached(fleet, "p/group/all/led/1");
    EXPECT_FALSE(here.isEmpty());
    EXPECT_EQ(static_cast<std::size_t>(here.size()), fleet.panels().size());
    together += here;
  }
  EXPECT_EQ(sorted(names), sorted(together));
}

struct ChangeRow {
  const char *what;
  Names panels;
  QMap<QByteArray, Names> groups;
  Names went, filters_to_end, filters_to_make, panels_to_sync;
};

TEST(Fleet, asks_the_broker_for_no_more_than_a_change_needs) {
  const ChangeRow rows[] = {
      {"nothing", {"a", "b"}, {{"g", {"a"}}}, {}, {}, {}, {}},
      {"a panel comes", {"a", "b", "c"}, {{"g", {"a"}}}, {}, {}, {"c/#"}, {"c"}},
      {"a panel comes and joins", {"a", "b", "c"}, {{"g", {"c", "a"}}}, {}, {}, {"c/#", "group/g/#"}, {"c"}},
      {"a panel goes", {"a"}, {{"g", {"a"}}}, {"b"}, {"b/#"}, {}, {}},
      {"a panel goes with its group", {"b"}, {}, {"a"}, {"a/#", "group/g/#"}, {}, {}},
      {"a panel joins", {"a", "b"}, {{"g", {"a", "b"}}}, {}, {}, {"b/#", "group/g/#"}, {"b"}},
      {"a panel joins in front", {"a", "b"}, {{"g", {"b", "a"}}}, {}, {}, {"b/#", "group/g/#"}, {"b"}},
      {"a group ends", {"a", "b"}, {}, {}, {"group/g/#"}, {}, {}},
      {"a group comes", {"a", "b"}, {{"g", {"a"}}, {"h", {"a"}}}, {}, {}, {"a/#", "group/g/#", "group/h/#"}, {"a"}},
  };
  for (const ChangeRow &row : rows) {
    SCOPED_TRACE(row.what);
    Fleet fleet(PanelLink::Times{});
    fleet.apply(configuration_of({"a", "b"}, {{"g", {"a"}}}));
    const auto difference = fleet.apply(configuration_of(row.panels, row.groups));
    EXPECT_EQ(row.went, sorted(difference.went));
    EXPECT_EQ(row.filters_to_end, sorted(difference.filters_to_end));
    EXPECT_EQ(row.filters_to_make, sorted(difference.filters_to_make));
    EXPECT_EQ(row.panels_to_sync, names_of(difference.panels_to_sync));
  }
}

TEST(Fleet, keeps_the_panels_that_are_as_they_were) {
  Fleet fleet(PanelLink::Times{});
  fleet.apply(configuration_of({"a", "b"}));
  const Panel *const panel = fleet.find("a");
  Configuration next = configuration_of({"a", "c"});
  next.panels["a"].port = 2;
  fleet.apply(next);
  EXPECT_EQ(panel, fleet.find("a"));
  EXPECT_EQ(2, panel->address().port);
  EXPECT_EQ(nullptr, fleet.find("b"));
}

TEST(Fleet, a_panel_out_of_a_group_wants_nothing_of_it_even_while_it_is_compared) {
  Fleet fleet(PanelLink::Times{});
  fleet.apply(configuration_of({"a", "b"}, {{"g", {"a", "b"}}, {"gg", {"a"}}}));
  Panel &panel = *fleet.find("a");
  panel.beginSync();
  panel.endSync();
  for (const char *topic : {"group/g/led/1", "group/gg/led/2", "a/led/3"})
    panel.keep(topic, "on", *command_of("led/1", "on"), false, false);
  ASSERT_EQ(3U, panel.wanted().entries().size());
  panel.beginSync();
  fleet.apply(configuration_of({"a", "b"}, {{"g", {"b"}}, {"gg", {"a"}}}));
  panel.beginSync(); // as after each change meanwhile
  panel.endSync();
  Names topics;
  for (const WantedState::Entry &entry : panel.wanted().entries())
    topics.append(entry.topic);
  EXPECT_EQ((Names{"group/gg/led/2", "a/led/3"}), topics);
}

} // namespace
} // namespace buttondriver::bridge
