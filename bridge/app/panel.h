// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "bridge/configuration/configuration.h"
#include "bridge/panels/panel_link.h"
#include "bridge/topics/command.h"
#include "bridge/wanted/wanted_state.h"

#include <QByteArray>
#include <QObject>
#include <QString>
#include <QVector>

#include <optional>

namespace buttondriver::bridge {

/// One panel: what it should show, and the connection to it. Keys are topics without the prefix, for example
/// "hall/led/5". One thread, that of the event loop.
class Panel : public QObject {
  Q_OBJECT

public:
  Panel(QByteArray name, const PanelAddress &address, PanelLink::Times times);

  const QByteArray &name() const { return _name; }
  const PanelAddress &address() const { return _address; }
  const PanelNumbers &numbers() const { return _link.numbers(); }
  const WantedState &wanted() const { return _wanted; }

  /// The panel is somewhere else now; it gets its wanted state there.
  void moveTo(const PanelAddress &address);

  /// `payload` was published to be kept, and means `command`. `is_old`: it was there before the subscription, and
  /// counts only between beginSync() and endSync().
  void keep(const QByteArray &key, const QByteArray &payload, const Command &command, bool is_retained, bool is_old);
  /// What is kept for `key` cannot be shown. What was known of it before a sync stays.
  void keepFormer(const QByteArray &key) { _wanted.stay(key); }
  /// What was kept is no longer wanted. False, and nothing changes, if the broker goes on keeping it: it was told so by
  /// a message that is not retained while it is.
  bool takeBack(const QByteArray &key, bool is_retained);
  /// The same for all keys that begin with `beginning`.
  void takeBackAll(const QByteArray &beginning);
  /// To be carried out once, now or never.
  void carryOut(const QByteArray &key, const Command &command);

  /// The broker is about to deliver all that it keeps for this panel.
  void beginSync();
  /// The record of the order, as the broker keeps it.
  void keepOrderRecord(const QByteArray &record);
  /// Somebody has removed that from the broker.
  void forgetOrderRecord();
  /// It has delivered all. Returns what it has lost, which has to be published again.
  QVector<WantedState::Entry> endSync();
  bool isSyncing() const { return _wanted.isSyncing(); }
  /// Whether the broker had a record of the order when it was asked last.
  bool isKnownToBroker() const { return _is_known_to_broker; }
  /// The record of the order if it has to be published; else nothing.
  std::optional<QByteArray> takeOrderRecord();

Q_SIGNALS:
  /// What was published with `key` could not be done.
  void refused(const QByteArray &key, const QByteArray &why);
  /// takeOrderRecord() should be asked, at some time.
  void orderMayHaveChanged();
  void availabilityChanged(bool is_up);
  /// The panel cannot be reached. Once, until it has been.
  void unreachable(const QString &reason);

private:
  void redraw();
  void tellFailure(const QString &reason);

  const QByteArray _name;
  PanelAddress _address;
  WantedState _wanted;
  QByteArray _order_record; // counts at the end of a sync
  bool _is_known = false;   // the wanted state was complete once
  bool _is_known_to_broker = false;
  bool _failure_is_told = false;
  PanelLink _link;
};

} // namespace buttondriver::bridge
