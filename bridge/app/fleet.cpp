// SPDX-License-Identifier: Apache-2.0
#include "bridge/app/fleet.h"

#include <algorithm>

namespace buttondriver::bridge {

namespace {

QByteArray group_root(const QByteArray &group) { return "group/" + group + '/'; }
QByteArray panel_filter(const QByteArray &panel) { return panel + "/#"; }
QByteArray group_filter(const QByteArray &group) { return group_root(group) + '#'; }

/// Groups with those of their panels that this bridge drives, without those that are left empty.
QMap<QByteArray, QVector<QByteArray>> groups_here(const Configuration &configuration) {
  QMap<QByteArray, QVector<QByteArray>> groups;
  for (auto group = configuration.groups.cbegin(); group != configuration.groups.cend(); ++group) {
    QVector<QByteArray> names;
    std::copy_if(group->cbegin(), group->cend(), std::back_inserter(names),
                 [&](const QByteArray &name) { return configuration.drives(name); });
    if (!names.isEmpty())
      groups.insert(group.key(), names);
  }
  return groups;
}

} // namespace

Fleet::Fleet(PanelLink::Times times, QObject *parent) : QObject(parent), _times(times) {}

Fleet::Difference Fleet::apply(const Configuration &configuration) {
  Difference difference;
  for (auto panel = _panels.begin(); panel != _panels.end();) {
    const auto address = configuration.panels.constFind(panel->first);
    if (address != configuration.panels.cend() && configuration.drives(panel->first)) {
      if (!(*address == panel->second->address()))
        panel->second->moveTo(*address);
      ++panel;
      continue;
    }
    difference.went.append(panel->first);
    difference.filters_to_end.append(panel_filter(panel->first));
    _by_name.remove(panel->first);
    panel = _panels.erase(panel);
  }

  for (auto address = configuration.panels.cbegin(); address != configuration.panels.cend(); ++address) {
    const QByteArray &name = address.key();
    if (!configuration.drives(name) || _by_name.contains(name))
      continue;
    auto &panel = _panels[name];
    panel = std::make_unique<Panel>(name, *address, _times);
    _by_name.insert(name, panel.get());
    difference.filters_to_make.append(panel_filter(name));
    difference.panels_to_sync.append(panel.get());
    Q_EMIT panelCame(panel.get());
  }

  const Groups groups = groups_here(configuration);
  takeOutOfGroups(groups);
  for (auto group = _groups.cbegin(); group != _groups.cend(); ++group)
    if (!groups.contains(group.key()))
      difference.filters_to_end.append(group_filter(group.key()));
  _members.clear();
  for (auto group = groups.cbegin(); group != groups.cend(); ++group) {
    const QVector<QByteArray> before = _groups.value(group.key());
    for (const QByteArray &name : *group) {
      Panel *const panel = _by_name.value(name);
      _members[group.key()].append(panel);
      if (!before.contains(name) && !difference.panels_to_sync.contains(panel)) {
        // What the broker keeps for it is compared as a whole.
        difference.panels_to_sync.append(panel);
        difference.filters_to_make.append(panel_filter(name));
      }
    }
  }
  // A panel that is compared needs all of its groups.
  for (auto group = groups.cbegin(); group != groups.cend(); ++group) {
    const auto &members = _members[group.key()];
    if (std::any_of(members.cbegin(), members.cend(),
                    [&](Panel *panel) { return difference.panels_to_sync.contains(panel); }))
      difference.filters_to_make.append(group_filter(group.key()));
  }
  _groups = groups;
  return difference;
}

/// What panels were told through groups that they are not in any more is not wanted any more.
void Fleet::takeOutOfGroups(const Groups &groups) {
  for (auto group = _groups.cbegin(); group != _groups.cend(); ++group)
    for (const QByteArray &name : *group)
      if (Panel *const panel = find(name); panel && !groups.value(group.key()).contains(name))
        panel->takeBackAll(group_root(group.key()));
}

QVector<QByteArray> Fleet::filters() const {
  QVector<QByteArray> filters;
  for (const auto &panel : _panels)
    filters.append(panel_filter(panel.first));
  for (auto group = _groups.cbegin(); group != _groups.cend(); ++group)
    filters.append(group_filter(group.key()));
  return filters;
}

bool Fleet::knows(const TopicRoute &route) const {
  return route.kind == TopicRoute::Kind::group ? _members.contains(route.name) : _by_name.contains(route.name);
}

Panel *Fleet::find(const QByteArray &name) const { return _by_name.value(name); }

} // namespace buttondriver::bridge
