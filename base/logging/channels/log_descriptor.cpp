// SPDX-License-Identifier: Apache-2.0
#include "logging/channels/log_descriptor.h"

#include <algorithm>
#include <cerrno>
#include <climits>
#include <poll.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

namespace buttondriver {

namespace {

/// A pipe that is writable at all takes this many bytes without waiting.
constexpr std::size_t bytes_at_once = PIPE_BUF;

} // namespace

LogDescriptor LogDescriptor::lookedAt(int descriptor) {
  LogDescriptor looked_at(descriptor);
  struct stat status = {};
  if (::fstat(descriptor, &status) != 0)
    return looked_at;
  looked_at._kind = S_ISREG(status.st_mode) ? Kind::file : S_ISSOCK(status.st_mode) ? Kind::socket : Kind::other;
  looked_at._device = status.st_dev;
  looked_at._inode = status.st_ino;
  return looked_at;
}

bool LogDescriptor::isSameFileAs(const LogDescriptor &other) const {
  return _kind != Kind::unknown && other._kind != Kind::unknown && _device == other._device && _inode == other._inode;
}

ssize_t LogDescriptor::writeSome(std::string_view text) const {
  ssize_t written = 0;
  do {
    switch (_kind) {
    case Kind::file:
      written = ::write(_descriptor, text.data(), text.size());
      break;
    case Kind::socket:
      written = ::send(_descriptor, text.data(), text.size(), MSG_DONTWAIT | MSG_NOSIGNAL);
      break;
    default:
      if (!isWritableWithin(std::chrono::milliseconds(0)))
        return 0;
      written = ::write(_descriptor, text.data(), std::min(text.size(), bytes_at_once));
    }
  } while (written < 0 && errno == EINTR);
  if (written > 0)
    return written;
  return written < 0 && errno == EAGAIN ? 0 : -1;
}

bool LogDescriptor::isWritableWithin(std::chrono::milliseconds time) const {
  pollfd descriptor{_descriptor, POLLOUT, 0};
  int count = 0;
  while ((count = ::poll(&descriptor, 1, static_cast<int>(time.count()))) < 0 && errno == EINTR) {
  }
  return count != 0;
}

} // namespace buttondriver
