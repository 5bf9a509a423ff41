// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QByteArray>

#include <vector>

namespace buttondriver::counts {

/// One row: messages of one kind, and how they are sent.
struct MessageKind {
  const char *name;                 ///< one word, for the command line and the table
  int at_once;                      ///< how many are there when the daemon looks: not more than it takes in one turn
  int rounds;                       ///< how often that is counted
  int answers;                      ///< how many answers one message has
  QByteArray (*message)(int index); ///< the messages differ by their index, which counts from 0 to `at_once` - 1
};

/// In the order of the table.
const std::vector<MessageKind> &all_message_kinds();

} // namespace buttondriver::counts
