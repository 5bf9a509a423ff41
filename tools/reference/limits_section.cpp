// SPDX-License-Identifier: Apache-2.0
#include "tools/reference/limits_section.h"

#include "server/limits.h"

#include <cstdint>
#include <sstream>

namespace buttondriver::documents {

namespace {

/// Whole numbers of KiB or MiB, as the limits are.
std::string size_in_words(std::int64_t bytes) {
  constexpr std::int64_t kib = 1024;
  constexpr std::int64_t mib = 1024 * kib;
  return bytes % mib == 0 ? std::to_string(bytes / mib) + " MiB" : std::to_string(bytes / kib) + " KiB";
}

static_assert(limits::read_ahead % 1024 == 0 && limits::largest_frame % 1024 == 0 && limits::large_frames % 1024 == 0 &&
                  limits::unread_answers % 1024 == 0,
              "said in KiB");

} // namespace

std::string limits_section() {
  std::ostringstream section;
  section << "## Limits\n\n"
             "Nothing of this is told to a client. Whoever waits loses nothing.\n\n"
             "| What | How much | What happens beyond it |\n|---|---|---|\n"
          << "| a message | " << size_in_words(limits::largest_frame) << ", that is L up to " << limits::largest_frame
          << " | the connection is blocked: what follows on it is thrown away, until it ends. The log has a line |\n"
          << "| frames of more than " << size_in_words(limits::read_ahead) << ", those of all connections together | "
          << size_in_words(limits::large_frames)
          << " | the connection waits until others have delivered theirs or have ended |\n"
          << "| answers to pings that a client does not read | " << size_in_words(limits::unread_answers)
          << " | nothing is read from it until it has read them |\n"
          << "| messages of one connection in a row | " << limits::messages_per_turn
          << " | the other connections have their turn first |\n"
          << "| open connections | " << limits::connections << " | further ones wait until others have ended |\n"
          << "| work that the panel has not done yet | a number of tasks and of bytes: a "
             "[pause](reliability.md#when-the-hardware-is-behind) | until some is done, only pings that come first on "
             "their connection are answered; all else waits, and so do new connections |\n"
          << "| messages with opcode 0 that are not logged yet | a number of bytes: a "
             "[hold](reliability.md#when-null-messages-wait-to-be-logged) | as in a pause, for those who sent them; "
             "beyond a second mark for all |\n"
             "\n";
  return section.str();
}

} // namespace buttondriver::documents
