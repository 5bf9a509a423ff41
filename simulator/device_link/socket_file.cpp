// SPDX-License-Identifier: Apache-2.0
#include "simulator/device_link/socket_file.h"

#include <cerrno>
#include <cstring>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

namespace buttondriver::simulator {

namespace {

constexpr int most_waiting = 8;
constexpr mode_t only_this_user = 0600;

int new_socket() { return ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0); }

/// The reason of the last call that failed.
Failure last_failure() { return Failure{QString::fromLocal8Bit(std::strerror(errno))}; }

const sockaddr *general(const sockaddr_un &address) { return reinterpret_cast<const sockaddr *>(&address); }

/// Makes room at `path` where a socket is that nobody listens on any more.
Outcome<Done> remove_stale(const QByteArray &path, const sockaddr_un &address) {
  struct stat status {};
  if (::lstat(path.constData(), &status) != 0)
    return errno == ENOENT ? Outcome<Done>(Done{}) : last_failure();
  if (!S_ISSOCK(status.st_mode))
    return Failure{QStringLiteral("another file is there that is no socket")};
  const int probe = new_socket();
  if (probe < 0)
    return last_failure();
  const bool is_stale = ::connect(probe, general(address), sizeof address) != 0 && errno == ECONNREFUSED;
  ::close(probe);
  if (!is_stale)
    return Failure{QStringLiteral("another program listens there")};
  return ::unlink(path.constData()) == 0 ? Outcome<Done>(Done{}) : last_failure();
}

} // namespace

SocketFile::~SocketFile() {
  struct stat status {};
  const bool is_ours = !_path.isEmpty() && ::lstat(_path.constData(), &status) == 0 && status.st_dev == _device &&
                       status.st_ino == _inode;
  if (is_ours)
    ::unlink(_path.constData());
  if (_descriptor >= 0)
    ::close(_descriptor);
}

Outcome<Done> SocketFile::listen(const QByteArray &path) {
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  constexpr int room = sizeof address.sun_path - 1;
  if (path.size() > room)
    return Failure{QStringLiteral("the path has %1 bytes, and a socket's has %2 at most").arg(path.size()).arg(room)};
  std::memcpy(address.sun_path, path.constData(), static_cast<std::size_t>(path.size()));
  if (const auto removed = remove_stale(path, address); !removed)
    return removed.failure();
  _descriptor = new_socket();
  // The file gets the mode of its socket, so that there is no moment at which others could connect.
  if (_descriptor < 0 || ::fchmod(_descriptor, only_this_user) != 0 ||
      ::bind(_descriptor, general(address), sizeof address) != 0)
    return last_failure();
  struct stat status {};
  if (::lstat(path.constData(), &status) != 0)
    return last_failure();
  _path = path;
  _device = status.st_dev;
  _inode = status.st_ino;
  if (::listen(_descriptor, most_waiting) != 0)
    return last_failure();
  return Done{};
}

int SocketFile::accept() const { return ::accept4(_descriptor, nullptr, nullptr, SOCK_CLOEXEC | SOCK_NONBLOCK); }

} // namespace buttondriver::simulator
