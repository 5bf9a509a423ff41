// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "bridge/app/panel.h"
#include "bridge/app/topic_route.h"
#include "bridge/configuration/configuration.h"

#include <QByteArray>
#include <QHash>
#include <QObject>
#include <QVector>

#include <map>
#include <memory>

namespace buttondriver::bridge {

/// The panels that this bridge drives, and the groups that they are in. One thread, that of the event loop.
class Fleet : public QObject {
  Q_OBJECT

public:
  explicit Fleet(PanelLink::Times times, QObject *parent = nullptr);

  /// What another configuration means for subscriptions. Names without the prefix.
  struct Difference {
    QVector<QByteArray> went; ///< panels
    QVector<QByteArray> filters_to_end;
    /// Those that are new, and those of panels that are now in a group that they were not in: the broker has to deliver
    /// again what it keeps.
    QVector<QByteArray> filters_to_make;
    QVector<Panel *> panels_to_sync;
  };
  /// Panels that are as they were keep their connections. Groups that none of our panels is in are left out.
  Difference apply(const Configuration &configuration);

  /// All that the panels and groups need, without the prefix.
  QVector<QByteArray> filters() const;

  /// Calls `visit` with each panel that a topic leads to: none for a name that is not known here.
  template <class Visit> void visit(const TopicRoute &route, Visit visit) const {
    if (route.kind != TopicRoute::Kind::group) {
      if (Panel *const panel = find(route.name))
        visit(*panel);
      return;
    }
    const auto members = _members.constFind(route.name);
    if (members != _members.cend())
      for (Panel *const panel : *members)
        visit(*panel);
  }
  bool knows(const TopicRoute &route) const;
  Panel *find(const QByteArray &name) const;
  const std::map<QByteArray, std::unique_ptr<Panel>> &panels() const { return _panels; }

Q_SIGNALS:
  void panelCame(Panel *panel);

private:
  using Groups = QMap<QByteArray, QVector<QByteArray>>;
  void takeOutOfGroups(const Groups &groups);

  const PanelLink::Times _times;
  std::map<QByteArray, std::unique_ptr<Panel>> _panels;
  QHash<QByteArray, Panel *> _by_name;
  Groups _groups; // of our panels only
  QHash<QByteArray, QVector<Panel *>> _members;
};

} // namespace buttondriver::bridge
