// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "bridge/topics/command.h"

#include <QByteArray>

namespace buttondriver::bridge {

/// A command, and the topic that it belongs to; no topic when it only clears.
struct TopicCommand {
  QByteArray topic;
  Command command;
};

} // namespace buttondriver::bridge
