// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "bridge/topics/topic_command.h"
#include "bridge/wanted/wanted_state.h"
#include "outcome/outcome.h"

#include <QByteArray>
#include <QVector>

#include <functional>

/// What brings a panel to its wanted state, in the order in which it has to be sent. Commands without a topic clear a
/// lamp or a screen. A screen or a lamp is not cleared when the first thing that is drawn there covers it, so that it
/// does not flicker. An entry that cannot be decoded any more is left out.
namespace buttondriver::bridge {

/// Makes a command of a topic's levels below its panel or group, and of its payload, as command_of() does.
using Decode = std::function<Outcome<Command>(const QByteArray &tail, const QByteArray &payload)>;

/// All that is wanted, for a panel that may show anything: screens of which something is wanted are cleared, and so is
/// what was taken back since the panel was restored. Call WantedState::confirmRestored() when all of it has arrived.
QVector<TopicCommand> restore_list(WantedState &state, const Decode &decode);

/// For a panel that shows what was wanted before the last remove(), or set() with Change::redraw: clears what was
/// there, and draws again what is seen of it and over it.
QVector<TopicCommand> redraw_list(WantedState &state, const Decode &decode);

/// The levels below the panel or group: "led/5" of "hall/led/5", and of "group/doors/led/5".
QByteArray tail_of(const QByteArray &topic);

} // namespace buttondriver::bridge
