// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <chrono>
#include <cstdint>
#include <string_view>
#include <sys/types.h>

namespace buttondriver {

/// A file descriptor that texts of the log are written to, a piece at a time and never waiting. Others may share the
/// open file, so its own flags stay as they are. The descriptor stays the caller's.
class LogDescriptor {
public:
  /// Knows nothing of what the descriptor is: it may be replaced while this object lives.
  explicit LogDescriptor(int descriptor) : _descriptor(descriptor) {}
  /// Looks once what the descriptor is, and saves calls of the system from then on.
  static LogDescriptor lookedAt(int descriptor);

  int number() const { return _descriptor; }
  /// Whether both were looked at and are the same file, pipe or socket.
  bool isSameFileAs(const LogDescriptor &other) const;

  /// Writes the first bytes of `text`, which is not empty, and returns their number: 0 when the reader has no room for
  /// any, -1 when nobody will ever read them.
  ssize_t writeSome(std::string_view text) const;
  /// Waits for room. Also true for a descriptor that can only fail.
  bool isWritableWithin(std::chrono::milliseconds time) const;

private:
  enum class Kind : std::uint8_t { unknown, file, socket, other };

  int _descriptor;
  Kind _kind = Kind::unknown;
  dev_t _device = 0;
  ino_t _inode = 0;
};

} // namespace buttondriver
