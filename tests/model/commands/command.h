// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <vector>

namespace buttondriver::test {

/// One thing that is done to the daemon.
struct Command {
  enum class Kind {
    message,       ///< `bytes` are a client's message, without the length before it
    tick,          ///< 20 ms go by for the LEDs that blink
    font,          ///< the configuration names a font of `width` x `height`
    levels,        ///< `bytes` become the level file
    remove_levels, ///< the level file goes
    look,          ///< the panel is compared with the model
  };
  Kind kind = Kind::look;
  std::string bytes;
  int width = 0;
  int height = 0;
};

bool operator==(const Command &one, const Command &other);

using Sequence = std::vector<Command>;

/// A line for each command that a person can read, send and give back to read_sequence. A message is its frame in
/// hexadecimal, with a remark after a '#'.
std::string to_text(const Sequence &sequence);

/// Reads what to_text writes; empty lines and remarks after a '#' are skipped. Throws std::invalid_argument.
Sequence read_sequence(const std::string &text);

} // namespace buttondriver::test
