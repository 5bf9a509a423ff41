// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "bridge/topics/command.h"
#include "outcome/outcome.h"

#include <QByteArray>

/// What programs publish, made into messages for panels. Any thread may call; nothing is kept.
namespace buttondriver::bridge {

/// The command that `payload` asks for on `tail`, the levels of a topic below its panel or group, such as "led/5",
/// without "do/". Fails for a tail that does not exist and for a payload that is wrong; the failure says what is wrong
/// and what would be right, in one line. A payload is never empty: an empty one takes back what was published.
///
/// Takes no more than some 20 bytes for each pixel of a picture, and nothing for a picture that cannot be right.
Outcome<Command> command_of(const QByteArray &tail, const QByteArray &payload);

/// The frame that brings `target` back to how it is after a start of the daemon: a lamp off, a screen black. For a
/// line, and for an area, the whole screen. Empty for Target::Kind::no_place.
QByteArray clearing_frame(const Target &target);

/// The frame of a ping.
const QByteArray &ping_frame();

} // namespace buttondriver::bridge
