// SPDX-License-Identifier: Apache-2.0
#include "bridge/app/panel.h"

#include "bridge/topics/topic_commands.h"
#include "bridge/wanted/restore_list.h"

#include <utility>

namespace buttondriver::bridge {

Panel::Panel(QByteArray name, const PanelAddress &address, PanelLink::Times times)
    : _name(std::move(name)), _address(address),
      _link(
          address.host, address.port, [this] { return restore_list(_wanted, command_of); }, times) {
  connect(&_link, &PanelLink::availabilityChanged, this, [this](bool is_up) {
    _failure_is_told = false;
    Q_EMIT availabilityChanged(is_up);
  });
  connect(&_link, &PanelLink::brokeOff, this, &Panel::tellFailure);
  connect(&_link, &PanelLink::restored, this, [this] { _wanted.confirmRestored(); });
  connect(&_link, &PanelLink::lost, this, [this](const QByteArray &key) {
    Q_EMIT refused(key, "the connection to the panel broke before this had left");
  });
  _wanted.forgetPanel(); // another bridge, or this one before, may have left something there
  _link.start();
}

void Panel::moveTo(const PanelAddress &address) {
  _address = address;
  _failure_is_told = false;
  _wanted.forgetPanel();
  _link.moveTo(address.host, address.port);
}

void Panel::tellFailure(const QString &reason) {
  if (!std::exchange(_failure_is_told, true))
    Q_EMIT unreachable(reason);
}

void Panel::keep(const QByteArray &key, const QByteArray &payload, const Command &command, bool is_retained,
                 bool is_old) {
  // What is kept for a group is delivered again when another panel comes to it. That puts nothing on top.
  if (is_old && !isSyncing() && key.startsWith("group/") && _wanted.payloadOf(key) == payload)
    return;
  switch (_wanted.set(key, payload, command.target, is_retained, is_old)) {
  case WantedState::Change::none:
    // Something that is not kept may have changed the panel meanwhile.
    if (isSyncing())
      return;
    [[fallthrough]];
  case WantedState::Change::last:
    if (_link.send(key, command, true) == PanelLink::Taken::no_room)
      Q_EMIT refused(key, "too much waits for the panel; it will show this when it has caught up");
    break;
  case WantedState::Change::redraw:
    redraw();
    break;
  case WantedState::Change::refused:
    Q_EMIT refused(key, "too much is kept for this panel");
    return;
  }
  Q_EMIT orderMayHaveChanged();
}

bool Panel::takeBack(const QByteArray &key, bool is_retained) {
  if (!is_retained && _wanted.isRetained(key))
    return false;
  if (!_wanted.remove(key))
    return true;
  redraw();
  Q_EMIT orderMayHaveChanged();
  return true;
}

void Panel::takeBackAll(const QByteArray &beginning) {
  if (!_wanted.removeAll(beginning))
    return;
  redraw();
  Q_EMIT orderMayHaveChanged();
}

/// What does not get through is made good by a restoration.
void Panel::redraw() {
  for (const TopicCommand &each : redraw_list(_wanted, command_of))
    if (_link.send(each.topic, each.command, true) != PanelLink::Taken::yes)
      return;
}

void Panel::carryOut(const QByteArray &key, const Command &command) {
  switch (_link.send(key, command, false)) {
  case PanelLink::Taken::yes:
    break;
  case PanelLink::Taken::not_connected:
    Q_EMIT refused(key, "the panel is not connected; what is not kept is not carried out later");
    break;
  case PanelLink::Taken::no_room:
    Q_EMIT refused(key, "too much waits for the panel");
    break;
  }
}

void Panel::beginSync() {
  _order_record.clear();
  _wanted.beginSync();
}

void Panel::keepOrderRecord(const QByteArray &record) { _order_record = record; }

void Panel::forgetOrderRecord() {
  _wanted.forgetOrderRecord();
  Q_EMIT orderMayHaveChanged();
}

QVector<WantedState::Entry> Panel::endSync() {
  _is_known_to_broker = !_order_record.isEmpty();
  const WantedState::SyncOutcome outcome = _wanted.endSync(std::exchange(_order_record, {}));
  for (const QByteArray &key : outcome.refused)
    Q_EMIT refused(key, "too much is kept for this panel");
  if (!std::exchange(_is_known, true))
    _link.release();
  else if (outcome.has_changed)
    _link.restore();
  Q_EMIT orderMayHaveChanged();
  return outcome.lost_by_broker;
}

std::optional<QByteArray> Panel::takeOrderRecord() {
  return _wanted.takeOrderChange() ? std::optional(_wanted.orderRecord()) : std::nullopt;
}

} // namespace buttondriver::bridge
