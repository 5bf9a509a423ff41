// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QByteArray>

#include <vector>

namespace buttondriver::buttonctl {

/// One thing to do over a connection.
struct Step {
  enum class Kind {
    send,          ///< the bytes go out as they are
    ping,          ///< the bytes go out, and the answer is waited for
    ping_for_json, ///< the same; the round trips of all steps of the command are told at once, as JSON
    wait,          ///< nothing is sent for a time
  };

  Kind kind;
  QByteArray bytes; ///< as they lie on the stream, the length that frames a message included
  int wait_ms = 0;  ///< only of `wait`
};

using Steps = std::vector<Step>;

} // namespace buttondriver::buttonctl
