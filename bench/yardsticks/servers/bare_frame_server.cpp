// SPDX-License-Identifier: Apache-2.0
// The least that a server of this protocol can do: it takes frames apart, logs what the daemon logs for them, answers
// pings, and does nothing else. One thread, no library.
//
//   buttondriver_bare_frame_server [gathered]
//
// It listens on a free port of this machine and logs to standard error. Each line of the log is a write(2) of its own,
// as a plain server has it; "gathered": one write for all that came with one read, which is as cheap as a log can be.

#include <array>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <string>
#include <string_view>
#include <sys/epoll.h>
#include <sys/socket.h>
#include <unistd.h>
#include <unordered_map>

namespace {

enum Opcode : std::uint32_t { ping = 12, text_line = 15, picture = 19 };

std::uint32_t word_at(std::string_view bytes, std::size_t offset) {
  if (offset + 4 > bytes.size())
    return 0;
  const auto *place = reinterpret_cast<const unsigned char *>(bytes.data() + offset);
  return std::uint32_t{place[0]} << 24 | std::uint32_t{place[1]} << 16 | std::uint32_t{place[2]} << 8 | place[3];
}

void write_all(int descriptor, std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t written = ::write(descriptor, bytes.data(), bytes.size());
    if (written <= 0)
      return;
    bytes.remove_prefix(static_cast<std::size_t>(written));
  }
}

class Log {
public:
  explicit Log(bool is_gathered) : _is_gathered(is_gathered) {}

  void message(std::string_view message) {
    const std::uint32_t opcode = word_at(message, 0);
    char line[160];
    put(line, std::snprintf(line, sizeof line, "buttondriver: opcode =  %u , size =  %zu \n", opcode, message.size()));
    if (opcode == text_line)
      put(line, std::snprintf(line, sizeof line, "buttondriver: Got a TFT text line message \n"));
    if (opcode == picture)
      put(line,
          std::snprintf(line, sizeof line,
                        "buttondriver(DRAW_TFT_IMAGE): _screen_id = %u, _xoffset =%u, _yoffset = %u, _size = %u.\n",
                        word_at(message, 4), word_at(message, 8), word_at(message, 12), word_at(message, 16)));
  }

  void endOfRead() {
    write_all(STDERR_FILENO, _gathered);
    _gathered.clear();
  }

private:
  void put(const char *line, int size) {
    const std::string_view bytes(line, static_cast<std::size_t>(size));
    if (_is_gathered)
      _gathered += bytes;
    else
      write_all(STDERR_FILENO, bytes);
  }

  bool _is_gathered;
  std::string _gathered;
};

/// What has come on a connection and is no whole frame yet.
using Unread = std::string;

/// Takes all whole frames off `unread`; returns what is answered.
std::string take_frames(Unread &unread, Log &log) {
  std::string answers;
  std::string_view rest = unread;
  while (rest.size() >= 4 && rest.size() - 4 >= word_at(rest, 0)) {
    const std::string_view message = rest.substr(4, word_at(rest, 0));
    log.message(message);
    if (word_at(message, 0) == ping)
      answers.append("\0\0\0\4\0\0\0\1", 8);
    rest.remove_prefix(4 + message.size());
  }
  unread.erase(0, unread.size() - rest.size());
  return answers;
}

int listening_socket() {
  const int listener = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  const bool is_bound = ::bind(listener, reinterpret_cast<const sockaddr *>(&address), sizeof address) == 0;
  return is_bound && ::listen(listener, SOMAXCONN) == 0 ? listener : -1;
}

void watch(int events, int descriptor) {
  epoll_event event{};
  event.events = EPOLLIN;
  event.data.fd = descriptor;
  ::epoll_ctl(events, EPOLL_CTL_ADD, descriptor, &event);
}

} // namespace

int main(int argc, char **argv) {
  Log log(argc > 1 && std::strcmp(argv[1], "gathered") == 0);
  std::unordered_map<int, Unread> connections;
  std::array<char, 64 * 1024> read{};
  const int listener = listening_socket();
  const int events = ::epoll_create1(EPOLL_CLOEXEC);
  if (listener < 0 || events < 0)
    return 1;
  watch(events, listener);
  for (;;) {
    std::array<epoll_event, 64> ready{};
    const int count = ::epoll_wait(events, ready.data(), static_cast<int>(ready.size()), -1);
    for (int i = 0; i < count; ++i) {
      const int descriptor = ready[static_cast<std::size_t>(i)].data.fd;
      if (descriptor == listener) {
        const int connection = ::accept4(listener, nullptr, nullptr, SOCK_CLOEXEC);
        const int at_once = 1;
        ::setsockopt(connection, IPPROTO_TCP, TCP_NODELAY, &at_once, sizeof at_once);
        watch(events, connection);
        continue;
      }
      const ssize_t size = ::recv(descriptor, read.data(), read.size(), 0);
      if (size <= 0) {
        connections.erase(descriptor);
        ::close(descriptor);
        continue;
      }
      Unread &unread = connections[descriptor];
      unread.append(read.data(), static_cast<std::size_t>(size));
      write_all(descriptor, take_frames(unread, log));
      log.endOfRead();
    }
  }
}
