#pragma once

#include <cstdint>
#include <mutex>
#include <string_view>

namespace buttondriver {

/// A file descriptor that texts of the log are written to, and that never holds its writers up for long. A reader that
/// is there but has not read for as long as the channel's patience loses what is written from then on, until it reads
/// again; then a line of its own tells how many texts were lost. A descriptor that fails is ignored.
class LogChannel {
public:
  static constexpr int usual_patience_ms = 1000;

  /// The descriptor stays the caller's.
  explicit LogChannel(int descriptor, int patience_ms = usual_patience_ms)
      : _descriptor(descriptor), _patience_ms(patience_ms) {}

  /// Writes `text` as it is. Safe to call from any thread; one call's text stays together.
  void write(std::string_view text);

private:
  bool writeAll(std::string_view text, int patience_ms);
  bool becomesWritable(int patience_ms) const;

  const int _descriptor;
  const int _patience_ms;
  std::mutex _mutex;
  std::uint64_t _lost = 0; // texts since the reader stopped reading
};

} // namespace buttondriver
