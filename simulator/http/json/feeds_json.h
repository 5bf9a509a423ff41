// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "simulator/traffic/history.h"
#include "simulator/traffic/log_tap.h"
#include "simulator/traffic/message_record.h"

#include <QJsonObject>

#include <cstdint>

namespace buttondriver::simulator {

/// The form of messages.json and log.json; grows when a field changes its meaning or goes, not when one is added.
inline constexpr int feed_version = 1;

/// {"time", "source", "text"}
QJsonObject to_json(const LogEntry &entry);

/// {"version", "last", "dropped", "messages": [{"number", and what a message record has}]}: what came after number
/// `since`, which has 63 bits. "last" is the number of the newest message there was, "dropped" how many after `since`
/// are not kept any more. Null, where messages are not known: "last" and "messages" are null too then.
QJsonObject messages_feed(const History<MessageRecord> *messages, std::uint64_t since);

/// The same of log lines: {"version", "last", "dropped", "log": [{"number", "time", "source", "text"}]}.
QJsonObject log_feed(const LogTap::Part &log, std::uint64_t since);

} // namespace buttondriver::simulator
