// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "bridge/topics/command.h"
#include "outcome/outcome.h"

#include <QByteArray>

/// What programs publish, made into messages for panels. Any thread may call; nothing is kept.
namespace buttondriver::bridge {

/// Bytes that a payload may have; more are refused, whatever they are. The longest words, texts of many more characters
/// than a line has, and any PNG file of a screen's size with something beside the pixels.
inline constexpr int largest_word_payload = 64;
inline constexpr int largest_text_payload = 4 * 1024;
inline constexpr int largest_picture_payload = 160 * 1024;

/// The command that `payload` asks for on `tail`, the levels of a topic below its panel or group, such as "led/5",
/// without "do/". Fails for a tail that does not exist and for a payload that is wrong; the failure says what is wrong
/// and what would be right, in one line. A payload is never empty: an empty one takes back what was published.
///
/// For lamps and whole lines, the frame is the only memory that is taken. A picture takes some 20 bytes for each of its
/// pixels while it is read, and 2 MiB at most; one that cannot be right takes nothing.
Outcome<Command> command_of(const QByteArray &tail, const QByteArray &payload);

/// The frame that brings `target`, which command_of() has made, back to how it is after a start of the daemon: a lamp
/// off, a screen black. For a line, and for an area, the whole screen. Empty for Target::Kind::no_place.
QByteArray clearing_frame(const Target &target);

/// The frame of a ping.
const QByteArray &ping_frame();

} // namespace buttondriver::bridge
