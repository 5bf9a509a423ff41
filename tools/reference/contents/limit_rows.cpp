// SPDX-License-Identifier: Apache-2.0
#include "tools/reference/limits_section.h"

#include "server/limits.h"

#include <chrono>
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

static_assert(limits::read_ahead % 1024 == 0 && limits::largest_frame % 1024 == 0 && limits::large_frames % 1024 == 0,
              "written in KiB");

} // namespace

std::uint32_t largest_message() { return limits::largest_frame; }

std::string limits_section() {
  std::ostringstream section;
  section << "## Limits\n\n"
             "Nothing of this is told to a client. Whoever waits loses nothing.\n\n"
             "| What | How much | What happens beyond it |\n|---|---|---|\n"
          << "| a message | " << size_in_words(limits::largest_frame) << ", that is L up to " << limits::largest_frame
          << " | the message is skipped, and what follows it is read as usual. The log has a line |\n"
          << "| frames of more than " << size_in_words(limits::read_ahead) << ", those of all connections together | "
          << size_in_words(limits::large_frames)
          << " that have arrived | the connection waits until others have delivered theirs or have ended. A frame that "
             "others wait for and that does not arrive is skipped, and the log has a line |\n"
          << "| answers to pings that a client does not read | " << limits::owed_answers
          << " | further ones are dropped, and the log has a line. The client is served all the same |\n"
          << "| messages of one connection in a row | " << limits::messages_per_turn << ", and work for the panel of "
          << limits::time_per_turn / std::chrono::milliseconds(1)
          << " ms, at least one message | the other connections have their turn first |\n"
          << "| open connections | " << limits::connections
          << ", or less where the system lets the daemon have fewer | a newcomer gets the place of a client that has "
             "never sent a message; where there is none, it is [refused](reliability.md#when-all-places-are-taken) |\n"
          << "| work that the panel has not done yet | a time, and a number of bytes: a "
             "[pause](reliability.md#when-the-hardware-is-behind) | until some is done, only pings that come first on "
             "their connection are answered; all else waits |\n"
          << "| messages with opcode 0 that are not logged yet | a number of bytes: a "
             "[hold](reliability.md#when-null-messages-wait-to-be-logged) | who sent one waits until it is logged; "
             "beyond a mark further ones wait too, and what follows them |\n"
          << "| lines of the log that nobody reads | a number of bytes: a "
             "[hold](reliability.md#when-the-logs-reader-is-slow) | as in a "
             "pause |\n"
             "\n";
  return section.str();
}

} // namespace buttondriver::documents
