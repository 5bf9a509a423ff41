// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QByteArray>

#include <cstdint>

namespace buttondriver::bridge {

/// Where a topic leads.
struct TopicRoute {
  enum class Kind : std::uint8_t {
    none,  ///< nowhere: it is another program's, or what the bridge itself publishes
    panel, ///< to one panel
    group, ///< to the panels of a group
    order, ///< the record of the order of a panel's topics
  };

  Kind kind = Kind::none;
  QByteArray name;     ///< of the panel or the group; borrows the topic's bytes
  QByteArray tail;     ///< what to do there, without "do/"; borrows them as well
  bool is_kept = true; ///< else it is below "do/": carried out once
};

/// Topics are PREFIX/PANEL/[do/]TAIL and PREFIX/group/GROUP/[do/]TAIL. What does not begin with `prefix` and a slash,
/// or has no tail, leads nowhere.
TopicRoute route_of(const QByteArray &prefix, const QByteArray &topic);

} // namespace buttondriver::bridge
