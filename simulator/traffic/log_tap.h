// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "simulator/traffic/history.h"

#include <QByteArray>
#include <QtGlobal>

#include <mutex>
#include <string_view>
#include <vector>

namespace buttondriver::simulator {

/// One text of either log channel.
struct LogEntry {
  enum class Source : std::uint8_t {
    event,  ///< the Qt message channel: a normal event
    fault,  ///< the Qt message channel: a fault
    output, ///< standard output
  };

  qint64 time_ms; ///< since 1970, UTC
  Source source;
  QByteArray text; ///< UTF-8, without the line feed at its end
};

/// Listens to both log channels while it lives; they go where they went before as well. One object a process, made and
/// ended on the main thread while no other thread logs; add() and since() are safe to call from any thread.
class LogTap {
public:
  static constexpr std::size_t kept_entries = 500;
  /// Longer texts are cut off.
  static constexpr int most_bytes = 1000;

  LogTap();
  ~LogTap();
  LogTap(const LogTap &) = delete;
  LogTap &operator=(const LogTap &) = delete;

  void add(LogEntry::Source source, const QByteArray &text);

  /// Some entries, the number of the newest one there is, numbers start at 1, and how many before the first of these
  /// are missing: those that forget() has dropped are not.
  struct Part {
    std::uint64_t last;
    std::uint64_t left_out;
    std::vector<LogEntry> entries;
  };
  /// At most `most` of the entries after number `number`, the newest ones.
  Part since(std::uint64_t number, std::size_t most) const;
  /// Empties the list; the numbers go on.
  void forget();

private:
  mutable std::mutex _mutex;
  History<LogEntry> _entries{kept_entries};
  QtMessageHandler _previous;
};

} // namespace buttondriver::simulator
