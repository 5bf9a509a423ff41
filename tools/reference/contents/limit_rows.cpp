// SPDX-License-Identifier: Apache-2.0
#include "tools/reference/contents/limit_rows.h"

#include "buttons/logs/null_message_log.h"
#include "fpga/queue/task_queue.h"
#include "logging/channels/log_place.h"
#include "server/limits.h"

#include <chrono>
#include <cstdint>
#include <string>

namespace buttondriver::documents {

namespace {

/// Whole numbers of KiB or MiB, as the limits are.
std::string bytes_in_words(std::int64_t bytes) {
  constexpr std::int64_t kib = 1024;
  constexpr std::int64_t mib = 1024 * kib;
  return bytes % mib == 0 ? std::to_string(bytes / mib) + " MiB" : std::to_string(bytes / kib) + " KiB";
}

std::string bytes_in_words(std::size_t bytes) { return bytes_in_words(static_cast<std::int64_t>(bytes)); }

std::string ms_in_words(std::chrono::nanoseconds time) {
  return std::to_string(time / std::chrono::milliseconds(1)) + " ms";
}

static_assert(limits::read_ahead % 1024 == 0 && limits::largest_frame % 1024 == 0 && limits::large_frames % 1024 == 0,
              "written in KiB");

} // namespace

std::uint32_t largest_message() { return limits::largest_frame; }

std::vector<LimitRow> limit_rows() {
  return {
      {"a message",
       bytes_in_words(std::int64_t{limits::largest_frame}) + ", that is L up to " +
           std::to_string(limits::largest_frame),
       "the message is skipped, and what follows it is read as usual. The log has a line"},
      {"frames of more than " + bytes_in_words(std::int64_t{limits::read_ahead}) +
           ", those of all connections together",
       bytes_in_words(std::int64_t{limits::large_frames}) + " that have arrived",
       "the connection waits until others have delivered theirs or have ended. A frame that others wait for and that "
       "does not arrive is skipped, and the log has a line"},
      {"answers to pings that a client does not read", std::to_string(limits::owed_answers),
       "further ones are dropped, and the log has a line. The client is served all the same"},
      {"messages of one connection in a row",
       std::to_string(limits::messages_per_turn) + ", and work for the panel of " + ms_in_words(limits::time_per_turn) +
           ", at least one message",
       "the other connections have their turn first"},
      {"open connections",
       std::to_string(limits::connections) + ", or less where the system lets the daemon have fewer",
       "a newcomer gets the place of a client that has never sent a message; where there is none, it is "
       "[refused](reliability.md#when-all-places-are-taken)"},
      {"work that the panel has not done yet",
       "a time, and a number of bytes: a [pause](reliability.md#when-the-hardware-is-behind)",
       "until some is done, only pings that come first on their connection are answered; all else waits"},
      {"messages with opcode 0 that are not logged yet",
       "a number of bytes: a [hold](reliability.md#when-null-messages-wait-to-be-logged)",
       "who sent one waits until it is logged; beyond a mark further ones wait too, and what follows them"},
      {"lines of the log that nobody reads", "a number of bytes: a [hold](reliability.md#when-the-logs-reader-is-slow)",
       "as in a pause"},
  };
}

std::vector<WaitRow> wait_rows() {
  const QueueMarks queue;
  return {
      {"more waits for the panel than " + ms_in_words(queue.high_time) + " of work, " +
           std::to_string(queue.high_tasks) + " tasks, or " + bytes_in_words(queue.high_bytes) +
           " of texts and pictures",
       "a pause, until no more than " + ms_in_words(queue.low_time) + ", " + std::to_string(queue.low_tasks) +
           " tasks and " + bytes_in_words(queue.low_bytes) +
           " are left. One task alone is never too much. Afterwards the connection comes first that has used the panel "
           "least"},
      {"work of blinking has waited for more than " + ms_in_words(queue.full_age) + ", or " +
           std::to_string(queue.full_tasks) + " tasks wait",
       "blink ticks are left out, for all buttons alike; they stay in step"},
      {"messages with opcode 0 wait to be logged", "their connections get nothing more until they are written. Past " +
                                                       bytes_in_words(NullMessageLog::full_mark) +
                                                       " others that send such a message wait too, until " +
                                                       bytes_in_words(NullMessageLog::low_mark) + " are left"},
      {"more than " + bytes_in_words(LogPlace::full_mark) + " of the log wait for its reader",
       "all connections wait as in a pause, until " + bytes_in_words(LogPlace::low_mark) +
           " are left, or until the reader has read nothing for " + std::to_string(LogPlace::stuck_after.count()) +
           " seconds. Past " + bytes_in_words(LogPlace::most_waiting) +
           " lines are lost, and a line of the log tells how many"},
  };
}

} // namespace buttondriver::documents
