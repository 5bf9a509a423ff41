// SPDX-License-Identifier: Apache-2.0
#include "simulator/stand_in/device_connection.h"

#include "simulator/device_link/device_protocol.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <pthread.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/time.h>
#include <sys/uio.h>
#include <sys/un.h>
#include <unistd.h>

namespace buttondriver::simulator::stand_in {

namespace protocol = device_protocol;

namespace {

/// So long a panel that is there may take for an answer.
constexpr timeval patience{20, 0};

pthread_mutex_t mutex = PTHREAD_MUTEX_INITIALIZER; // guards the order on the socket, and the numbers
dev_t device_number = 0;                           // which socket is the device's
ino_t device_inode = 0;

class Lock {
public:
  Lock() { ::pthread_mutex_lock(&mutex); }
  ~Lock() { ::pthread_mutex_unlock(&mutex); }
  Lock(const Lock &) = delete;
  Lock &operator=(const Lock &) = delete;
};

/// Sends both parts, which are changed. False when that fails.
bool send_all(int descriptor, iovec (&parts)[2]) {
  for (std::size_t first = 0; first < 2;) {
    msghdr message{};
    message.msg_iov = parts + first;
    message.msg_iovlen = 2 - first;
    const ssize_t result = ::sendmsg(descriptor, &message, MSG_NOSIGNAL);
    if (result < 0 && errno == EINTR)
      continue;
    if (result < 0)
      return false;
    auto sent = static_cast<std::size_t>(result);
    while (first < 2 && sent >= parts[first].iov_len)
      sent -= parts[first++].iov_len;
    if (first < 2) {
      parts[first].iov_base = static_cast<char *>(parts[first].iov_base) + sent;
      parts[first].iov_len -= sent;
    }
  }
  return true;
}

bool receive_all(int descriptor, void *place, std::size_t size) {
  auto *next = static_cast<char *>(place);
  while (size > 0) {
    const ssize_t received = ::recv(descriptor, next, size, 0);
    if (received < 0 && errno == EINTR)
      continue;
    if (received <= 0)
      return false;
    next += received;
    size -= static_cast<std::size_t>(received);
  }
  return true;
}

/// Returns 0, or an errno.
int greet(int descriptor) {
  protocol::Hello hello{protocol::magic, protocol::version};
  iovec parts[2] = {{&hello, sizeof hello}, {nullptr, 0}};
  protocol::Welcome welcome{};
  if (!send_all(descriptor, parts) || !receive_all(descriptor, &welcome, sizeof welcome))
    return EIO;
  if (welcome.magic != protocol::magic)
    return EPROTO;
  if (welcome.error != 0)
    return static_cast<int>(welcome.error);
  return welcome.version == protocol::version ? 0 : EPROTO;
}

/// Returns 0, or an errno.
int connect_to(int descriptor, const char *path) {
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  const std::size_t length = std::strlen(path);
  if (length >= sizeof address.sun_path)
    return ENAMETOOLONG;
  std::memcpy(address.sun_path, path, length);
  ::setsockopt(descriptor, SOL_SOCKET, SO_RCVTIMEO, &patience, sizeof patience);
  ::setsockopt(descriptor, SOL_SOCKET, SO_SNDTIMEO, &patience, sizeof patience);
  while (::connect(descriptor, reinterpret_cast<const sockaddr *>(&address), sizeof address) != 0)
    if (errno != EINTR)
      return errno;
  return greet(descriptor);
}

/// The one who opens takes a panel that is not there for a device that is not there.
int error_of_open(int error) {
  switch (error) {
  case ECONNREFUSED:
  case ENOTSOCK:
  case ENAMETOOLONG:
    return ENOENT;
  case ENOENT:
  case EACCES:
  case EBUSY:
  case EMFILE:
  case ENFILE:
    return error;
  default:
    return EIO;
  }
}

void say_failed(const char *path, int error) {
  char line[256];
  const int length = std::snprintf(line, sizeof line, "buttondriver-device: no virtual panel at %.100s: %.100s\n", path,
                                   std::strerror(error));
  [[maybe_unused]] const ssize_t written = ::write(STDERR_FILENO, line, static_cast<std::size_t>(length));
}

/// Nothing that this process alone knows goes along.
protocol::Request request_for(unsigned long code, const panel::TransferRecord &record) {
  protocol::Request request{};
  request.code = static_cast<std::uint32_t>(code);
  request.record = record;
  if (code != panel::long_form_request)
    request.record.address_high = 0;
  if (record.count == 1)
    request.record.value = record.value & 0xFFFF;
  else
    request.record.value = record.count > 1 && record.value != 0 ? 1 : 0;
  request.words = protocol::words_behind(request.code, request.record);
  return request;
}

/// Whether `answer` can be one to `request`.
bool fits(const protocol::Answer &answer, const protocol::Request &request) {
  const bool brings_words = answer.result >= 0 && protocol::has_words(request.code, request.record) &&
                            protocol::is_read(request.code, request.record);
  return answer.words == (brings_words ? request.record.count : 0);
}

/// Returns false when the two are out of step.
bool exchange(int descriptor, protocol::Request &request, void *words, protocol::Answer &answer) {
  iovec parts[2] = {{&request, sizeof request}, {words, request.words * sizeof(std::uint16_t)}};
  return send_all(descriptor, parts) && receive_all(descriptor, &answer, sizeof answer) && fits(answer, request) &&
         receive_all(descriptor, words, answer.words * sizeof(std::uint16_t));
}

} // namespace

int open_device(const char *path, bool closes_on_exec) {
  const int kept_errno = errno;
  const int descriptor = ::socket(AF_UNIX, SOCK_STREAM | (closes_on_exec ? SOCK_CLOEXEC : 0), 0);
  int error = descriptor < 0 ? errno : connect_to(descriptor, path);
  struct stat status {};
  if (error == 0 && ::fstat(descriptor, &status) != 0)
    error = errno;
  if (error != 0) {
    if (descriptor >= 0)
      ::close(descriptor);
    say_failed(path, error);
    errno = error_of_open(error);
    return -1;
  }
  const Lock lock;
  device_number = status.st_dev;
  device_inode = status.st_ino;
  errno = kept_errno; // setsockopt changes it where times have 64 bits and the kernel knows only shorter ones
  return descriptor;
}

bool is_device(int descriptor) {
  const int kept_errno = errno;
  struct stat status {};
  const bool is_socket = ::fstat(descriptor, &status) == 0 && S_ISSOCK(status.st_mode);
  errno = kept_errno;
  const Lock lock;
  return is_socket && status.st_dev == device_number && status.st_ino == device_inode;
}

int transfer(int descriptor, unsigned long code, panel::TransferRecord &record) {
  const Lock lock;
  const int kept_errno = errno;
  protocol::Request request = request_for(code, record);
  // As the program put it into the record.
  // NOLINTNEXTLINE(performance-no-int-to-ptr)
  void *const words = record.count > 1 ? reinterpret_cast<void *>(static_cast<std::uintptr_t>(record.value)) : nullptr;
  protocol::Answer answer{};
  if (!exchange(descriptor, request, words, answer)) {
    ::shutdown(descriptor, SHUT_RDWR); // what comes late belongs to no later transfer
    errno = EIO;
    return -1;
  }
  if (answer.result < 0) {
    errno = static_cast<int>(answer.error);
    return answer.result;
  }
  if (record.count == 1)
    std::memcpy(&record.value, &answer.value, sizeof(std::uint16_t));
  errno = kept_errno;
  return answer.result;
}

} // namespace buttondriver::simulator::stand_in
